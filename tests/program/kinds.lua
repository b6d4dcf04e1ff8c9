-- What the script of each kind of resource begins with: a window of the kind, a resource selected
-- in it, and steps that change what they name and nothing else, in the window's record and in the
-- engine.

local base, readEngine, readRecord

local function flat(value, path, into)
    if type(value) ~= "table" then
        into[path] = type(value) == "userdata" and tostring(value) or value
        return into
    end
    for key, member in pairs(value) do
        flat(member, path == "" and tostring(key) or path .. "." .. key, into)
    end
    return into
end

local function compare(side, before, after, changes)
    for field, value in pairs(after) do
        local wanted = before[field]
        if changes[field] ~= nil then wanted = changes[field] end
        if value ~= wanted then
            error(("%s: %s is %s instead of %s"):format(side, field, value, wanted), 0)
        end
    end
    for field in pairs(changes) do
        if after[field] == nil then error(side .. " has no " .. field, 0) end
    end
end

-- `inRecord` and `inEngine` say what is to be otherwise after it.
local function step(what, act, inRecord, inEngine)
    local record, engine = readRecord(), readEngine()
    act()
    editor.sync()
    local fine, problem = pcall(compare, "record", record, readRecord(), inRecord)
    if fine then fine, problem = pcall(compare, "engine", engine, readEngine(), inEngine) end
    if not fine then error(what .. ": " .. problem, 2) end
end

local function choose(suffix, label, inRecord, inEngine)
    step(suffix, function() ui.select(base .. suffix, label) end, inRecord, inEngine)
    assert(ui.selected(base .. suffix) == label)
end

local function tick(suffix, field, engineField)
    local on = not ui.checked(base .. suffix)
    step(suffix, function() ui.check(base .. suffix, on) end,
         {[field] = on}, {[engineField or field] = on})
end

-- `texts` by box; what the boxes show afterwards is `shown`.
local function enter(texts, button, shown, inRecord, inEngine)
    for box, text in pairs(texts) do
        local record = readRecord()
        ui.type(base .. box, text)
        editor.sync()
        compare("record", record, readRecord(), {})
    end
    step(button, function() ui.click(base .. button) end, inRecord, inEngine)
    for box, text in pairs(shown) do
        local is = ui.text(base .. box)
        if is ~= text then error(("%s shows %s instead of %s"):format(box, is, text), 2) end
    end
end

-- The text of every static, button, group and check box that `wanted` names.
local function labels(wanted)
    for suffix, label in pairs(wanted) do
        local is = ui.text(base .. suffix)
        if is ~= label then error(("%s reads '%s'"):format(suffix, is), 2) end
    end
end

local function items(suffix, wanted)
    local is = table.concat(ui.items(base .. suffix), " ")
    if is ~= wanted then error(("%s offers %s"):format(suffix, is), 2) end
end

local function create(creation, name)
    local box = "EDITOR_VALIDATION_NAME_EDIT_" .. creation
    ui.click(base .. "_ADD")
    ui.type(box, name)
    ui.key(box, 13)
    editor.sync()
end

-- `engineText` is an expression of the engine's scripts; without it only the record is looked at.
local function openKind(view, root, kind, creation, engineText)
    editor.sync()
    ui.resize("VL_EDITOR_MAIN_WIN", 1280, 720)
    ui.select("VL_EDITOR_TABS", "+")
    ui.wait(function() return ui.exists("CONTAINER_2_LBAR") and ui.visible("CONTAINER_2_LBAR") end)
    ui.menu("CONTAINER_2_LBAR", "View", view)
    base = root
    create(creation, "a")
    readRecord = function() return flat(editor.record(kind, "a"), "", {}) end
    local text = engineText and
        "local all = {} for k, v in pairs(" .. engineText .. ") do all[k] = v end return all"
    readEngine = function() return text and flat(editor.script(text), "", {}) or {} end
end
