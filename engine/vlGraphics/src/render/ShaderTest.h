#pragma once
#include "render/EngineTest.h"

#include <vlGraphics/Buffer.h>
#include <vlGraphics/ComputePass.h>

#include <cstring>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vlGraphics {

/** Programs of any stages, whose pixels are numbers that tests read: the picture is a row of texels
 *  of four floats, cleared to -1. */
class ShaderTest : public EngineTest {
protected:
    static constexpr std::uint32_t texels = 32;
    using Numbers = std::vector<std::array<float, 4>>;
    using Stages = std::initializer_list<std::pair<SHADER_TYPE, std::string>>;

    void SetUp() override {
        EngineTest::SetUp();
        if (HasFatalFailure()) return;
        context_ = &makeContext(surface_);
        node_ = makeCompositor(*context_).addNode();
        target_ = &makeTarget("numbers", FORMAT::R32G32B32A32_FLOAT, RENDER_FLAG::COLOR_TARGET);
        operations_ = node_->addOperations();
        operations_->addColorTarget({handleOf(*target_), 0});
        operations_->addClearTargetsPass(TargetOperations::atEnd)->setClearColor({-1, -1, -1, -1});
    }

    static Texture& makeTarget(std::string_view name, FORMAT format, RENDER_FLAG flag) {
        return EngineTest::makeTarget(name, format, flag, texels, 1);
    }
    static Handle<Buffer>
    makeBuffer(std::string_view name, std::uint32_t elementByteSize, std::uint32_t elementCount) {
        Buffer& buffer = *BufferManager::getInstance()->createOrRetrieve(name);
        buffer.setElementByteSize(elementByteSize);
        buffer.setElementCount(elementCount);
        EXPECT_TRUE(buffer.load().has_value());
        return BufferManager::getInstance()->handleOf(name);
    }

    /// Without instance data.
    static Shader& makeProgram(Stages stages, PROGRAM_TYPE type = PROGRAM_TYPE::PIPELINE) {
        const std::string name = newName();
        Program& program = *ProgramManager::getInstance()->createOrRetrieve(name);
        ProgramSourcesHolder sources;
        for (const auto& [stage, text] : stages)
            sources.setMemory(stage, text);
        program.setType(type);
        program.setFromMemory(sources);
        EXPECT_TRUE(program.load().has_value());
        ProgramManager::getInstance()->waitForAll();
        const ProgramCompilationResult& result = program.getLastCompilationResult();
        EXPECT_TRUE(result.isSuccess()) << result.getErrorMessage();
        Shader& shader = *ShaderManager::getInstance()->createOrRetrieve(name);
        shader.setProgram(&program);
        return shader;
    }
    static Shader& makeCompute(const std::string& source) {
        return makeProgram({{SHADER_TYPE::COMPUTE, source}}, PROGRAM_TYPE::COMPUTE);
    }
    /// Its pixel stage writes the expression, of `i`, the texel's number.
    static Shader& makeReader(const std::string& declarations, const std::string& expression) {
        return makeProgram({{SHADER_TYPE::VERTEX, std::string(place)},
                            {SHADER_TYPE::PIXEL,
                             declarations +
                                     "\nfloat4 main(float4 at : SV_POSITION) : SV_TARGET"
                                     "{ int i = int(at.x); return " +
                                     expression + "; }"}});
    }

    /// Everything is drawn over.
    static const Mesh& fullMesh() {
        return makeMesh("full", {{-1, 3, 0.5F}, {3, -1, 0.5F}, {-1, -1, 0.5F}});
    }
    using EngineTest::addDraw;
    RenderScenePass& addDraw(const Shader& shader) {
        return addDraw(*operations_, fullMesh(), shader);
    }
    static ComputePass& addDispatch(TargetOperations& operations, const Shader& shader) {
        ComputePass& pass = *operations.addComputePass(TargetOperations::atEnd);
        pass.setShader(handleOf(shader));
        return pass;
    }
    ComputePass& addDispatch(const Shader& shader) { return addDispatch(*operations_, shader); }

    Numbers drawNumbers() const {
        drawFrame(*context_);
        const auto picture = target_->convertToImage();
        EXPECT_TRUE(picture.has_value()) << picture.error().message;
        Numbers numbers(texels);
        if (picture)
            std::memcpy(numbers.data(), picture->view().row(0), sizeof numbers[0] * texels);
        return numbers;
    }
    static const Renderer::Counts& counts() {
        return System::getInstance()->getRenderer().getCounts();
    }

    TestSurface surface_{16, 8};
    RenderContext* context_ = nullptr;
    CompositorNode* node_ = nullptr;
    TargetOperations* operations_ = nullptr;
    Texture* target_ = nullptr;
};

} // namespace vlGraphics
