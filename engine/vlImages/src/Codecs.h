#pragma once
#include <vlCommon/Result.h>
#include <vlImages/Image.h>
#include <vlMemory/String.h>

#include <cstddef>
#include <span>

namespace vlImages {

// One decoder for each library behind decode().
vlCommon::Result<Image> decodePng(std::span<const std::byte> bytes, vlMemory::StringView name);
vlCommon::Result<Image> decodeJpg(std::span<const std::byte> bytes, vlMemory::StringView name);
vlCommon::Result<Image> decodeOther(std::span<const std::byte> bytes, vlMemory::StringView name);

} // namespace vlImages
