-- Containers split, sized and closed, tabs moved and closed, and the log with its command line: all as a
-- person does it. Needs no project.

local tabs, titleMenu = "VL_EDITOR_TABS", "EDITOR_CONTAINER_TITLE_MENU"
local bar = "VL_EDITOR_TOOL_BAR"

local function same(got, wanted, what)
    local a, b = table.concat(got, ", "), table.concat(wanted, ", ")
    if a ~= b then error(what .. " are " .. a .. " instead of " .. b, 2) end
end
local function close(got, wanted, what)
    if math.abs(got - wanted) > 2 then error(what .. " is " .. got .. " instead of " .. wanted, 2) end
end
local function title(container, item)
    ui.click(container .. "_TITLE", "right")
    ui.menu(titleMenu, item)
    editor.sync()
end
-- Where it stands in the main window, and how large it is.
local function place(container) return ui.rect(container) end

editor.sync()
ui.resize("VL_EDITOR_MAIN_WIN", 1400, 900)
editor.sync()

-- The first view: the scene 300 wide, the viewport beside it.
for number = 0, 1 do
    for _, part in ipairs {"", "_LBAR", "_TITLE", "_RBAR"} do
        assert(ui.visible("CONTAINER_" .. number .. part), number .. part)
    end
end
local scene, engine = place("CONTAINER_0"), place("CONTAINER_1")
close(scene.width, 300 - 8, "the scene's width")

ui.click("CONTAINER_1_TITLE", "right")
same(ui.items(titleMenu), {"Set fixed pixel width", "Set fixed pixel height", "Add container above",
    "Add container left", "Add container right", "Add container under", "Free fixed size",
    "Close container"}, "items")
assert(not ui.enabled(titleMenu, "Free fixed size"))
ui.menu(titleMenu, "Add container under")
editor.sync()
assert(ui.exists("CONTAINER_2"))
-- The clicked one gives half of its room, the others keep theirs.
local upper, lower = place("CONTAINER_1"), place("CONTAINER_2")
close(upper.height, lower.height, "the lower container's height")
close(place("CONTAINER_0").width, scene.width, "the scene's width")
close(upper.width, engine.width, "the viewport's width")

-- All three views in the new container, each in place of the other.
local views = {{"Engine View", "Engine"}, {"Log View", "Log / Commands"},
               {"Graph Interaction View", "Scene"}}
for _, view in ipairs(views) do
    ui.menu("CONTAINER_2_LBAR", "View", view[1])
    editor.sync()
    assert(ui.text("CONTAINER_2_TITLE") == view[2], ui.text("CONTAINER_2_TITLE"))
end
-- One that is not there yet says so and leaves the container as it was.
ui.menu("CONTAINER_2_LBAR", "View", "Materials View")
editor.sync()
assert(ui.text("CONTAINER_2_TITLE") == "Scene")
local kept = editor.log()
assert(kept[#kept] == "[Editor] Materials View is not available yet.", kept[#kept])

-- In the other three directions.
for index, side in ipairs {"above", "left", "right"} do
    title("CONTAINER_2", "Add container " .. side)
    local made = "CONTAINER_" .. 2 + index
    assert(ui.exists(made) and ui.visible(made), made)
    local a, b = place(made), place("CONTAINER_2")
    assert(a.width > 20 and a.height > 20 and b.width > 20 and b.height > 20, side)
end

-- A fixed height; what is no number is 0 and cannot be meant for a view that is to be seen.
title("CONTAINER_1", "Set fixed pixel height")
ui.type("EDITOR_RESIZE_CONTAINER_EDIT", "210")
ui.key("EDITOR_RESIZE_CONTAINER_EDIT", 13)
editor.sync()
close(place("CONTAINER_1").height, 210 - 8, "the fixed height")
title("CONTAINER_1", "Free fixed size")
assert(place("CONTAINER_1").height > 250, "the height is still fixed")

-- Closing gives the room back.
for number = 5, 2, -1 do title("CONTAINER_" .. number, "Close container") end
assert(not ui.exists("CONTAINER_2"))
close(place("CONTAINER_1").width, engine.width, "the viewport's width")
close(place("CONTAINER_1").height, engine.height, "the viewport's height")

-- Tabs: by the keyboard, through the context menu of the bar, moved, and closed in every way.
ui.key("VL_EDITOR_MAIN_WIN", 84, "ctrl")
ui.select(tabs, "+")
same(ui.items(tabs), {"Scene", "New Tab", "New Tab", "+"}, "tabs")
ui.click(tabs, "middle", "New Tab")
same(ui.items(tabs), {"Scene", "New Tab", "+"}, "tabs")
ui.key("VL_EDITOR_MAIN_WIN", 87, "ctrl")
same(ui.items(tabs), {"Scene", "+"}, "tabs")
-- The counter goes on.
ui.select(tabs, "+")
assert(ui.exists("CONTAINER_8") and not ui.exists("CONTAINER_9"))

-- The log: kept lines come with a new window, the command line runs, and two quick commands both do.
local first = assert(editor.open(7))
editor.sync()
for _, part in ipairs {"_LOG", "_EDIT", "_LAUNCH"} do assert(ui.visible(first .. part), part) end
same({ui.items(first .. "_LOG")[1]}, {editor.log()[1]}, "lines")
ui.type(first .. "_EDIT", "answer = 20")
ui.key(first .. "_EDIT", 13)
ui.type(first .. "_EDIT", "print(answer + 1)")
ui.click(first .. "_LAUNCH")
editor.sync()
local lines = editor.log()
assert(lines[#lines] == "[GraphicsThread] 21", lines[#lines])
assert(ui.text(first .. "_EDIT") == "")
ui.key(first .. "_EDIT", 38)
assert(ui.text(first .. "_EDIT") == "print(answer + 1)")
ui.key(first .. "_EDIT", 38)
ui.key(first .. "_EDIT", 38)
assert(ui.text(first .. "_EDIT") == "answer = 20")
ui.key(first .. "_EDIT", 40)
assert(ui.text(first .. "_EDIT") == "print(answer + 1)")
ui.key(first .. "_EDIT", 27)
assert(ui.text(first .. "_EDIT") == "")
ui.key(first .. "_EDIT", 13)
ui.type(first .. "_EDIT", "if")
ui.key(first .. "_EDIT", 13)
editor.sync()
lines = editor.log()
assert(lines[#lines]:find("[CommandLineInterpreter]", 1, true), lines[#lines])
assert(table.concat(lines, "\n"):find("[CommandLineInterpreter] Syntax error :", 1, true))

-- A second window shows what the first does; more than a hundred lines are not kept.
local second = assert(editor.open(7))
for i = 1, 150 do editor.post("LogMessage", {text = "line " .. i}) end
editor.sync()
assert(#editor.log() == 100 and editor.log()[100] == "[Editor] line 150")
for _, base in ipairs {first, second} do
    local shown = ui.items(base .. "_LOG")
    assert(shown[#shown] == "[Editor] line 150", shown[#shown])
end
ui.type(second .. "_FILTER", "line 14")
editor.sync()
ui.screenshot("containers.png")

-- Back to what there was at the start.
ui.menu(bar, "View", "Reset Layout")
editor.sync()
same(ui.items(tabs), {"Scene", "+"}, "tabs")
assert(not ui.exists(first) and not ui.exists(second))
