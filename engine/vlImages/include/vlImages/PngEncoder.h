#pragma once
#include <vlCommon/Result.h>
#include <vlImages/ImageView.h>
#include <vlMemory/Buffer.h>

namespace vlImages {

/** Pictures to PNG, without loss: RGBA with alpha, R8 as grey. 8-bit formats only. Any thread. */
class PngEncoder {
public:
    PngEncoder() = delete;

    static vlCommon::Result<vlMemory::Buffer> encode(const ImageView& image);
};

} // namespace vlImages
