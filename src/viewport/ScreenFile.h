#pragma once
#include <vlMemory/Buffer.h>
#include <vlMemory/String.h>

#include <string>

namespace vlEditor {

/** Where a picture taken of a viewport goes. UI thread only. */
class ScreenFile {
public:
    ScreenFile() = delete;

    /// Asks for a file, and writes it. A failed write is told in the status bar only.
    static void save(vlMemory::Buffer jpeg);
    /// The path with ".jpg" behind it, unless it ends so already (in exactly these letters).
    static std::string withEnding(vlMemory::StringView path);
};

} // namespace vlEditor
