#pragma once
#include <QHash>
#include <QString>

#include <functional>
#include <vector>

namespace vlWinUi {

/** How often each word stands in a text, kept up to date line by line so that no key press has to
 *  read a long text anew. */
class WordIndex {
public:
    /// Counts the word once more; the answer stands for it until it is removed as often.
    int add(QStringView word);
    void remove(int id);
    int count(const QString& word) const;
    void forEach(const std::function<void(const QString& word)>& visit) const;

private:
    struct Entry {
        QString word;
        int count = 0; ///< 0 for one that may be used again
    };

    std::vector<Entry> entries_;
    std::vector<int> unused_;
    QHash<QString, int> ids_;
};

} // namespace vlWinUi
