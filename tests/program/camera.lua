-- The camera editor by its widgets, with a project that has a camera and a viewport.

local view = "ENGINE_WINDOW_0"
local eps = 1e-5

editor.sync()
ui.resize("VL_EDITOR_MAIN_WIN", 1280, 720)
local scene = ui.selected("VL_EDITOR_TABS")
ui.select("VL_EDITOR_TABS", "+")
ui.wait(function() return ui.exists("CONTAINER_2_LBAR") end)
ui.menu("CONTAINER_2_LBAR", "View", "Camera View")
local cameras = ui.selected("VL_EDITOR_TABS")
local base = "EDITOR_CAMERA_0"
editor.sync()

local function near(got, wanted, what)
    if math.abs(got - wanted) > eps then error(what .. " is " .. got .. " instead of " .. wanted, 2) end
end
local function engine(name) return editor.script("return engine.camera('eye')." .. name) end
local function record() return editor.record("Camera", "eye") end
local function press(button) ui.click(base .. button) editor.sync() end
local function set(button, values)
    for suffix, text in pairs(values) do ui.type(base .. suffix, text) end
    press(button)
end
local function shows(suffix, wanted)
    local text = ui.text(base .. suffix)
    if text ~= wanted then error(suffix .. " shows '" .. text .. "', not '" .. wanted .. "'", 2) end
end
local function lastLine() local log = editor.log() return log[#log] end
local function refuses(why, act)
    local before = record()
    act()
    assert(lastLine() == "[Editor] " .. why, lastLine())
    local after = record()
    for _, field in ipairs {"orthographic", "fieldOfView", "nearDistance", "farDistance",
                            "orthographicHeight"} do
        assert(before[field] == after[field], field)
    end
end

-- The project's camera is there, those of viewports and the engine's own are not.
assert(table.concat(ui.items(base .. "_LIST"), ",") == "visitor")

ui.click(base .. "_ADD")
ui.type("EDITOR_VALIDATION_NAME_EDIT_CAMERA_CREATION", "eye")
ui.key("EDITOR_VALIDATION_NAME_EDIT_CAMERA_CREATION", 13)
editor.sync()
assert(lastLine() == "[Editor] Camera created : eye.", lastLine())
ui.select(base .. "_LIST", "eye")
shows("_FOV_EDIT", "60") shows("_NEAR_EDIT", "0.1") shows("_FAR_EDIT", "1000")
assert(ui.selected(base .. "_PROJECTION_COMBO") == "Perspective")

-- Each value: typed, in the record, in the engine, and shown as it was typed.
set("_FOV_BUTTON", {_FOV_EDIT = "47.3"})
shows("_FOV_EDIT", "47.3")
near(engine("fov"), 47.3, "fov")
near(record().fieldOfView, math.rad(47.3), "the record's field of view")
set("_PLANES_BUTTON", {_NEAR_EDIT = "0.3", _FAR_EDIT = "77.7"})
near(engine("near"), 0.3, "near") near(engine("far"), 77.7, "far")
near(record().nearDistance, 0.3, "the record's near distance")
set("_SIZE_BUTTON", {_SIZE_EDIT = "3.1"})
near(engine("orthographicHeight"), 3.1, "height")
set("_POS_BUTTON", {_POS_EDIT_X = "0.1", _POS_EDIT_Y = "-2.7", _POS_EDIT_Z = "1e-3"})
shows("_POS_EDIT_Z", "0.001")
near(record().position[2], -2.7, "y")
near(editor.script("return engine.camera('eye').position.y"), -2.7, "the engine's y")

for _, angles in ipairs {{"30", "45", "0"}, {"-12.5", "170.25", "33"}, {"90", "20", "0"},
                         {"89.9", "30", "0"}, {"0", "270", "0"}, {"0", "180", "0"}} do
    set("_ROT_BUTTON", {_ROT_EDIT_X = angles[1], _ROT_EDIT_Y = angles[2], _ROT_EDIT_Z = angles[3]})
    for i, axis in ipairs {"X", "Y", "Z"} do shows("_ROT_EDIT_" .. axis, angles[i]) end
    local o = record().orientation
    for i, member in ipairs {"x", "y", "z", "w"} do
        near(o[i], engine("orientation." .. member), member)
    end
end
-- Pressed again, nothing changes.
local orientation = record().orientation
press("_ROT_BUTTON")
for i = 1, 4 do assert(record().orientation[i] == orientation[i]) end

set("_POS_BUTTON", {_POS_EDIT_X = "0", _POS_EDIT_Y = "0", _POS_EDIT_Z = "-5"})
set("_LOOK_AT_BUTTON", {_LOOK_AT_EDIT_X = "5", _LOOK_AT_EDIT_Y = "0", _LOOK_AT_EDIT_Z = "0"})
shows("_LOOK_AT_EDIT_X", "5") shows("_ROT_EDIT_Y", "45") shows("_ROT_EDIT_Z", "0")
near(engine("up.y"), 1, "up")
near(engine("front.x"), math.sqrt(0.5), "front")

-- What makes no camera is told, and changes nothing.
local planes = "camera 'eye': the near distance must be above 0 and below the far one"
refuses(planes, function() set("_PLANES_BUTTON", {_NEAR_EDIT = "0"}) end)
shows("_NEAR_EDIT", "0.3")
refuses(planes, function() set("_PLANES_BUTTON", {_NEAR_EDIT = "9", _FAR_EDIT = "9"}) end)
refuses("camera 'eye': the field of view must be above 0 and below 180 degrees",
        function() set("_FOV_BUTTON", {_FOV_EDIT = "180"}) end)
refuses("camera 'eye': the height of the orthographic box must be above 0",
        function() set("_SIZE_BUTTON", {_SIZE_EDIT = "-1"}) end)
refuses("camera 'eye': the point to look at is where the camera is", function()
    set("_LOOK_AT_BUTTON", {_LOOK_AT_EDIT_X = "0", _LOOK_AT_EDIT_Y = "", _LOOK_AT_EDIT_Z = "-5"})
end)
-- An orthographic box may begin behind the camera, but then it stays one.
ui.select(base .. "_PROJECTION_COMBO", "Orthographic")
editor.sync()
assert(engine("orthographic") == true and record().orthographic == true)
set("_PLANES_BUTTON", {_NEAR_EDIT = "-4", _FAR_EDIT = "4"})
near(engine("near"), -4, "near")
refuses(planes, function()
    ui.select(base .. "_PROJECTION_COMBO", "Perspective")
    editor.sync()
end)
assert(ui.selected(base .. "_PROJECTION_COMBO") == "Orthographic")

-- Several values that only fit together come back by one undo.
set("_PLANES_BUTTON", {_NEAR_EDIT = "10", _FAR_EDIT = "20"})
set("_PLANES_BUTTON", {_NEAR_EDIT = "1", _FAR_EDIT = "5"})
editor.post("UndoMessage")
editor.sync()
near(record().nearDistance, 10, "near") near(engine("far"), 20, "far")

-- Saved and loaded again it is the same to the last bit.
set("_ROT_BUTTON", {_ROT_EDIT_X = "12.34", _ROT_EDIT_Y = "-56.7", _ROT_EDIT_Z = "8.9"})
local saved = record()
editor.post("SaveCameraDeclMessage", {name = "eye", path = "eye.vlca"})
editor.post("CameraPositionMessage", {name = "eye", x = 9, y = 9, z = 9})
editor.post("CameraFieldOfViewMessage", {name = "eye", value = 9})
editor.sync()
editor.post("LoadCameraDeclMessage", {path = "eye.vlca"})
editor.sync()
assert(lastLine() == "[Editor] Camera loaded : eye.", lastLine())
for field, value in pairs(record()) do
    if type(value) ~= "table" then assert(saved[field] == value, field) end
end
for i = 1, 4 do
    assert(record().orientation[i] == saved.orientation[i])
    assert(record().position[i] == saved.position[i])
end
ui.screenshot("camera.png")

-- The viewport begins with the view of the project's camera.
press("_COPY_VIEWPORT_BUTTON")
for _, field in ipairs {"fov", "near", "far", "orthographic", "position.x", "orientation.y"} do
    assert(engine(field) == editor.script("return engine.camera('visitor')." .. field), field)
end

-- What looks through a camera shows every edit of it at once; its own view is kept. The water moves,
-- so that a few pixels may differ.
local function picture()
    ui.select("VL_EDITOR_TABS", scene)
    editor.sync()
    local size, pixels = ui.rect(view .. "_ENGINE"), {}
    for row = 1, 4 do
        for column = 1, 6 do
            pixels[#pixels + 1] =
                {editor.pixel(view, size.width * column // 7, size.height * row // 5)}
        end
    end
    ui.select("VL_EDITOR_TABS", cameras)
    editor.sync()
    return pixels
end
local function difference(a, b)
    local count = 0
    for i, pixel in ipairs(a) do
        local most = 0
        for channel = 1, 3 do
            most = math.max(most, math.abs(pixel[channel] - b[i][channel]))
        end
        if most > 24 then count = count + 1 end
    end
    return count
end
local function same(a, b, what)
    if difference(a, b) > 3 then error(what .. ": " .. difference(a, b) .. " differ", 2) end
end
local function other(a, b, what)
    if difference(a, b) < 8 then error(what .. ": " .. difference(a, b) .. " differ", 2) end
end

local own = picture()
press("_SHOW_VIEWPORT_BUTTON")
same(picture(), own, "a copy of the view looks different")
set("_FOV_BUTTON", {_FOV_EDIT = "20"})
local narrow = picture()
other(narrow, own, "the edit is not seen")
set("_LOOK_AT_BUTTON", {_LOOK_AT_EDIT_X = "0", _LOOK_AT_EDIT_Y = "1000", _LOOK_AT_EDIT_Z = "0"})
other(picture(), narrow, "the turn is not seen")
editor.post("UndoMessage")
editor.sync()
same(picture(), narrow, "the undo is not seen")
press("_COPY_VIEWPORT_BUTTON")
shows("_FOV_EDIT", "20")
press("_OWN_VIEW_BUTTON")
same(picture(), own, "the viewport's own view is lost")

-- While the camera is gone it is the viewport's own as well, and an undo brings it back.
press("_SHOW_VIEWPORT_BUTTON")
same(picture(), narrow, "it is not shown again")
editor.post("EraseCameraMessage", {name = "eye"})
editor.sync()
same(picture(), own, "what shows an erased camera")
editor.post("UndoMessage")
editor.sync()
same(picture(), narrow, "the camera that came back is not seen")
editor.post("FollowCameraMessage", {camera = "nobody"})
editor.sync()
assert(lastLine() == "[Editor] There is no camera 'nobody' to look through.", lastLine())

-- Of two viewports it is the one that had the focus last.
editor.post("FollowCameraMessage")
ui.select("VL_EDITOR_TABS", scene)
local second = assert(editor.open(6))
editor.sync()
editor.script([[
    engine.camera("ENGINE_WINDOW_0_ENGINE_CAMERA").fov = 31
    engine.camera("]] .. second .. [[_ENGINE_CAMERA").fov = 32]])
for index, window in ipairs {second, view, second} do
    ui.click(window .. "_ENGINE")
    editor.post("CameraCopyViewportMessage", {name = "eye"})
    editor.sync()
    near(engine("fov"), index % 2 == 1 and 32 or 31, "the focused viewport's field of view")
end

-- Without a viewport there is nothing to copy.
ui.click("VL_EDITOR_TABS", "right", scene)
ui.menu("EDITOR_TAB_MENU", "Close")
ui.select(base .. "_LIST", "eye")
editor.sync()
refuses("camera 'eye': no viewport is open to copy from",
        function() press("_COPY_VIEWPORT_BUTTON") end)
press("_SHOW_VIEWPORT_BUTTON")
assert(lastLine() == "[Editor] No viewport is open.", lastLine())
