#include "content/KindLoader.h"
#include "resources/EnumTexts.h"

#include <vlGraphics/MeshFile.h>
#include <vlImages/Decoder.h>
#include <vlResources/ResourceManager.h>

namespace vlGraphics {

/** May give a mesh what has been checked already. */
class ContentAccess {
public:
    static void setData(Mesh& mesh, MeshData data) { mesh.takeChecked(std::move(data)); }
};

template <> struct Declared<Texture> {
    using Manager = TextureManager;
    static constexpr vlMemory::StringView list = "textures";
    struct Values {
        vlMemory::String file; ///< empty: a target, or a picture that only the memory had
        std::uint32_t width = 1;
        std::uint32_t height = 1;
        FORMAT format = FORMAT::R8G8B8A8_UNORM;
        RENDER_FLAG renderFlag = RENDER_FLAG::NONE;
        std::uint32_t mipCount = 0;
        bool gammaCorrected = true;
        vlImages::Image image;
        vlMemory::String sourcePath;
    };
    template <class Archive, class V> static void describe(Archive& archive, V& values) {
        if (Archive::reading || !values.file.empty()) archive.optional("file", values.file);
        // Of a picture the file says the rest.
        if (values.file.empty()) {
            archive.required("width", values.width, 1U, Texture::maxSize);
            archive.required("height", values.height, 1U, Texture::maxSize);
            archive.optional("format", values.format, EnumTexts<FORMAT>::table);
            archive.optional("renderFlag", values.renderFlag, EnumTexts<RENDER_FLAG>::table);
        }
        archive.optional("mipCount", values.mipCount, 0U, 15U);
        archive.optional("gammaCorrected", values.gammaCorrected);
    }
    static Values from(const Texture& texture, const DeclarationFolders& folders) {
        Values values;
        values.file = folders.refer(texture.getSourcePath());
        values.width = texture.getWidth();
        values.height = texture.getHeight();
        values.format = texture.getFormat();
        values.renderFlag = texture.getRenderFlag();
        values.mipCount = texture.getMipCount();
        values.gammaCorrected = texture.isGammaCorrected();
        return values;
    }
    static vlCommon::Result<> prepare(Values& values, const DeclarationFolders& folders) {
        if (values.file.empty()) return checkTarget(values);
        const auto path = folders.resolve(values.file);
        if (!path) return tl::unexpected(path.error());
        const auto bytes = vlResources::ResourceManager::getInstance().readFile(*path);
        if (!bytes) return tl::unexpected(bytes.error());
        auto image = vlImages::decode(bytes->span(), values.file);
        if (!image) return tl::unexpected(image.error());
        if (image->format == vlImages::PixelFormat::rgba32f) {
            return vlCommon::fail(fmt::format(
                    "'{}' has high dynamic range, which textures cannot have", values.file));
        }
        values.image = std::move(*image);
        values.sourcePath = DeclarationFolders::sourcePathOf(*path);
        return {};
    }
    static vlCommon::Result<> checkTarget(const Values& values) {
        const bool depth = values.format == FORMAT::D32_FLOAT ||
                           values.format == FORMAT::D32_FLOAT_S8X24_UINT ||
                           values.format == FORMAT::D24_UNORM_S8_UINT;
        if (values.format == FORMAT::UNKNOWN) return vlCommon::fail("'format' is UNKNOWN");
        if (depth && values.renderFlag != RENDER_FLAG::DEPTH_TARGET) {
            return vlCommon::fail(
                    fmt::format("'format' {} is for depth targets alone", enumText(values.format)));
        }
        if (!depth && values.renderFlag == RENDER_FLAG::DEPTH_TARGET) {
            return vlCommon::fail(
                    "a depth target has the format D32_FLOAT, D32_FLOAT_S8X24_UINT or "
                    "D24_UNORM_S8_UINT");
        }
        return {};
    }
    static void apply(Texture& texture, Values values) {
        texture.setRenderFlag(values.renderFlag);
        texture.setMipCount(values.mipCount);
        texture.setGammaCorrected(values.gammaCorrected);
        texture.setSourcePath(values.sourcePath);
        if (values.file.empty()) {
            texture.setWidth(values.width);
            texture.setHeight(values.height);
            texture.setFormat(values.format);
        }
        texture.setImage(std::move(values.image));
    }
};

template <> struct Declared<Mesh> {
    using Manager = MeshManager;
    static constexpr vlMemory::StringView list = "meshes";
    struct Values {
        vlMemory::String file; ///< empty: the mesh keeps what it has
        std::optional<MeshData> data;
        vlMemory::String sourcePath;
    };
    template <class Archive, class V> static void describe(Archive& archive, V& values) {
        if (Archive::reading || !values.file.empty()) archive.optional("file", values.file);
    }
    static Values from(const Mesh& mesh, const DeclarationFolders& folders) {
        return {folders.refer(mesh.getSourcePath()), {}, {}};
    }
    static vlCommon::Result<> prepare(Values& values, const DeclarationFolders& folders) {
        if (values.file.empty()) return {};
        const auto path = folders.resolve(values.file);
        if (!path) return tl::unexpected(path.error());
        auto data = readMeshFile(*path);
        if (!data) return tl::unexpected(data.error());
        values.data = std::move(*data);
        values.sourcePath = DeclarationFolders::sourcePathOf(*path);
        return {};
    }
    static void apply(Mesh& mesh, Values values) {
        if (!values.data) return;
        ContentAccess::setData(mesh, std::move(*values.data));
        mesh.setSourcePath(values.sourcePath);
    }
};

} // namespace vlGraphics

VL_DECLARED_KIND(Texture);
VL_DECLARED_KIND(Mesh);
