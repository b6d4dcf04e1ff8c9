#include "app/automation/UiTable.h"

#include "app/MainWindow.h"
#include "app/automation/Arguments.h"
#include "app/automation/UiCall.h"

#include <vlImages/Image.h>
#include <vlImages/PngEncoder.h>
#include <vlResources/FileWriter.h>

#include <algorithm>
#include <cstring>

namespace vlEditor {
namespace {

using Automation = vlWinUi::Automation;
using Labels = Automation::Labels;
using Answer = Answers::Answer;
using Done = Automation::Done;
using Interpreter = vlScripts::Interpreter;
using vlScripts::Values;

constexpr std::chrono::milliseconds pollPeriod{10};
constexpr std::int64_t usualWaitMs = 10'000;
/// Beyond it, no clock could tell the end.
constexpr std::int64_t longestWaitMs = 86'400'000;

vlScripts::Value toValue(bool value) {
    return value;
}
vlScripts::Value toValue(std::string value) {
    return value;
}
vlScripts::Value toValue(const Labels& labels) {
    vlScripts::Table table;
    for (const std::string& label : labels)
        table.items.emplace_back(label);
    return table;
}
vlScripts::Value toValue(const vlWinUi::Rectangle& rectangle) {
    vlScripts::Table table;
    table.members = {{"x", rectangle.x},
                     {"y", rectangle.y},
                     {"width", rectangle.width},
                     {"height", rectangle.height}};
    return table;
}

template <class T> Answer toAnswer(vlCommon::Result<T> result) {
    if (!result) return tl::unexpected(std::move(result.error()));
    return Values{toValue(std::move(*result))};
}

void addReading(Interpreter& scripts) {
    addFunction<std::string>(scripts, "ui.exists", [](const std::string& name) {
        return UiCall::read([=]() -> Answer { return Values{Automation::exists(name)}; });
    });
    addFunction<std::string>(scripts, "ui.visible", [](const std::string& name) {
        return UiCall::read([=] { return toAnswer(Automation::isVisible(name)); });
    });
    addFunction<std::string, Labels>(
            scripts, "ui.enabled", [](const std::string& name, const Labels& path) {
                return UiCall::read([=] { return toAnswer(Automation::isEnabled(name, path)); });
            });
    addFunction<std::string, Labels>(
            scripts, "ui.checked", [](const std::string& name, const Labels& path) {
                return UiCall::read([=] { return toAnswer(Automation::isChecked(name, path)); });
            });
    addFunction<std::string>(scripts, "ui.text", [](const std::string& name) {
        return UiCall::read([=] { return toAnswer(Automation::getText(name)); });
    });
    addFunction<std::string, Labels>(
            scripts, "ui.items", [](const std::string& name, const Labels& path) {
                return UiCall::read([=] { return toAnswer(Automation::getItems(name, path)); });
            });
    addFunction<std::string>(scripts, "ui.selected", [](const std::string& name) {
        return UiCall::read([=]() -> Answer {
            auto selected = Automation::getSelected(name);
            if (!selected) return tl::unexpected(std::move(selected.error()));
            if (selected->empty()) return Values{vlScripts::Value()};
            return Values(selected->begin(), selected->end());
        });
    });
    addFunction<std::string>(scripts, "ui.rect", [](const std::string& name) {
        return UiCall::read([=] { return toAnswer(Automation::getRectangle(name)); });
    });
}

void addWidgets(Interpreter& scripts) {
    using Button = Automation::Button;
    addFunction<std::string, std::optional<Button>, std::optional<std::string>>(
            scripts,
            "ui.click",
            [](const std::string& name, auto button, const std::optional<std::string>& item) {
                return UiCall::use([=](Done done) {
                    Automation::click(name, button.value_or(Button::Left), item.value_or(""), done);
                });
            });
    addFunction<std::string, std::string>(
            scripts, "ui.type", [](const std::string& name, const std::string& text) {
                return UiCall::use([=](Done done) { Automation::type(name, text, done); });
            });
    addFunction<std::string, std::uint32_t, Labels>(
            scripts, "ui.key", [](const std::string& name, std::uint32_t code, const Labels& held) {
                return UiCall::use([=](Done done) { Automation::key(name, code, held, done); });
            });
    addFunction<std::string, std::string>(
            scripts, "ui.select", [](const std::string& name, const std::string& label) {
                return UiCall::use([=](Done done) { Automation::select(name, label, done); });
            });
    addFunction<std::string, bool>(scripts, "ui.check", [](const std::string& name, bool checked) {
        return UiCall::use([=](Done done) { Automation::check(name, checked, done); });
    });
    addFunction<std::string, Labels>(
            scripts, "ui.menu", [](const std::string& name, const Labels& path) {
                return UiCall::use([=](Done done) { Automation::menu(name, path, done); });
            });
    addFunction<std::string, int, int, Button, Automation::Phase>(
            scripts,
            "ui.mouse",
            [](const std::string& name, int x, int y, Button button, Automation::Phase phase) {
                return UiCall::use([=](Done done) {
                    Automation::mouse(name, {x, y}, button, phase, done);
                });
            });
}

void addDialogsAndWindows(Interpreter& scripts) {
    addFunction<bool>(scripts, "ui.confirm", [](bool accept) {
        return UiCall::use([=](Done done) { Automation::confirm(accept, done); });
    });
    addFunction<std::string>(scripts, "ui.choose", [](const std::string& path) {
        return UiCall::use([=](Done done) { Automation::choose(path, done); });
    });
    addFunction<std::string, std::uint32_t, std::uint32_t>(
            scripts,
            "ui.resize",
            [](const std::string& name, std::uint32_t width, std::uint32_t height) -> Answer {
                constexpr std::uint32_t largest = 16384;
                if (width < 1 || height < 1 || width > largest || height > largest)
                    return vlCommon::fail("ui.resize: sizes are from 1 to 16384");
                return UiCall::use(
                        [=](Done done) { Automation::resize(name, width, height, done); });
            });
    addFunction<std::string>(scripts, "ui.close", [](const std::string& name) {
        return UiCall::use([=](Done done) { Automation::close(name, done); });
    });
}

Answer writePicture(const std::string& path, const std::string& window) {
    const auto picture = Automation::takePicture(window);
    if (!picture) return tl::unexpected(picture.error());
    vlImages::Image image(picture->width, picture->height, vlImages::PixelFormat::rgba8);
    auto* to = reinterpret_cast<std::uint8_t*>(image.pixels.data());
    for (std::size_t from = 0; from < picture->pixels.size(); from += 3, to += 4) {
        std::memcpy(to, picture->pixels.data() + from, 3);
        to[3] = 255;
    }
    const auto encoded = vlImages::PngEncoder::encode(image.view());
    if (!encoded) return vlCommon::fail("'" + path + "': " + encoded.error().message);
    const auto written = vlResources::FileWriter::writeFileWhole(path, encoded->span());
    if (!written) return tl::unexpected(written.error());
    return Values{};
}

/// Calls the script's function until it says true.
Answer waitUntil(Interpreter& scripts, const vlScripts::Function& function, std::int64_t ms) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    while (true) {
        const vlScripts::ExecutionResult told = scripts.call(function, {});
        if (!told.succeeded) return vlCommon::fail(told.message);
        const bool nothing = told.returned.empty() || told.returned.front().isNil();
        if (!nothing && told.returned.front().asBool().value_or(true)) return Values{};
        if (std::chrono::steady_clock::now() >= deadline)
            return vlCommon::fail("ui.wait: not so after " + std::to_string(ms) + " ms");
        if (!Answers::getInstance().pause(pollPeriod))
            return vlCommon::fail("the editor is closing");
    }
}

} // namespace

void UiTable::addTo(Interpreter& scripts) {
    addReading(scripts);
    addWidgets(scripts);
    addDialogsAndWindows(scripts);
    addFunction<std::string, std::optional<std::string>>(
            scripts,
            "ui.screenshot",
            [](const std::string& path, const std::optional<std::string>& window) {
                return UiCall::read([=] {
                    return writePicture(path, window.value_or(MainWindow::windowName));
                });
            });
    addFunction<vlScripts::Function, std::optional<std::int64_t>>(
            scripts,
            "ui.wait",
            [&scripts](const vlScripts::Function& function, std::optional<std::int64_t> ms) {
                return waitUntil(
                        scripts,
                        function,
                        std::clamp<std::int64_t>(ms.value_or(usualWaitMs), 0, longestWaitMs));
            });
}

} // namespace vlEditor
