#include "content/DeclarationFolders.h"

#include <vlResources/ResourceManager.h>

#include <fmt/format.h>

#include <filesystem>

namespace vlGraphics {

namespace {

std::filesystem::path absolute(vlMemory::StringView path) {
    const auto& files = vlResources::ResourceManager::getInstance();
    return std::filesystem::path(files.getAbsoluteFromWorkingDir(path)).lexically_normal();
}

} // namespace

DeclarationFolders::DeclarationFolders(vlMemory::StringView folder, vlMemory::StringView root)
    : folder_(folder.empty() ? vlMemory::String() : absolute(folder).string()),
      root_(root.empty() ? folder_ : absolute(root).string()) {
}

vlCommon::Result<vlMemory::String>
DeclarationFolders::resolve(vlMemory::StringView reference) const {
    const auto& files = vlResources::ResourceManager::getInstance();
    if (isMemento()) return files.getAbsoluteFromWorkingDir(reference);
    const std::filesystem::path path(reference);
    if (reference.empty() || path.is_absolute()) {
        return vlCommon::fail(
                fmt::format("'{}' is no path relative to the declaration", reference));
    }
    const auto inRoot = (std::filesystem::path(folder_) / path).lexically_relative(root_);
    auto resolved = files.resolveInside(root_, inRoot.generic_string());
    if (resolved) return resolved;
    return vlCommon::fail(fmt::format("'{}': {}", reference, resolved.error().message));
}

vlMemory::String DeclarationFolders::refer(vlMemory::StringView sourcePath) const {
    if (isMemento() || sourcePath.empty()) return vlMemory::String(sourcePath);
    return absolute(sourcePath).lexically_relative(folder_).generic_string();
}

vlMemory::String DeclarationFolders::sourcePathOf(vlMemory::StringView absolutePath) {
    return vlResources::ResourceManager::getInstance().getFromWorkingDirFromAbsolute(absolutePath);
}

} // namespace vlGraphics
