openKind("Buffers View", "EDITOR_BUFFERS_0", "Buffer", "BUFFER_CREATION", "engine.buffer('a')")
labels {_SETTINGS_GROUP = "Settings", _SIZE_LABEL = "Element byte size :",
        _COUNT_LABEL = "Element count :", _UPDATE = "Update"}
assert(ui.text(base .. "_SIZE_EDIT") == "0" and ui.text(base .. "_COUNT_EDIT") == "0")

-- A new one may be written and read by shaders.
assert(readEngine().unorderedAccess and readEngine().shaderResource)

-- One button for both numbers; typing alone posts nothing.
enter({_SIZE_EDIT = "16 bytes", _COUNT_EDIT = "10"}, "_UPDATE",
      {_SIZE_EDIT = "16", _COUNT_EDIT = "10"}, {elementByteSize = 16, elementCount = 10},
      {elementByteSize = 16, elementCount = 10})
enter({_COUNT_EDIT = "many"}, "_UPDATE", {_SIZE_EDIT = "16", _COUNT_EDIT = "0"},
      {elementCount = 0}, {elementCount = 0})
ui.screenshot("buffer.png")

-- More than the device has is kept as a number, and said.
local most = "4294967295"
enter({_SIZE_EDIT = most, _COUNT_EDIT = most}, "_UPDATE", {_SIZE_EDIT = most, _COUNT_EDIT = most},
      {elementByteSize = 4294967295, elementCount = 4294967295},
      {elementByteSize = 4294967295, elementCount = 4294967295})
local log = editor.log()
assert(log[#log]:find("buffer 'a': " .. most .. " elements of " .. most .. " bytes", 1, true),
       log[#log])

-- Bringing one back brings back what no widget shows.
editor.script("engine.buffer('a').shaderResource = false")
enter({_SIZE_EDIT = "4", _COUNT_EDIT = "8"}, "_UPDATE", {}, {elementByteSize = 4, elementCount = 8},
      {elementByteSize = 4, elementCount = 8})
ui.click(base .. "_DEL")
ui.confirm(true)
editor.sync()
assert(not editor.record("Buffer", "a"))
ui.menu("VL_EDITOR_TOOL_BAR", "Edit", ui.items("VL_EDITOR_TOOL_BAR", "Edit")[1])
editor.sync()
local back = readEngine()
assert(back.unorderedAccess and back.shaderResource == false and back.elementCount == 8)
