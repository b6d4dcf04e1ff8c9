#pragma once
#include <vlCommon/Result.h>
#include <vlExport/Node.h>
#include <vlGraphics/Buffer.h>
#include <vlGraphics/Compositor.h>
#include <vlGraphics/Mesh.h>
#include <vlGraphics/Shader.h>
#include <vlGraphics/Viewport.h>
#include <vlScripts/Script.h>

#include <tuple>
#include <vector>

namespace vlResources {
class FileBatch;
}

namespace vlGraphics {

/** What a declaration file gave: the resources that were made or filled, by kind, and one line for
 * each thing that was wrong. Pointers are the managers'. */
class DeclarationLoadResult {
public:
    const std::vector<vlMemory::String>& getErrors() const { return errors_; }
    template <class T> const std::vector<T*>& getResources() const {
        return std::get<std::vector<T*>>(resources_);
    }
    const std::vector<BlendState*>& getBlendStates() const { return getResources<BlendState>(); }
    const std::vector<DepthStencilState*>& getDepthStencilStates() const {
        return getResources<DepthStencilState>();
    }
    const std::vector<RasterState*>& getRasterStates() const { return getResources<RasterState>(); }
    const std::vector<Sampler*>& getSamplers() const { return getResources<Sampler>(); }
    const std::vector<Buffer*>& getBuffers() const { return getResources<Buffer>(); }
    const std::vector<Camera*>& getCameras() const { return getResources<Camera>(); }
    const std::vector<Viewport*>& getViewports() const { return getResources<Viewport>(); }
    const std::vector<RenderQueue*>& getRenderQueues() const { return getResources<RenderQueue>(); }
    const std::vector<Program*>& getPrograms() const { return getResources<Program>(); }
    const std::vector<Shader*>& getShaders() const { return getResources<Shader>(); }
    const std::vector<Texture*>& getTextures() const { return getResources<Texture>(); }
    const std::vector<Mesh*>& getMeshes() const { return getResources<Mesh>(); }
    const std::vector<Compositor*>& getCompositors() const { return getResources<Compositor>(); }
    const std::vector<vlScripts::Script*>& getScripts() const {
        return getResources<vlScripts::Script>();
    }

    void addError(vlMemory::String line) { errors_.push_back(std::move(line)); }
    template <class T> void add(T* resource) {
        std::get<std::vector<T*>>(resources_).push_back(resource);
    }

private:
    std::vector<vlMemory::String> errors_;
    std::tuple<std::vector<BlendState*>,
               std::vector<DepthStencilState*>,
               std::vector<RasterState*>,
               std::vector<Sampler*>,
               std::vector<Buffer*>,
               std::vector<Camera*>,
               std::vector<Viewport*>,
               std::vector<RenderQueue*>,
               std::vector<Program*>,
               std::vector<Shader*>,
               std::vector<Texture*>,
               std::vector<Mesh*>,
               std::vector<Compositor*>,
               std::vector<vlScripts::Script*>>
            resources_;
};

/** Reads and writes declarations: JSON objects whose members are lists of resources by kind
 *  ("rasterStates": [...]), each resource by name. Reading makes the resource or fills an existing
 *  one in place; what is faulty is named ("file:line: kind 'name': ..."), left out, and keeps its
 *  earlier settings. Of members that nobody knows there is a line each, and the rest is adopted;
 *  those whose name starts with "EDITOR_" are passed over in silence. Paths in declarations are
 *  relative to the folder of the declaration and may not leave `root`. Graphics thread only. */
class ContentLoader final {
public:
    ContentLoader() = delete;

    /// Reads every kind in the file. `path` is relative to the working directory unless absolute;
    /// `root` is the folder that referred files must stay in (empty: the declaration's own folder).
    /// With `load`, the device side is made as well.
    static DeclarationLoadResult
    loadDeclarations(vlMemory::StringView path, vlMemory::StringView root, bool load);
    /// The same from a tree that stands in for a file of that name in `folder`.
    static DeclarationLoadResult loadDeclarations(const vlExport::Node& tree,
                                                  vlMemory::StringView fileName,
                                                  vlMemory::StringView folder,
                                                  vlMemory::StringView root,
                                                  bool load);
    /// Only checks: nothing is made. One line an error.
    static std::vector<vlMemory::String> validateDeclarations(const vlExport::Node& tree,
                                                              vlMemory::StringView fileName,
                                                              vlMemory::StringView folder,
                                                              vlMemory::StringView root);
    static std::vector<vlMemory::String> validateDeclarations(vlMemory::StringView path,
                                                              vlMemory::StringView root);

    // Only the one kind; that a file has none of it is an error.
    static DeclarationLoadResult loadBlendStateDeclaration(vlMemory::StringView path, bool load);
    static DeclarationLoadResult loadDepthStencilStateDeclaration(vlMemory::StringView path,
                                                                  bool load);
    static DeclarationLoadResult loadRasterStateDeclaration(vlMemory::StringView path, bool load);
    static DeclarationLoadResult loadSamplerDeclaration(vlMemory::StringView path, bool load);
    static DeclarationLoadResult loadBufferDeclaration(vlMemory::StringView path, bool load);
    static DeclarationLoadResult loadCameraDeclaration(vlMemory::StringView path, bool load);
    static DeclarationLoadResult loadViewportDeclaration(vlMemory::StringView path, bool load);
    static DeclarationLoadResult loadRenderQueueDeclaration(vlMemory::StringView path, bool load);
    static DeclarationLoadResult loadShaderProgramDeclaration(vlMemory::StringView path, bool load);
    static DeclarationLoadResult loadShaderDeclaration(vlMemory::StringView path, bool load);
    static DeclarationLoadResult loadTextureDeclaration(vlMemory::StringView path, bool load);
    static DeclarationLoadResult loadMeshDeclaration(vlMemory::StringView path, bool load);
    static DeclarationLoadResult loadCompositorDeclaration(vlMemory::StringView path, bool load);
    /// With `load`, a script that does not compile is an error and is adopted all the same.
    static DeclarationLoadResult loadScriptDeclaration(vlMemory::StringView path, bool load);

    /// Makes the compositors that the text declares (the same form as a declaration file, whose
    /// "formatVersion" may be left out): all of them, or none and the first error.
    static vlCommon::Result<> processCompositorSources(vlMemory::StringView text);
    /// Appends the nodes that the text declares ("nodes": [...]) to a compositor: all or none.
    static vlCommon::Result<> appendCompositorNodeFromSources(Compositor& compositor,
                                                              vlMemory::StringView text);

    /// The declaration of one resource, as its file holds it; `folder` is what its paths are
    /// relative to. An empty folder makes a memento for fillFromDeclaration(): paths stay those of
    /// the resource, and a program's sources stand in it even where they belong into files. A
    /// script's text always does: only saveObjectDeclaration() knows the file that it goes to.
    template <class T>
    static vlExport::Node getDeclaration(const T& resource, vlMemory::StringView folder);
    /// Fills an existing resource in place from such a declaration; its name stays. Nothing changes
    /// on failure. The device side follows at the next unload() and load().
    template <class T>
    static vlCommon::Result<> fillFromDeclaration(T& resource,
                                                  const vlExport::Node& declaration,
                                                  vlMemory::StringView folder);
    /// Writes a file with that one resource, whole or not at all. `path` is relative to the working
    /// directory unless absolute. A script's text goes into a file beside it, of the same name with
    /// ".lua" in the extension's place: both are written or neither.
    template <class T>
    static vlCommon::Result<> saveObjectDeclaration(const T& resource, vlMemory::StringView path);
    /// Together with further files, by absolute paths, such as those that the declaration refers
    /// to: all or none.
    template <class T>
    static vlCommon::Result<> saveObjectDeclaration(const T& resource,
                                                    vlMemory::StringView path,
                                                    const vlResources::FileBatch& beside);
    /// What the file of a stage is called in a folder of a program's sources.
    static vlMemory::StringView getStageFile(SHADER_TYPE stage);
    /// "rasterStates": the member of a declaration file that lists resources of the kind.
    template <class T> static vlMemory::StringView getListName();
};

} // namespace vlGraphics
