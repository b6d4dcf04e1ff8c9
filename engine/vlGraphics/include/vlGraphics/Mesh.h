#pragma once
#include <vlGraphics/MeshData.h>
#include <vlGraphics/ResourceManager.h>

#include <memory>

namespace vlGraphics {

/** Geometry that entities draw. The data stays on the processor side until load() has brought it to
 * the device; what describes it (attributes, counts, bounds) stays for good. */
class Mesh final : public Resource {
public:
    static constexpr vlMemory::StringView kindName = "mesh";

    Mesh();
    ~Mesh() override;

    /// Checks the data (offsets, sizes, indices in range, finite positions) and takes it; on
    /// failure names the fault and keeps the earlier content. Takes effect at the next unload() and
    /// load().
    vlCommon::Result<> setData(MeshData data);
    /// Where the data came from: relative to the working directory, absolute where it lies outside,
    /// empty for data from memory.
    const vlMemory::String& getSourcePath() const { return sourcePath_; }
    void setSourcePath(vlMemory::StringView path);

    const std::vector<VertexAttribute>& getAttributes() const { return attributes_; }
    std::uint32_t getVertexStride() const { return vertexStride_; }
    std::uint32_t getVertexCount() const { return vertexCount_; }
    std::uint32_t getIndexCount() const { return indexCount_; }
    PRIMITIVE_TOPOLOGY getTopology() const { return topology_; }
    const vlMaths::BoundingSphere& getBoundingSphere() const { return sphere_; }
    const vlMaths::BoundingBox& getBoundingBox() const { return box_; }
    /// Grows whenever any mesh takes other bounds: those who keep bounds look again then.
    static std::uint64_t getBoundsRevision();
    /// The same number for meshes of equal vertex layout and topology: pipelines are shared by it.
    std::uint32_t getLayoutId() const { return layoutId_; }

    vlCommon::Result<> load() override;
    void unload() override;
    bool isLoaded() const { return gpu_ != nullptr; }

    struct Gpu; ///< the back end's side
    Gpu* gpu() const { return gpu_.get(); }

private:
    friend class ContentAccess;
    void takeChecked(MeshData data);

    std::vector<VertexAttribute> attributes_;
    std::uint32_t vertexStride_ = 0;
    std::uint32_t vertexCount_ = 0;
    std::uint32_t indexCount_ = 0;
    std::uint32_t layoutId_ = 0;
    PRIMITIVE_TOPOLOGY topology_ = PRIMITIVE_TOPOLOGY::TRIANGLE_LIST;
    vlMaths::BoundingSphere sphere_;
    vlMaths::BoundingBox box_;
    vlMemory::String sourcePath_;
    std::unique_ptr<MeshData> data_; ///< until it is on the device
    std::unique_ptr<Gpu> gpu_;
};

class MeshManager final : public ResourceManager<Mesh>,
                          public vlCommon::MaybeSingletonClass<MeshManager> {};

} // namespace vlGraphics
