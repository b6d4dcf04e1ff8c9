// What is particular to shaders; what they share with other kinds the contract suite looks at.
#include "editors/KindTest.h"
#include "editors/ShaderProgramChangedMessage.h"
#include "editors/ShaderReferences.h"
#include "editors/shader/PassSlotTypes.h"
#include "editors/shader/ShaderBindingEdits.h"
#include "editors/shader/ShaderSlotEdits.h"
#include "editors/shader/ShaderWanted.h"
#include "interfaces/HeadlessSurface.h"
#include "interfaces/ReservedNames.h"
#include "scene/TextureReplacements.h"

#include <vlGraphics/DefaultNames.h>
#include <vlGraphics/RenderContext.h>
#include <vlGraphics/RenderQueue.h>
#include <vlWinUi/Automation.h>
#include <vlWinUi/ComboBox.h>
#include <vlWinUi/TabWindow.h>

#include <cstring>

namespace vlEditor {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using vlGraphics::PASS_SLOT_TYPE;
using vlGraphics::Shader;
using vlWinUi::ComponentManager;

constexpr const char* textureTab = "Textures";
constexpr const char* bufferTab = "Constant Buffers";

class ShaderEditor : public KindTest {
protected:
    ShaderEditor() {
        create("a");
        select("a");
    }
    ~ShaderEditor() override {
        // The same engine serves all tests.
        for (const char* name : {"wood", "bark"})
            vlGraphics::TextureManager::getInstance()->erase(name);
        vlGraphics::ProgramManager::getInstance()->erase("p");
    }

    static Shader& engine(const std::string& name = "a") {
        return *vlGraphics::ShaderManager::getInstance()->get(name);
    }
    static const ShaderUiData& record(const std::string& name = "a") {
        static const ShaderUiData none;
        const auto* held = ShaderUiDataTracker::getInstance().get(name);
        EXPECT_NE(held, nullptr) << name;
        return held == nullptr ? none : *held;
    }
    static const ShaderPassSlotUiData& slot(std::size_t index = 0) {
        return record().constantBuffers.at(0).slots.at(index);
    }
    template <class Edit> static void post(Edit edit) {
        postByUser(ResourceEditMessage<Edit>("a", std::move(edit)));
        settle();
    }
    /// A constant buffer with that many slots.
    static void addSlots(int count) {
        post(ChangeShaderAddConstantBuffer{});
        for (int i = 0; i < count; ++i)
            post(ChangeShaderAddPassSlot{});
    }
    static void setType(std::uint32_t type) { post(ChangeShaderPassSlotType{{}, type}); }
    static vlGraphics::ShaderPassMemorySlot& engineSlot() {
        return *engine().getConstantBufferPerIndex(0)->getPassMemorySlot(0);
    }
    static vlGraphics::Texture& makeTexture(const char* name, unsigned width, unsigned height) {
        auto* texture = vlGraphics::TextureManager::getInstance()->createOrRetrieve(name);
        texture->setWidth(width);
        texture->setHeight(height);
        return *texture;
    }
    static std::vector<float> fill(vlGraphics::ShaderPassMemorySlot& slot) {
        std::vector<float> values(4);
        const vlGraphics::PassInputs inputs{
                vlGraphics::CameraManager::getInstance()->getDefaultCamera(), 64, 32, 0};
        vlGraphics::fillPassSlot(slot, inputs, std::as_writable_bytes(std::span(values)));
        return values;
    }

    void front(const std::string& tab) const {
        auto& tabs = *ComponentManager::get<vlWinUi::TabWindow>(base() + "_RES_TYPE_TABS");
        tabs.select(*tabs.indexOf(tab));
        settle();
    }
    bool isEnabled(const std::string& suffix) const {
        return ComponentManager::get(base() + suffix)->isEnabled();
    }
    std::string shownIn(const std::string& suffix) const {
        return ComponentManager::get(base() + suffix)->getText();
    }
    void enter(const std::string& suffix, const std::string& text) const {
        type(base() + suffix, text);
    }
    void choose(const std::string& combo, const std::string& label) const {
        use([&](auto done) { vlWinUi::Automation::select(base() + combo, label, done); });
    }
    /// Makes the program of that text and links the shader to it.
    static void link(const std::string& vertex, const std::string& pixel) {
        auto* program = vlGraphics::ProgramManager::getInstance()->createOrRetrieve("p");
        ASSERT_NE(program, nullptr);
        compile(vertex, pixel);
        ASSERT_TRUE(program->isUsable()) << program->getLastCompilationResult().getErrorMessage();
        post(ChangeShaderProgram{"p"});
    }
    static void compile(const std::string& vertex, const std::string& pixel) {
        auto& programs = *vlGraphics::ProgramManager::getInstance();
        vlGraphics::ProgramSourcesHolder sources;
        sources.setVertexMemory(vertex);
        sources.setPixelMemory(pixel);
        programs.get("p")->setFromMemory(std::move(sources));
        EXPECT_TRUE(programs.get("p")->load());
        programs.waitForAll();
    }
};

const std::string plainVertex =
        "float4 main(float4 position : POSITION) : SV_POSITION { return position; }";

TEST_P(ShaderEditor, NewEntriesTakeTheLowestFreeSlotOfSpace0) {
    post(ChangeShaderAddConstantBuffer{});
    post(ChangeShaderConstantBufferBindings{0, 0, 1});
    for (int i = 0; i < 3; ++i)
        post(ChangeShaderAddConstantBuffer{});
    std::vector<std::uint32_t> slots;
    for (const auto& buffer : record().constantBuffers)
        slots.push_back(buffer.slot);
    EXPECT_THAT(slots, ElementsAre(1, 0, 2, 3));

    post(ChangeShaderAddTexture{});
    post(ChangeShaderTextureBindings{{0, 1, 0}}); // space 1 blocks nothing
    post(ChangeShaderAddTexture{});
    EXPECT_EQ(record().textures.at(1).slot, 0U);
    EXPECT_EQ(record().textures.at(1).resource, vlGraphics::DefaultNames::texture);
    for (std::uint32_t i = 1; i <= Shader::lastSlot; ++i)
        post(ChangeShaderAddTexture{});
    EXPECT_EQ(record().textures.size(), Shader::lastSlot + 2U);
    post(ChangeShaderAddTexture{});
    EXPECT_EQ(record().textures.size(), Shader::lastSlot + 2U);
    EXPECT_THAT(lines().back(), HasSubstr("shader 'a': t128 is out of reach"));
    expectInStep();
}

TEST_P(ShaderEditor, AnAddressThatIsTakenOrOutOfReachIsRefusedWithItsName) {
    for (int i = 0; i < 3; ++i)
        post(ChangeShaderAddSampler{});
    post(ChangeShaderSamplerBindings{{1, 1, 0}});
    const std::string before = declaration("a");
    post(ChangeShaderSamplerBindings{{0, 1, 0}});
    EXPECT_THAT(lines().back(), HasSubstr("shader 'a': s0 of space 1 is taken"));
    post(ChangeShaderSamplerBindings{{0, 8, 3}});
    EXPECT_THAT(lines().back(), HasSubstr("shader 'a': s3 of space 8 is out of reach"));
    post(ChangeShaderSamplerBindings{{7, 0, 9}}); // there is no such sampler
    postToGraphics(ChangeShaderAddTextureMessage("gone", {}));
    settle();
    EXPECT_EQ(lines().back(), "[Editor] There is no shader 'gone'.");
    EXPECT_EQ(vlGraphics::ShaderManager::getInstance()->get("gone"), nullptr);
    EXPECT_EQ(declaration("a"), before);
    // Past addresses that are taken, to one that is not.
    post(ChangeShaderSamplerBindings{{0, 1, 2}});
    EXPECT_EQ(record().samplers.at(0).space, 1U);
    EXPECT_EQ(record().samplers.at(0).slot, 2U);
    expectInStep();
}

TEST_P(ShaderEditor, SourcesAreFoundByTheLetterOfTheirKind) {
    makeTexture("wood", 4, 4);
    post(ChangeShaderAddTexture{});
    post(ChangeShaderTextureSource{{0, "T. wood"}, 0, 0});
    EXPECT_EQ(record().textures.at(0).resource, "wood");
    post(ChangeShaderTextureSource{{0, "B. heap. of things"}, 0, 0});
    EXPECT_EQ(record().textures.at(0).resource, "heap. of things");
    EXPECT_EQ(shownIn("_TEX_PREVIEW"), "Only textures have a picture");
    EXPECT_THAT(findKind("Buffer")->names(), Contains("heap. of things"));
    const std::string queue(vlGraphics::RenderQueueManager::DEFAULT_RENDER_QUEUE);
    post(ChangeShaderTextureSource{{0, "R. " + queue}, 0, 0});
    EXPECT_EQ(record().textures.at(0).resource, queue);
    const std::string before = declaration("a");
    post(ChangeShaderTextureSource{{0, "T. nothing"}, 0, 0});
    EXPECT_THAT(lines().back(), HasSubstr("shader 'a': there is no texture 'nothing'"));
    post(ChangeShaderAddUav{{"nothing"}});
    EXPECT_THAT(lines().back(), HasSubstr("shader 'a': there is no buffer 'nothing'"));
    EXPECT_EQ(declaration("a"), before);

    post(ChangeShaderAddSampler{});
    post(ChangeShaderSamplerSource{{0, "fresh"}});
    EXPECT_THAT(findKind("Sampler")->names(), Contains("fresh"));
    EXPECT_EQ(record().samplers.at(0).resource, "fresh");
    findKind("Sampler")->commands().erase("fresh");
    findKind("Buffer")->commands().erase("heap. of things");
    settle();
}

// What the window goes on showing of a slot whose type was changed follows the list's numbering.
TEST_P(ShaderEditor, TypesAreListedAndResetByTheNumberingOfTheList) {
    addSlots(1);
    front(bufferTab);
    const auto listedAs = [this] { return items(base() + "_CBUF_SLOT_LIST").at(0); };
    EXPECT_EQ(listedAs(), "0. Vector4");
    choose("_CBUF_SLOT_TYPE_COMBO", "CAM_POSITION");
    EXPECT_EQ(slot().type, 13U);
    EXPECT_EQ(listedAs(), "0. Camera direction");
    EXPECT_TRUE(ComponentManager::get(base() + "_SLOT_CAM_WIN")->isVisible());
    EXPECT_FALSE(ComponentManager::get(base() + "_SLOT_VECTOR_WIN")->isVisible());

    post(ChangeShaderUpdateCameraSlot{{}, "eye"});
    choose("_CBUF_SLOT_TYPE_COMBO", "CAM_DIRECTION_WORLD");
    EXPECT_EQ(listedAs(), "0. Time");
    EXPECT_EQ(moduloIn(slot().value), 1000U);
    EXPECT_EQ(slot().resourceName, "eye") << "this type clears no name";
    EXPECT_EQ(slot().engine.resourceName, "");
    const auto& slots = *ComponentManager::get<vlWinUi::ListBox>(base() + "_CBUF_SLOT_LIST");
    EXPECT_TRUE(slots.isEntryMarked("0. Time")) << "the engine has another camera";
    post(ChangeShaderUpdateCameraSlot{{}, std::string(ReservedNames::contextCamera)});
    EXPECT_FALSE(slots.isEntryMarked("0. Time"));
    post(ChangeShaderUpdateCameraSlot{{}, "eye"});

    setType(PassSlotTypes::vector);
    post(ChangeShaderUpdateVectorSlot{{}, {1, 2, 3, 4}});
    choose("_CBUF_SLOT_TYPE_COMBO", "TIME");
    EXPECT_EQ(listedAs(), "0. UNKNOWN");
    EXPECT_TRUE(ComponentManager::get(base() + "_SLOT_TIME_WIN")->isVisible());
    EXPECT_EQ(slot().value[0], 1.0F) << "the time modulo stays what it was";
    EXPECT_EQ(engineSlot().getTimeModuloMs(), 1000U);
    post(ChangeShaderAddPassSlot{});
    EXPECT_EQ(slot().value[0], 1.0F) << "an edit of something else leaves it so";
    EXPECT_TRUE(slots.isEntryMarked("0. UNKNOWN"));
    EXPECT_FALSE(slots.isEntryMarked("1. Vector4"));
    post(ChangeShaderUpdateTimeModSlot{{}, 1000});
    EXPECT_FALSE(slots.isEntryMarked("0. UNKNOWN"));
    EXPECT_EQ(moduloIn(slot().value), 1000U);

    setType(PassSlotTypes::textureSize);
    EXPECT_EQ(slot().resourceName, "");
    EXPECT_EQ(slot().engine.resourceName, vlGraphics::DefaultNames::texture);
    setType(PassSlotTypes::matrix);
    EXPECT_EQ(slot().value[5], 1.0F);
    undo();
    EXPECT_EQ(slot().resourceName, vlGraphics::DefaultNames::texture) << "read from the engine";
    expectInStep();

    const std::string before = declaration("a");
    for (const std::uint32_t type : {0U, 12U, 16U, 99U}) {
        setType(type);
        EXPECT_THAT(lines().back(), HasSubstr("there is no slot type " + std::to_string(type)));
    }
    EXPECT_EQ(declaration("a"), before);
    EXPECT_EQ(slot().type, 7U);
    findKind("Camera")->commands().erase("eye");
    settle();
}

TEST_P(ShaderEditor, TheCameraOfTheContextIsNoneAndOthersAreMade) {
    addSlots(1);
    const auto& cameras = *vlGraphics::CameraManager::getInstance();
    for (const Choice& choice : PassSlotTypes::choices()) {
        SCOPED_TRACE(choice.label);
        setType(choice.value);
        post(ChangeShaderUpdateCameraSlot{{}, "eye"});
        const bool looks = PassSlotTypes::isCamera(choice.value);
        EXPECT_EQ(static_cast<std::uint32_t>(engineSlot().getType()),
                  choice.value == 7 ? 16U : choice.value);
        EXPECT_EQ(cameras.nameOf(engineSlot().getCamera()), looks ? "eye" : "");
        post(ChangeShaderUpdateCameraSlot{{}, std::string(ReservedNames::contextCamera)});
        EXPECT_TRUE(engineSlot().getCamera().isNull());
    }
    EXPECT_EQ(cameras.get(ReservedNames::contextCamera), nullptr);
    EXPECT_THAT(findKind("Camera")->names(), ElementsAre("eye"));
    findKind("Camera")->commands().erase("eye");
    settle();
}

TEST_P(ShaderEditor, SlotsMoveWithinTheirListAndNoFurther) {
    addSlots(3);
    post(ChangeShaderPassSlotType{{0, 0, 0}, 8});
    front(bufferTab);
    EXPECT_FALSE(isEnabled("_CBUF_SLOT_UP"));
    click(base() + "_CBUF_SLOT_DOWN");
    click(base() + "_CBUF_SLOT_DOWN");
    EXPECT_EQ(slot(2).type, 8U) << "the selection goes along";
    EXPECT_FALSE(isEnabled("_CBUF_SLOT_DOWN"));
    EXPECT_TRUE(isEnabled("_CBUF_SLOT_UP"));
    const std::string before = declaration("a");
    post(ChangeShaderUpPassSlot{{{0, 0, 0}}});
    post(ChangeShaderDownPassSlot{{{0, 0, 2}}});
    post(ChangeShaderUpInstanceSlot{{0}});
    post(ChangeShaderDownInstanceSlot{{~std::uint32_t{0}}});
    EXPECT_EQ(declaration("a"), before);
    post(ChangeShaderDelPassSlot{{0, 0, 3}});
    EXPECT_THAT(lines().back(), HasSubstr("the constant buffer at b0 has no slot 3"));
    post(ChangeShaderDelPassSlot{{{5, 2}, 0}});
    EXPECT_THAT(lines().back(), HasSubstr("there is no constant buffer at b5 of space 2"));
    EXPECT_EQ(declaration("a"), before);
    // The deletion leaves the selection to what comes in its place.
    key(base() + "_CBUF_SLOT_LIST", 46);
    EXPECT_EQ(record().constantBuffers.at(0).slots.size(), 2U);
    EXPECT_EQ(vlWinUi::Automation::getSelected(base() + "_CBUF_SLOT_LIST")
                      .value_or(std::vector<std::string>()),
              std::vector<std::string>{"1. Vector4"});
}

TEST_P(ShaderEditor, SizesOfTexturesAreTheEditorsInTheEngineAndOrdinaryInFiles) {
    makeTexture("wood", 8, 4);
    makeTexture("bark", 2, 16);
    addSlots(1);
    setType(PassSlotTypes::textureSize);
    post(ChangeShaderUpdateTextureSlot{{}, "wood"});
    ASSERT_EQ(engineSlot().getType(), PASS_SLOT_TYPE::CUSTOM);
    const std::vector<float> own = fill(engineSlot());
    EXPECT_THAT(own, ElementsAre(8, 4, 0.125F, 0.25F));
    vlGraphics::ShaderPassMemorySlot plain;
    plain.setAsTextureSize(vlGraphics::TextureManager::getInstance()->handleOf("wood"));
    EXPECT_EQ(fill(plain), own);

    EXPECT_THAT(declaration("a"), HasSubstr("TEXTURE_SIZE"));
    kind().commands().duplicate("a");
    kind().commands().save("a", path("a.vlsh"));
    kind().commands().load(path("a.vlsh"));
    settle();
    for (const char* name : {"a", "a_2"}) {
        const auto* slot = engine(name).getConstantBufferPerIndex(0)->getPassMemorySlot(0);
        EXPECT_EQ(slot->getType(), PASS_SLOT_TYPE::CUSTOM) << name;
        EXPECT_EQ(record(name).constantBuffers.at(0).slots.at(0).resourceName, "wood") << name;
    }
    // That of what is drawn to is the engine's to know.
    std::string text = declaration("a");
    text.replace(text.find("wood"), 4, vlGraphics::DefaultNames::backBuffer);
    kind().commands().paste("a", R"({"formatVersion": 1, "shaders": [)" + text + "]}");
    settle();
    EXPECT_EQ(engineSlot().getType(), PASS_SLOT_TYPE::TEXTURE_SIZE);
    EXPECT_THAT(fill(engineSlot()), ElementsAre(64, 32, 1 / 64.0F, 1 / 32.0F));
    expectInStep();
}

TEST_P(ShaderEditor, WhatTheProgramWantsIsBoundByAClick) {
    link("cbuffer Pass : register(b1) { float4x4 viewMat; float4x4 projMat; float4 tint; };"
         "struct Out { float4 position : SV_POSITION; float2 uv : TEXCOORD0; };"
         "Out main(float4 position : POSITION, float4x4 world : WORLD_MATRIX) { Out o;"
         "o.position = mul(projMat, mul(viewMat, mul(world, position))) + tint;"
         "o.uv = position.xy; return o; }",
         "Texture2D albedo : register(t2, space1); SamplerState soft : register(s3);"
         "struct In { float4 position : SV_POSITION; float2 uv : TEXCOORD0; };"
         "float4 main(In i) : SV_TARGET { return albedo.Sample(soft, i.uv); }");
    EXPECT_TRUE(record().usableScene);
    EXPECT_FALSE(record().usablePost) << "it places entities";
    EXPECT_TRUE(vlWinUi::Automation::isChecked(base() + "_TYPE_SCENE_CHECK").value_or(false));
    EXPECT_EQ(shownIn("_PROGRAM_LABEL"), "p");

    const std::string list = base() + "_TEX_WANTED_LIST";
    front(textureTab);
    ASSERT_EQ(items(list).size(), 1U);
    EXPECT_THAT(items(list).at(0), testing::StartsWith("t2 of space 1 albedo - Texture"));
    click(list, items(list).at(0));
    EXPECT_THAT(items(list), IsEmpty());
    ASSERT_EQ(record().textures.size(), 1U);
    EXPECT_EQ(record().textures.at(0).slot, 2U);
    EXPECT_EQ(record().textures.at(0).space, 1U);
    EXPECT_EQ(record().textures.at(0).resource, vlGraphics::DefaultNames::texture);

    front(bufferTab);
    const std::string buffers = base() + "_CBUF_WANTED_LIST";
    click(buffers, items(buffers).at(0));
    ASSERT_EQ(record().constantBuffers.size(), 1U);
    EXPECT_EQ(record().constantBuffers.at(0).slot, 1U);
    EXPECT_EQ(engine().getConstantBufferPerIndex(0)->getByteSize(), 144U);
    undo();
    EXPECT_EQ(items(buffers).size(), 1U);

    // Another one at an address that the program does not use is marked, and stays.
    post(ChangeShaderAddTexture{});
    const auto* textures = ComponentManager::get<vlWinUi::ListBox>(base() + "_TEX_LIST");
    EXPECT_FALSE(textures->isEntryMarked(textures->getEntry(0).label));
    EXPECT_TRUE(textures->isEntryMarked(textures->getEntry(1).label));
    post(ChangeShaderBindWanted{{9, 0}, "t", ""});
    EXPECT_THAT(lines().back(), HasSubstr("shader 'a': its program wants nothing at t9"));

    // Another result of compilation is heard of without an edit.
    const std::size_t depth = History::getInstance().getDepth();
    compile(plainVertex, "float4 main() : SV_TARGET { return 1; }");
    postToGraphics(ShaderProgramChangedMessage("p"));
    settle();
    EXPECT_TRUE(record().usablePost);
    EXPECT_THAT(record().wanted, IsEmpty());
    EXPECT_TRUE(textures->isEntryMarked(textures->getEntry(0).label));
    EXPECT_EQ(History::getInstance().getDepth(), depth);
    expectInStep();
}

TEST_P(ShaderEditor, EachRegisterOfAnArrayIsBoundByOneClick) {
    link(plainVertex,
         "Texture2D maps[3] : register(t2); Texture2D other : register(t0);"
         "cbuffer Choice : register(b0) { uint index; };"
         "float4 main() : SV_TARGET { return maps[index % 3].Load(0) + other.Load(0); }");
    front(textureTab);
    const std::string list = base() + "_TEX_WANTED_LIST";
    post(ChangeShaderAddTexture{});
    post(ChangeShaderAddTexture{});
    post(ChangeShaderTextureBindings{{1, 0, 3}});
    EXPECT_THAT(items(list), ElementsAre("t2 maps - Texture2D[3], 2 of 3 unbound"));
    click(list, items(list).at(0));
    EXPECT_THAT(items(list), IsEmpty());
    const auto bound = items(base() + "_TEX_LIST");
    ASSERT_EQ(bound.size(), 4U);
    EXPECT_THAT(bound.at(0), testing::StartsWith("t0 other : "));
    EXPECT_THAT(bound.at(1), testing::StartsWith("t3 maps[1] : "));
    undo();
    EXPECT_EQ(record().textures.size(), 2U);
    post(ChangeShaderDelTexture{{3, 0}});
    EXPECT_THAT(items(list), ElementsAre("t2 maps - Texture2D[3]"));
    post(ChangeShaderBindWanted{{2, 0}, "t", ""});
    post(ChangeShaderBindWanted{{2, 0}, "t", ""});
    EXPECT_THAT(lines().back(), HasSubstr("shader 'a': t2 is taken"));
    expectInStep();
}

TEST_P(ShaderEditor, WhereOnlyABufferWillDoOnlyBuffersAreOffered) {
    findKind("Buffer")->commands().create("heap");
    link(plainVertex,
         "StructuredBuffer<float4> points : register(t0);"
         "float4 main() : SV_TARGET { return points[0]; }");
    front(textureTab);
    const std::string list = base() + "_TEX_WANTED_LIST";
    const std::string dialog = "TEXTURE_BUFFER_POP_UP_LIST";
    ASSERT_EQ(items(list).size(), 1U);
    click(list, items(list).at(0));
    EXPECT_THAT(items(dialog + "LISTBOX"), ElementsAre("B. heap"));
    click(dialog + "LISTBOX", "B. heap");
    click(dialog + "OK_BUTTON");
    ASSERT_EQ(record().textures.size(), 1U);
    EXPECT_EQ(record().textures.at(0).resource, "heap");
    click(base() + "_TEX_SRC_BUTTON");
    EXPECT_THAT(items(dialog + "LISTBOX"), testing::Not(testing::Each("B. heap")));
    click(dialog + "CANCEL_BUTTON");

    // One that a person thought better of does not lead the selection elsewhere later.
    front("UAV");
    post(ChangeShaderAddUav{{"heap"}});
    click(base() + "_UAV_ADD");
    click("UAV_POP_UP_LISTCANCEL_BUTTON");
    post(ChangeShaderAddUav{{"heap"}});
    const auto* uavs = ComponentManager::get<vlWinUi::ListBox>(base() + "_UAV_LIST");
    EXPECT_THAT(uavs->getText(), testing::StartsWith("u0 "));
    click(base() + "_UAV_ADD");
    click("UAV_POP_UP_LISTLISTBOX", "heap");
    click("UAV_POP_UP_LISTOK_BUTTON");
    EXPECT_THAT(uavs->getText(), testing::StartsWith("u2 "));
    findKind("Buffer")->commands().erase("heap");
    settle();
}

TEST_P(ShaderEditor, AScriptCreatesWhatTheEditorDoesNotKnow) {
    postToGraphics(CreateShaderScriptMessage("b"));
    settle();
    EXPECT_EQ(lines().back(), "[Editor] Shader created : b");
    const std::size_t count = lines().size();
    postToGraphics(CreateShaderScriptMessage("b"));
    settle();
    EXPECT_EQ(lines().size(), count) << "the engine has it";
    vlGraphics::ShaderManager::getInstance()->erase("b");
    postToGraphics(CreateShaderScriptMessage("b"));
    settle();
    EXPECT_EQ(lines().back(), "[Editor] Shader already existant : b");
    EXPECT_NE(vlGraphics::ShaderManager::getInstance()->get("b"), nullptr);
}

TEST_P(ShaderEditor, ATextureIsReplacedInItsContextAsLongAsBothAreThere) {
    auto& textures = *vlGraphics::TextureManager::getInstance();
    const auto wood = textures.handleOf(&makeTexture("wood", 8, 4));
    const auto bark = textures.handleOf(&makeTexture("bark", 2, 16));
    HeadlessSurface surface({32, 32});
    auto& contexts = *vlGraphics::RenderContextManager::getInstance();
    const auto context = contexts.createRenderContext(vlGraphics::RenderContextDescriptor(surface));
    ASSERT_TRUE(context) << context.error().message;
    auto& replacements = TextureReplacements::getInstance();
    replacements.set(**context, wood, bark);
    EXPECT_EQ(replacements.find(**context, wood), bark);
    EXPECT_EQ(replacements.find(**context, bark), std::nullopt);
    textures.erase("bark");
    EXPECT_EQ(replacements.find(**context, wood), std::nullopt);
    makeTexture("bark", 2, 16);
    EXPECT_EQ(replacements.find(**context, wood), bark) << "as after an undo";
    replacements.forget(**context);
    EXPECT_EQ(replacements.find(**context, wood), std::nullopt);
    contexts.eraseFor(surface);
    TextureReplacements::destroyInstance();
}

TEST_P(ShaderEditor, NamesFollowWhatTheyNameWhileTheEditorRuns) {
    ShaderReferences::getInstance();
    const ResourceCommands& programs = findKind("ShaderProgram")->commands();
    const ResourceCommands& cameras = findKind("Camera")->commands();
    programs.create("lit");
    cameras.create("eye");
    post(ChangeShaderProgram{"lit"});
    addSlots(1);
    setType(8);
    post(ChangeShaderUpdateCameraSlot{{}, "eye"});
    programs.rename("lit", "glowing");
    cameras.rename("eye", "other eye");
    settle();
    EXPECT_EQ(shownIn("_PROGRAM_LABEL"), "glowing");
    EXPECT_EQ(slot().resourceName, "other eye");
    EXPECT_EQ(record().programType, 1U);
    programs.erase("glowing");
    cameras.erase("other eye");
    settle();
    EXPECT_EQ(record().programType, 0U);
    expectInStep();
    undo();
    undo();
    EXPECT_EQ(record().programType, 1U);
    expectInStep();
    ShaderReferences::destroyInstance();
}

TEST_P(ShaderEditor, WhatIsNoNumberIsRefusedAndKeptInItsBox) {
    front(textureTab);
    click(base() + "_TEX_ADD");
    const std::string before = declaration("a");
    for (const char* text : {"", "x", "-1", "1.5", "4294967296", "1 2"}) {
        const std::size_t count = lines().size();
        enter("_TEX_SLOT_EDIT", text);
        click(base() + "_TEX_UPDATE");
        ASSERT_EQ(lines().size(), count + 1) << text;
        EXPECT_THAT(lines().back(),
                    HasSubstr("Can't parse new settings (space and / or slot). Aborting."));
    }
    front("Instance Buffers");
    for (const char* text : {"0", "-3", "many"}) {
        enter("_INSTANCE_MAX_EDIT", text);
        key(base() + "_INSTANCE_MAX_EDIT", 13);
        EXPECT_THAT(lines().back(),
                    HasSubstr("Number '" + std::string(text) +
                              "' could not be parsed or is 0 or less. This is incorrect."));
    }
    enter("_INSTANCE_MAX_EDIT", "65537");
    click(base() + "_INSTANCE_MAX_OK");
    EXPECT_THAT(lines().back(), HasSubstr("shader 'a': 65537 instances"));
    EXPECT_EQ(declaration("a"), before);
    enter("_INSTANCE_MAX_EDIT", " 77 ");
    click(base() + "_INSTANCE_MAX_OK");
    EXPECT_EQ(engine().getMaxInstancePerBuffer(), 77U);
}

TEST_P(ShaderEditor, AListActsOnOneShaderAloneAndFollowsWhatMoves) {
    front(textureTab);
    click(base() + "_TEX_ADD");
    click(base() + "_TEX_ADD");
    const auto selected = [this] {
        return ComponentManager::get<vlWinUi::ListBox>(base() + "_TEX_LIST")->getText();
    };
    EXPECT_THAT(selected(), testing::StartsWith("t1 ")) << "what was added is selected";
    enter("_TEX_SPACE_EDIT", "3");
    key(base() + "_TEX_SPACE_EDIT", 13);
    EXPECT_THAT(selected(), testing::StartsWith("t1 of space 3 "));
    EXPECT_EQ(record().textures.at(1).space, 3U);
    undo();
    EXPECT_THAT(selected(), testing::StartsWith("t1 "));

    create("b");
    key(base() + "_LIST", 'A', {"ctrl"});
    EXPECT_THAT(items(base() + "_TEX_LIST"), IsEmpty());
    EXPECT_FALSE(isEnabled("_TEX_ADD"));
    EXPECT_THAT(ComponentManager::get(base() + "_TEX_ADD")->getToolTip(),
                HasSubstr("select one shader alone"));
    // What all shaders have is set in all.
    front("Instance Buffers");
    enter("_INSTANCE_MAX_EDIT", "12");
    click(base() + "_INSTANCE_MAX_OK");
    EXPECT_EQ(record("a").maxInstancesPerBuffer, 12U);
    EXPECT_EQ(record("b").maxInstancesPerBuffer, 12U);
}

TEST(ShaderSlots, AreGuessedFromTheMembersOfTheBuffer) {
    vlGraphics::ReflectedResource buffer;
    buffer.byteSize = 352;
    buffer.members = {{"ViewMat", "float4x4", 0, 64},
                      {"projection", "float4x4", 64, 64},
                      {"invView", "float4x4", 128, 64},
                      {"viewProj", "float4x4", 192, 64},
                      {"fog", "float3", 256, 12},
                      {"density", "float", 268, 4},
                      {"lights", "float4[4]", 272, 64},
                      {"scale", "float", 336, 4}};
    EXPECT_THAT(guessSlots(buffer), ElementsAre(8, 10, 9, 2, 1, 1, 1, 1, 1, 1));
    buffer.members.clear();
    buffer.byteSize = 36;
    EXPECT_THAT(guessSlots(buffer), ElementsAre(1, 1, 1));
    buffer.byteSize = 0xFFFFFFF0;
    EXPECT_LE(guessSlots(buffer).size(), 1024U);
}

INSTANTIATE_TEST_SUITE_P(Shaders, ShaderEditor, testing::Values(&shaderKind()));

} // namespace
} // namespace vlEditor
