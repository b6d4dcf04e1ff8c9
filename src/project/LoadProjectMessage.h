#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <string>

namespace vlEditor {

/** Adds what a project holds to what is there already: resources, materials, scene, and the way the
 *  project wants to be seen. What is faulty becomes a line in the log each. */
class LoadProjectMessage final : public Message {
public:
    LoadProjectMessage() = default;
    explicit LoadProjectMessage(std::string_view pathValue) : path(pathValue) {}

    void runOnUiThread() override {}
    void runOnGraphicsThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"path", &LoadProjectMessage::path}};
    }

    std::string path; ///< relative to the working directory, where it lies inside it
};

} // namespace vlEditor
