-- The viewport of a project that is open: its picture, its widgets, its messages.

local view = "ENGINE_WINDOW_0"
local surface = view .. "_ENGINE"

editor.sync()
local size = ui.rect(surface)
assert(size.width > 200 and size.height > 200, "the viewport is tiny")

local function colors()
    local found, count = {}, 0
    for row = 1, 5 do
        for column = 1, 7 do
            local r, g, b, a = editor.pixel(view, size.width * column // 8, size.height * row // 6)
            assert(r >= 0 and r <= 255 and a == 255)
            local key = (r >> 3) << 16 | (g >> 3) << 8 | b >> 3
            if not found[key] then found[key], count = true, count + 1 end
        end
    end
    return count
end

local drawn = colors()
assert(drawn > 15, "the scene shows " .. drawn .. " colours only")
ui.screenshot("viewport.png")
assert(not pcall(editor.pixel, view, size.width * 4, 0))
assert(not pcall(editor.pixel, "NOBODY", 0, 0))

-- Drawn all the time while its box is ticked, otherwise not at all.
assert(not ui.checked(view .. "_UPDATE"))
assert(not pcall(editor.frames, 2, 300))
ui.check(view .. "_UPDATE", true)
editor.frames(5)
editor.sync()
ui.check(view .. "_UPDATE", false)
editor.sync()
assert(not pcall(editor.frames, 2, 300))

-- Seen through another compositor it looks different, and the same again afterwards.
local combo = view .. "_COMPOSITOR"
local before = ui.selected(combo)
assert(#ui.items(combo) > 1)
ui.select(combo, "EDITOR_BASIC_COMPOSITOR")
editor.sync()
assert(ui.selected(combo) == "EDITOR_BASIC_COMPOSITOR")
ui.select(combo, before)
editor.sync()
assert(colors() > 15)

-- The window's size is the picture's.
ui.resize("VL_EDITOR_MAIN_WIN", 900, 640)
editor.sync()
size = ui.rect(surface)
editor.pixel(view, size.width - 1, size.height - 1)
assert(not pcall(editor.pixel, view, size.width, 0))

-- A picture of the view goes into the file that the dialog is told.
ui.click(view .. "_SCREEN")
editor.sync()
ui.wait(function() return pcall(ui.choose, "shot") end)

-- The engine runs scripts of its own on its own thread.
assert(editor.script("return 1 + 2") == 3)
assert(not pcall(editor.script, "error('no')"))
assert(not pcall(editor.script, "local ="))

-- Nobody has anything to complain about.
for _, line in ipairs(editor.log()) do
    assert(not line:find("VUID", 1, true) and not line:find("Validation", 1, true), line)
end
