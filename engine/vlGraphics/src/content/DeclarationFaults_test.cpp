#include "content/ContentLoaderTest.h"

#include <fmt/format.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vlGraphics {
namespace {

/** While it lives root is nobody, for whom there are files that cannot be read. */
class WithoutRights {
public:
    WithoutRights() : holds_(!root_ || ::seteuid(65534) == 0) {}
    WithoutRights(const WithoutRights&) = delete;
    WithoutRights& operator=(const WithoutRights&) = delete;
    ~WithoutRights() { EXPECT_TRUE(!root_ || ::seteuid(0) == 0); }
    /// False in a container that has nobody else.
    bool holds() const { return holds_; }

private:
    bool root_ = ::geteuid() == 0;
    bool holds_;
};

class DeclarationFaults : public ContentLoaderTest {
protected:
    /// The one line that loading the file gives.
    vlMemory::String errorOf(vlMemory::StringView path) {
        const auto result = ContentLoader::loadDeclarations(path, {}, true);
        const std::size_t count = result.getErrors().size();
        EXPECT_EQ(count, 1U) << path;
        return count == 1 ? result.getErrors()[0] : vlMemory::String();
    }
};

struct Fault {
    const char* list;
    const char* kind;
    const char* members; ///< besides the name
    const char* text;    ///< how the line goes on
};

// Words that are none, numbers out of range, and values of another type than the member's.
constexpr Fault faults[] = {
        {"blendStates", "blend state", R"("alphaToCoverage": 1)", "'alphaToCoverage' expected"},
        {"blendStates",
         "blend state",
         R"("targets": [{}, {"src": "SRC"}])",
         "targets[1]: 'src' expected one of \"ZERO\", "},
        {"blendStates",
         "blend state",
         R"("targets": [{}, {}, {}, {}, {}, {}, {}, {}, {}])",
         "'targets' expected"},
        {"depthStencilStates",
         "depth stencil state",
         R"("front": {"pass": "incr"})",
         "front: 'pass' expected one of "},
        {"depthStencilStates",
         "depth stencil state",
         R"("stencilReadMask": 256)",
         "'stencilReadMask' expected a whole number from 0 to 255"},
        {"rasterStates", "raster state", R"("fillMode": 3)", "'fillMode' expected one of "},
        {"rasterStates", "raster state", R"("depthBias": 2147483648)", "'depthBias' expected"},
        {"rasterStates", "raster state", R"("depthBiasClamp": 1e39)", "'depthBiasClamp' expected"},
        {"samplers", "sampler", R"("filter": "LINEAR")", "'filter' expected one of "},
        {"samplers", "sampler", R"("anisotropy": 17)", "'anisotropy' expected"},
        {"samplers", "sampler", R"("minLod": 3, "maxLod": 2)", "'maxLod' is below 'minLod'"},
        {"samplers", "sampler", R"("borderColor": [1, 1, 1])", "'borderColor' expected"},
        {"buffers", "buffer", R"("elementCount": -1)", "'elementCount' expected"},
        {"buffers", "buffer", R"("elementByteSize": 4294967296)", "'elementByteSize' expected"},
        {"buffers", "buffer", R"("elementCount": 1.5)", "'elementCount' expected"},
        {"buffers", "buffer", R"("unorderedAccess": "true")", "'unorderedAccess' expected"},
        {"cameras",
         "camera",
         R"("nearDistance": 5, "farDistance": 4)",
         "the near distance must be above 0"},
        {"cameras", "camera", R"("position": [0, 0])", "'position' expected"},
        {"viewports", "viewport", R"("width": 1.5)", "'width' expected"},
        {"renderQueues", "render queue", R"("frustumCull": null)", "'frustumCull' expected"},
        {"textures",
         "texture",
         R"("width": 1, "height": 1, "format": "RGBA")",
         "'format' expected one of "},
        {"textures", "texture", R"("file": "sub")", ""},
        {"meshes", "mesh", R"("file": 7)", "'file' expected a string"},
        {"meshes", "mesh", R"("file": "gone.vlmb")", ""},
        {"programs",
         "shader program",
         R"("stages": [{"stage": "FRAGMENT"}])",
         "stages[0]: 'stage' expected one of "},
        {"programs", "shader program", R"("stages": [{"stage": "PIXEL", "file": "sub"}])", ""},
        {"shaders", "shader", R"("maxInstancesPerBuffer": 0)", "'maxInstancesPerBuffer' expected"},
        {"shaders", "shader", R"("textures": [{"slot": -1}])", "textures[0]: 'slot' expected"},
        {"compositors",
         "compositor",
         R"("nodes": [{"operations": [{"passes": [{"type": "blur"}]}]}])",
         "nodes[0].operations[0].passes[0]: 'type' expected one of "},
        {"scripts", "script", R"("file": "a.lua", "source": "x")", "'source' stands beside"},
        {"scripts", "script", R"("file": "gone.lua")", ""},
        {"scripts", "script", R"("file": "../gone.lua")", "'../gone.lua': "},
        {"scripts", "script", R"("file": "stone.png")", "'stone.png': the text is no UTF-8 from"},
};

TEST_F(DeclarationFaults, EachIsNamedAndTheRestIsAdopted) {
    for (const Fault& fault : faults) {
        const bool isTexture = std::string_view(fault.list) == "textures";
        const char* needed = isTexture ? R"(, "width": 1, "height": 1)" : "";
        write("test.json",
              fmt::format(R"({{"formatVersion": 1, "{}": [
{{"name": "good"{}}},
{{"name": "bad", {}}},
{{"name": "fine"{}}}]}})",
                          fault.list,
                          needed,
                          fault.members,
                          needed));
        const auto result = ContentLoader::loadDeclarations("test.json", {}, false);
        const auto& errors = result.getErrors();
        ASSERT_EQ(errors.size(), 1U) << fault.members;
        const auto expected = fmt::format("test.json:3: {} 'bad': {}", fault.kind, fault.text);
        EXPECT_EQ(errors[0].substr(0, expected.size()), expected) << errors[0];
        EXPECT_EQ(errors[0].find('\n'), vlMemory::String::npos);
        EXPECT_EQ(errors[0].find("'bad'"), errors[0].rfind("'bad'")) << errors[0];
    }
    EXPECT_NE(managers.buffers.get("fine"), nullptr);
    EXPECT_NE(managers.scripts.get("good"), nullptr);
    EXPECT_EQ(managers.buffers.get("bad"), nullptr);
}

TEST_F(DeclarationFaults, FilesThatCannotBeReadAreNamed) {
    fs::create_symlink("nowhere", folder / "dangling.json");
    ASSERT_EQ(::mkfifo((folder / "pipe.json").c_str(), 0600), 0);
    for (const char* path :
         {"gone.json", "sub", "stone.png/it.json", "dangling.json", "pipe.json", "stone.png"})
        EXPECT_NE(errorOf(path).find(path), vlMemory::String::npos);
    errorOf("");
    write("closed.json", R"({"formatVersion": 1})");
    fs::permissions(folder / "closed.json", fs::perms::none);
    const WithoutRights nobody;
    if (!nobody.holds()) GTEST_SKIP() << "root can read every file";
    EXPECT_NE(errorOf("closed.json").find("closed.json"), vlMemory::String::npos);
}

TEST_F(DeclarationFaults, AFolderThatCannotBeWrittenIsLeftAsItIs) {
    write("sub/it.json", "old");
    fs::permissions(folder / "sub", fs::perms::owner_read | fs::perms::owner_exec);
    const auto before = listing();
    {
        const WithoutRights nobody;
        if (!nobody.holds()) GTEST_SKIP() << "root can write every folder";
        EXPECT_FALSE(ContentLoader::saveObjectDeclaration(*managers.buffers.createOrRetrieve("b"),
                                                          "sub/it.json"));
        EXPECT_FALSE(ContentLoader::saveObjectDeclaration(*managers.scripts.createOrRetrieve("s"),
                                                          "sub/it.json"));
    }
    EXPECT_EQ(listing(), before);
    EXPECT_EQ(read("sub/it.json"), "old");
    fs::permissions(folder / "sub", fs::perms::owner_all);
}

TEST_F(DeclarationFaults, OnAFullDiskTheOldFilesStay) {
    const std::string disk = (folder / "disk").string();
    fs::create_directory(disk);
    if (::mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "only root can have a disk that is full";
    write("disk/it.json", "old");
    write("disk/it.lua", "old too");
    vlScripts::Script& script = *managers.scripts.createOrRetrieve("s");
    script.setSources(vlMemory::String(100000, ' '));
    const auto before = listing();
    EXPECT_FALSE(ContentLoader::saveObjectDeclaration(script, "disk/it.json"));
    EXPECT_EQ(listing(), before);
    // With room for the text, but none for the declaration behind it.
    script.setSources(vlMemory::String(56U * 1024U, ' '));
    EXPECT_FALSE(ContentLoader::saveObjectDeclaration(script, "disk/it.json"));
    EXPECT_EQ(listing(), before);
    EXPECT_EQ(read("disk/it.json"), "old");
    EXPECT_EQ(read("disk/it.lua"), "old too");
    EXPECT_EQ(::umount(disk.c_str()), 0);
}

} // namespace
} // namespace vlGraphics
