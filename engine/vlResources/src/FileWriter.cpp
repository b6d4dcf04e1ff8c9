#include "SiblingFile.h"

#include <vlResources/FileWriter.h>

namespace vlResources {

vlCommon::Result<> FileWriter::writeFileWhole(vlMemory::StringView path,
                                              std::span<const std::byte> bytes) {
    auto sibling = SiblingFile::write(path, bytes);
    if (!sibling) return tl::unexpected(sibling.error());
    return sibling->publish();
}

vlCommon::Result<> FileWriter::writeFileWhole(vlMemory::StringView path,
                                              vlMemory::StringView text) {
    return writeFileWhole(path, std::as_bytes(std::span(text)));
}

} // namespace vlResources
