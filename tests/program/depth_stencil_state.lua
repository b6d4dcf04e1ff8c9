openKind("Depth Stencil States View", "EDITOR_DEPTH_0", "DepthStencilState", "DEPTH_CREATION",
         "engine.depthStencilState('a')")
labels {_DEPTH_GROUP = "Depth", _DEPTH_ENABLE_CHECK = "Enable Depth",
        _DEPTH_MASK_LABEL = "Write mask :", _DEPTH_FUNCTION_LABEL = "Function :",
        _STENCIL_GROUP = "Stencil", _STENCIL_ENABLE_CHECK = "Enable Stencil",
        _STENCIL_R_MASK_LABEL = "Read Mask :", _STENCIL_R_MASK_BUTTON = "OK",
        _STENCIL_W_MASK_LABEL = "Write mask :", _STENCIL_W_MASK_BUTTON = "OK",
        _STENCIL_F_GROUP = "Front faces", _STENCIL_B_GROUP = "Back faces"}
for _, side in ipairs {"F", "B"} do
    local at = "_STENCIL_" .. side
    labels {[at .. "_FAIL2_LABEL"] = "Both fail :", [at .. "_FAIL1_LABEL"] = "Depth fail :",
            [at .. "_PASS_LABEL"] = "Both pass :", [at .. "_FUNCTION_LABEL"] = "Function :"}
    items(at .. "_FAIL2_COMBO", "KEEP ZERO REPLACE INCR_SAT DECR_SAT INVERT INCR DECR")
end

-- A new one shows what the engine starts with.
assert(ui.checked(base .. "_DEPTH_ENABLE_CHECK") and not ui.checked(base .. "_STENCIL_ENABLE_CHECK"))
assert(ui.selected(base .. "_DEPTH_FUNCTION_COMBO") == "LESS")
assert(ui.text(base .. "_STENCIL_R_MASK_EDIT") == "255")

tick("_DEPTH_ENABLE_CHECK", "depthEnabled")
tick("_STENCIL_ENABLE_CHECK", "stencilEnabled")
choose("_DEPTH_MASK_COMBO", "ZERO", {depthWriteMask = 0}, {depthWriteMask = "ZERO"})
choose("_DEPTH_FUNCTION_COMBO", "GREATER", {depthFunction = 5}, {depthFunction = "GREATER"})

-- Each combo box of the faces sets its own side's own setting.
for side, name in pairs {F = "front", B = "back"} do
    local at, record = "_STENCIL_" .. side, name .. "Faces"
    choose(at .. "_FAIL2_COMBO", "ZERO",
           {[record .. "StencilFailOperation"] = 2}, {[name .. "Fail"] = "ZERO"})
    choose(at .. "_FAIL1_COMBO", "DECR",
           {[record .. "DepthFailOperation"] = 8}, {[name .. "DepthFail"] = "DECR"})
    choose(at .. "_PASS_COMBO", "INVERT",
           {[record .. "PassOperation"] = 6}, {[name .. "Pass"] = "INVERT"})
    choose(at .. "_FUNCTION_COMBO", "NEVER",
           {[record .. "StencilFunction"] = 1}, {[name .. "Function"] = "NEVER"})
end

-- Masks are whole numbers, of which the low eight bits stay.
for typed, mask in pairs {["300"] = 44, ["15 bits"] = 15, ["0xFF"] = 0, ["-1"] = 255, none = 0} do
    enter({_STENCIL_R_MASK_EDIT = typed}, "_STENCIL_R_MASK_BUTTON",
          {_STENCIL_R_MASK_EDIT = tostring(mask)}, {stencilReadMask = mask}, {stencilReadMask = mask})
end
enter({_STENCIL_W_MASK_EDIT = "7"}, "_STENCIL_W_MASK_BUTTON", {_STENCIL_W_MASK_EDIT = "7"},
      {stencilWriteMask = 7}, {stencilWriteMask = 7})
ui.screenshot("depth_stencil_state.png")
