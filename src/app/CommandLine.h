#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vlEditor {

/** What the program was asked to do. */
struct CommandLine {
    /// What a picture is made of without a window.
    struct Render {
        std::string output; ///< ends in .png or .jpg
        std::uint32_t width = 1280;
        std::uint32_t height = 720;
        std::uint32_t frames = 1;
        std::string compositor; ///< empty: the project's, or the editor's basic one
        std::string camera;     ///< empty: the project's, or the default view
    };
    struct Import {
        std::string model;
        std::string project;
    };

    /// The arguments as the program got them, its name first. Otherwise, and where the wish is
    /// fulfilled already (help, version), it is nothing, the text has been written and the status
    /// is what the program ends with: 0, or 2 for wrong use.
    static std::optional<CommandLine> parse(const std::vector<std::string>& arguments, int& status);

    struct Run {
        std::string script; ///< Lua
        bool headless = false;
    };

    std::string programName;
    std::string project; ///< empty: none
    std::optional<Render> render;
    std::optional<Import> import;
    std::vector<std::string> validate;
    /// The window stands as the person left it, and is kept so at the end; otherwise it is the
    /// default one and nothing is kept.
    bool keepsLayout = true;
    std::optional<Run> run;

    bool needsWindow() const { return !render && !import && validate.empty(); }
};

} // namespace vlEditor
