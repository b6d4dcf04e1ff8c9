#pragma once
#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace vlWinUi {

class CodeView;

/** A thin bar under code: finds and replaces a text, or asks for the line to go to. Escape closes
 *  it. Owned by the view, which places it. */
class FindBar final : public QWidget {
public:
    enum class Mode { Find, Replace, Line };

    explicit FindBar(CodeView& view);

    /// Takes the keyboard. What is selected within a line is looked for.
    void open(Mode mode);
    void close();
    /// From the cursor on and around the end; false, as the bar says too, when there is nothing.
    bool findNext(bool backwards = false);
    const QLineEdit& field() const { return *wanted_; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

private:
    void replaceOne();
    void replaceAll();
    void accept(bool backwards);
    void find(bool backwards, int from);
    QString selectedMatch() const;
    void say(const QString& text);

    CodeView& view_;
    Mode mode_ = Mode::Find;
    QLabel* caption_;
    QLineEdit* wanted_;
    QCheckBox* exact_;
    QPushButton* next_;
    QLineEdit* replacement_;
    QPushButton* replace_;
    QPushButton* replaceAll_;
    QLabel* outcome_;
};

} // namespace vlWinUi
