-- States acting on a viewport that is open: a project whose pass names states that do not exist yet.
-- Each is made and edited by its widgets, the picture follows, and undo brings the earlier one back.

local view = "ENGINE_WINDOW_0"

editor.sync()
ui.resize("VL_EDITOR_MAIN_WIN", 1280, 720)
editor.sync()
local size = ui.rect(view .. "_ENGINE")

local function picture()
    editor.sync()
    local pixels = {}
    for row = 0, 4 do
        for column = 0, 8 do
            local x, y = size.width * (column + 0.5) // 9, size.height * (row + 0.5) // 5
            local r, g, b = editor.pixel(view, math.tointeger(x), math.tointeger(y))
            pixels[#pixels + 1] = {r, g, b}
        end
    end
    return pixels
end
-- The water moves, a little.
local function isSame(a, b)
    for i = 1, 3 do
        if math.abs(a[i] - b[i]) > 12 then return false end
    end
    return true
end
local function changed(before, after)
    local count = 0
    for i = 1, #before do
        if not isSame(before[i], after[i]) then count = count + 1 end
    end
    return count / #before
end
local function undo()
    ui.menu("VL_EDITOR_TOOL_BAR", "Edit", ui.items("VL_EDITOR_TOOL_BAR", "Edit")[1])
end

-- The editor's window beside the viewport, so that both are seen.
local views = {
    Raster = "Raster States View", Depth = "Depth Stencil States View", Blend = "Blend States View",
    Sampler = "Samplers View",
}
local scene = ui.selected("VL_EDITOR_TABS")
ui.select("VL_EDITOR_TABS", "+")
ui.wait(function() return ui.exists("CONTAINER_2_LBAR") and ui.visible("CONTAINER_2_LBAR") end)
local editing = ui.selected("VL_EDITOR_TABS")
local opened = {}
local function open(kind)
    ui.select("VL_EDITOR_TABS", editing)
    ui.menu("CONTAINER_2_LBAR", "View", views[kind])
    editor.sync()
    opened[kind] = (opened[kind] or -1) + 1
    return "EDITOR_" .. kind:upper() .. "_" .. opened[kind]
end
local function create(kind, base, name)
    local box = "EDITOR_VALIDATION_NAME_EDIT_" .. kind:upper() .. "_CREATION"
    ui.click(base .. "_ADD")
    ui.type(box, name)
    ui.key(box, 13)
    editor.sync()
end
local function look()
    ui.select("VL_EDITOR_TABS", scene)
    return picture()
end

local untouched = look()
-- `atLeast` of the picture is otherwise after the act.
local function acts(what, atLeast, act)
    ui.select("VL_EDITOR_TABS", editing)
    act()
    editor.sync()
    local after = look()
    local part = changed(untouched, after)
    if part < atLeast then error(("%s changed %.2f of the picture"):format(what, part), 2) end
    undo()
    part = changed(untouched, look())
    if part > 0 then error(("undoing %s left %.2f changed"):format(what, part), 2) end
    return after
end

local base = open("Raster")
create("Raster", base, "surface")
acts("wire frames", 0.5, function() ui.select(base .. "_FILL_COMBO", "WIREFRAME") end)
acts("culling the fronts", 0.3, function() ui.select(base .. "_CULL_COMBO", "FRONT") end)

base = open("Depth")
create("Depth", base, "order")
local empty = acts("a depth test that nothing passes", 0.9, function()
    ui.select(base .. "_DEPTH_FUNCTION_COMBO", "NEVER")
end)
for _, pixel in ipairs(empty) do
    assert(isSame(pixel, empty[1]), "something was drawn")
end

base = open("Blend")
create("Blend", base, "mix")
local red = acts("a write mask", 0.9, function() ui.select(base .. "_W_MASK_EDIT_0", "RED") end)
for i, pixel in ipairs(red) do
    assert(isSame(pixel, {untouched[i][1], empty[i][2], empty[i][3]}), "not the red alone")
end

base = open("Sampler")
ui.select(base .. "_LIST", "gallery repeat")
acts("coarse levels of the textures", 0.05, function()
    ui.type(base .. "_LOD_LEVELS_MIN_EDIT", "9")
    ui.click(base .. "_LOD_LEVELS_OK")
end)

-- What a pass names is gone again with its state, and the default takes its place.
base = open("Raster")
ui.select(base .. "_LIST", "surface")
ui.select(base .. "_FILL_COMBO", "WIREFRAME")
editor.sync()
local wires = look()
ui.screenshot("states_act.png")
ui.select("VL_EDITOR_TABS", editing)
ui.key(base .. "_LIST", 46)
ui.confirm(true)
assert(changed(untouched, look()) == 0)
undo()
assert(changed(wires, look()) == 0)
