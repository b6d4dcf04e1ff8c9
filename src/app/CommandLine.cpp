#include "app/CommandLine.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <iostream>

namespace vlEditor {
namespace {

constexpr std::uint32_t largestSize = 16384;
constexpr std::uint32_t mostFrames = 100'000;
constexpr int wrongUse = 2;

std::optional<std::uint32_t> numberFrom(std::string_view text) {
    std::uint32_t number = 0;
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    if (read.ec != std::errc() || read.ptr != end || number < 1 || number > largestSize) {
        return std::nullopt;
    }
    return number;
}

/// The text is "WIDTHxHEIGHT"; gives what is wrong with it, or nothing.
std::string readSize(const std::string& text, CommandLine::Render& render) {
    const std::size_t cross = text.find('x');
    const auto width = numberFrom(std::string_view(text).substr(0, cross));
    const auto height = cross == std::string::npos
                                ? std::nullopt
                                : numberFrom(std::string_view(text).substr(cross + 1));
    if (!width || !height) {
        return "--size: '" + text + "' is no size; expected WIDTHxHEIGHT, each from 1 to " +
               std::to_string(largestSize) + " (for example 1280x720)";
    }
    render.width = *width;
    render.height = *height;
    return {};
}

struct Wishes {
    CommandLine line;
    CommandLine::Render render;
    CommandLine::Import import;
    CommandLine::Run run;
    std::string size;
};

void describe(CLI::App& app, Wishes& wishes) {
    app.name("vlEditor");
    app.set_version_flag("--version", "vlEditor " VL_EDITOR_VERSION);
    app.add_option("PROJECT", wishes.line.project, "Project (.vls) to open")->option_text("[.vls]");
    CLI::Option* render = app.add_option(
            "--render", wishes.render.output, "Draw the project into a picture, without a window");
    render->option_text("OUT.(png|jpg)");
    app.add_option("--size", wishes.size, "Size of the picture, 1280x720 unless given")
            ->option_text("WxH")
            ->needs(render);
    app.add_option("--frames", wishes.render.frames, "Frames to draw; the last one is kept")
            ->option_text("N")
            ->check(CLI::Range(1U, mostFrames))
            ->needs(render);
    app.add_option("--compositor", wishes.render.compositor, "Compositor to draw with")
            ->option_text("NAME")
            ->needs(render);
    app.add_option("--camera", wishes.render.camera, "Camera to look through")
            ->option_text("NAME")
            ->needs(render);
    CLI::Option* into = app.add_option(
            "--into", wishes.import.project, "Project that the model is brought into");
    into->option_text("PROJECT.vls");
    CLI::Option* import = app.add_option(
            "--import", wishes.import.model, "Bring a model and its textures into a project");
    import->option_text("MODEL");
    import->needs(into);
    into->needs(import);
    CLI::Option* run = app.add_option(
            "--run", wishes.run.script, "Run an automation script, which drives the editor");
    run->option_text("SCRIPT.lua")->excludes(render)->excludes(import);
    app.add_flag("--headless", wishes.run.headless, "Run it without a display")->needs(run);
    app.add_option("--validate", wishes.line.validate, "Check declarations and projects")
            ->option_text("FILE...")
            ->expected(1, -1)
            ->excludes(render)
            ->excludes(import)
            ->excludes(run);
}

/// What CLI11 cannot say; empty when all is well.
std::string checkTogether(const CLI::App& app, Wishes& wishes) {
    const bool renders = app.count("--render") > 0;
    const bool imports = app.count("--import") > 0;
    if (imports && !wishes.line.project.empty()) {
        return "'" + wishes.line.project + "': --import takes its project with --into";
    }
    if (!wishes.line.validate.empty() && !wishes.line.project.empty()) {
        wishes.line.validate.insert(wishes.line.validate.begin(), wishes.line.project);
    }
    if (renders) {
        const std::string& output = wishes.render.output;
        if (!output.ends_with(".png") && !output.ends_with(".jpg")) {
            return "--render: '" + output + "' must end in .png or .jpg";
        }
        if (app.count("--size") > 0) {
            if (std::string wrong = readSize(wishes.size, wishes.render); !wrong.empty()) {
                return wrong;
            }
        }
        if (imports) wishes.line.project = wishes.import.project;
        if (wishes.line.project.empty()) return "--render: the PROJECT to draw is missing";
        wishes.line.render = wishes.render;
    }
    if (imports) wishes.line.import = wishes.import;
    if (app.count("--run") > 0) {
        wishes.line.run = wishes.run;
        wishes.line.keepsLayout = false;
    }
    return {};
}

} // namespace

std::optional<CommandLine> CommandLine::parse(const std::vector<std::string>& arguments,
                                              int& status) {
    CLI::App app{"Editor for resources and scenes of the Vorlane engine"};
    Wishes wishes;
    describe(app, wishes);
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
    if (!reversed.empty()) {
        wishes.line.programName = reversed.back();
        reversed.pop_back();
    }
    std::string wrong;
    try {
        app.parse(std::move(reversed));
        wrong = checkTogether(app, wishes);
    } catch (const CLI::Success& wish) {
        status = app.exit(wish);
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        wrong = error.what();
    }
    if (wrong.empty()) return wishes.line;
    std::cerr << "vlEditor: " << wrong << " (see vlEditor --help)\n";
    status = wrongUse;
    return std::nullopt;
}

} // namespace vlEditor
