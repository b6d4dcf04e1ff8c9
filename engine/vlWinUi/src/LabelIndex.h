#pragma once
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>

namespace vlWinUi {

/** Finds the first of the things that bear a label; they are numbered in their order. */
class LabelIndex {
public:
    void add(const std::string& label, std::uint64_t number) { numbers_[label].insert(number); }
    void remove(const std::string& label, std::uint64_t number) {
        const auto found = numbers_.find(label);
        if (found == numbers_.end()) return;
        found->second.erase(number);
        if (found->second.empty()) numbers_.erase(found);
    }
    std::optional<std::uint64_t> first(std::string_view label) const {
        const auto found = numbers_.find(label);
        if (found == numbers_.end()) return std::nullopt;
        return *found->second.begin();
    }

private:
    /// Looks a view up without making a string of it.
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const {
            return std::hash<std::string_view>{}(text);
        }
    };

    std::unordered_map<std::string, std::set<std::uint64_t>, Hash, std::equal_to<>> numbers_;
};

} // namespace vlWinUi
