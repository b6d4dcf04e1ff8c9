#pragma once
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace vlEditor {

class PreviewMessage;

enum class PreviewKind { texture, sampler };

/** Has a PICTURE show what a texture or a sampler looks like, and keeps it up to date: while it can
 *  be seen, it looks twice a second whether the engine has changed. Owned by its window; it may
 *  outlive the component. UI thread only. */
class PreviewRow {
public:
    PreviewRow(std::string component, PreviewKind kind);
    ~PreviewRow();
    PreviewRow(const PreviewRow&) = delete;
    PreviewRow& operator=(const PreviewRow&) = delete;

    /// Of that name, drawn anew also when it is the one shown; nothing clears the picture, and the
    /// text given stands in its place.
    void show(std::optional<std::string> name, const std::string& reason = "Nothing is selected");

    /// Brings the outcome to the row that asked, if that still shows the resource.
    static void adopt(const PreviewMessage& outcome);

private:
    struct State;

    std::shared_ptr<State> state_;
};

} // namespace vlEditor
