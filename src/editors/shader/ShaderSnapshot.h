#pragma once
#include "editors/shader/ShaderUiData.h"

#include <vlGraphics/Shader.h>

namespace vlEditor::ShaderSnapshot {

// What the record says of each part of the engine's shader. Graphics thread only.

std::string programName(const vlGraphics::Shader& shader);
std::uint32_t programType(const vlGraphics::Shader& shader);
std::vector<ShaderResourceBindingUiData> textures(const vlGraphics::Shader& shader);
std::vector<ShaderResourceBindingUiData> samplers(const vlGraphics::Shader& shader);
std::vector<ShaderResourceBindingUiData> uavs(const vlGraphics::Shader& shader);
std::vector<ShaderConstantBufferUiData> constantBuffers(const vlGraphics::Shader& shader);
std::vector<std::uint32_t> instanceSlots(const vlGraphics::Shader& shader);
/// The program's reflection is that of a compilation.
bool isReflected(const vlGraphics::Shader& shader);
std::vector<ShaderWantedUiData> wanted(const vlGraphics::Shader& shader);

} // namespace vlEditor::ShaderSnapshot
