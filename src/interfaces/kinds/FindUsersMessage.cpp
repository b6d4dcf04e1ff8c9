#include "interfaces/kinds/FindUsersMessage.h"

#include <vlWinUi/Notificator.h>

namespace vlEditor {
namespace {

constexpr std::size_t mostShown = 12;

} // namespace

void showUsers(const std::string& question, const std::vector<std::string>& users) {
    if (users.empty() || vlWinUi::Notificator::getText() != question) return;
    std::string text = "Used by:";
    for (std::size_t i = 0; i < users.size() && i < mostShown; ++i)
        text += "\n" + users[i];
    if (users.size() > mostShown)
        text += "\nand " + std::to_string(users.size() - mostShown) + " more";
    vlWinUi::Notificator::setDetails(text);
}

} // namespace vlEditor
