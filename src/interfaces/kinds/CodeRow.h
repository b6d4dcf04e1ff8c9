#pragma once
#include "interfaces/history/PendingEdit.h"

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace vlEditor {

/** A code edit bound to a source text of the selected resource, or to several of them, its parts,
 * of which it shows one at a time. A burst of typing is posted once: after a pause, when the
 * keyboard focus leaves, when another resource or part is shown, and before a person asks for
 * anything else. While a text is being typed, or on its way, older ones that come home do not
 * replace it. UI thread only. */
class CodeRow final : public PendingEdit {
public:
    using Part = std::size_t;
    /// The record is only there to be told from others: it may be gone, and its name another's.
    using Post = std::function<void(
            const void* record, Part part, const std::string& name, const std::string& text)>;
    /// The text of each part as the resource has it.
    using Texts = std::function<std::string(Part)>;
    /// What the resource makes of a typed text, where that may be written in several ways.
    using Normal = std::function<std::string(const std::string& typed)>;
    static constexpr std::chrono::milliseconds pause{500};

    CodeRow(std::string component, Post post, Normal normal = {});
    ~CodeRow() override;

    /// The texts of one resource, which a person may edit. Its record tells it from others, also
    /// when it gets another name.
    template <class Record>
    void show(const Record& record, const std::string& name, const Texts& texts) {
        showOf(&record, name, texts);
    }
    /// Of none or several resources; no text where they differ.
    void showReadOnly(const std::optional<std::string>& text);
    /// From the next show on. What was typed for the part before is posted.
    void setPart(Part part);
    Part getPart() const { return part_; }
    /// The record is about to go; what was typed for it is dropped.
    template <class Record> void forget(const Record& record) {
        if (record_ == &record) release();
    }
    void flush() override;

private:
    using Clock = std::chrono::steady_clock;

    void showOf(const void* record, const std::string& name, const Texts& texts);
    void put(const std::string& text, bool isReadOnly, bool isMixed);
    std::string normal(const std::string& typed) const;
    void takeHome(const Texts& texts);
    void release();
    void onChange();
    void wait(std::chrono::milliseconds time);
    void onPause();

    std::string component_;
    Post post_;
    Normal normal_;
    Part part_ = 0;
    Part shownPart_ = 0;
    const void* record_ = nullptr; ///< whose text is shown; null: it cannot be edited
    std::string name_;
    bool isTyped_ = false; ///< by the person, and not posted yet
    /// What is on its way to the engine and back, by part.
    std::map<Part, std::deque<std::string>> posted_;
    Clock::time_point lastChange_;
    bool isWaiting_ = false;
    std::shared_ptr<const bool> alive_ = std::make_shared<bool>(true);
};

} // namespace vlEditor
