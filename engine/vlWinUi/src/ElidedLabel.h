#pragma once
#include <QWidget>

namespace vlWinUi {

/** A line of text that gives way: what does not quite fit is set narrower, and what does not fit
 *  then either is cut with an ellipsis. Several lines are shown whole. */
class ElidedLabel final : public QWidget {
public:
    ElidedLabel();

    void setText(const QString& text);
    const QString& text() const { return text_; }
    void setAlignment(Qt::Alignment alignment);
    /// Where what does not fit is left out: at the right unless set.
    void setElision(Qt::TextElideMode elision);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    /// The font, or a narrower one where that makes the text fit.
    QFont fittingFont() const;
    bool fits() const;

    QString text_;
    Qt::TextElideMode elision_ = Qt::ElideRight;
    Qt::Alignment alignment_ = Qt::AlignLeft | Qt::AlignVCenter;
};

} // namespace vlWinUi
