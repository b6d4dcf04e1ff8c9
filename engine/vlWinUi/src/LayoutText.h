#pragma once
#include "Log.h"

#include <vlExport/NodeReader.h>
#include <vlMemory/Utf8.h>

#include <optional>
#include <string>

namespace vlWinUi {

/** A layout text while it is read: says what is wrong with it, and bounds what it may cost. */
class LayoutText {
public:
    static constexpr std::size_t MOST_BYTES = std::size_t{4} << 20U;
    static constexpr std::size_t MOST_PARTS = 10'000;
    static constexpr std::size_t MOST_FAULTS = 100;
    static constexpr std::size_t DEEPEST = 32;       ///< components within each other
    static constexpr std::size_t MOST_TABS = 100;    ///< of one tab window
    static constexpr unsigned MOST_TRACKS = 256;     ///< columns or rows of a grid
    static constexpr unsigned LARGEST_SIZE = 16'384; ///< pixels
    static constexpr double LARGEST_WEIGHT = 10'000;

    explicit LayoutText(vlMemory::StringView name) : name_(name) {}
    LayoutText(const LayoutText&) = delete;
    LayoutText& operator=(const LayoutText&) = delete;
    /// Says how many faults were not listed.
    ~LayoutText();

    /// To be asked before a component, tab, layout or placement is made. False, once with a line,
    /// when there were too many.
    bool takePart(const vlExport::Node& part);

    /// A line about a place in the text: "layout:12: ...".
    template <class... A>
    void faultAt(std::uint32_t line, fmt::format_string<A...> text, A&&... arguments) {
        const auto what = fmt::format(text, std::forward<A>(arguments)...);
        report(fmt::format("{}:{}: {}", name_, line, what));
    }
    template <class... A>
    void fault(const vlExport::Node& at, fmt::format_string<A...> text, A&&... arguments) {
        faultAt(at.line(), text, std::forward<A>(arguments)...);
    }
    /// A line for each member that is none of these.
    void checkMembers(const vlExport::Node& object,
                      std::initializer_list<vlMemory::StringView> known);

    /// False, with a line, when the member is of another type or outside the range; false too when
    /// it is not there.
    template <class T, class... Options>
    bool read(const vlExport::Node& object,
              vlMemory::StringView member,
              T& value,
              const Options&... options) {
        return object.find(member) != nullptr && readRequired(object, member, value, options...);
    }
    /// Likewise, with a line when it is not there.
    template <class T, class... Options>
    bool readRequired(const vlExport::Node& object,
                      vlMemory::StringView member,
                      T& value,
                      const Options&... options) {
        vlExport::NodeReader reader(object, name_);
        reader.required(member, value, options...);
        if (reader.ok()) return true;
        report(reader.finish().error().message);
        return false;
    }
    /// The elements of an array; none, with a line, when the member is something else.
    std::span<const vlExport::Node> elements(const vlExport::Node& object,
                                             vlMemory::StringView member);
    /// Whole pixels, cells or counts.
    bool readWhole(const vlExport::Node& object,
                   vlMemory::StringView member,
                   unsigned& value,
                   unsigned least,
                   unsigned most);

private:
    void report(const std::string& line);

    std::string name_;
    std::size_t parts_ = 0;
    std::size_t faults_ = 0;
};

/// A name of the text's as it can be shown in a log line.
inline std::string shown(vlMemory::StringView name) {
    return vlMemory::printable(name, 200);
}

} // namespace vlWinUi
