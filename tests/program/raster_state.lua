openKind("Raster States View", "EDITOR_RASTER_0", "RasterState", "RASTER_CREATION",
         "engine.rasterState('a')")
labels {_MODES_GROUP = "Modes", _FILL_LABEL = "Fill mode : ", _CULL_LABEL = "Cull mode : ",
        _OPTS_GROUP = "Options", _CCW_CHECK = "Front counter clockwise",
        _DEPTH_CLIP_CHECK = "Depth clip", _SCISSOR_CHECK = "Enable scissors",
        _MS_CHECK = "Enable multi-sampling", _AA_CHECK = "Enable line anti-aliasing",
        _PARAMS_GROUP = "Parameters", _DEPTH_BIAS_GROUP = "Depth bias :", _DEPTH_BIAS_BUTTON = "OK",
        _BIAS_CLAMP_LABEL = "Bias clamp :", _BIAS_CLAMP_BUTTON = "OK",
        _SCALE_BIAS_LABEL = "Scale bias :", _SCALE_BIAS_BUTTON = "OK"}
items("_FILL_COMBO", "WIREFRAME SOLID")
items("_CULL_COMBO", "NONE FRONT BACK")

-- A new one shows what the engine starts with.
assert(ui.selected(base .. "_CULL_COMBO") == "BACK" and ui.checked(base .. "_DEPTH_CLIP_CHECK"))
assert(ui.text(base .. "_DEPTH_BIAS_EDIT") == "0")

choose("_FILL_COMBO", "WIREFRAME", {fillMode = 2}, {fillMode = "WIREFRAME"})
choose("_CULL_COMBO", "FRONT", {cullMode = 2}, {cullMode = "FRONT"})
tick("_CCW_CHECK", "frontCounterClockwise")
tick("_DEPTH_CLIP_CHECK", "depthClip")
tick("_SCISSOR_CHECK", "scissorEnabled", "scissor")
tick("_MS_CHECK", "multiSamplingEnabled", "multiSampling")
tick("_AA_CHECK", "lineAntiAliasingEnabled", "lineAntiAliasing")

-- Whole numbers and real ones are read as far as they go, and shown as they are.
for typed, number in pairs {["12.7"] = 12, [" -3 steps"] = -3, ["9999999999"] = 2147483647, abc = 0} do
    enter({_DEPTH_BIAS_EDIT = typed}, "_DEPTH_BIAS_BUTTON", {_DEPTH_BIAS_EDIT = tostring(number)},
          {depthBias = number}, {depthBias = number})
end
enter({_BIAS_CLAMP_EDIT = "0.5x"}, "_BIAS_CLAMP_BUTTON", {_BIAS_CLAMP_EDIT = "0.5"},
      {depthBiasClamp = 0.5}, {depthBiasClamp = 0.5})
enter({_SCALE_BIAS_EDIT = "-1.25e1"}, "_SCALE_BIAS_BUTTON", {_SCALE_BIAS_EDIT = "-12.5"},
      {slopeScaledDepthBias = -12.5}, {slopeScaledDepthBias = -12.5})
ui.screenshot("raster_state.png")

-- Enter in a box does what its button does.
ui.type(base .. "_SCALE_BIAS_EDIT", "2")
step("Enter", function() ui.key(base .. "_SCALE_BIAS_EDIT", 13) end,
     {slopeScaledDepthBias = 2}, {slopeScaledDepthBias = 2})
