#pragma once
#include "interfaces/history/PendingEdit.h"

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <string>

namespace vlEditor {

/** A code edit bound to a source text of the selected resource. A burst of typing is posted once:
 *  after a pause, when the keyboard focus leaves, when another resource is shown, and before a
 *  person asks for anything else. While a text is being typed, or on its way, older ones that come
 *  home do not replace it. UI thread only. */
class CodeRow final : public PendingEdit {
public:
    /// The record is only there to be told from others: it may be gone, and its name another's.
    using Post = std::function<void(
            const void* record, const std::string& name, const std::string& text)>;
    static constexpr std::chrono::milliseconds pause{500};

    CodeRow(std::string component, Post post);
    ~CodeRow() override;

    /// The text of one resource, which a person may edit. Its record tells it from others, also
    /// when it gets another name.
    template <class Record>
    void show(const Record& record, const std::string& name, const std::string& text) {
        showOf(&record, name, text);
    }
    /// Of none or several resources.
    void showReadOnly(const std::string& text, bool isMixed);
    /// The record is about to go; what was typed for it is dropped.
    template <class Record> void forget(const Record& record) {
        if (record_ == &record) release();
    }
    void flush() override;

private:
    using Clock = std::chrono::steady_clock;

    void showOf(const void* record, const std::string& name, const std::string& text);
    void put(const std::string& text, bool isReadOnly, bool isMixed);
    void release();
    void onChange();
    void wait(std::chrono::milliseconds time);
    void onPause();

    std::string component_;
    Post post_;
    const void* record_ = nullptr; ///< whose text is shown; null: it cannot be edited
    std::string name_;
    bool isTyped_ = false;           ///< by the person, and not posted yet
    std::deque<std::string> posted_; ///< what is on its way to the engine and back
    Clock::time_point lastChange_;
    bool isWaiting_ = false;
    std::shared_ptr<const bool> alive_ = std::make_shared<bool>(true);
};

} // namespace vlEditor
