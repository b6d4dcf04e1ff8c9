#pragma once
#include "interfaces/PickList.h"

#include <vlCommon/SingletonClass.h>

#include <memory>
#include <vector>

namespace vlEditor {

/** All pick lists by name, for the whole run. UI thread only. */
class PickLists final : public vlCommon::SingletonClass<PickLists> {
public:
    /// The lists of resources.
    void createFirstGroup();
    /// The lists of textures, targets and the like, that depend on what is shown.
    void createSecondGroup();

    /// Null when there is none.
    PickList* find(vlMemory::StringView name) const;
    /// In the order of their making.
    const std::vector<std::unique_ptr<PickList>>& all() const { return lists_; }

private:
    std::vector<std::unique_ptr<PickList>> lists_;
};

} // namespace vlEditor
