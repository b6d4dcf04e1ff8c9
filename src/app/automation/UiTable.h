#pragma once

namespace vlScripts {
class Interpreter;
}

namespace vlEditor {

/** The table `ui` of automation scripts: components by name, read and used as a person would. */
class UiTable {
public:
    UiTable() = delete;
    static void addTo(vlScripts::Interpreter& interpreter);
};

} // namespace vlEditor
