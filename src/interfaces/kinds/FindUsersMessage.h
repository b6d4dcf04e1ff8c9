#pragma once
#include "interfaces/kinds/EngineSide.h"

#include <vlGraphics/References.h>

#include <string>
#include <vector>

namespace vlEditor {

/// Shows the lines under the question, where that is still the one in front. UI thread.
void showUsers(const std::string& question, const std::vector<std::string>& users);

/** Finds out who uses resources while a person is asked whether to delete them. */
template <class Kind> class FindUsersMessage final : public Message {
public:
    FindUsersMessage() = default;
    FindUsersMessage(std::vector<std::string> resources, std::string asked)
        : names(std::move(resources)), question(std::move(asked)) {}

    void runOnGraphicsThread() override {
        FindUsersMessage outcome = *this;
        for (const std::string& name : names) {
            const auto* engine = managerOf<Kind>().get(name);
            if (engine == nullptr) continue;
            for (const std::string& user : vlGraphics::usersOf(*engine))
                outcome.users.push_back(names.size() > 1 ? "'" + name + "': " + user : user);
        }
        postToUi(std::move(outcome));
    }
    void runOnUiThread() override { showUsers(question, users); }

    static constexpr auto members() {
        return std::tuple{Member{"names", &FindUsersMessage::names},
                          Member{"question", &FindUsersMessage::question}};
    }

    std::vector<std::string> names;
    std::string question;
    std::vector<std::string> users; ///< on its way back
};

} // namespace vlEditor
