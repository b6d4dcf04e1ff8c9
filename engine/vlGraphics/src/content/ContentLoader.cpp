#include "content/KindLoader.h"

#include <vlExport/JsonExporter.h>
#include <vlGraphics/ContentLoader.h>
#include <vlMemory/Utf8.h>
#include <vlResources/FileWriter.h>
#include <vlResources/ResourceManager.h>

#include <algorithm>
#include <array>
#include <filesystem>

namespace vlGraphics {

using vlScripts::Script;

#define VL_EXTERN_KIND(T)                                                                          \
    extern template void readList<T>(const vlExport::Node&, LoadSession&);                         \
    extern template vlMemory::StringView ContentLoader::getListName<T>();
VL_EXTERN_KIND(BlendState)
VL_EXTERN_KIND(DepthStencilState)
VL_EXTERN_KIND(RasterState)
VL_EXTERN_KIND(Sampler)
VL_EXTERN_KIND(Buffer)
VL_EXTERN_KIND(Texture)
VL_EXTERN_KIND(Mesh)
VL_EXTERN_KIND(Camera)
VL_EXTERN_KIND(Viewport)
VL_EXTERN_KIND(RenderQueue)
VL_EXTERN_KIND(Program)
VL_EXTERN_KIND(Shader)
VL_EXTERN_KIND(Compositor)
VL_EXTERN_KIND(Script)
#undef VL_EXTERN_KIND

namespace {

constexpr std::uint32_t currentVersion = 1;
constexpr vlMemory::StringView versionMember = "formatVersion";

struct Kind {
    vlMemory::StringView list;
    void (*readList)(const vlExport::Node& list, LoadSession& session);
};

template <class T> Kind kindOf() {
    return {ContentLoader::getListName<T>(), &readList<T>};
}

/// In the order in which they are made: what others refer to goes first, so that loading finds it.
const std::array<Kind, 14>& allKinds() {
    static const std::array kinds{kindOf<BlendState>(),
                                  kindOf<DepthStencilState>(),
                                  kindOf<RasterState>(),
                                  kindOf<Sampler>(),
                                  kindOf<Buffer>(),
                                  kindOf<Texture>(),
                                  kindOf<Mesh>(),
                                  kindOf<Camera>(),
                                  kindOf<Viewport>(),
                                  kindOf<RenderQueue>(),
                                  kindOf<Program>(),
                                  kindOf<Shader>(),
                                  kindOf<Compositor>(),
                                  kindOf<Script>()};
    return kinds;
}

bool isListName(vlMemory::StringView name) {
    return std::any_of(allKinds().begin(), allKinds().end(), [&](const Kind& kind) {
        return kind.list == name;
    });
}

bool checkVersion(const vlExport::Node& tree, LoadSession& session, bool needsVersion) {
    if (tree.isObject() && !needsVersion && tree.find(versionMember) == nullptr) return true;
    vlExport::NodeReader reader(tree, session.fileName);
    static_cast<void>(reader.formatVersion(currentVersion));
    const auto read = reader.finish();
    if (!read) session.errors.push_back(read.error().message);
    return read.has_value();
}

void readTree(const vlExport::Node& tree, LoadSession& session, bool needsVersion = true) {
    if (!checkVersion(tree, session, needsVersion)) return;
    for (const vlExport::Member& member : tree.members()) {
        if (member.name == versionMember || isListName(member.name)) continue;
        session.errors.push_back(fmt::format(
                "{}:{}: unknown member '{}'", session.fileName, member.value.line(), member.name));
    }
    for (const Kind& kind : allKinds()) {
        if (const vlExport::Node* list = tree.find(kind.list)) kind.readList(*list, session);
    }
}

void readOneKind(const vlExport::Node& tree, const Kind& kind, LoadSession& session) {
    if (!checkVersion(tree, session, true)) return;
    if (const vlExport::Node* list = tree.find(kind.list)) return kind.readList(*list, session);
    session.errors.push_back(fmt::format("{}: has no '{}'", session.fileName, kind.list));
}

LoadSession sessionFor(vlMemory::StringView fileName,
                       vlMemory::StringView folder,
                       vlMemory::StringView root,
                       bool load) {
    // No folder is the working directory; only mementos have none at all.
    const vlMemory::StringView from = folder.empty() ? vlMemory::StringView(".") : folder;
    return {nullptr, false, {}, DeclarationFolders(from, root), vlMemory::String(fileName), load};
}

vlCommon::Result<vlExport::Node> readTreeFile(vlMemory::StringView path) {
    const auto bytes = vlResources::ResourceManager::getInstance().readFile(path);
    if (!bytes) return tl::unexpected(bytes.error());
    return vlExport::JsonExporter::importIntoTree(bytes->text(), path);
}

/// Names and texts of the file stand in the lines as they are until here.
void takeErrors(LoadSession& session, DeclarationLoadResult& result) {
    for (const vlMemory::String& line : session.errors)
        result.addError(vlMemory::printable(line));
}

/// read(tree, session) with the file's tree.
template <class Read>
DeclarationLoadResult
loadFile(vlMemory::StringView path, vlMemory::StringView root, bool load, Read&& read) {
    DeclarationLoadResult result;
    const auto tree = readTreeFile(path);
    if (!tree) {
        result.addError(tree.error().message);
        return result;
    }
    LoadSession session = sessionFor(path, folderOf(absoluteDeclarationPath(path)), root, load);
    session.result = &result;
    session.inEngine = true;
    read(*tree, session);
    takeErrors(session, result);
    return result;
}

template <class T> DeclarationLoadResult loadKind(vlMemory::StringView path, bool load) {
    return loadFile(path, {}, load, [](const vlExport::Node& tree, LoadSession& session) {
        readOneKind(tree, kindOf<T>(), session);
    });
}

} // namespace

vlMemory::String
labelled(vlMemory::StringView line, vlMemory::StringView fileName, vlMemory::StringView label) {
    const std::size_t number = fileName.size() + 1;
    const std::size_t end = line.find(": ", std::min(number, line.size()));
    if (!line.starts_with(fileName) || end == vlMemory::StringView::npos) {
        return fmt::format("{}: {}", label, line);
    }
    return fmt::format("{}{}: {}", line.substr(0, end + 2), label, line.substr(end + 2));
}

bool isForeignMember(vlMemory::StringView unknownMemberLine) {
    return unknownMemberLine.find("unknown member 'EDITOR_") != vlMemory::StringView::npos;
}

vlCommon::Result<> saveDeclaration(vlMemory::StringView listName,
                                   vlExport::Node declaration,
                                   vlMemory::StringView absolutePath,
                                   vlResources::FileBatch files) {
    vlExport::Node tree = vlExport::Node::object();
    tree.add(versionMember, currentVersion);
    tree.add(listName, vlExport::Node::array()).append(std::move(declaration));
    const vlMemory::String text = vlExport::JsonExporter::exportTreeIntoString(tree);
    const vlMemory::String folder = folderOf(absolutePath);
    std::error_code error;
    // Several files would make the folder that they lack; one alone does not.
    if (files.size() == 0 || !std::filesystem::is_directory(folder, error))
        return vlResources::FileWriter::writeFileWhole(absolutePath, text);
    files.add(absolutePath, text);
    return files.commit();
}

vlMemory::String absoluteDeclarationPath(vlMemory::StringView path) {
    return vlResources::ResourceManager::getInstance().getAbsoluteFromWorkingDir(path);
}

vlMemory::String folderOf(vlMemory::StringView absolutePath) {
    return std::filesystem::path(absolutePath).parent_path().string();
}

DeclarationLoadResult
ContentLoader::loadDeclarations(vlMemory::StringView path, vlMemory::StringView root, bool load) {
    return loadFile(path, root, load, [](const vlExport::Node& tree, LoadSession& session) {
        readTree(tree, session);
    });
}

DeclarationLoadResult ContentLoader::loadDeclarations(const vlExport::Node& tree,
                                                      vlMemory::StringView fileName,
                                                      vlMemory::StringView folder,
                                                      vlMemory::StringView root,
                                                      bool load) {
    DeclarationLoadResult result;
    LoadSession session = sessionFor(fileName, folder, root, load);
    session.result = &result;
    session.inEngine = true;
    readTree(tree, session);
    takeErrors(session, result);
    return result;
}

std::vector<vlMemory::String> ContentLoader::validateDeclarations(const vlExport::Node& tree,
                                                                  vlMemory::StringView fileName,
                                                                  vlMemory::StringView folder,
                                                                  vlMemory::StringView root) {
    LoadSession session = sessionFor(fileName, folder, root, false);
    readTree(tree, session);
    for (vlMemory::String& line : session.errors)
        line = vlMemory::printable(line);
    return std::move(session.errors);
}

std::vector<vlMemory::String> ContentLoader::validateDeclarations(vlMemory::StringView path,
                                                                  vlMemory::StringView root) {
    const auto tree = readTreeFile(path);
    if (!tree) return {tree.error().message};
    return validateDeclarations(*tree, path, folderOf(absoluteDeclarationPath(path)), root);
}

vlCommon::Result<> ContentLoader::processCompositorSources(vlMemory::StringView text) {
    constexpr vlMemory::StringView name = "compositor sources";
    const auto tree = vlExport::JsonExporter::importIntoTree(text, name);
    if (!tree) return tl::unexpected(tree.error());
    LoadSession session = sessionFor(name, {}, {}, false);
    session.inEngine = true;
    readTree(*tree, session, false);
    if (!session.errors.empty()) return vlCommon::fail(session.errors.front());
    DeclarationLoadResult result;
    session.result = &result;
    readTree(*tree, session, false);
    return {};
}

#define VL_LOAD_KIND(Name, T)                                                                      \
    DeclarationLoadResult ContentLoader::load##Name##Declaration(vlMemory::StringView path,        \
                                                                 bool load) {                      \
        return loadKind<T>(path, load);                                                            \
    }
VL_LOAD_KIND(BlendState, BlendState)
VL_LOAD_KIND(DepthStencilState, DepthStencilState)
VL_LOAD_KIND(RasterState, RasterState)
VL_LOAD_KIND(Sampler, Sampler)
VL_LOAD_KIND(Buffer, Buffer)
VL_LOAD_KIND(Camera, Camera)
VL_LOAD_KIND(Viewport, Viewport)
VL_LOAD_KIND(RenderQueue, RenderQueue)
VL_LOAD_KIND(ShaderProgram, Program)
VL_LOAD_KIND(Shader, Shader)
VL_LOAD_KIND(Texture, Texture)
VL_LOAD_KIND(Mesh, Mesh)
VL_LOAD_KIND(Compositor, Compositor)
VL_LOAD_KIND(Script, Script)
#undef VL_LOAD_KIND

} // namespace vlGraphics
