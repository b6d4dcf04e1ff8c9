#pragma once
#include <vlCommon/Result.h>
#include <vlImages/ImageView.h>
#include <vlMemory/Buffer.h>

#include <cstdint>

namespace vlImages {

struct JpgSettings {
    std::uint32_t subsampling = 0; ///< of the colours: 0 is 4:4:4 (none), 1 is 4:2:2, 2 is 4:2:0
    float quality = 0.92F;         ///< 0 to 1; what lies outside is brought to the nearest
};

/** Pictures to JPEG. Alpha is left out; 8-bit formats only. Any thread. */
class JpgEncoder {
public:
    JpgEncoder() = delete;

    static vlCommon::Result<vlMemory::Buffer> encode(const ImageView& image,
                                                     const JpgSettings& settings = {});
};

} // namespace vlImages
