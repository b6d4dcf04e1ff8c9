-- Views, tabs and menus, used as a person would. Needs no project.

local tabs = "VL_EDITOR_TABS"

local function same(got, wanted, what)
    local a, b = table.concat(got, ", "), table.concat(wanted, ", ")
    if a ~= b then error(what .. " are " .. a .. " instead of " .. b, 2) end
end

editor.sync()
same(ui.items("VL_EDITOR_TOOL_BAR"), {"File", "Edit", "View", "Scene"}, "menus")
assert(ui.enabled("VL_EDITOR_TOOL_BAR", "File", "Leave"))
same(ui.items(tabs), {"Scene", "+"}, "tabs at the start")

-- "+" makes a tab with one container, whose menu lists the views in their own order.
ui.select(tabs, "+")
same(ui.items(tabs), {"Scene", "New Tab", "+"}, "tabs")
assert(ui.selected(tabs) == "New Tab")
local container = "CONTAINER_2"
ui.wait(function() return ui.exists(container) and ui.visible(container) end)
same(ui.items(container .. "_LBAR", "View"), {
    "Engine View", "Log View", "Camera View", "Compositor View", "Graph Interaction View",
    "Render Queues View", "Buffers View", "Meshes View", "Samplers View", "Textures View",
    "Materials View", "Shader Programs View", "Shaders View", "Blend States View",
    "Depth Stencil States View", "Raster States View", "Scripts View"}, "views")
ui.menu(container .. "_LBAR", "View", "Graph Interaction View")
editor.sync()
assert(ui.text(container .. "_TITLE") ~= "", "the view has no title")

-- Views of several types come up beside it.
for _, type in ipairs {6, 7, 13} do
    local base = assert(editor.open(type))
    editor.sync()
    assert(ui.exists(base) and ui.visible(base), base .. " is not shown")
end
assert(not pcall(editor.open, 99))

-- Its menu renames a tab in its own place, and closes it; an empty label changes nothing.
local edit = tabs .. "_RENAME"
local function tabMenu(tab, item)
    ui.click(tabs, "right", tab)
    ui.menu("EDITOR_TAB_MENU", item)
end
tabMenu("New Tab", "Rename")
ui.type(edit, "Mine & yours")
ui.key(edit, 13)
same(ui.items(tabs), {"Scene", "Mine & yours", "+"}, "tabs")
tabMenu("Mine & yours", "Rename")
ui.type(edit, "")
ui.key(edit, 13)
assert(not ui.exists(edit) or not ui.visible(edit))
same(ui.items(tabs), {"Scene", "Mine & yours", "+"}, "tabs")
ui.screenshot("views.png")
tabMenu("Mine & yours", "Close")
same(ui.items(tabs), {"Scene", "+"}, "tabs")
editor.sync()
assert(not ui.exists(container))

-- What a person cannot use refuses and says why.
local function refuses(why, use, ...)
    local done, message = pcall(use, ...)
    assert(not done, "it should have refused: " .. why)
    assert(tostring(message):find(why, 1, true), message)
end
refuses("'NOBODY' does not exist", ui.click, "NOBODY")
refuses("'None'", ui.menu, "VL_EDITOR_TOOL_BAR", "File", "None")
refuses("no confirmation is open", ui.confirm, true)
refuses("expected a text", ui.click, 5)
refuses("no message is named 'NoMessage'", editor.post, "NoMessage", {})
refuses("text: expected a text", editor.post, "LogMessage", {text = 5})
refuses("ui.wait: not so after 20 ms", ui.wait, function() return false end, 20)

editor.post("LogMessage", {text = "said by the script"})
editor.sync()
local log = editor.log()
assert(log[#log] == "[Editor] said by the script", log[#log])
