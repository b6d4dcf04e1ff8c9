openKind("Blend States View", "EDITOR_BLEND_0", "BlendState", "BLEND_CREATION",
         "engine.blendState('a')")
labels {_GLOBAL_GROUP = "General", _A_COVERAGE_CHECK = "Alpha To Coverage",
        _INDEPENDENT_CHECK = "Independent Blend", _TARGET_7 = "Target 7",
        _TARGET_ENABLE_7 = "Enable", _SRC_LABEL_7 = "Blend Src :", _DEST_LABEL_7 = "Blend Dest :",
        _OP_LABEL_7 = "Blend Op :", _SRC_A_LABEL_7 = "Blend Src Alpha :",
        _DEST_A_LABEL_7 = "Blend Dest Alpha :", _OP_A_LABEL_7 = "Blend Op Alpha :",
        _W_MASK_LABEL_7 = "Write Mask :"}
items("_OP_A_EDIT_7", "ADD SUBTRACT REV_SUBTRACT MIN MAX")
assert(#ui.items(base .. "_SRC_EDIT_7") == 17 and #ui.items(base .. "_W_MASK_EDIT_7") == 16)

-- All targets of a new one are as the engine starts with.
for target = 0, 7 do
    assert(ui.selected(base .. "_SRC_EDIT_" .. target) == "ONE")
    assert(ui.selected(base .. "_DEST_A_EDIT_" .. target) == "ZERO")
    assert(ui.selected(base .. "_W_MASK_EDIT_" .. target) == "ALL")
end

tick("_A_COVERAGE_CHECK", "alphaToCoverage")
tick("_INDEPENDENT_CHECK", "independentBlend", "independent")

-- Each target by itself; the engine's scripts see the first one. A list counts from 1.
local function chooseAt(target, suffix, label, field, value, engineField)
    choose(suffix .. target, label, {[field .. "." .. target + 1] = value},
           target == 0 and {[engineField] = label} or {})
end
for _, target in ipairs {0, 3, 7} do
    step("enable", function() ui.check(base .. "_TARGET_ENABLE_" .. target, true) end,
         {["blendingEnabled." .. target + 1] = true}, target == 0 and {enabled = true} or {})
    chooseAt(target, "_SRC_EDIT_", "SRC1_ALPHA", "sourceFactor", 18, "source")
    chooseAt(target, "_DEST_EDIT_", "SRC_COLOR", "destinationFactor", 3, "destination")
    chooseAt(target, "_OP_EDIT_", "SUBTRACT", "operation", 2, "operation")
    chooseAt(target, "_SRC_A_EDIT_", "DEST_ALPHA", "sourceAlphaFactor", 7, "sourceAlpha")
    chooseAt(target, "_DEST_A_EDIT_", "BLEND_FACTOR", "destinationAlphaFactor", 14,
             "destinationAlpha")
    chooseAt(target, "_OP_A_EDIT_", "MAX", "alphaOperation", 5, "operationAlpha")
    chooseAt(target, "_W_MASK_EDIT_", "NONE", "writeMask", 0, "writeMask")
end
ui.screenshot("blend_state.png")

-- A target that there is not changes none.
step("target 8", function()
    editor.post("BlendStateSrcMessage", {name = "a", target = 8, value = 1})
end, {}, {})
