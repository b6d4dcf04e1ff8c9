#pragma once
#include "Names.h"
#include "project/ProjectFile.h"

#include <vlCommon/Result.h>
#include <vlExport/Node.h>

namespace vlKestrion {

/** A project's file while something is added to it. What it says otherwise, known or not, stays. */
class ProjectEdit {
public:
    /// Reads the project; one that does not exist starts empty. Fails where the file is no project,
    /// or a part of it cannot be read: what is added could clash with what nobody knows.
    static vlCommon::Result<ProjectEdit> open(vlMemory::StringView path);

    const ProjectPlace& place() const { return place_; }
    /// Of every resource and node of the project.
    NameSet& names() { return names_; }
    bool hasCamera() const { return !project_.camera.empty(); }
    bool hasCompositor() const { return !project_.compositor.empty(); }

    void setCamera(vlMemory::StringView name) { tree_.add("camera", name); }
    void setCompositor(vlMemory::StringView name) { tree_.add("compositor", name); }
    /// Relative to the project's folder.
    void addDeclaration(vlMemory::StringView path);
    void addRootNode(vlExport::Node node);
    vlMemory::String text() const;

private:
    vlCommon::Result<> check() const;
    vlCommon::Result<> gatherNames();

    ProjectPlace place_;
    vlExport::Node tree_;
    ProjectDecl project_;
    NameSet names_;
};

} // namespace vlKestrion
