#include "programs/HlslIncluder.h"

#include <fmt/format.h>

namespace vlGraphics {

using Result = glslang::TShader::Includer::IncludeResult;

Result* HlslIncluder::include(const char* name, bool isLocal) {
    // A name that was not found in quotes is asked for in angle brackets, too.
    if (!failure_.empty()) return nullptr;
    const auto entered = walk_.enter(name, isLocal);
    if (!entered) {
        failure_ = entered.error();
        return nullptr;
    }
    const IncludeFiles::File* file = *entered;
    if (file == nullptr) return &results_.emplace_back("@", "", 0, nullptr);
    return &results_.emplace_back(
            fmt::format("@{}", file->index), file->text.data(), file->text.size(), this);
}

Result* HlslIncluder::includeLocal(const char* name, const char* /*includer*/, std::size_t) {
    return include(name, true);
}

Result* HlslIncluder::includeSystem(const char* name, const char* /*includer*/, std::size_t) {
    return include(name, false);
}

void HlslIncluder::releaseInclude(Result* result) {
    if (result != nullptr && result->userData != nullptr) walk_.leave();
}

} // namespace vlGraphics
