openKind("Samplers View", "EDITOR_SAMPLER_0", "Sampler", "SAMPLER_CREATION", "engine.sampler('a')")
labels {_FILTER_GROUP = "Filtering", _ADDRESS_GROUP = "Address Modes", _ADDRESS_STATIC_U = "U :",
        _ADDRESS_STATIC_V = "V :", _ADDRESS_STATIC_W = "W :", _LOD_GROUP = "LOD",
        _LOD_LEVELS_LABEL = "Levels :", ["_LOD_LEVELS_LABEL-"] = "-", _LOD_LEVELS_OK = "Ok",
        _LOD_BIAS_LABEL = "Bias :", _LOD_BIAS_OK = "Ok", _LOD_ANI_LABEL = "Anisotropy :",
        _COMP_GROUP = "Comparison", _BORDER_GROUP = "Border Color", _BORDER_LABEL = "",
        _BORDER_OK = "Ok"}
assert(#ui.items(base .. "_FILTER_COMBO") == 13)
items("_ADDRESS_COMBO_W", "WRAP MIRROR CLAMP BORDER MIRROR_ONCE")
items("_LOD_ANI_COMBO", "1 2 4 8 16")

-- A new one shows what the engine starts with.
assert(ui.selected(base .. "_FILTER_COMBO") == "MIN_MAG_MIP_LINEAR")
assert(ui.text(base .. "_LOD_LEVELS_MAX_EDIT") == "1000")

choose("_FILTER_COMBO", "COMPARISON_ANISOTROPIC", {filter = 0xD5},
       {filter = "COMPARISON_ANISOTROPIC"})
choose("_ADDRESS_COMBO_U", "MIRROR", {addressModeU = 2}, {addressU = "MIRROR"})
choose("_ADDRESS_COMBO_V", "BORDER", {addressModeV = 4}, {addressV = "BORDER"})
choose("_ADDRESS_COMBO_W", "MIRROR_ONCE", {addressModeW = 5}, {addressW = "MIRROR_ONCE"})
choose("_LOD_ANI_COMBO", "16", {anisotropy = 16}, {anisotropy = 16})
choose("_COMP_COMBO", "LESS_EQUAL", {comparisonFunction = 4}, {comparison = "LESS_EQUAL"})
enter({_LOD_BIAS_EDIT = "-0.5 levels"}, "_LOD_BIAS_OK", {_LOD_BIAS_EDIT = "-0.5"},
      {lodBias = -0.5}, {lodBias = -0.5})
enter({_BORDER_EDIT_R = "0.25", _BORDER_EDIT_G = "none", _BORDER_EDIT_B = "1", _BORDER_EDIT_A = ""},
      "_BORDER_OK", {_BORDER_EDIT_R = "0.25", _BORDER_EDIT_G = "0", _BORDER_EDIT_A = "0"},
      {["borderColour.1"] = 0.25, ["borderColour.3"] = 1}, {borderColor = "{0.25, 0, 1, 0}"})

-- Both levels at once; upside down they change nothing, and the boxes say so.
enter({_LOD_LEVELS_MIN_EDIT = "2", _LOD_LEVELS_MAX_EDIT = "4.5"}, "_LOD_LEVELS_OK", {},
      {minimumLod = 2, maximumLod = 4.5}, {minLod = 2, maxLod = 4.5})
enter({_LOD_LEVELS_MIN_EDIT = "9", _LOD_LEVELS_MAX_EDIT = "7"}, "_LOD_LEVELS_OK",
      {_LOD_LEVELS_MIN_EDIT = "2", _LOD_LEVELS_MAX_EDIT = "4.5"}, {}, {})
local function lastLine() local log = editor.log() return log[#log] end
assert(lastLine():find("sampler 'a': the minimum LOD 9 is above the maximum 7", 1, true), lastLine())
ui.screenshot("sampler.png")

-- Going back over levels that lie apart leads to the ones before.
step("levels apart", function()
    editor.post("SamplerLodLevelsMessage", {name = "a", minimum = 8, maximum = 9})
end, {minimumLod = 8, maximumLod = 9}, {minLod = 8, maxLod = 9})
local function undo(back)
    local item = ui.items("VL_EDITOR_TOOL_BAR", "Edit")[back]
    ui.menu("VL_EDITOR_TOOL_BAR", "Edit", item)
end
step("undo", function() undo(1) end, {minimumLod = 2, maximumLod = 4.5}, {minLod = 2, maxLod = 4.5})
step("redo", function() undo(2) end, {minimumLod = 8, maximumLod = 9}, {minLod = 8, maxLod = 9})

-- What names nothing changes nothing.
step("no axis", function()
    editor.post("SamplerAddressMessage", {name = "a", value = "CLAMP", axis = 3})
end, {}, {})
for message, what in pairs {Filtering = "filter", Address = "address mode",
                            Comparison = "comparison function"} do
    step(message, function()
        editor.post("Sampler" .. message .. "Message", {name = "a", value = "SIDEWAYS"})
    end, {}, {})
    assert(lastLine():find("there is no " .. what .. " 'SIDEWAYS'", 1, true), lastLine())
end

-- Its buttons have names of their own, and it saves under its extension.
ui.type(base .. "_NAME_EDIT", "b")
ui.click(base .. "_NAME_BUTTON")
editor.sync()
assert(editor.record("Sampler", "b") and not editor.record("Sampler", "a"))
for path, file in pairs {plain = "plain.vlsa", ["named.vlsa"] = "named.vlsa"} do
    ui.click(base .. "_LIST", "right", "b")
    ui.menu(base .. "_MENU", "Save As...")
    ui.choose(path)
    editor.sync()
    local log = editor.log()
    assert(log[#log - 1]:match("^%[Save%] Saving Sampler file : .*/([^/]*)$") == file, log[#log - 1])
    assert(lastLine():match("^%[Editor%] Saved sampler 'b' to .*/([^/]*)%.$") == file, lastLine())
end
local lines = #editor.log() -- The button saves to the file that was chosen last.
ui.click(base .. "_SAVE_BUTTON")
editor.sync()
assert(#editor.log() == lines + 2)
