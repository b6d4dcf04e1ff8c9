#include "interfaces/kinds/CreationWindow.h"

#include "interfaces/DialogOwner.h"
#include "interfaces/LayoutTemplate.h"

#include <vlResources/ResourceManager.h>
#include <vlWinUi/Button.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ContentLoader.h>
#include <vlWinUi/EditBox.h>

#include <utility>

namespace vlEditor {
namespace {

using vlWinUi::Button;
using vlWinUi::ComponentManager;
using vlWinUi::EditBox;
using vlWinUi::FileExplorer;
using vlWinUi::Window;

constexpr std::uint32_t enterKey = 13;
constexpr std::uint32_t escapeKey = 27;
constexpr int besideButton = 8;
constexpr unsigned windowWidth = 460;
constexpr unsigned windowHeight = 170;

/// The resource that a person has asked for last, and from which window.
struct Awaited {
    std::string base;
    std::string name;
};
Awaited awaited;

template <class Widget> Widget& part(const KindTexts& texts, std::string_view name) {
    return *ComponentManager::createOrRetrieve<Widget>(texts.creationPart(name));
}

/// Posts what the box says, unless it says nothing, and closes the window.
void finish(const KindTexts& texts, EditBox& box, const std::function<void(std::string)>& post) {
    const std::string text = box.getText();
    if (text.empty()) return;
    post(text);
    part<EditBox>(texts, "LOAD_EDIT_").setText("");
    part<EditBox>(texts, "NAME_EDIT_").setText("");
    part<Window>(texts, "").setVisible(false);
}

void createNamed(const ResourceCommands& commands) {
    finish(commands.texts(),
           part<EditBox>(commands.texts(), "NAME_EDIT_"),
           [&](const std::string& name) {
               awaited.name = name;
               commands.create(name);
           });
}

void loadNamed(const ResourceCommands& commands) {
    finish(commands.texts(),
           part<EditBox>(commands.texts(), "LOAD_EDIT_"),
           [&](const std::string& path) { commands.load(path); });
}

void takeSelection(const KindTexts& texts) {
    const std::string path = CreationWindow::explorer(texts).getCurrentSelection();
    if (!path.empty()) part<EditBox>(texts, "LOAD_EDIT_").setText(path);
}

void search(const KindTexts& texts) {
    takeSelection(texts);
    FileExplorer& files = CreationWindow::explorer(texts);
    files.setMode(FileExplorer::Mode::Open);
    files.setText(texts.creationTitle);
    files.open([&texts](const std::string&) { takeSelection(texts); });
}

void createExplorer(const KindTexts& texts) {
    FileExplorer& files = CreationWindow::explorer(texts);
    files.addFilter(texts.filterLabel, texts.extension);
    files.setFollowSelfDir(true);
    files.setCurrentDir(vlResources::ResourceManager::getInstance().getWorkingPathAbsolute());
}

void bindBox(EditBox& box, const std::function<void()>& act, Window& window) {
    box.setKeyDownCallback([act, &window](std::uint32_t key) {
        if (key == enterKey) act();
        if (key == escapeKey) window.setVisible(false);
    });
}

void bind(const ResourceCommands& commands) {
    const KindTexts& texts = commands.texts();
    auto& window = part<Window>(texts, "");
    bindBox(
            part<EditBox>(texts, "NAME_EDIT_"), [&commands] { createNamed(commands); }, window);
    bindBox(
            part<EditBox>(texts, "LOAD_EDIT_"), [&commands] { loadNamed(commands); }, window);
    part<Button>(texts, "CREATE_").setButtonClickCallback([&commands] { createNamed(commands); });
    part<Button>(texts, "LOAD_").setButtonClickCallback([&commands] { loadNamed(commands); });
    part<Button>(texts, "LOAD_SEARCH_").setButtonClickCallback([&texts] { search(texts); });
    part<Window>(texts, "").setKeyCallback([&window](const vlWinUi::KeyEvent& key) {
        if (key.pressed && key.virtualKey == escapeKey) window.setVisible(false);
    });
}

} // namespace

void CreationWindow::create(const ResourceCommands& commands) {
    const KindTexts& texts = commands.texts();
    if (ComponentManager::get(texts.creationPart("")) != nullptr) return;
    const std::string text = LayoutTemplate::fill(layoutText("resource_creation.json"),
                                                  {{"$creation$", texts.creation},
                                                   {"$title$", texts.creationTitle},
                                                   {"$thing$", texts.thing()}});
    vlWinUi::ContentLoader::processInterfaceSources(text, texts.creation);
    createExplorer(texts);
    bind(commands);
    part<Window>(texts, "").load();
}

void CreationWindow::show(const KindTexts& texts,
                          const vlWinUi::Component& anchor,
                          std::string base) {
    awaited = {std::move(base), {}};
    auto& window = part<Window>(texts, "");
    DialogOwner::set(window, anchor);
    const vlWinUi::Point place = anchor.getPositionInScreen();
    window.setRectangle({place.x + static_cast<int>(anchor.getWidth()) + besideButton,
                         place.y - static_cast<int>(windowHeight) / 2,
                         windowWidth,
                         windowHeight});
    window.setVisible(true);
    part<EditBox>(texts, "NAME_EDIT_").focusWindow();
}

bool CreationWindow::takeAwaited(const std::string& base, const std::string& name) {
    if (awaited.base != base || awaited.name != name) return false;
    awaited = {};
    return true;
}

vlWinUi::FileExplorer& CreationWindow::explorer(const KindTexts& texts) {
    return *ComponentManager::createOrRetrieve<FileExplorer>(texts.explorer);
}

void CreationWindow::askForFile(const KindTexts& texts,
                                std::string_view name,
                                std::function<void(const std::string&)> chosen) {
    FileExplorer& files = explorer(texts);
    files.setText("Save " + thingNamed(texts, name));
    files.setMode(FileExplorer::Mode::Save);
    files.open(std::move(chosen));
}

} // namespace vlEditor
