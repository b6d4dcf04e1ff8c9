#include "editors/shader/ShaderUiData.h"

#include <bit>
#include <cstring>

namespace vlEditor {

std::uint32_t moduloIn(const PassSlotValue& value) {
    return std::bit_cast<std::uint32_t>(value[0]);
}

void putModulo(std::uint32_t milliseconds, PassSlotValue& value) {
    value[0] = std::bit_cast<float>(milliseconds);
}

bool operator==(const ShaderPassSlotState& a, const ShaderPassSlotState& b) {
    return a.resourceName == b.resourceName &&
           std::memcmp(a.value.data(), b.value.data(), sizeof(PassSlotValue)) == 0;
}

} // namespace vlEditor
