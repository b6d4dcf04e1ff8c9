#include "DevicelessTest.h"
#include "script/EngineTables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace vlKestrion {
namespace {

using testing::HasSubstr;
using vlMemory::String;

/// With something of every kind.
class EngineTablesTest : public DevicelessTest {
protected:
    EngineTablesTest() {
        addEngineTables(interpreter_);
        existing(nodes_.createOrRetrieve("house")).setPosition({1, 2, 3});
        existing(nodes_.createOrRetrieve("door")).setParentNode(nodes_.get("house"));
        queue_ = &existing(queues_.createOrRetrieve("queue"));
        existing(queue_->addEntity()).setParentNode(nodes_.get("door"));
        blendStates_.createOrRetrieve("it");
        depthStencilStates_.createOrRetrieve("it");
        rasterStates_.createOrRetrieve("it");
        viewports_.createOrRetrieve("it");
        samplers_.createOrRetrieve("it");
        buffers_.createOrRetrieve("it");
        textures_.createOrRetrieve("it");
        meshes_.createOrRetrieve("it");
        programs_.createOrRetrieve("it");
        shaders_.createOrRetrieve("it");
        cameras_.createOrRetrieve("it");
        existing(existing(compositors_.createOrRetrieve("it")).addNode()).setName("glow");
        materials_.createOrRetrieve("it");
    }

    vlScripts::ExecutionResult run(const String& text) {
        vlScripts::CompilationResult compilation;
        const auto script = vlScripts::CompiledScript::compile("test", text, compilation);
        if (!script) return {false, compilation.message, {}, {}};
        return interpreter_.execute(*script);
    }
    String valueOf(const String& expression) {
        const auto result = run("return tostring(" + expression + ")");
        EXPECT_TRUE(result.succeeded) << result.message;
        const String* text = result.returned.empty() ? nullptr : result.returned[0].asText();
        return text == nullptr ? "" : *text;
    }
    void expectRuns(const String& text) {
        const auto result = run(text);
        EXPECT_TRUE(result.succeeded) << result.message;
    }
    String failure(const String& text) {
        const auto result = run(text);
        EXPECT_FALSE(result.succeeded) << text;
        return result.message;
    }

    vlGraphics::RenderQueue* queue_ = nullptr;
    vlScripts::Interpreter interpreter_{{}};
};

TEST_F(EngineTablesTest, EveryFieldOfEveryKindTakesWhatItGives) {
    for (const EngineKind& entry : engineKinds()) {
        for (const String& name : entry.list()) {
            EXPECT_TRUE(entry.exists(name)) << entry.kind.name << " " << name;
            for (const auto& field : entry.kind.fields) {
                const auto value = field.get(name);
                ASSERT_TRUE(value.has_value()) << entry.kind.name << "." << field.name;
                if (!field.set) continue;
                const auto written = field.set(name, *value);
                EXPECT_TRUE(written.has_value())
                        << entry.kind.name << "." << field.name << ": " << written.error().message;
                EXPECT_FALSE(field.set(name, vlScripts::Function()).has_value())
                        << entry.kind.name << "." << field.name << " takes a function";
            }
        }
        EXPECT_FALSE(entry.exists("none of that name"));
        for (const auto& field : entry.kind.fields)
            EXPECT_FALSE(field.get("none of that name").has_value());
    }
}

TEST_F(EngineTablesTest, NodesAreMovedTurnedAndHung) {
    expectRuns("local n = engine.node('house') n.position = n.position + {0, 1, 0} "
               "n.rotation = {0, 90, 0} n.scale = {x = 2, y = 2, z = 2}");
    const vlGraphics::Node& house = existing(nodes_.get("house"));
    EXPECT_EQ(house.getPosition(), vlMaths::Vector(1, 3, 3, 1));
    EXPECT_NEAR(house.getOrientation().y, 0.7071F, 1e-4);
    EXPECT_EQ(house.getScale().y, 2);
    EXPECT_EQ(valueOf("engine.node('door').parent"), "node 'house'");
    EXPECT_EQ(valueOf("engine.node('house').children[1].absolutePosition.y"), "3.0");
    EXPECT_EQ(valueOf("#engine.nodes()"), "2");
    EXPECT_THAT(failure("engine.node('house').parent = engine.node('door')"),
                HasSubstr("node 'house': parent: the value is not possible here"));
    EXPECT_THAT(failure("engine.node('house').parent = 'attic'"), HasSubstr("no node 'attic'"));
    EXPECT_THAT(failure("engine.node('house').position.x = 5"), HasSubstr("write all of it"));
    expectRuns("engine.node('door').parent = nil");
    EXPECT_EQ(existing(nodes_.get("door")).getParentNode(), nullptr);
}

TEST_F(EngineTablesTest, WhatCannotBeIsRefusedAndChangesNothing) {
    for (const auto& [statement, why] : std::vector<std::pair<const char*, const char*>>{
                 {"engine.node('house').position = {0 / 0, 0, 0}", "finite"},
                 {"engine.node('house').position = {1e300, 0, 0}", "finite"},
                 {"engine.node('house').position = {1, 2}", "{x, y, z}"},
                 {"engine.node('house').position = 'up'", "{x, y, z}"},
                 {"engine.node('house').orientation = {0, 0, 0, 0}", "not possible"},
                 {"engine.node('house').colour = 1", "has no 'colour'"},
                 {"engine.node('house').children = {}", "cannot be written"},
                 {"engine.node('attic')", "there is no node 'attic'"},
                 {"engine.node(5)", "expected the name"},
                 {"engine.camera('it').fov = 180", "not possible"},
                 {"engine.camera('it').near = 0 / 0", "finite"},
                 {"engine.camera('it'):lookAt('there')", "lookAt: expected {x, y, z}"},
                 {"engine.rasterState('it').cullMode = 'SIDEWAYS'", "one of"},
                 {"engine.rasterState('it').cullMode = 77", "one of"},
                 {"engine.rasterState('it').depthBias = 1.5", "whole number"},
                 {"engine.rasterState('it').depthClip = 1", "true or false"},
                 {"engine.depthStencilState('it').stencilReadMask = 256", "from 0 to 255"},
                 {"engine.sampler('it').anisotropy = 17", "not possible"},
                 {"engine.sampler('it').minLod = 2000", "not possible"},
                 {"engine.viewport('it').width = 2", "not possible"},
                 {"engine.texture('it').width = 0", "not possible"},
                 {"engine.shader('it').maxInstances = 0", "not possible"},
                 {"engine.shader('it'):setTexture(1, 'it')", "no such texture slot"},
                 {"engine.compositor('it'):setActive('blur', true)", "no node 'blur'"},
                 {"engine.timeMs()", "does not run"}})
        EXPECT_THAT(failure(statement), HasSubstr(why)) << statement;
    EXPECT_EQ(existing(nodes_.get("house")).getPosition(), vlMaths::Vector(1, 2, 3, 1));
    EXPECT_EQ(existing(samplers_.get("it")).getAnisotropy(), 1U);
    EXPECT_EQ(existing(samplers_.get("it")).getMinLod(), 0);
    EXPECT_EQ(existing(textures_.get("it")).getWidth(), 1U);
}

TEST_F(EngineTablesTest, ResourcesAreSetByNamesOfValuesAndOfThings) {
    expectRuns("engine.rasterState('it').cullMode = 'NONE' "
               "engine.camera('it').fov = 90 engine.camera('it'):lookAt({0, 0, 5}) "
               "engine.compositor('it'):setActive('glow', false) "
               "engine.shader('it').program = 'it' "
               "engine.material('it').shader = engine.shader('it') "
               "local e = engine.node('door').entities[1] "
               "e.mesh = 'it' e.material = 'it' e.transparent = true");
    EXPECT_EQ(existing(rasterStates_.get("it")).getCullMode(), vlGraphics::CULL_MODE::NONE);
    EXPECT_NEAR(existing(cameras_.get("it")).getSettings().fieldOfView, 1.5708F, 1e-4);
    EXPECT_FALSE(existing(compositors_.get("it")).getNode(0)->getActive());
    const auto& info = existing(queue_->getEntity(0)).getRenderInfo();
    EXPECT_EQ(meshes_.resolve(info.mesh), meshes_.get("it"));
    EXPECT_EQ(shaders_.resolve(info.shader), shaders_.get("it"));
    EXPECT_TRUE(info.transparent);
    EXPECT_EQ(valueOf("engine.entity('door#1').material"), "material 'it'");
    EXPECT_THAT(failure("engine.material('it').shader = engine.mesh('it')"),
                HasSubstr("expected a shader"));
}

TEST_F(EngineTablesTest, ShowingANodeShowsAllThatHangsBelow) {
    const auto before = vlGraphics::ChangeCount::get();
    expectRuns("engine.node('house').visible = false");
    EXPECT_FALSE(existing(queue_->getEntity(0)).getRenderInfo().visible);
    EXPECT_GT(vlGraphics::ChangeCount::get(), before) << "viewports draw again";
    EXPECT_EQ(valueOf("engine.node('door').visible"), "false");
}

TEST_F(EngineTablesTest, WhatIsErasedIsMissedByNameAndNeverTouched) {
    expectRuns("house = engine.node('house') entity = engine.node('door').entities[1]");
    nodes_.erase("house");
    EXPECT_EQ(failure("return house.position"),
              "test:1: node 'house': it does not exist (any more)");
    EXPECT_THAT(failure("house.position = {0, 0, 0}"), HasSubstr("does not exist"));
    queue_->removeEntity(existing(queue_->getEntity(0)));
    EXPECT_THAT(failure("return entity.mesh"), HasSubstr("does not exist"));
    nodes_.createOrRetrieve("house");
    EXPECT_EQ(valueOf("house.position"), "{0, 0, 0}");
    existing(nodes_.get("door")).setHidden(true);
    EXPECT_EQ(valueOf("#engine.nodes()"), "1");
}

TEST_F(EngineTablesTest, TheDocumentationTellsEveryField) {
    std::ifstream file(VL_SOURCE_FOLDER "/docs/scripting.md");
    std::ostringstream text;
    text << file.rdbuf();
    EXPECT_TRUE(text.str().ends_with(describeEngineKinds()))
            << "docs/scripting.md is to end with:\n"
            << describeEngineKinds();
}

} // namespace
} // namespace vlKestrion
