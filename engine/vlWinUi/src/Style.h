#pragma once
#include "Shades.h"

#include <QProxyStyle>

#include <optional>

namespace vlWinUi {

/** Draws what a style sheet cannot without picture files: arrows, ticks and combo boxes. */
class Style final : public QProxyStyle {
public:
    Style();

    void setShades(const Shades& shades) { shades_ = shades; }
    /// Of the active theme, of which there is one from the library's start on.
    const Shades& getShades() const { return *shades_; }

    void drawPrimitive(PrimitiveElement element,
                       const QStyleOption* option,
                       QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element,
                     const QStyleOption* option,
                     QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control,
                            const QStyleOptionComplex* option,
                            QPainter* painter,
                            const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control,
                         const QStyleOptionComplex* option,
                         SubControl part,
                         const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type,
                           const QStyleOption* option,
                           const QSize& contents,
                           const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric,
                    const QStyleOption* option,
                    const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap which,
                       const QStyleOption* option,
                       const QWidget* widget) const override;
    int styleHint(StyleHint hint,
                  const QStyleOption* option,
                  const QWidget* widget,
                  QStyleHintReturn* returned) const override;

private:
    void drawCheckBox(const QStyleOption& option, QPainter& painter) const;
    void drawCross(const QStyleOption& option, QPainter& painter) const;
    void drawBranch(const QStyleOption& option, QPainter& painter) const;
    void drawComboBox(const QStyleOptionComplex& option, QPainter& painter) const;

    std::optional<Shades> shades_;
};

} // namespace vlWinUi
