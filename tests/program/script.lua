-- The scripts of a project, written, compiled, run and made the rendering script by widget.

local tabs = "VL_EDITOR_TABS"
local base = "EDITOR_SCRIPT_0"
local source, status = base .. "_SOURCE_EDIT", base .. "_STATUS_LABEL"
local label, running = "RENDERING_SCRIPT_LABEL", base .. "_RENDERING_LABEL"

local function same(got, wanted, what)
    if got ~= wanted then
        error(("%s is '%s' instead of '%s'"):format(what, tostring(got), tostring(wanted)), 2)
    end
end

local function press(suffix)
    ui.click(base .. suffix)
    editor.sync()
end

local function create(name)
    ui.click(base .. "_ADD")
    ui.type("EDITOR_VALIDATION_NAME_EDIT_SCRIPT_CREATION", name)
    ui.key("EDITOR_VALIDATION_NAME_EDIT_SCRIPT_CREATION", 13)
    editor.sync()
    same(ui.selected(base .. "_LIST"), name, "what is selected")
end

local function sourceOf(name)
    local record = editor.record("Script", name)
    return record and record.source
end

local function lastLine()
    local lines = editor.log()
    return lines[#lines]
end

local function number(text)
    return editor.script("return " .. text)
end

local function turns()
    local before = number("turns or 0")
    ui.wait(function() return number("turns or 0") > before + 2 end)
end

local function rests()
    editor.sync()
    local before = number("turns or 0")
    editor.sync()
    return number("turns or 0") == before
end

editor.sync()
ui.resize("VL_EDITOR_MAIN_WIN", 1280, 720)
ui.select(tabs, "+")
ui.select(tabs, "New Tab")
ui.wait(function() return ui.exists("CONTAINER_2_LBAR") end)
ui.menu("CONTAINER_2_LBAR", "View", "Scripts View")
editor.sync()
assert(not pcall(ui.type, source, "x"), "a source is typed for no script")
assert(not ui.enabled(base .. "_RENDERING_CLEAR"))

-- What is typed comes to the record of itself, and is no reason to compile it.
create("turn")
same(ui.text(status), "Compiled.", "the status of an empty script")
ui.type(source, "turns =\n  (turns or 0) ++ 1\n")
ui.wait(function() return sourceOf("turn") == "turns =\n  (turns or 0) ++ 1\n" end)
editor.sync()
same(ui.text(status), "Not compiled as it is now.", "the status")
same(editor.record("Script", "turn").error, "", "the error")

-- An error stands at its line, in the window and in the log.
press("_COMPILE_BUTTON")
assert(ui.text(status):find("^Line 2: "), ui.text(status))
assert(editor.record("Script", "turn").error:find("^turn:2: "))
assert(lastLine():find("[Editor] turn:2: ", 1, true), lastLine())
assert(not editor.record("Script", "turn").compiled)
ui.screenshot("script_error.png")

-- Mended and run in one breath: nothing typed is left behind.
ui.type(source, "turns = (turns or 0) + 1\nreturn turns, 'a', engine.node('knot')")
press("_RUN_BUTTON")
same(ui.text(status), "It returned 1, a, node 'knot'.", "the status")
same(lastLine(), "[Editor] Script 'turn' returned 1, a, node 'knot'.", "the log")
same(number("turns"), 1, "what the script did")
ui.type(source, "\nerror('no')")
press("_RUN_BUTTON")
same(ui.text(status), "Line 2: no", "the status")
same(lastLine(), "[Editor] turn:2: no", "the log")

-- As the rendering script it acts in each turn.
local turning = [[
turns = (turns or 0) + 1
engine.node("knot").position = {0, turns % 2, 0}]]
ui.type(source, turning)
press("_RENDERING_BUTTON")
same(ui.text(running), "turn", "the rendering script")
same(ui.text(label), "turn", "the window's rendering script")
turns()
assert(editor.record("Script", "turn").compiled)

-- A text that does not compile leaves the last good one running; compiled, it takes its place.
ui.type(source, turning .. "\n)")
press("_COMPILE_BUTTON")
assert(ui.text(status):find("^Line 3: "), ui.text(status))
same(ui.text(running), "turn", "the rendering script")
turns()
ui.type(source, turning .. "\nseen = 'new'")
turns()
same(number("seen"), nil, "what was not compiled yet")
press("_COMPILE_BUTTON")
ui.wait(function() return number("seen") == "new" end)

-- One that does not compile does not become it.
create("other")
ui.type(source, "if")
press("_RENDERING_BUTTON")
assert(ui.text(status):find("^Line 1: "), ui.text(status))
same(ui.text(running), "turn", "the rendering script")

-- Renamed while it runs and while something is typed.
ui.select(base .. "_LIST", "turn")
same(ui.text(source), turning .. "\nseen = 'new'", "the source")
ui.type(source, turning)
ui.type(base .. "_NAME_EDIT", "spin")
press("_NAME_OK")
same(ui.text(running), "spin", "the rendering script")
same(ui.text(label), "spin", "the window's rendering script")
same(sourceOf("spin"), turning, "the source")
same(sourceOf("turn"), nil, "the old name's source")
turns()

-- Chosen in the window of the rendering logic: "-" is none.
local function choose(name)
    ui.menu("VL_EDITOR_TOOL_BAR", "Scene", "RenderingLogic")
    ui.click("RENDERING_SCRIPT_CHANGE")
    ui.select("SCRIPT_POP_UP_LISTLISTBOX", name)
    ui.click("SCRIPT_POP_UP_LISTOK_BUTTON")
    editor.sync()
    ui.close("EDITOR_RENDERING_PROPERTY_WINDOW")
end
choose("-")
same(ui.text(label), "-", "the rendering script")
same(ui.text(running), "-", "the rendering script")
assert(rests())
choose("spin")
same(ui.text(label), "spin", "the rendering script")
turns()
press("_RENDERING_CLEAR")
same(ui.text(label), "-", "the rendering script")
assert(rests())

-- A burst of typing is one step; the menu and the keys take it back, also what is not posted yet.
ui.select(base .. "_LIST", "other")
ui.type(source, "return 1")
ui.wait(function() return sourceOf("other") == "return 1" end)
ui.type(source, "return 2")
ui.menu("VL_EDITOR_TOOL_BAR", "Edit", "Undo")
editor.sync()
same(ui.text(source), "return 1", "the source")
same(sourceOf("other"), "return 1", "the record's source")
ui.menu("VL_EDITOR_TOOL_BAR", "Edit", "Redo")
editor.sync()
same(ui.text(source), "return 2", "the source")
ui.type(source, "return 3")
ui.key(source, 90, "ctrl")
editor.sync()
same(ui.text(source), "return 2", "the source")

-- Another resource that is selected gets nothing of what was typed, and the typed text is kept.
ui.type(source, "return 4")
ui.select(base .. "_LIST", "spin")
editor.sync()
same(ui.text(source), turning, "the source")
same(sourceOf("spin"), turning, "the record's source")
same(sourceOf("other"), "return 4", "what was typed")

-- Of several, the texts differ, and none is typed.
ui.key(base .. "_LIST", 65, "ctrl")
editor.sync()
same(ui.text(source), "", "the source")
same(ui.text(status), "", "the status")
assert(not pcall(ui.type, source, "x"), "a source is typed for two scripts")

-- Saved with the source beside it, as it is being typed, and loaded.
ui.select(base .. "_LIST", "other")
ui.type(source, "return 'saved'")
ui.click(base .. "_SAVE")
ui.wait(function() return pcall(ui.choose, "other.vlsc") end)
editor.sync()
ui.type(source, "return 'changed'")
editor.sync()
editor.post("LoadScriptDeclMessage", {path = "other.vlsc"})
editor.sync()
same(ui.text(source), "return 'saved'", "the source")
press("_RUN_BUTTON")
same(ui.text(status), "It returned saved.", "the status")

-- Erased, it runs no more; brought back, it is as it was, and nobody's rendering script.
ui.select(base .. "_LIST", "spin")
press("_RENDERING_BUTTON")
turns()
ui.click(base .. "_DEL")
ui.confirm(true)
editor.sync()
same(sourceOf("spin"), nil, "the erased source")
same(ui.text(label), "-", "the rendering script")
same(ui.text(running), "-", "the rendering script")
assert(rests())
ui.menu("VL_EDITOR_TOOL_BAR", "Edit", "Undo")
editor.sync()
same(sourceOf("spin"), turning, "the source")
assert(editor.record("Script", "spin").compiled)
same(ui.text(label), "-", "the rendering script")
ui.select(base .. "_LIST", "spin")
press("_RENDERING_BUTTON")
ui.screenshot("script.png")
ui.menu("VL_EDITOR_TOOL_BAR", "View", "Switch To Light Theme")
ui.screenshot("script_light.png")
