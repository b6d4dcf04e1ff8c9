#pragma once
#include "content/DeclarationFolders.h"

#include <vlExport/Node.h>
#include <vlExport/NodeReader.h>
#include <vlExport/NodeWriter.h>
#include <vlGraphics/ContentLoader.h>
#include <vlResources/FileBatch.h>

#include <fmt/format.h>

#include <cassert>
#include <optional>
#include <set>

namespace vlGraphics {

/** How declarations of one kind look. Each kind specialises it with
 *  - `Manager`, `list` (the member of a file that holds its resources) and `Values`, the plain
 *    content of a declaration;
 *  - `describe(archive, values)`, which both reads and writes;
 *  - `from(resource, folders)`, the values of a resource;
 *  - `prepare(values, folders)`, which checks what the description cannot say and reads the files
 *    that it refers to; it may fail;
 *  - `apply(resource, values)`, which may not;
 *  and, where it has some,
 *  - `check(name, values)`, an error that leaves nothing out and that loading would show: only for
 *    validation;
 *  - `findFaults(name, values)`, several of that sort, each a line that says by itself whose it is;
 *  - `splitOff(declaration, absolutePath, files)`, which moves what belongs beside the file into
 *    files of their own; it may fail. */
template <class T> struct Declared;

/** One reading of a file. */
struct LoadSession {
    DeclarationLoadResult* result = nullptr; ///< null where nothing is to be made
    bool inEngine = false;                   ///< what is there already counts
    std::vector<vlMemory::String> errors;
    DeclarationFolders folders;
    vlMemory::String fileName; ///< as errors call it
    bool load = false;
};

/// "file:line: text" becomes "file:line: label: text".
vlMemory::String
labelled(vlMemory::StringView line, vlMemory::StringView fileName, vlMemory::StringView label);
/// Whether an unknown member is one that the engine passes over: those of the editor.
bool isForeignMember(vlMemory::StringView unknownMemberLine);

template <class T> class KindLoader {
public:
    static void readList(const vlExport::Node& list, LoadSession& session);
    static vlExport::Node write(const T& resource, const DeclarationFolders& folders);
    static vlCommon::Result<>
    fill(T& resource, const vlExport::Node& declaration, const DeclarationFolders& folders);

private:
    using Values = typename Declared<T>::Values;
    struct Item {
        vlMemory::String name;
        Values values;
    };
    static vlMemory::String labelOf(const vlExport::Node& node, std::size_t index);
    static std::optional<Item>
    readItem(const vlExport::Node& node, std::size_t index, LoadSession& session);
    static void make(const vlExport::Node& node, Item item, LoadSession& session);
    /// Whether the name may be given to it, or whoever bears it changed.
    static bool isOpen(const vlExport::Node& node, const Item& item, LoadSession& session);
    static void validate(const vlExport::Node& node, const Item& item, LoadSession& session);
    static vlMemory::String at(const vlExport::Node& node,
                               vlMemory::StringView label,
                               vlMemory::StringView text,
                               const LoadSession& session);
};

/// "file:line: kind 'name': text"; the kind and the name stand once where the text has them itself.
template <class T>
vlMemory::String KindLoader<T>::at(const vlExport::Node& node,
                                   vlMemory::StringView label,
                                   vlMemory::StringView text,
                                   const LoadSession& session) {
    const bool labelled = text.starts_with(label);
    return fmt::format("{}:{}: {}{}{}",
                       session.fileName,
                       node.line(),
                       labelled ? vlMemory::StringView() : label,
                       labelled ? "" : ": ",
                       text);
}

template <class T>
vlMemory::String KindLoader<T>::labelOf(const vlExport::Node& node, std::size_t index) {
    const vlExport::Node* name = node.find("name");
    const vlMemory::String* text = name == nullptr ? nullptr : name->asString();
    const bool shown = text != nullptr && isValidResourceName(*text);
    return shown ? fmt::format("{} '{}'", T::kindName, *text)
                 : fmt::format("{} {} of the list", T::kindName, index + 1);
}

template <class T>
std::optional<typename KindLoader<T>::Item>
KindLoader<T>::readItem(const vlExport::Node& node, std::size_t index, LoadSession& session) {
    const vlMemory::String label = labelOf(node, index);
    vlExport::NodeReader reader(node, session.fileName);
    Item item;
    reader.required("name", item.name);
    reader.check(isValidResourceName(item.name),
                 "name",
                 "expected 1 to 4096 bytes without control characters");
    Declared<T>::describe(reader, item.values);
    const auto read = reader.finish();
    for (const vlMemory::String& line : reader.unknownMembers()) {
        if (isForeignMember(line)) continue;
        session.errors.push_back(labelled(line, session.fileName, label));
    }
    if (!read) {
        session.errors.push_back(labelled(read.error().message, session.fileName, label));
        return {};
    }
    if (auto prepared = Declared<T>::prepare(item.values, session.folders); !prepared) {
        session.errors.push_back(at(node, label, prepared.error().message, session));
        return {};
    }
    return item;
}

template <class T>
void KindLoader<T>::make(const vlExport::Node& node, Item item, LoadSession& session) {
    auto* manager = Declared<T>::Manager::getInstance();
    T* resource = manager->createOrRetrieve(item.name);
    assert(resource != nullptr); // the name was checked
    if (resource == nullptr) return;
    Declared<T>::apply(*resource, std::move(item.values));
    session.result->add(resource);
    if (!session.load) return;
    // A program keeps its last good result in use until the next one is there.
    if constexpr (!std::is_same_v<T, Program>) resource->unload();
    if (auto loaded = resource->load(); !loaded)
        session.errors.push_back(at(node, labelOf(node, 0), loaded.error().message, session));
}

template <class T>
bool KindLoader<T>::isOpen(const vlExport::Node& node, const Item& item, LoadSession& session) {
    const auto* manager = Declared<T>::Manager::getInstance();
    const T* bearer = manager == nullptr ? nullptr : manager->get(item.name);
    if (manager != nullptr && (bearer == nullptr || !bearer->isHidden())) return true;
    const vlMemory::StringView text = manager == nullptr
                                              ? "nothing here keeps this kind"
                                              : "the one that bears this name is not the project's";
    session.errors.push_back(at(node, labelOf(node, 0), text, session));
    return false;
}

template <class T>
void KindLoader<T>::validate(const vlExport::Node& node, const Item& item, LoadSession& session) {
    if constexpr (requires { Declared<T>::check(item.name, item.values); }) {
        if (auto checked = Declared<T>::check(item.name, item.values); !checked)
            session.errors.push_back(at(node, labelOf(node, 0), checked.error().message, session));
    }
    if constexpr (requires { Declared<T>::findFaults(item.name, item.values); }) {
        for (const vlMemory::String& line : Declared<T>::findFaults(item.name, item.values))
            session.errors.push_back(fmt::format("{}: {}", session.fileName, line));
    }
}

template <class T> void KindLoader<T>::readList(const vlExport::Node& list, LoadSession& session) {
    if (!list.isArray()) {
        session.errors.push_back(fmt::format(
                "{}:{}: '{}' expected an array", session.fileName, list.line(), Declared<T>::list));
        return;
    }
    std::set<vlMemory::String> names;
    for (std::size_t index = 0; index < list.size(); ++index) {
        const vlExport::Node& node = list.elements()[index];
        const vlExport::Node* name = node.find("name");
        const vlMemory::String* text = name == nullptr ? nullptr : name->asString();
        if (text != nullptr && !names.insert(*text).second) {
            session.errors.push_back(
                    fmt::format("{}:{}: {}: is in this file already, and the first one stays",
                                session.fileName,
                                node.line(),
                                labelOf(node, index)));
            continue;
        }
        auto item = readItem(node, index, session);
        if (!item || (session.inEngine && !isOpen(node, *item, session))) continue;
        if (session.result == nullptr) {
            validate(node, *item, session);
        } else {
            make(node, std::move(*item), session);
        }
    }
}

template <class T>
vlExport::Node KindLoader<T>::write(const T& resource, const DeclarationFolders& folders) {
    vlExport::Node tree;
    vlExport::NodeWriter writer(tree);
    writer.required("name", resource.getName());
    const Values values = Declared<T>::from(resource, folders);
    Declared<T>::describe(writer, values);
    return tree;
}

template <class T>
vlCommon::Result<> KindLoader<T>::fill(T& resource,
                                       const vlExport::Node& declaration,
                                       const DeclarationFolders& folders) {
    vlExport::NodeReader reader(declaration, "declaration");
    reader.ignore("name");
    Values values;
    Declared<T>::describe(reader, values);
    auto read = reader.finish();
    if (read) read = Declared<T>::prepare(values, folders);
    if (!read) {
        return vlCommon::fail(
                fmt::format("{} '{}': {}", T::kindName, resource.getName(), read.error().message));
    }
    Declared<T>::apply(resource, std::move(values));
    return {};
}

} // namespace vlGraphics

/// Once for each kind, in the file that specialises Declared for it.
#define VL_DECLARED_KIND(T)                                                                        \
    template void vlGraphics::readList<vlGraphics::T>(const vlExport::Node&, LoadSession&);        \
    template vlMemory::StringView vlGraphics::ContentLoader::getListName<vlGraphics::T>();         \
    template vlExport::Node vlGraphics::ContentLoader::getDeclaration(const T&,                    \
                                                                      vlMemory::StringView);       \
    template vlCommon::Result<> vlGraphics::ContentLoader::fillFromDeclaration(                    \
            T&, const vlExport::Node&, vlMemory::StringView);                                      \
    template vlCommon::Result<> vlGraphics::ContentLoader::saveObjectDeclaration(                  \
            const T&, vlMemory::StringView);                                                       \
    template vlCommon::Result<> vlGraphics::ContentLoader::saveObjectDeclaration(                  \
            const T&, vlMemory::StringView, const vlResources::FileBatch&)

namespace vlGraphics {

/// Writes a file with that one declaration, together with those that go beside it: all or none.
vlCommon::Result<> saveDeclaration(vlMemory::StringView listName,
                                   vlExport::Node declaration,
                                   vlMemory::StringView absolutePath,
                                   vlResources::FileBatch files);
vlMemory::String absoluteDeclarationPath(vlMemory::StringView path);
vlMemory::String folderOf(vlMemory::StringView absolutePath);

template <class T> void readList(const vlExport::Node& list, LoadSession& session) {
    KindLoader<T>::readList(list, session);
}

template <class T> vlMemory::StringView ContentLoader::getListName() {
    return Declared<T>::list;
}

template <class T>
vlExport::Node ContentLoader::getDeclaration(const T& resource, vlMemory::StringView folder) {
    return KindLoader<T>::write(resource, DeclarationFolders(folder, {}));
}

template <class T>
vlCommon::Result<> ContentLoader::fillFromDeclaration(T& resource,
                                                      const vlExport::Node& declaration,
                                                      vlMemory::StringView folder) {
    return KindLoader<T>::fill(resource, declaration, DeclarationFolders(folder, {}));
}

template <class T>
vlCommon::Result<> ContentLoader::saveObjectDeclaration(const T& resource,
                                                        vlMemory::StringView path) {
    return saveObjectDeclaration(resource, path, vlResources::FileBatch());
}

template <class T>
vlCommon::Result<> ContentLoader::saveObjectDeclaration(const T& resource,
                                                        vlMemory::StringView path,
                                                        const vlResources::FileBatch& beside) {
    const vlMemory::String absolute = absoluteDeclarationPath(path);
    vlExport::Node declaration = getDeclaration(resource, folderOf(absolute));
    vlResources::FileBatch files = beside;
    if constexpr (requires { Declared<T>::splitOff(declaration, absolute, files); }) {
        if (auto split = Declared<T>::splitOff(declaration, absolute, files); !split) {
            return vlCommon::fail(fmt::format(
                    "{} '{}': {}", T::kindName, resource.getName(), split.error().message));
        }
    }
    return saveDeclaration(getListName<T>(), std::move(declaration), absolute, std::move(files));
}

} // namespace vlGraphics
