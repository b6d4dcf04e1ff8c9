#pragma once
#include <vlWinUi/Component.h>

#include <string>
#include <string_view>
#include <vector>

namespace vlEditor {

/// A layout text compiled into the program, by the name of its file in assets/layouts; empty for an
/// unknown one. Any thread.
std::string_view layoutText(std::string_view file);

/** A window of which there may be several: a layout text, and blocks that it has more than one of.
 *  In the texts "$basename$" stands for the window's base name and, in a block, "$id$" for the
 *  block's number. Views into texts that outlive it. UI thread only. */
class LayoutTemplate {
public:
    struct Block {
        std::string_view text;
        unsigned count = 0;
    };

    explicit LayoutTemplate(std::string_view main, std::vector<Block> blocks = {})
        : main_(main), blocks_(std::move(blocks)) {}

    /// Creates the components: each block for 0 up to its count, then the main text, whose root is
    /// returned. What is wrong with a text is a line of the widget library's log.
    vlWinUi::Component* instantiate(std::string_view baseName) const;

    struct Replacement {
        std::string_view placeholder; ///< never empty
        std::string_view value;
    };
    /// The text with its placeholders replaced, from left to right; what is put in stays as it is,
    /// even where it holds a placeholder itself.
    static std::string fill(std::string_view text, const std::vector<Replacement>& replacements);

private:
    std::string_view main_;
    std::vector<Block> blocks_;
};

} // namespace vlEditor
