#pragma once
#include <compare>
#include <cstdint>

namespace vlGraphics {

/** A reference from one engine resource to another: an entry of the target kind's manager, which
 * may hold a resource or none. It never dangles: when the target is erased the handle resolves to
 * null (users fall back to the engine's default), and when a resource of that name is made again,
 * as an undo does, it resolves again. A rename keeps it. Plain value; graphics thread to resolve.
 */
template <class T> class Handle {
public:
    constexpr Handle() = default;
    constexpr Handle(std::uint32_t index, std::uint32_t generation)
        : index_(index), generation_(generation) {}

    constexpr bool isNull() const { return generation_ == 0; }
    constexpr std::uint32_t index() const { return index_; }
    /// Never 0 for a handle that a manager gave out; changes when the entry is reused.
    constexpr std::uint32_t generation() const { return generation_; }
    friend constexpr auto operator<=>(const Handle&, const Handle&) = default;

private:
    std::uint32_t index_ = 0;
    std::uint32_t generation_ = 0;
};

} // namespace vlGraphics
