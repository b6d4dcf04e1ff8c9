#include "core/UiThreadLogger.h"

#include "core/EditorLogger.h"

namespace vlEditor {

void UiThreadLogger::log(vlMemory::StringView text) {
    std::string piece;
    const auto addPiece = [&piece] {
        if (piece.empty()) return;
        EditorLogger::getInstance().addLine("[UiThread] " + piece);
        piece.clear();
    };
    for (const char character : text) {
        if (character == '\n' && !piece.empty())
            addPiece();
        else
            piece += character;
    }
    addPiece();
}

} // namespace vlEditor
