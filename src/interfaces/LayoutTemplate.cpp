#include "interfaces/LayoutTemplate.h"

#include <vlWinUi/ContentLoader.h>

#include <Assets.h>

#include <algorithm>

namespace vlEditor {
namespace {

constexpr std::string_view baseNamePlaceholder = "$basename$";
constexpr std::string_view idPlaceholder = "$id$";

vlWinUi::Component* process(const std::string& text, std::string_view baseName) {
    return vlWinUi::ContentLoader::processInterfaceSources(text,
                                                           "layout of " + std::string(baseName));
}

} // namespace

std::string_view layoutText(std::string_view file) {
    return assets::asset(file);
}

vlWinUi::Component* LayoutTemplate::instantiate(std::string_view baseName) const {
    for (const Block& block : blocks_) {
        for (unsigned i = 0; i < block.count; ++i) {
            const std::string id = std::to_string(i);
            process(fill(block.text, {{baseNamePlaceholder, baseName}, {idPlaceholder, id}}),
                    baseName);
        }
    }
    return process(fill(main_, {{baseNamePlaceholder, baseName}}), baseName);
}

std::string LayoutTemplate::fill(std::string_view text,
                                 const std::vector<Replacement>& replacements) {
    std::string filled;
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view rest = text.substr(at);
        const auto found = std::ranges::find_if(
                replacements, [&](const auto& one) { return rest.starts_with(one.placeholder); });
        if (found != replacements.end()) {
            filled += found->value;
            at += found->placeholder.size();
        } else {
            filled += text[at++];
        }
    }
    return filled;
}

} // namespace vlEditor
