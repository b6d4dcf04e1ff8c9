#pragma once
#include "vulkan/Vk.h"

#include <vlMemory/String.h>

namespace vlGraphics::vulkan {

/** The driver's compiled pipelines, kept in a file from run to run. What was written by another
 *  device or driver, or is damaged, is ignored. Graphics thread only. */
class PipelineCache {
public:
    /// An empty folder takes the user's cache folder.
    explicit PipelineCache(vlMemory::StringView folder);
    /// Writes the file, whole or not at all.
    ~PipelineCache();
    PipelineCache(const PipelineCache&) = delete;
    PipelineCache& operator=(const PipelineCache&) = delete;

    VkPipelineCache get() const { return cache_; }

private:
    void save() const;

    vlMemory::String path_; ///< empty: nowhere to keep it
    VkPipelineCache cache_ = VK_NULL_HANDLE;
};

} // namespace vlGraphics::vulkan
