-- The shaders of a project: every message by the widget that sends it, with what the record says
-- and what the engine has, which is read back through a file.
local base = "EDITOR_SHADER_0"
local tabs = base .. "_RES_TYPE_TABS"

local function same(got, wanted, what)
    if got ~= wanted then
        error(("%s is '%s' instead of '%s'"):format(what, tostring(got), tostring(wanted)), 2)
    end
end

local function press(suffix)
    ui.click(base .. suffix)
    editor.sync()
end

local function enter(texts, button)
    for suffix, text in pairs(texts) do ui.type(base .. suffix, text) end
    press(button)
end

-- A button that opens a pick list, and what is taken from that.
local function pick(suffix, list, entry)
    ui.click(base .. suffix)
    ui.wait(function() return ui.visible(list) end)
    ui.click(list .. "LISTBOX", "left", entry)
    ui.click(list .. "OK_BUTTON")
    editor.sync()
end

local function front(tab) ui.select(tabs, tab) end
local function record(name) return editor.record("Shader", name or "a") end
local function lastLine() local log = editor.log() return log[#log] end

local function create(name)
    ui.click(base .. "_ADD")
    ui.type("EDITOR_VALIDATION_NAME_EDIT_SHADER_CREATION", name)
    ui.key("EDITOR_VALIDATION_NAME_EDIT_SHADER_CREATION", 13)
    editor.sync()
    same(ui.selected(base .. "_LIST"), name, "what is selected")
end

editor.sync()
ui.resize("VL_EDITOR_MAIN_WIN", 1280, 720)
ui.select("VL_EDITOR_TABS", "+")
ui.wait(function() return ui.exists("CONTAINER_2_LBAR") and ui.visible("CONTAINER_2_LBAR") end)
editor.post("CreateBufferMessage", {name = "heap"})
editor.post("CreateCameraMessage", {name = "eye"})
editor.post("CreateSamplerMessage", {name = "soft"})
editor.sync()
ui.menu("CONTAINER_2_LBAR", "View", "Shaders View")
editor.sync()
for suffix, label in pairs {
    _LIST_GROUP = "Existing Resources", _NAME_GROUP = "Naming", _NAME_CHANGE = "Change",
    _SAVE_GROUP = "Saving", _SAVE = "Save", _TYPE_GROUP = "Type", _TYPE_SCENE_CHECK = "Scene",
    _TYPE_POST_CHECK = "Post-process", _TYPE_COMPUTE_CHECK = "Compute",
    _TYPE_RAYTRACING_CHECK = "Raytracing", _PROGRAM_GROUP = "Program", _PROGRAM_LABEL = "-",
    _TEX_LIST_GROUP = "Textures", _SAMPLERS_LIST_GROUP = "Samplers", _UAV_LIST_GROUP = "Uavs",
    _TEX_SRC_LABEL = "Texture : ", _SAMPLERS_SRC_LABEL = "Sampler : ",
    _UAV_SRC_LABEL = "Resource : ", _TEX_PREVIEW_GROUP = "Preview", _UAV_UPDATE = "Update",
    _CBUF_LIST_GROUP = "Constant Buffers", _CBUF_SLOT_GROUP = "Slots", _CBUF_SLOT_UP = "^",
    _CBUF_SLOT_DOWN = "v", _CBUF_SLOT_PARAM_GROUP = "Slot parameters",
    _SLOT_VECTOR_WIN = "Vector Parameters", _SLOT_MATRIX_WIN = "Matrix parameters",
    _SLOT_CAM_WIN = "Camera parameters", _SLOT_TEX_WIN = "Texture parameters",
    _SLOT_TIME_WIN = "Time parameters", _SLOT_TIME_LABEL = "Modulo (Ms) :",
    _INSTANCE_MAX_LABEL = "Maximum instances per buffer : "} do
    same(ui.text(base .. suffix), label, suffix)
end
same(table.concat(ui.items(tabs), ","),
     "Textures,Samplers,UAV,Constant Buffers,Instance Buffers", "the tabs")
same(table.concat(ui.items(base .. "_CBUF_SLOT_TYPE_COMBO"), " "),
     "VECTOR MATRIX CAM_CORNERS_WORLD CAM_CORNERS_VIEW TARGET_SIZE PROJECTION_PARAMS TEXTURE_SIZE " ..
     "VIEW_MATRIX VIEW_MATRIX_INV PROJ_MATRIX PROJ_MATRIX_INV CAM_POSITION CAM_DIRECTION_WORLD TIME",
     "the types")
create("a")
same(lastLine(), "[Editor] Shader created : a", "the line")

-- Textures, samplers and buffers to write are bound alike.
local families = {
    {"Textures", "_TEX", "textures", "TEXTURE_BUFFER_POP_UP_LIST", "B. heap", "heap",
     "VORLANE_DEFAULT_TEXTURE"},
    {"Samplers", "_SAMPLERS", "samplers", "SAMPLER_POP_UP_LIST", "soft", "soft",
     "VORLANE_DEFAULT_SAMPLER"},
    {"UAV", "_UAV", "uavs", "UAV_POP_UP_LIST", "heap", "heap", "heap"}}
for _, family in ipairs(families) do
    local tab, prefix, field, list, entry, name, default = table.unpack(family)
    local function all() return record()[field] end
    local function add()
        if tab == "UAV" then pick("_UAV_ADD", list, entry) else press(prefix .. "_ADD") end
    end
    front(tab)
    add()
    add()
    same(#all(), 2, field)
    same(all()[2].resource, default, field)
    same(all()[2].slot, 1, field)
    enter({[prefix .. "_SPACE_EDIT"] = "2", [prefix .. "_SLOT_EDIT"] = "7"}, prefix .. "_UPDATE")
    same(all()[2].space, 2, field)
    same(all()[2].slot, 7, field)
    enter({[prefix .. "_SLOT_EDIT"] = "seven"}, prefix .. "_UPDATE")
    same(lastLine(), "[Editor] Can't parse new settings (space and / or slot). Aborting.", "line")
    pick(prefix .. "_SRC_BUTTON", list, entry)
    same(all()[2].resource, name, field)
    same(ui.text(base .. prefix .. "_SRC_NAME_LABEL"), name, field)
    add()
    press(prefix .. "_DEL")
    same(#all(), 2, field)
    same(all()[1].slot, 0, field)
    same(all()[2].slot, 7, field)
end

-- Constant buffers and their slots.
front("Constant Buffers")
press("_CBUF_ADD")
press("_CBUF_ADD")
press("_CBUF_DEL")
same(#record().constantBuffers, 1, "the buffers")
enter({_CBUF_SPACE_EDIT = "1", _CBUF_SLOT_EDIT = "3"}, "_CBUF_UPDATE")
same(record().constantBuffers[1].slot, 3, "slot")
same(record().constantBuffers[1].space, 1, "space")
local function slots() return record().constantBuffers[1].slots end
local function slot() return slots()[1] end
press("_CBUF_SLOT_ADD")
press("_CBUF_SLOT_ADD")
same(ui.selected(base .. "_CBUF_SLOT_LIST"), "1. Vector4", "the selected slot")
press("_CBUF_SLOT_UP")
press("_CBUF_SLOT_DOWN")
press("_CBUF_SLOT_DEL")
same(#slots(), 1, "the slots")
enter({_SLOT_VECTOR_X = "1", _SLOT_VECTOR_Y = "-2.5", _SLOT_VECTOR_Z = "3", _SLOT_VECTOR_W = "4e1"},
      "_SLOT_VECTOR_OK")
same(slot().value[2], -2.5, "y")
same(slot().engine.value[4], 40.0, "w of the engine")
ui.select(base .. "_CBUF_SLOT_TYPE_COMBO", "MATRIX")
editor.sync()
same(slot().engine.value[6], 1.0, "the identity")
local matrix = {}
for i = 0, 15 do matrix[("_SLOT_MATRIX_%d%d"):format(i // 4, i % 4)] = tostring(i + 0.5) end
enter(matrix, "_SLOT_MATRIX_OK")
for i = 1, 16 do same(slot().engine.value[i], i - 0.5, "element " .. i) end
ui.screenshot("shader_matrix.png")
for _, each in ipairs {{"CAM_CORNERS_WORLD", 3}, {"PROJECTION_PARAMS", 6}, {"CAM_POSITION", 13}} do
    local type, code = table.unpack(each)
    ui.select(base .. "_CBUF_SLOT_TYPE_COMBO", type)
    editor.sync()
    same(slot().type, code, type)
    pick("_SLOT_CAM_SEARCH", "CAMERA_POP_UP_LIST", "eye")
    same(slot().engine.resourceName, "eye", type)
    pick("_SLOT_CAM_SEARCH", "CAMERA_POP_UP_LIST", "0. ENGINE_CONTEXT_CAM")
    same(slot().engine.resourceName, "", type)
    same(ui.text(base .. "_SLOT_CAM_NAME_LABEL"), "0. ENGINE_CONTEXT_CAM", type)
end
same(ui.items(base .. "_CBUF_SLOT_LIST")[1], "0. Camera direction", "the listed type")
ui.select(base .. "_CBUF_SLOT_TYPE_COMBO", "TEXTURE_SIZE")
editor.sync()
pick("_SLOT_TEX_SEARCH", "TEXTURE_POP_UP_LIST", "VORLANE_DEFAULT_TEXTURE")
same(slot().resourceName, "VORLANE_DEFAULT_TEXTURE", "the texture")
ui.select(base .. "_CBUF_SLOT_TYPE_COMBO", "TIME")
editor.sync()
same(ui.items(base .. "_CBUF_SLOT_LIST")[1], "0. UNKNOWN", "the listed type")
enter({_SLOT_TIME_EDIT = "2500"}, "_SLOT_TIME_OK")
same(ui.text(base .. "_SLOT_TIME_EDIT"), "2500", "the modulo")

-- Instance slots.
front("Instance Buffers")
press("_INSTANCE_SLOT_ADD")
press("_INSTANCE_SLOT_ADD")
press("_INSTANCE_SLOT_UP")
press("_INSTANCE_SLOT_DOWN")
press("_INSTANCE_SLOT_DEL")
same(#record().instanceSlots, 1, "the instance slots")
same(ui.items(base .. "_INSTANCE_SLOT_LIST")[1], "0. World matrix", "the listed slot")
enter({_INSTANCE_MAX_EDIT = "0"}, "_INSTANCE_MAX_OK")
same(lastLine(), "[Editor] Number '0' could not be parsed or is 0 or less. This is incorrect.", "line")
enter({_INSTANCE_MAX_EDIT = "64"}, "_INSTANCE_MAX_OK")
same(record().maxInstancesPerBuffer, 64, "the maximum")
ui.screenshot("shader_instances.png")

-- What the engine has is what its file brings back.
local before = record()
editor.post("SaveShaderDeclMessage", {name = "a", path = "a.vlsh"})
editor.sync()
assert(lastLine():find("^%[Editor%] Saved shader 'a' to .*a%.vlsh$"), lastLine())
editor.post("LoadShaderDeclMessage", {path = "a.vlsh"})
editor.sync()
same(lastLine(), "[Editor] Shader loaded : a", "the line")
local after = record()
same(after.constantBuffers[1].slots[1].type, 15, "the type")
same(#after.textures, #before.textures, "the textures")
same(after.uavs[2].slot, 7, "the buffer's slot")
same(ui.text(base .. "_INSTANCE_MAX_EDIT"), "64", "the maximum")

-- It is saved under its own name.
ui.click(base .. "_SAVE")
ui.choose("elsewhere")
editor.sync()
local log = editor.log()
assert(log[#log - 1]:find("^%[Save%] Saving Shader file : .*/elsewhere%.vlsh$"), log[#log - 1])
ui.type(base .. "_NAME_EDIT", "b")
ui.click(base .. "_NAME_CHANGE")
editor.sync()
ui.click(base .. "_SAVE")
editor.sync()
log = editor.log()
assert(log[#log - 1]:find("^%[Save%] Saving Shader file : .*/b%.vlsh$"), log[#log - 1])

-- Scripts create by a message of their own.
editor.post("CreateShaderScriptMessage", {name = "c"})
editor.sync()
assert(editor.record("Shader", "c"))

-- A shader of the project: linked, and looked at in every tab.
create("d")
same(ui.enabled(base .. "_TYPE_SCENE_CHECK"), false, "a type box")
local program = editor.names("ShaderProgram")[1]
pick("_PROGRAM_BUTTON", "SHADER_PROGRAM_POP_UP_LIST", program)
same(record("d").programName, program, "the program")
same(ui.text(base .. "_PROGRAM_LABEL"), program, "the program's label")
assert(ui.checked(base .. "_TYPE_SCENE_CHECK"))
front("Constant Buffers")
for _, prefix in ipairs {"_CBUF", "_TEX", "_SAMPLERS"} do
    front(({_CBUF = "Constant Buffers", _TEX = "Textures", _SAMPLERS = "Samplers"})[prefix])
    local wanted = base .. prefix .. "_WANTED_LIST"
    while #ui.items(wanted) > 0 do
        local count = #ui.items(wanted)
        ui.click(wanted, "left", ui.items(wanted)[1])
        editor.sync()
        same(#ui.items(wanted), count - 1, "what " .. prefix .. " still wants")
    end
end
for _, wanted in ipairs(record("d").wanted) do assert(#wanted.unboundSlots == 0, wanted.name) end
for _, theme in ipairs {"dark", "light"} do
    for _, size in ipairs {{1280, 720}, {1920, 1080}} do
        ui.resize("VL_EDITOR_MAIN_WIN", size[1], size[2])
        for _, tab in ipairs {"Textures", "Samplers", "UAV", "Constant Buffers", "Instance Buffers"} do
            front(tab)
            ui.screenshot(("shader_%s_%s_%d.png"):format(tab:match("%a+"):lower(), theme, size[2]))
        end
    end
    if theme == "dark" then ui.menu("VL_EDITOR_TOOL_BAR", "View", "Switch To Light Theme") end
end
