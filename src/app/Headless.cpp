#include "app/Headless.h"

#include "app/HeadlessRender.h"
#include "app/StderrLogger.h"

#include <vlKestrion/ModelImporter.h>
#include <vlKestrion/Validation.h>
#include <vlMemory/Utf8.h>

#include <iostream>
#include <new>

namespace vlEditor {
namespace {

void say(const std::string& line) {
    std::cerr << vlMemory::printable(line) + "\n";
}

bool validate(const std::vector<std::string>& files) {
    bool allGood = true;
    for (const std::string& file : files) {
        for (const std::string& error : vlKestrion::validateFile(file)) {
            say(error);
            allGood = false;
        }
    }
    return allGood;
}

bool import(const CommandLine::Import& wish) {
    const auto report = vlKestrion::importModel(wish.model, wish.project);
    if (!report) {
        say(report.error().message);
        return false;
    }
    for (const std::string& warning : report->warnings)
        say(warning);
    std::cout << "Imported '" << wish.model << "' into '" << wish.project << "': " << report->meshes
              << " meshes, " << report->materials << " materials, " << report->textures
              << " textures, " << report->triangles << " triangles.\n";
    return true;
}

bool render(const CommandLine::Render& wish, const std::string& project) {
    const HeadlessRender::Outcome outcome = HeadlessRender::toFile(wish, project);
    for (const std::string& error : outcome.errors)
        say(error);
    return outcome.written;
}

} // namespace

int Headless::run(const CommandLine& commandLine) {
    const StderrLogger logger;
    try {
        if (!validate(commandLine.validate)) return 1;
        if (commandLine.import && !import(*commandLine.import)) return 1;
        if (commandLine.render && !render(*commandLine.render, commandLine.project)) return 1;
    } catch (const std::bad_alloc&) {
        say("vlEditor: not enough memory");
        return 1;
    }
    return 0;
}

} // namespace vlEditor
