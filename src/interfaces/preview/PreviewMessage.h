#pragma once
#include "core/Members.h"
#include "core/Message.h"
#include "interfaces/preview/PreviewPicture.h"

#include <cstdint>
#include <string>

namespace vlEditor {

/** Asks for a small picture of a texture or a sampler, and brings it to who asked. */
class PreviewMessage final : public Message {
public:
    void runOnUiThread() override;
    void runOnGraphicsThread() override;
    /// A look whether something has changed.
    bool isRoutine() const override { return seen != 0; }

    static constexpr auto members() {
        return std::tuple{Member{"component", &PreviewMessage::component},
                          Member{"name", &PreviewMessage::name},
                          Member{"isSampler", &PreviewMessage::isSampler},
                          Member{"seen", &PreviewMessage::seen}};
    }

    std::string component; ///< that shows it
    std::string name;      ///< of the resource
    bool isSampler = false;
    /// The engine's changes that the picture shown was drawn after; where there are no others,
    /// there is no new one. 0 always asks for one.
    std::uint64_t seen = 0;

    // Of the outcome.
    std::uint64_t changes = 0; ///< that the picture was drawn after
    bool isNew = false;
    PreviewPicture picture;
};

} // namespace vlEditor
