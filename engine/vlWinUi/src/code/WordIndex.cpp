#include "code/WordIndex.h"

namespace vlWinUi {

int WordIndex::add(QStringView word) {
    // Looked for without a copy: most words are there already.
    const auto found = ids_.constFind(QString::fromRawData(word.data(), word.size()));
    if (found != ids_.constEnd()) {
        ++entries_[static_cast<std::size_t>(*found)].count;
        return *found;
    }
    if (unused_.empty()) {
        unused_.push_back(static_cast<int>(entries_.size()));
        entries_.emplace_back();
    }
    const int id = unused_.back();
    unused_.pop_back();
    entries_[static_cast<std::size_t>(id)] = {word.toString(), 1};
    ids_.insert(entries_[static_cast<std::size_t>(id)].word, id);
    return id;
}

void WordIndex::remove(int id) {
    Entry& entry = entries_[static_cast<std::size_t>(id)];
    if (--entry.count > 0) return;
    ids_.remove(entry.word);
    entry.word.clear();
    unused_.push_back(id);
}

int WordIndex::count(const QString& word) const {
    const auto found = ids_.constFind(word);
    return found == ids_.constEnd() ? 0 : entries_[static_cast<std::size_t>(*found)].count;
}

void WordIndex::forEach(const std::function<void(const QString& word)>& visit) const {
    for (const Entry& entry : entries_)
        if (entry.count > 0) visit(entry.word);
}

} // namespace vlWinUi
