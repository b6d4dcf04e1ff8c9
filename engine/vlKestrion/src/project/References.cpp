#include "References.h"

#include <fmt/format.h>

namespace vlKestrion {

void DeclaredNames::gather(const vlExport::Node& tree,
                           vlMemory::StringView file,
                           std::vector<vlMemory::String>& errors) {
    for (const vlExport::Member& list : tree.members()) {
        for (const vlExport::Node& element : list.value.elements()) {
            const vlExport::Node* name = element.find("name");
            const vlMemory::String* text = name == nullptr ? nullptr : name->asString();
            if (text == nullptr) continue;
            const auto [other, isNew] = lists_[list.name].try_emplace(*text, file);
            // A name that stands twice in one file is the declarations' own matter.
            if (isNew || other->second == file) continue;
            errors.push_back(fmt::format("{}:{}: '{}' stands under '{}' in {} as well",
                                         file,
                                         element.line(),
                                         *text,
                                         list.name,
                                         other->second));
        }
    }
}

bool DeclaredNames::has(vlMemory::StringView list, const vlMemory::String& name) const {
    const auto known = lists_.find(list);
    return known != lists_.end() && known->second.contains(name);
}

void MissingNames::note(vlMemory::StringView file,
                        std::uint32_t line,
                        vlMemory::StringView referrer,
                        vlMemory::StringView kind,
                        vlMemory::StringView name) {
    const auto [index, isNew] =
            indexOf_.try_emplace({vlMemory::String(kind), vlMemory::String(name)}, missing_.size());
    if (!isNew) {
        ++missing_[index->second].more;
        return;
    }
    missing_.push_back(
            {fmt::format("{}:{}: {}: {} '{}' not found", file, line, referrer, kind, name)});
}

void MissingNames::report(std::vector<vlMemory::String>& errors) const {
    for (const Missing& missing : missing_) {
        errors.push_back(missing.more == 0
                                 ? missing.line
                                 : fmt::format("{} ({} more times)", missing.line, missing.more));
    }
}

} // namespace vlKestrion
