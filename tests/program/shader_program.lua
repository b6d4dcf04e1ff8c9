-- The shader programs of a project, written, compiled, opened, followed and saved by widget.

local base = "EDITOR_SHADER_PROG_0"
local source, macros = base .. "_SOURCES_EDIT", base .. "_MACROS_EDIT"
local tabs, problems = base .. "_STAGES_TABS", base .. "_PROBLEMS_LIST"
local stages = {"Vertex", "Hull", "Domain", "Geometry", "Pixel", "Compute", "Raytracing"}

local function same(got, wanted, what)
    if got ~= wanted then
        error(("%s is '%s' instead of '%s'"):format(what, tostring(got), tostring(wanted)), 2)
    end
end

local function press(suffix)
    ui.click(base .. suffix)
    editor.sync()
end

local function record(name) return editor.record("ShaderProgram", name) end

-- What the engine has, through the declaration that it saves.
local function inStep(name)
    local known = record(name)
    editor.post("SaveShaderProgramDeclMessage", {name = name, path = "in_step.vlpr"})
    editor.sync()
    editor.post("LoadShaderProgramDeclMessage", {path = "in_step.vlpr"})
    editor.sync()
    local held = record(name)
    for i = 1, #stages do same(held.sources[i], known.sources[i], stages[i] .. " source") end
    same(held.type, known.type, "the type")
end

local function create(name)
    ui.click(base .. "_ADD")
    ui.type("EDITOR_VALIDATION_NAME_EDIT_SHADER_PROGRAM_CREATION", name)
    ui.key("EDITOR_VALIDATION_NAME_EDIT_SHADER_PROGRAM_CREATION", 13)
    editor.sync()
    same(ui.selected(base .. "_LIST"), name, "what is selected")
end

local function stage(label)
    ui.select(tabs, label)
    editor.sync()
end

local function logged(wanted)
    for _, line in ipairs(editor.log()) do
        if line:find(wanted, 1, true) then return true end
    end
    return false
end

local function pictures(name)
    for _, size in ipairs {{1280, 720}, {1920, 1080}} do
        ui.resize("VL_EDITOR_MAIN_WIN", size[1], size[2])
        editor.sync()
        ui.screenshot(("%s_%d.png"):format(name, size[2]))
    end
    ui.resize("VL_EDITOR_MAIN_WIN", 1280, 720)
end

editor.sync()
ui.resize("VL_EDITOR_MAIN_WIN", 1280, 720)
ui.select("VL_EDITOR_TABS", "+")
ui.select("VL_EDITOR_TABS", "New Tab")
ui.wait(function() return ui.exists("CONTAINER_2_LBAR") end)
ui.menu("CONTAINER_2_LBAR", "View", "Shader Programs View")
editor.sync()
same(table.concat(ui.items(tabs), " "), table.concat(stages, " "), "the tabs")
assert(#ui.items(base .. "_LIST") > 0, "the project's programs are not listed")
assert(not pcall(ui.type, source, "x"), "a source is typed for no program")

-- A new one is a pipeline that compiles.
create("fresh")
same(record("fresh").type, 1, "the type")
same(#record("fresh").sources[1], 373, "the vertex source's length")
same(ui.text(source), record("fresh").sources[1], "the source shown")
same(ui.text(base .. "_LOG_EDIT"), "Compilation went fine.", "the report")
assert(ui.checked(base .. "_PIPELINE_CHECK") and not ui.enabled(base .. "_PIPELINE_CHECK"))
same(record("fresh").resources[1].name, "PassBuffer", "what it uses")

-- What is typed for a stage goes to that stage, is compiled of itself, and its problem is found.
stage("Pixel")
local good = "float4 main() : SV_TARGET\n{\n    return TINT;\n}\n"
ui.type(source, good)
stage("Vertex")
same(record("fresh").sources[5], good, "the pixel source")
same(ui.text(source), record("fresh").sources[1], "the source shown")
assert(record("fresh").failed and record("fresh").usable)
assert(ui.text(base .. "_LOG_EDIT"):find("^Shader compilation error at stage PIXEL : \n3: "))
assert(not logged("TINT"), "the log repeats the window")
same(#ui.items(problems), 1, "how many problems there are")
ui.click(problems, "left", ui.items(problems)[1])
editor.sync()
same(ui.text(source), good, "the source that the problem is in")
pictures("shader_program")
ui.menu("VL_EDITOR_TOOL_BAR", "View", "Switch To Light Theme")
pictures("shader_program_light")
ui.menu("VL_EDITOR_TOOL_BAR", "View", "Switch To Dark Theme")

ui.type(macros, "TINT float4(1, 0.5, 0, 1)\nEMPTY")
ui.wait(function() return not record("fresh").failed end)
editor.sync()
same(record("fresh").macros[5][1].value, "float4(1, 0.5, 0, 1)", "the macro's value")
same(record("fresh").macros[5][2].value, "", "the value of a macro without one")
same(ui.text(base .. "_LOG_EDIT"), "Compilation went fine.", "the report")
press("_COMPILE")
same(ui.text(base .. "_LOG_EDIT"), "Compilation went fine.", "the report")
inStep("fresh")

-- Undone and made again, a burst of typing at a time.
ui.menu("VL_EDITOR_TOOL_BAR", "Edit", "Undo")
editor.sync()
ui.menu("VL_EDITOR_TOOL_BAR", "Edit", "Undo")
editor.sync()
same(#record("fresh").macros[5], 0, "how many macros there are")

-- Another type is asked for, and brings its own sources.
ui.click(base .. "_COMPUTE_CHECK")
ui.confirm(false)
editor.sync()
same(record("fresh").type, 1, "the type")
for _, type in ipairs {{"_GEOMETRY_CHECK", 2, 4, 404}, {"_COMPUTE_CHECK", 3, 6, 394},
                       {"_RAYTRACING_CHECK", 4, 7, 893}, {"_PIPELINE_CHECK", 1, 5, 199}} do
    ui.click(base .. type[1])
    ui.confirm(true)
    editor.sync()
    local now = record("fresh")
    same(now.type, type[2], "the type")
    same(#now.sources[type[3]], type[4], "the length of the " .. stages[type[3]] .. " source")
    same(now.failed, type[2] == 4, type[1] .. " fails")
    assert(logged("Shader program type changed : fresh"))
    inStep("fresh")
end

-- Saved beside its sources, and read from a file of another one. Each is called as its program.
ui.click(base .. "_SAVE_BUTTON")
ui.wait(function() return pcall(ui.choose, "fresh.vlpr") end)
editor.sync()
assert(logged("[Save] Saving Shader program file : ") and logged("[Editor] Done."))
create("other")
press("_SAVE_BUTTON")
assert(logged("/other.vlpr"))
ui.click(base .. "_LIST", "left", "fresh")
editor.sync()
stage("Geometry")
ui.click(base .. "_SOURCES_FETCH")
ui.wait(function() return pcall(ui.choose, "fresh_src/pixelShader.hlsl") end)
editor.sync()
same(record("fresh").sources[4], record("fresh").sources[5], "the opened source")
same(ui.text(base .. "_FILE_LABEL"), "fresh_src/pixelShader.hlsl", "the file")
editor.post("LoadShaderProgramSourcesMessage", {name = "fresh", stage = 0, path = "none.hlsl"})
editor.sync()
assert(logged("[Editor] Error while loading hlsl file : none.hlsl"))

-- A script may bring all sources at once.
local all = record("fresh")
all.sources[4] = ""
all.sources[5] = "float4 main() : SV_TARGET { return 1; }"
editor.post("CompileShaderProgramSourcesMessage",
            {name = "fresh", sources = all.sources, macros = all.macros})
editor.sync()
same(record("fresh").sources[5], all.sources[5], "the pixel source")
assert(not record("fresh").failed, record("fresh").failure)

-- Broken, it stands out in the list wherever a person is; erased, nothing of it is left.
editor.post("ShaderProgramSourceMessage", {name = "fresh", stage = 4, value = "nonsense"})
editor.sync()
assert(record("fresh").failed)
ui.click(base .. "_DEL")
ui.confirm(true)
editor.sync()
same(record("fresh"), nil, "the erased program")
same(ui.text(source) .. ui.text(macros) .. ui.text(base .. "_LOG_EDIT"), "", "what is shown")
