#pragma once
#include "Names.h"

#include <vlCommon/Result.h>
#include <vlImages/Image.h>
#include <vlMemory/Buffer.h>

#include <optional>
#include <unordered_map>
#include <vector>

namespace vlKestrion {

/** Finds what a model's files refer to. References come from strangers: whatever does not lie in
 * the model's folder (absolute paths, "..", links) is looked for by its file name beside the model,
 * and the case of letters is overlooked. */
class ModelFolder {
public:
    explicit ModelFolder(vlMemory::StringView folder);

    /// An absolute path of a file that exists.
    std::optional<vlMemory::String> find(vlMemory::StringView reference) const;

private:
    vlMemory::String folder_;
    std::unordered_map<vlMemory::String, vlMemory::String> byLowerName_;
};

enum class TextureUse : std::uint8_t { color, normals, bump };

/** A picture that materials refer to, and what became of it. */
struct ModelTexture {
    vlMemory::String path; ///< where it is read from
    TextureUse use = TextureUse::color;
    vlMemory::String fault; ///< why it cannot be used; empty where it can
    bool hasHoles = false;  ///< some of it is see-through
    vlMemory::Buffer bytes; ///< of the file to write
    vlMemory::String fileName;
    vlMemory::String resource; ///< name
};

/// Reads and checks the picture; heights become normals. Any thread.
void prepareTexture(ModelTexture& texture);
/// A picture of normals from one of heights (rgba8, in red).
vlImages::Image normalsFromHeights(const vlImages::Image& heights);

} // namespace vlKestrion
