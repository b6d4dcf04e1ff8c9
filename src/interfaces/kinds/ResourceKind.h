#pragma once
// What a resource kind is to the editor. A kind is a struct K##Kind with
//  - `Record`, the UI's copy: plain values, comparable, `std::string name` first;
//  - `Engine` and `Manager`, the engine's class and who owns its resources by name;
//  - `texts`, `hooks` and `fields`;
//  - `static KindLayout layout()` and `static void bind(Bindings<K##Kind>&)`;
//  - `static void registerMessages(MessageRegistry&)` where it has messages beside its edits;
//  - `static void detach(vlExport::Node& declaration)` where a memento says more than a file may:
//  it
//    is put right to be copied;
//  - `static void separate(vlExport::Node& declaration)` where a duplicate must not have all that
//    the first one's memento says;
//  - `static std::string faultOf(const Record&)` where something may be wrong with a resource that
//    a person should see from afar: why, or nothing.
//  - `static void keepShown(const Record& shown, Record& fresh)` where the record shows some things
//    otherwise than the engine has them: takes them over into what the engine was read to after an
//    edit. Elsewhere, as after an undo, the record is what was read.
// Everything else in this folder is written once over this description.
#include "interfaces/LayoutTemplate.h"
#include "interfaces/kinds/Fields.h"
#include "interfaces/kinds/KindTexts.h"

#include <vlCommon/Result.h>
#include <vlGraphics/ContentLoader.h>

#include <string>
#include <type_traits>
#include <vector>

namespace vlEditor {

/** When the device side of a resource is given back and made again around a change. */
enum class Reload : std::uint8_t {
    afterChange,
    aroundChange,
    /// Only made anew: what there was stays in use until that is done.
    inPlace,
    never ///< what is loaded stays until a person asks for more
};

/** What a kind does differently. It names only what it changes:
 *      static constexpr KindHooks<Engine> hooks{.load = ..., .created = switchOnUsages}; */
template <class Engine> struct KindHooks {
    Reload reload = Reload::afterChange;
    /// An edit of a resource that the engine no longer holds makes it again, empty.
    bool editsMakeMissing = true;
    /// Null: there are no files of this kind.
    vlGraphics::DeclarationLoadResult (*load)(vlMemory::StringView path, bool load) = nullptr;
    /// After the editor made a resource. Graphics thread.
    void (*created)(Engine& fresh) = nullptr;
    /// Writes it to a file, relative to the working directory where it lies inside, in place of the
    /// declaration alone. Graphics thread.
    vlCommon::Result<> (*save)(Engine& resource, const std::string& path) = nullptr;
    /// After settings were put into a resource from a declaration or a memento: makes of them what
    /// the editor works with. Graphics thread.
    void (*restored)(Engine& resource) = nullptr;
    /// Makes of the chosen path, which is not empty, the one that is saved to. UI thread.
    std::string (*savePath)(std::string chosen) = nullptr;
};

/// Whether the kind has the hook: `isHooked<Kind::hooks.load>`. Under the sanitizers a function's
/// address cannot be compared at compile time, but types can.
template <auto hook>
inline constexpr bool isHooked = !std::is_same_v<std::integral_constant<decltype(hook), hook>,
                                                 std::integral_constant<decltype(hook), nullptr>>;

/** The layout of a kind's windows: its file in assets/layouts and the blocks that it has more than
 *  one of. What all kinds have in their windows is not in it. */
struct KindLayout {
    std::string_view file;
    struct Block {
        std::string_view file;
        unsigned count = 0;
        /// Of further placeholders, for a block that is there once.
        std::vector<LayoutTemplate::Replacement> replacements = {};
    };
    std::vector<Block> blocks;
};

/** A resource as its declaration, for kinds whose record does not say everything, or whose values
 *  the engine takes together only. A kind chooses it
 *  by `using Memento = TreeMemento<K##Kind>;`. */
template <class Kind> struct TreeMemento {
    std::string name;
    vlExport::Node declaration;

    static constexpr auto members() {
        return std::tuple{Member{"name", &TreeMemento::name},
                          Member{"declaration", &TreeMemento::declaration}};
    }
    friend bool operator==(const TreeMemento&, const TreeMemento&) = default;
};

namespace detail {

template <class Kind> struct MementoOf { using type = typename Kind::Record; };
template <class Kind>
requires requires {
    typename Kind::Memento;
}
struct MementoOf<Kind> {
    using type = typename Kind::Memento;
};

} // namespace detail

/** Brings a resource back as it was: the record, unless the kind says otherwise. */
template <class Kind> using Memento = typename detail::MementoOf<Kind>::type;

/// Graphics thread.
template <class Kind> typename Kind::Record recordOf(const typename Kind::Engine& engine) {
    typename Kind::Record record;
    record.name = engine.getName();
    pull<Kind>(engine, record);
    return record;
}

/// Graphics thread.
template <class Kind> Memento<Kind> mementoOf(const typename Kind::Engine& engine) {
    if constexpr (std::is_same_v<Memento<Kind>, typename Kind::Record>) {
        typename Kind::Record record;
        record.name = engine.getName();
        pullSettings<Kind>(engine, record);
        return record;
    } else {
        // No folder: paths stay as they are, and what stands in files comes along.
        vlExport::Node declaration = vlGraphics::ContentLoader::getDeclaration(engine, {});
        // It may be put back under another name.
        declaration.remove("name");
        return {engine.getName(), std::move(declaration)};
    }
}

/// Graphics thread.
template <class Kind> void noteRestored(typename Kind::Engine& engine) {
    if constexpr (isHooked<Kind::hooks.restored>) Kind::hooks.restored(engine);
}

/// From a declaration whose paths are relative to the folder; nothing changes on failure. Graphics
/// thread. The device side is the caller's to make again.
template <class Kind>
vlCommon::Result<> putDeclaration(const vlExport::Node& declaration,
                                  vlMemory::StringView folder,
                                  typename Kind::Engine& engine) {
    auto filled = vlGraphics::ContentLoader::fillFromDeclaration(engine, declaration, folder);
    if (filled) noteRestored<Kind>(engine);
    return filled;
}

/// Graphics thread. The device side is the caller's to make again.
template <class Kind>
vlCommon::Result<> putMemento(const Memento<Kind>& memento, typename Kind::Engine& engine) {
    if constexpr (std::is_same_v<Memento<Kind>, typename Kind::Record>) {
        push<Kind>(memento, engine);
        noteRestored<Kind>(engine);
        return {};
    } else {
        return putDeclaration<Kind>(memento.declaration, {}, engine);
    }
}

} // namespace vlEditor
