#include "interfaces/kinds/KindWindow.h"

#include <vlWinUi/ContentLoader.h>

namespace vlEditor {

vlWinUi::Component*
createKindWindow(const KindTexts& texts, const KindLayout& layout, const std::string& base) {
    const std::string common = LayoutTemplate::fill(layoutText("resource_window.json"),
                                                    {{"$basename$", base},
                                                     {"$renameButton$", texts.renameButton},
                                                     {"$saveButton$", texts.saveButton},
                                                     {"$thing$", texts.thing()}});
    vlWinUi::ContentLoader::processInterfaceSources(common, "layout of " + base);
    std::vector<LayoutTemplate::Block> blocks;
    for (const KindLayout::Block& block : layout.blocks) {
        if (block.replacements.empty()) {
            blocks.push_back({layoutText(block.file), block.count});
            continue;
        }
        std::vector<LayoutTemplate::Replacement> replacements = block.replacements;
        replacements.push_back({"$basename$", base});
        vlWinUi::ContentLoader::processInterfaceSources(
                LayoutTemplate::fill(layoutText(block.file), replacements),
                std::string(block.file) + " of " + base);
    }
    return LayoutTemplate(layoutText(layout.file), std::move(blocks)).instantiate(base);
}

} // namespace vlEditor
