#pragma once

namespace vlScripts {
class Interpreter;
}

namespace vlEditor {

/** The table `editor` of automation scripts: messages, views, the log, and waiting for the threads
 * of the editor. It touches no engine object: what it wants of the engine goes there as a message.
 */
class EditorTable {
public:
    EditorTable() = delete;
    static void addTo(vlScripts::Interpreter& interpreter);
};

} // namespace vlEditor
