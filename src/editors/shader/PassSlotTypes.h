#pragma once
#include "interfaces/kinds/Choices.h"

#include <vlGraphics/ShaderPassMemorySlot.h>

#include <string>
#include <vector>

namespace vlEditor::PassSlotTypes {

// The types of slots by their numbers, which records, messages and the engine share.

inline constexpr std::uint32_t vector = 1;
inline constexpr std::uint32_t matrix = 2;
inline constexpr std::uint32_t textureSize = 7;
inline constexpr std::uint32_t cameraDirection = 14;
inline constexpr std::uint32_t time = 15;

/// Those that a person may choose.
std::vector<Choice> choices();
/// "Vector4"; the list counts on without the gap that the numbers have at 12, so that from there on
/// it names another type than the choices do.
std::string_view labelInList(std::uint32_t code);

/// Looks through a camera.
bool isCamera(std::uint32_t code);
bool isTexture(std::uint32_t code);

// Graphics thread only.

/// The engine's number; that of a texture's size for the editor's own slots, too.
std::uint32_t codeOf(const vlGraphics::ShaderPassMemorySlot& slot);
/// As it is when it was just chosen. False, with nothing changed, for a number that is not offered.
bool become(std::uint32_t code, vlGraphics::ShaderPassMemorySlot& slot);
/// The same type through another camera; nothing for types that look through none.
void setCamera(vlGraphics::ShaderPassMemorySlot& slot,
               vlGraphics::Handle<vlGraphics::Camera> camera);
/// Nothing for types that are no texture's size.
void setTexture(vlGraphics::ShaderPassMemorySlot& slot,
                vlGraphics::Handle<vlGraphics::Texture> texture);

} // namespace vlEditor::PassSlotTypes
