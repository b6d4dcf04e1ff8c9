#include "content/KindLoader.h"

#include <vlExport/JsonExporter.h>
#include <vlMemory/Utf8.h>
#include <vlResources/ResourceManager.h>
#include <vlScripts/ScriptManager.h>

#include <algorithm>
#include <filesystem>

namespace vlGraphics {

using vlScripts::Script;

namespace {

constexpr std::size_t mostTextBytes = std::size_t{4} << 20U;
constexpr vlMemory::StringView byteOrderMark = "\xEF\xBB\xBF";

vlCommon::Result<> checkText(vlMemory::StringView text) {
    if (text.size() > mostTextBytes) {
        return vlCommon::fail(
                fmt::format("the text has {} bytes, above the {} that a script may have",
                            text.size(),
                            mostTextBytes));
    }
    const std::size_t broken = vlMemory::findInvalidUtf8(text);
    if (broken == vlMemory::StringView::npos) return {};
    return vlCommon::fail(fmt::format("the text is no UTF-8 from byte {} on", broken));
}

vlCommon::Result<vlMemory::String> readText(vlMemory::StringView file,
                                            const DeclarationFolders& folders) {
    const auto path = folders.resolve(file);
    if (!path) return tl::unexpected(path.error());
    const auto bytes = vlResources::ResourceManager::getInstance().readFile(*path, mostTextBytes);
    if (!bytes) return tl::unexpected(bytes.error());
    vlMemory::StringView text = bytes->text();
    // Some editors put it there, and Lua does not know it.
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    if (auto checked = checkText(text); !checked)
        return vlCommon::fail(fmt::format("'{}': {}", file, checked.error().message));
    return vlMemory::String(text);
}

/// Whether the declaration file says that the text beside it is its own.
bool refersTo(vlMemory::StringView declarationFile, vlMemory::StringView textFile) {
    const auto bytes = vlResources::ResourceManager::getInstance().readFile(
            declarationFile, vlExport::JsonExporter::maxTextSize);
    if (!bytes) return false;
    const auto tree = vlExport::JsonExporter::importIntoTree(bytes->text(), declarationFile);
    const vlExport::Node* list = tree ? tree->find("scripts") : nullptr;
    if (list == nullptr) return false;
    return std::ranges::any_of(list->elements(), [&](const vlExport::Node& script) {
        const vlExport::Node* file = script.find("file");
        return file != nullptr && *file == vlExport::Node(vlMemory::String(textFile));
    });
}

/// Whoever chose the declaration's file did not choose to lose the text of something else.
vlCommon::Result<> checkMayWrite(const std::filesystem::path& textFile,
                                 vlMemory::StringView declarationFile,
                                 vlMemory::StringView text) {
    std::error_code error;
    if (!std::filesystem::exists(textFile, error)) return {};
    const vlMemory::String name = textFile.filename().string();
    if (refersTo(declarationFile, name)) return {};
    const auto held =
            vlResources::ResourceManager::getInstance().readFile(textFile.string(), mostTextBytes);
    if (held && held->text() == text) return {};
    return vlCommon::fail(fmt::format("'{}' is there already and belongs to something else: its "
                                      "declaration needs another name",
                                      name));
}

} // namespace

template <> struct Declared<Script> {
    using Manager = vlScripts::ScriptManager;
    static constexpr vlMemory::StringView list = "scripts";
    struct Values {
        vlMemory::String file;
        vlMemory::String source;
    };
    template <class Archive, class V> static void describe(Archive& archive, V& values) {
        if (Archive::reading || !values.file.empty()) archive.optional("file", values.file);
        if (Archive::reading || !values.source.empty()) archive.optional("source", values.source);
        archive.check(values.file.empty() || values.source.empty(),
                      "source",
                      "stands beside 'file', where only one of them can be");
    }
    static Values from(const Script& script, const DeclarationFolders&) {
        return {{}, script.getSources()};
    }
    static vlCommon::Result<> prepare(Values& values, const DeclarationFolders& folders) {
        if (values.file.empty()) return checkText(values.source);
        auto text = readText(values.file, folders);
        if (!text) return tl::unexpected(text.error());
        values.source = std::move(*text);
        return {};
    }
    static void apply(Script& script, const Values& values) { script.setSources(values.source); }
    static vlCommon::Result<> check(vlMemory::StringView name, const Values& values) {
        vlScripts::CompilationResult result;
        if (vlScripts::CompiledScript::compile(name, values.source, result)) return {};
        return vlCommon::fail(result.message);
    }
    static vlCommon::Result<> splitOff(vlExport::Node& declaration,
                                       vlMemory::StringView absolutePath,
                                       vlResources::FileBatch& files) {
        std::filesystem::path path(absolutePath);
        if (path.extension() == ".lua")
            return vlCommon::fail("a file called '.lua' is where the text goes: its declaration "
                                  "needs another extension");
        path.replace_extension(".lua");
        vlMemory::String text;
        if (const vlExport::Node* source = declaration.find("source")) {
            text = *source->asString();
            declaration.remove("source");
        }
        if (auto checked = checkText(text); !checked) return checked;
        if (auto checked = checkMayWrite(path, absolutePath, text); !checked) return checked;
        declaration.add("file", path.filename().string());
        files.add(path.string(), text);
        return {};
    }
};

} // namespace vlGraphics

VL_DECLARED_KIND(Script);
