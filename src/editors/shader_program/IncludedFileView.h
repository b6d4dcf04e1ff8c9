#pragma once
#include <vlWinUi/CodeEdit.h>

#include <string>
#include <vector>

namespace vlEditor {

/** A window that shows a file that a shader program includes, to be read: it belongs to whoever
 *  edits it elsewhere. One for the whole editor. UI thread only. */
class IncludedFileView {
public:
    IncludedFileView() = delete;

    /// In front of the anchor's window, at a line from 1. A file that cannot be read gives a line
    /// in the log, and nothing is shown.
    static void open(const std::string& path, std::size_t line, const vlWinUi::Component& anchor);
    /// The file that is shown; empty when the window is closed.
    static std::string getPath();
    /// Reads the file that is shown again, and marks its lines.
    static void update(std::vector<vlWinUi::CodeProblem> problems);
};

} // namespace vlEditor
