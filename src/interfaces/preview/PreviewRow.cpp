#include "interfaces/preview/PreviewRow.h"

#include "core/MessageOrchestrator.h"
#include "interfaces/preview/PreviewMessage.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/Picture.h>
#include <vlWinUi/System.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace vlEditor {

using vlWinUi::Picture;

struct PreviewRow::State {
    std::string component;
    PreviewKind kind = PreviewKind::texture;
    std::optional<std::string> name;
    std::uint64_t seen = 0;
    bool isAsking = false; ///< an answer is on its way
    bool isStale = false;  ///< asked for again meanwhile
    bool isWaiting = false;

    Picture* picture() const { return vlWinUi::ComponentManager::get<Picture>(component); }
    void ask(std::uint64_t since) {
        PreviewMessage message;
        message.component = component;
        message.name = *name;
        message.isSampler = kind == PreviewKind::sampler;
        message.seen = since;
        isAsking = true;
        isStale = false;
        postToGraphics(std::move(message));
    }
    void askNow() {
        if (isAsking)
            isStale = true;
        else if (name)
            ask(0);
    }
    static void lookLater(const std::shared_ptr<State>& state);
    static void look(const std::shared_ptr<State>& state);
};

namespace {

constexpr std::chrono::milliseconds lookInterval{500};

std::vector<std::weak_ptr<void>>& rows() {
    static std::vector<std::weak_ptr<void>> all;
    return all;
}

} // namespace

void PreviewRow::State::lookLater(const std::shared_ptr<State>& state) {
    if (std::exchange(state->isWaiting, true)) return;
    vlWinUi::System::runAfter(lookInterval, [weak = std::weak_ptr(state)] {
        if (const auto held = weak.lock()) look(held);
    });
}

void PreviewRow::State::look(const std::shared_ptr<State>& state) {
    state->isWaiting = false;
    const Picture* picture = state->picture();
    if (!state->name || picture == nullptr) return;
    if (picture->isVisible() && !state->isAsking) state->ask(state->seen);
    lookLater(state);
}

PreviewRow::PreviewRow(std::string component, PreviewKind kind)
    : state_(std::make_shared<State>()) {
    state_->component = std::move(component);
    state_->kind = kind;
    std::erase_if(rows(), [](const auto& row) { return row.expired(); });
    rows().push_back(state_);
    show({});
}

PreviewRow::~PreviewRow() = default;

void PreviewRow::show(std::optional<std::string> name, const std::string& reason) {
    vlCommon::assertUiThread();
    const bool isOther = name != state_->name;
    state_->name = std::move(name);
    state_->seen = 0;
    if (Picture* picture = state_->picture(); picture != nullptr && (isOther || !state_->name)) {
        picture->setImage({});
        picture->setText(state_->name ? "" : reason);
    }
    if (!state_->name) return;
    state_->askNow();
    State::lookLater(state_);
}

void PreviewRow::adopt(const PreviewMessage& outcome) {
    for (const auto& row : rows()) {
        const auto state = std::static_pointer_cast<State>(row.lock());
        if (!state || state->component != outcome.component) continue;
        state->isAsking = false;
        const bool isMeant = state->name == outcome.name &&
                             outcome.isSampler == (state->kind == PreviewKind::sampler);
        Picture* picture = state->picture();
        if (isMeant && outcome.isNew && picture != nullptr) {
            state->seen = outcome.changes;
            picture->setImage(outcome.picture.image);
            picture->setText(outcome.picture.text);
        }
        if (state->isStale) state->askNow();
    }
}

} // namespace vlEditor
