#pragma once
#include <QWidget>

namespace vlWinUi {

class CodeView;

/** The margin at the left of code: the number of each line, and a mark where there is a problem. */
class LineNumbers final : public QWidget {
public:
    explicit LineNumbers(CodeView& view);

    /// As much as the largest number needs.
    int wantedWidth() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool event(QEvent* event) override;

private:
    CodeView& view_;
};

} // namespace vlWinUi
