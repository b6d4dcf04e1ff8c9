#pragma once
#include <vlMemory/String.h>

namespace vlWinUi {

class Component;

/** Creates components from layout texts: JSON that names components and says how they are arranged,
 * as docs/formats.md describes. UI thread only.
 *
 *  Whatever is wrong with a text gives one log line with its line and member, at most 100 of them,
 *  and everything else is created. A name that a component of the same type bears already gives
 *  that component, unchanged. A text may be of 4 MiB and describe 10,000 components, tabs, layouts
 *  and placements in all, nested at most 32 deep; what goes beyond is left out with a line. */
class ContentLoader {
public:
    ContentLoader() = delete;

    /// The text's root component, not yet loaded; null for a text without one, or when it could
    /// not be created. The name stands before each log line.
    static Component* processInterfaceSources(vlMemory::StringView text,
                                              vlMemory::StringView nameForErrors = "layout");
};

} // namespace vlWinUi
