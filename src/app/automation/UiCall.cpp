#include "app/automation/UiCall.h"

namespace vlEditor {

Answers::Answer UiCall::read(std::function<Answers::Answer()> function) {
    Answers& answers = Answers::getInstance();
    const std::uint64_t ticket = answers.open();
    vlWinUi::Automation::invoke([&answers, ticket, function = std::move(function)] {
        answers.give(ticket, function());
    });
    return answers.wait(ticket);
}

Answers::Answer UiCall::use(std::function<void(vlWinUi::Automation::Done)> function) {
    Answers& answers = Answers::getInstance();
    const std::uint64_t ticket = answers.open();
    vlWinUi::Automation::invoke([&answers, ticket, function = std::move(function)] {
        function([&answers, ticket](vlCommon::Result<> result) {
            if (result)
                answers.give(ticket, vlScripts::Values());
            else
                answers.give(ticket, tl::unexpected(std::move(result.error())));
        });
    });
    return answers.wait(ticket);
}

} // namespace vlEditor
