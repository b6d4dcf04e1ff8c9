#pragma once
#include <vlWinUi/Component.h>

namespace vlWinUi {

/** The dialog that asks for a file, native where the desktop has one. UI thread only. */
class FileExplorer final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::FileExplorer;

    enum class Mode { Open, Save, Directory };

    /// The title.
    void setText(vlMemory::StringView text) override;
    std::string getText() const override;
    /// Counts from the next opening on.
    void setMode(Mode mode);
    /// "Images" with "jpg"; the first filter is the chosen one. Saving adds nothing to the name.
    void addFilter(vlMemory::StringView label, vlMemory::StringView extension);
    /// Each opening starts where the last choice was made.
    void setFollowSelfDir(bool follow);
    void setCurrentDir(vlMemory::StringView absolutePath);
    std::string getCurrentDir() const;

    /// Returns at once; the callback gets the absolute path of a choice, and is not called without
    /// one.
    void open(std::function<void(const std::string& path)> chosen);
    /// The last choice, or what was set since; empty when there was none.
    std::string getCurrentSelection() const;
    /// What was chosen by other means than the dialog; nothing is called.
    void setCurrentSelection(vlMemory::StringView path);

private:
    friend class ComponentFactory;
    explicit FileExplorer(std::string name);
};

} // namespace vlWinUi
