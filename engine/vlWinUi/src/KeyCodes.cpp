#include "KeyCodes.h"

#include <QGuiApplication>
#include <QKeyEvent>

#include <algorithm>

namespace vlWinUi {
namespace {

struct KeyCode {
    int qt;
    std::uint32_t virtualKey;
    std::uint32_t scanCode;
};

constexpr KeyCode CODES[] = {
        {Qt::Key_Backspace, 8, 0x0E}, {Qt::Key_Tab, 9, 0x0F},       {Qt::Key_Backtab, 9, 0x0F},
        {Qt::Key_Return, 13, 0x1C},   {Qt::Key_Enter, 13, 0x9C},    {Qt::Key_Shift, 16, 0x2A},
        {Qt::Key_Control, 17, 0x1D},  {Qt::Key_Alt, 18, 0x38},      {Qt::Key_AltGr, 18, 0xB8},
        {Qt::Key_Pause, 19, 0xC5},    {Qt::Key_CapsLock, 20, 0x3A}, {Qt::Key_Escape, 27, 0x01},
        {Qt::Key_Space, 32, 0x39},    {Qt::Key_PageUp, 33, 0xC9},   {Qt::Key_PageDown, 34, 0xD1},
        {Qt::Key_End, 35, 0xCF},      {Qt::Key_Home, 36, 0xC7},     {Qt::Key_Left, 37, 0xCB},
        {Qt::Key_Up, 38, 0xC8},       {Qt::Key_Right, 39, 0xCD},    {Qt::Key_Down, 40, 0xD0},
        {Qt::Key_Insert, 45, 0xD2},   {Qt::Key_Delete, 46, 0xD3},   {Qt::Key_Meta, 91, 0xDB},
        {Qt::Key_Menu, 93, 0xDD},     {Qt::Key_F1, 112, 0x3B},      {Qt::Key_F2, 113, 0x3C},
        {Qt::Key_F3, 114, 0x3D},      {Qt::Key_F4, 115, 0x3E},      {Qt::Key_F5, 116, 0x3F},
        {Qt::Key_F6, 117, 0x40},      {Qt::Key_F7, 118, 0x41},      {Qt::Key_F8, 119, 0x42},
        {Qt::Key_F9, 120, 0x43},      {Qt::Key_F10, 121, 0x44},     {Qt::Key_F11, 122, 0x57},
        {Qt::Key_F12, 123, 0x58},     {Qt::Key_0, '0', 0x0B},       {Qt::Key_1, '1', 0x02},
        {Qt::Key_2, '2', 0x03},       {Qt::Key_3, '3', 0x04},       {Qt::Key_4, '4', 0x05},
        {Qt::Key_5, '5', 0x06},       {Qt::Key_6, '6', 0x07},       {Qt::Key_7, '7', 0x08},
        {Qt::Key_8, '8', 0x09},       {Qt::Key_9, '9', 0x0A},       {Qt::Key_A, 'A', 0x1E},
        {Qt::Key_B, 'B', 0x30},       {Qt::Key_C, 'C', 0x2E},       {Qt::Key_D, 'D', 0x20},
        {Qt::Key_E, 'E', 0x12},       {Qt::Key_F, 'F', 0x21},       {Qt::Key_G, 'G', 0x22},
        {Qt::Key_H, 'H', 0x23},       {Qt::Key_I, 'I', 0x17},       {Qt::Key_J, 'J', 0x24},
        {Qt::Key_K, 'K', 0x25},       {Qt::Key_L, 'L', 0x26},       {Qt::Key_M, 'M', 0x32},
        {Qt::Key_N, 'N', 0x31},       {Qt::Key_O, 'O', 0x18},       {Qt::Key_P, 'P', 0x19},
        {Qt::Key_Q, 'Q', 0x10},       {Qt::Key_R, 'R', 0x13},       {Qt::Key_S, 'S', 0x1F},
        {Qt::Key_T, 'T', 0x14},       {Qt::Key_U, 'U', 0x16},       {Qt::Key_V, 'V', 0x2F},
        {Qt::Key_W, 'W', 0x11},       {Qt::Key_X, 'X', 0x2D},       {Qt::Key_Y, 'Y', 0x15},
        {Qt::Key_Z, 'Z', 0x2C},
};

/// Keys that PC scan codes call extended, by the numbers the display server has for them.
constexpr std::uint32_t EXTENDED[][2] = {
        {96, 0x9C},  {97, 0x9D},  {98, 0xB5},  {99, 0xB7},  {100, 0xB8}, {102, 0xC7}, {103, 0xC8},
        {104, 0xC9}, {105, 0xCB}, {106, 0xCD}, {107, 0xCF}, {108, 0xD0}, {109, 0xD1}, {110, 0xD2},
        {111, 0xD3}, {119, 0xC5}, {125, 0xDB}, {126, 0xDC}, {127, 0xDD},
};

/// The display server's codes are the kernel's plus 8, and those are PC scan codes up to F12.
std::uint32_t scanCodeOf(const QKeyEvent& event, const KeyCode* known) {
    const bool fromServer =
            event.nativeScanCode() > 8 && QGuiApplication::platformName() != "offscreen";
    if (!fromServer) return known == nullptr ? 0 : known->scanCode;
    const std::uint32_t code = event.nativeScanCode() - 8;
    if (code <= 88) return code;
    const auto* found =
            std::ranges::find_if(EXTENDED, [code](const auto& e) { return e[0] == code; });
    return found == std::end(EXTENDED) ? 0 : (*found)[1];
}

std::string typedBy(const QKeyEvent& event) {
    const QString text = event.text();
    return !text.isEmpty() && text.front().isPrint() ? text.toStdString() : std::string();
}

} // namespace

int qtKeyOf(std::uint32_t virtualKey) {
    const auto* found = std::ranges::find(CODES, virtualKey, &KeyCode::virtualKey);
    return found == std::end(CODES) ? 0 : found->qt;
}

KeyEvent keyOf(const QKeyEvent& event, bool pressed) {
    const auto* found = std::ranges::find(CODES, event.key(), &KeyCode::qt);
    const KeyCode* known = found == std::end(CODES) ? nullptr : found;
    return {
            .virtualKey = known == nullptr ? 0 : known->virtualKey,
            .scanCode = scanCodeOf(event, known),
            .pressed = pressed,
            .repeated = event.isAutoRepeat(),
            .shift = event.modifiers().testFlag(Qt::ShiftModifier),
            .control = event.modifiers().testFlag(Qt::ControlModifier),
            .alt = event.modifiers().testFlag(Qt::AltModifier),
            .text = typedBy(event),
    };
}

} // namespace vlWinUi
