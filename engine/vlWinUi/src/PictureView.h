#pragma once
#include <vlWinUi/Picture.h>

#include <QImage>
#include <QWidget>

namespace vlWinUi {

/** The widget of a Picture. */
class PictureView final : public QWidget {
public:
    PictureView();

    void setImage(QImage image);
    const QImage& image() const { return image_; }
    void setScaling(Picture::Scaling scaling);
    void setText(const QString& text);
    const QString& text() const { return text_; }
    /// Where the picture is drawn, in the widget's pixels; empty without one.
    QRectF place() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    int captionHeight() const;
    void drawText(QPainter& painter) const;
    void drawImage(QPainter& painter);

    QImage image_;
    QImage scaled_; ///< smoothly made smaller, kept until the size changes
    QString text_;
    Picture::Scaling scaling_ = Picture::Scaling::Automatic;
};

} // namespace vlWinUi
