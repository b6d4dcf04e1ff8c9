#pragma once
#include "editors/shader_program/ShaderProgram.h"

#include <vlCommon/SingletonClass.h>
#include <vlWinUi/FileWatcher.h>

#include <map>
#include <memory>
#include <optional>
#include <set>

namespace vlEditor {

/** Which file a stage's source belongs to. */
struct StageFile {
    std::string path;      ///< relative to the working directory where it lies inside
    std::string text = {}; ///< the source when it was last the file's
    bool isAhead = false;  ///< the file has changed since, and the source has, too
    friend bool operator==(const StageFile&, const StageFile&) = default;
};

/** Keeps shader programs in step with files that are edited elsewhere: those that their sources
 *  were opened from, loaded from or saved to, and those that they include. Lives from the start of
 *  the interface to its end; without it no file is followed. UI thread only. */
class ProgramFiles final : public vlCommon::SingletonClass<ProgramFiles>,
                           public ShaderProgramUiListener {
public:
    ProgramFiles();
    ~ProgramFiles() override;

    /// The stage's source has just come from that file.
    void setFile(const ShaderProgramRecord& record, std::uint32_t stage, const std::string& path);
    /// The file was looked at again; nothing happens where the stage belongs to another one by now.
    void setRead(const std::string& program,
                 std::uint32_t stage,
                 const std::string& path,
                 std::string text,
                 bool isAhead);
    /// None of its sources belongs to a file any more.
    void forget(const std::string& program);
    /// Null when the stage's source belongs to none.
    const StageFile* find(const std::string& program, std::uint32_t stage) const;

    void onResourceAdded(const ShaderProgramRecord& record) override { onResourceUpdated(record); }
    void onResourceErased(const ShaderProgramRecord& record) override { forget(record.name); }
    void onResourceRenamed(const std::string& oldName, const ShaderProgramRecord& record) override;
    void onResourceUpdated(const ShaderProgramRecord& record) override;
    void onResourcesCleared() override;

private:
    using Files = std::map<std::uint32_t, StageFile>; ///< by stage

    void onFileChanged(const std::string& absolutePath);
    void tellChanged(const std::string& absolutePath) const;
    void watchLater();
    void watch();

    std::map<std::string, Files, std::less<>> programs_;
    std::map<std::string, std::vector<std::string>, std::less<>> includes_; ///< by program
    bool isToWatch_ = false;
    std::set<std::string> watched_; ///< absolute paths
    vlWinUi::FileWatcher watcher_;
    std::shared_ptr<const bool> alive_ = std::make_shared<bool>(true);
};

} // namespace vlEditor
