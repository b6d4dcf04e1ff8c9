-- Uses the editor at random for some seconds: what a person could do by accident must neither end it
-- nor upset the validation layers. SEED and SECONDS are set in front of this text by whoever runs it.

local seed = SEED or os.time()
print("seed " .. seed)
math.randomseed(seed)
local finish = os.time() + (SECONDS or 20)

local tabs, bar = "VL_EDITOR_TABS", "VL_EDITOR_TOOL_BAR"
local counts = {done = 0, refused = 0}

local function any(list) return list[math.random(#list)] end

-- A refusal is an answer, too: the editor may have changed since the component was chosen.
local function try(use, ...)
    local done, message = pcall(use, ...)
    if done then
        counts.done = counts.done + 1
    else
        if message:find("the editor is closing", 1, true) then error(message, 0) end
        counts.refused = counts.refused + 1
    end
    return done
end

-- The components that views and containers are made of, as far as they are there.
local function components()
    local found = {bar}
    local function add(name) if ui.exists(name) then found[#found + 1] = name end end
    for number = 0, 60 do
        local container = "CONTAINER_" .. number
        if ui.exists(container) and ui.visible(container) then
            add(container .. "_LBAR")
            for _, part in ipairs {"_RBAR", "_TITLE"} do add(container .. part) end
        end
        for _, part in ipairs {"", "_ENGINE", "_UPDATE", "_SCREEN", "_COMPOSITOR"} do
            add("ENGINE_WINDOW_" .. number .. part)
        end
        for _, part in ipairs {"_LOG", "_FILTER", "_EDIT", "_LAUNCH"} do
            add("COMMAND_LINE_" .. number .. part)
        end
    end
    return found
end

-- The editors of resources: type, base name, creation, and some widgets of theirs.
local kinds = {
    {1, "EDITOR_BLEND_", "BLEND_CREATION",
     {"_A_COVERAGE_CHECK", "_TARGET_ENABLE_0", "_SRC_EDIT_0", "_OP_A_EDIT_1", "_W_MASK_EDIT_0"}},
    {2, "EDITOR_BUFFERS_", "BUFFER_CREATION", {"_SIZE_EDIT", "_COUNT_EDIT", "_UPDATE"}},
    {3, "EDITOR_CAMERA_", "CAMERA_CREATION",
     {"_PROJECTION_COMBO", "_FOV_EDIT", "_POS_EDIT_X", "_POS_BUTTON", "_COPY_VIEWPORT_BUTTON",
      "_SHOW_VIEWPORT_BUTTON", "_LOOK_AT_BUTTON"}},
    {5, "EDITOR_DEPTH_", "DEPTH_CREATION",
     {"_DEPTH_ENABLE_CHECK", "_STENCIL_ENABLE_CHECK", "_STENCIL_R_MASK_EDIT", "_STENCIL_R_MASK_BUTTON",
      "_DEPTH_FUNCTION_COMBO", "_STENCIL_B_PASS_COMBO"}},
    {10, "EDITOR_RASTER_", "RASTER_CREATION",
     {"_FILL_COMBO", "_CULL_COMBO", "_SCISSOR_CHECK", "_DEPTH_BIAS_EDIT", "_DEPTH_BIAS_BUTTON"}},
    {12, "EDITOR_SAMPLER_", "SAMPLER_CREATION",
     {"_FILTER_COMBO", "_ADDRESS_COMBO_W", "_LOD_LEVELS_MIN_EDIT", "_LOD_LEVELS_OK", "_BORDER_OK"}},
    {16, "EDITOR_SHADER_", "SHADER_CREATION",
     {"_TEX_ADD", "_TEX_DEL", "_TEX_SPACE_EDIT", "_TEX_UPDATE", "_TEX_SRC_BUTTON", "_PROGRAM_BUTTON",
      "_SAMPLERS_ADD", "_UAV_ADD", "_CBUF_ADD", "_CBUF_SLOT_ADD", "_CBUF_SLOT_UP", "_CBUF_SLOT_DEL",
      "_CBUF_SLOT_TYPE_COMBO", "_SLOT_VECTOR_OK", "_SLOT_MATRIX_OK", "_SLOT_CAM_SEARCH",
      "_INSTANCE_SLOT_ADD", "_INSTANCE_MAX_EDIT", "_RES_TYPE_TABS", "_RES_TYPE_TABS"}},
    {15, "EDITOR_SHADER_PROG_", "SHADER_PROGRAM_CREATION",
     {"_SOURCES_EDIT", "_MACROS_EDIT", "_COMPILE", "_COMPUTE_CHECK", "_RAYTRACING_CHECK",
      "_PIPELINE_CHECK", "_SOURCES_FETCH", "_STAGES_TABS", "_PROBLEMS_LIST", "_FILE_RELOAD"}},
    {14, "EDITOR_SCRIPT_", "SCRIPT_CREATION",
     {"_SOURCE_EDIT", "_COMPILE_BUTTON", "_RUN_BUTTON", "_RENDERING_BUTTON", "_RENDERING_CLEAR"}},
}
local names = {"a", "b", "c", "", "two words", "a & b", "<b>bold</b>", "\u{1F600}"}
local texts = {"", "0", "1", "3.5", "-7", "300", "99999999999", "abc", "return 1", "while true do end", "for"}

-- Uses a widget as its name says that it can be.
local function useWidget(name)
    if name:find("_CHECK$") or name:find("_ENABLE_%d$") then
        try(ui.click, name)
    elseif name:find("COMBO") or name:find("_EDIT_%d$") or name:find("_TABS$") or
        name:find("_PROBLEMS_LIST$") then
        local items = ui.items(name)
        if #items > 0 then try(ui.select, name, any(items)) end
    elseif name:find("_EDIT") then
        try(ui.type, name, any(texts))
        if math.random(3) == 1 then try(ui.key, name, 13) end
    else
        try(ui.click, name)
    end
end

local function useEditor()
    local kind = any(kinds)
    local _, prefix, creation, widgets = table.unpack(kind)
    local base
    for number = 0, 60 do
        local list = prefix .. number .. "_LIST"
        if ui.exists(list) and ui.visible(list) then base = prefix .. number end
    end
    if not base then
        try(editor.open, kind[1])
        return
    end
    local list = base .. "_LIST"
    local items = ui.items(list)
    if #items == 0 or math.random(8) == 1 then
        if not try(ui.click, base .. "_ADD") then return end
        try(ui.type, "EDITOR_VALIDATION_NAME_EDIT_" .. creation, any(names))
        try(ui.key, "EDITOR_VALIDATION_NAME_EDIT_" .. creation, any {13, 13, 27})
        return
    end
    try(ui.click, list, "left", any(items))
    local what = math.random(10)
    if what == 1 then
        try(ui.type, base .. "_NAME_EDIT", any(names))
        try(ui.key, base .. "_NAME_EDIT", 13)
    elseif what == 2 then
        try(ui.key, list, 46)
    elseif what <= 4 then
        try(ui.key, list, any {65, 67, 68, 86}, "ctrl")
    else
        useWidget(base .. any(widgets))
    end
end

local keys = {13, 27, 32, 37, 38, 39, 40, 9, 46, 65, 90}
local buttons = {"left", "right", "middle"}
local actions = {
    function() try(ui.click, any(components()), any(buttons)) end,
    function() try(ui.key, any(components()), any(keys)) end,
    function()
        local name = any(components())
        local place = ui.exists(name) and ui.rect(name) or {width = 1, height = 1}
        local x = math.random(0, math.max(place.width - 1, 0))
        local y = math.random(0, math.max(place.height - 1, 0))
        local button = any(buttons)
        if try(ui.mouse, name, x, y, button, "press") then
            for _ = 1, math.random(0, 4) do
                try(ui.mouse, name, x + math.random(-30, 30), y + math.random(-30, 30), button, "move")
            end
            try(ui.mouse, name, x, y, button, "release")
        end
    end,
    function() try(ui.resize, "VL_EDITOR_MAIN_WIN", math.random(500, 1400), math.random(400, 900)) end,
    function() try(ui.select, tabs, any(ui.items(tabs))) end,
    function() try(ui.select, tabs, "+") end,
    function()
        if not try(ui.click, tabs, "right", any(ui.items(tabs))) then return end
        if not (ui.exists("EDITOR_TAB_MENU") and ui.visible("EDITOR_TAB_MENU")) then return end
        if try(ui.menu, "EDITOR_TAB_MENU", any {"Rename", "Close", "Close"}) and
            ui.exists(tabs .. "_RENAME") and ui.visible(tabs .. "_RENAME") then
            try(ui.type, tabs .. "_RENAME", any {"", "Renamed", "+", "a & b"})
            try(ui.key, tabs .. "_RENAME", any {13, 27})
        end
    end,
    function() try(editor.open, any {6, 6, 7, 13}) end,
    function()
        local titles = {}
        for _, name in ipairs(components()) do
            if name:find("_TITLE$") and ui.visible(name) then titles[#titles + 1] = name end
        end
        local menu = "EDITOR_CONTAINER_TITLE_MENU"
        if #titles == 0 or not try(ui.click, any(titles), "right") then return end
        if not (ui.exists(menu) and ui.visible(menu)) then return end
        if not try(ui.menu, menu, any(ui.items(menu))) then return end
        local dialog = "EDITOR_RESIZE_CONTAINER"
        if not (ui.exists(dialog) and ui.visible(dialog)) then return end
        try(ui.type, dialog .. "_EDIT", any {"", "0", "180", "400", "99999", "x"})
        try(ui.key, dialog .. "_EDIT", any {13, 27})
    end,
    function()
        for _, name in ipairs(components()) do
            if name:find("^COMMAND_LINE_.*_EDIT$") and ui.visible(name) then
                try(ui.type, name, any {"print('a')", "engine.", "for", "while true do end",
                                        "for i = 1, 500 do print(i) end", "error({})"})
                try(ui.key, name, any {13, 13, 9, 27, 38, 40})
                return
            end
        end
    end,
    function() try(ui.key, "VL_EDITOR_MAIN_WIN", any {117, 9, 33, 34}, any {"ctrl", "shift"}) end,
    function()
        local bars = {}
        for _, name in ipairs(components()) do
            if name:find("_LBAR$") then bars[#bars + 1] = name end
        end
        if #bars == 0 then return end
        local menu = any(bars)
        try(ui.menu, menu, "View", any {"Engine View", "Log View", "Graph Interaction View"})
    end,
    function() try(ui.menu, bar, "View", any {"Switch To Dark Theme", "Switch To Light Theme"}) end,
    function()
        for _, name in ipairs(components()) do
            if name:find("_COMPOSITOR$") and ui.visible(name) then
                try(ui.select, name, any(ui.items(name)))
                return
            end
        end
    end,
    function() editor.sync() end,
    useEditor, useEditor, useEditor, useEditor,
    function() try(ui.menu, bar, "Edit", any {"Undo", "Undo", "Redo"}) end,
}

-- Takes something from the pick lists that are open, or not.
local function pick()
    for _, kind in ipairs {"TEXTURE_BUFFER", "TEXTURE", "UAV", "CAMERA", "SHADER_PROGRAM", "SAMPLER"} do
        local list = kind .. "_POP_UP_LIST"
        if ui.exists(list) and ui.visible(list) then
            local items = ui.items(list .. "LISTBOX")
            if #items > 0 then try(ui.click, list .. "LISTBOX", "left", any(items)) end
            if not try(ui.click, list .. any {"OK_BUTTON", "OK_BUTTON", "CANCEL_BUTTON"}) then
                try(ui.click, list .. "CANCEL_BUTTON")
            end
        end
    end
end

local function complain()
    for _, line in ipairs(editor.log()) do
        assert(not line:find("VUID", 1, true) and not line:find("Validation", 1, true), line)
    end
end

while os.time() < finish do
    any(actions)()
    -- Dialogs that came up by the way are answered.
    pcall(ui.choose, any {"", "picture"})
    pcall(ui.confirm, math.random(2) == 1)
    pick()
    if #ui.items(tabs) > 6 then
        ui.click(tabs, "right", ui.items(tabs)[1])
        try(ui.menu, "EDITOR_TAB_MENU", "Close")
    end
    if math.random(20) == 1 then complain() end
end
editor.sync()
complain()
print(counts.done .. " done, " .. counts.refused .. " refused")
assert(counts.done > 20)
