#include "Style.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>

#include <algorithm>

namespace vlWinUi {
namespace {

constexpr qreal RADIUS = 3.0;
constexpr int ARROW_ROOM = 20;      ///< of a combo box, pixels
constexpr int COMBO_TEXT_INSET = 2; ///< left and right of its text together, pixels
constexpr int LINE_HEIGHT = 22;     ///< of lists and trees, pixels

/// An open arrow head; `angle` 0 points down, 90 left, 180 up, 270 right.
void drawChevron(QPainter& painter, const QPointF& centre, qreal angle, const QColor& color) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(centre);
    painter.rotate(angle);
    painter.setPen(QPen(color, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF points[] = {{-3.5, -1.75}, {0, 1.75}, {3.5, -1.75}};
    painter.drawPolyline(points, 3);
    painter.restore();
}

void drawBox(QPainter& painter, const QRect& area, const QColor& fill, const QColor& border) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(border, 1.0));
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(area).adjusted(0.5, 0.5, -0.5, -0.5), RADIUS, RADIUS);
    painter.restore();
}

void drawTick(QPainter& painter, const QRect& area, const QColor& color) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QRectF box(area);
    const QPointF points[] = {
            {box.left() + box.width() * 0.26, box.top() + box.height() * 0.52},
            {box.left() + box.width() * 0.44, box.top() + box.height() * 0.70},
            {box.left() + box.width() * 0.76, box.top() + box.height() * 0.32},
    };
    painter.drawPolyline(points, 3);
    painter.restore();
}

void drawDash(QPainter& painter, const QRect& area, const QColor& color) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 1.8, Qt::SolidLine, Qt::RoundCap));
    const QRectF box(area);
    const QPointF reach(box.width() * 0.24, 0);
    painter.drawLine(box.center() - reach, box.center() + reach);
    painter.restore();
}

/// In physical pixels enough for screens of twice the density.
template <class Draw> QIcon drawIcon(int side, Draw draw) {
    constexpr int density = 2;
    QPixmap picture(side * density, side * density);
    picture.setDevicePixelRatio(density);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    draw(painter);
    painter.end();
    return QIcon(picture);
}

/// A letter on a disc, as it stands beside a message.
QIcon drawSign(const QString& letter, const QColor& disc, const QColor& ink) {
    constexpr int side = 32;
    return drawIcon(side, [&](QPainter& painter) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(disc);
        painter.drawEllipse(QRectF(1, 1, side - 2, side - 2));
        QFont font = painter.font();
        font.setPixelSize(side * 5 / 8);
        font.setWeight(QFont::DemiBold);
        painter.setFont(font);
        painter.setPen(ink);
        painter.drawText(QRectF(0, 0, side, side), Qt::AlignCenter, letter);
    });
}

std::optional<qreal> arrowAngle(QStyle::PrimitiveElement element) {
    switch (element) {
    case QStyle::PE_IndicatorArrowDown:
        return 0;
    case QStyle::PE_IndicatorArrowLeft:
        return 90;
    case QStyle::PE_IndicatorArrowUp:
        return 180;
    case QStyle::PE_IndicatorArrowRight:
        return 270;
    default:
        return std::nullopt;
    }
}

} // namespace

Style::Style() : QProxyStyle("Fusion") {
}

void Style::drawPrimitive(PrimitiveElement element,
                          const QStyleOption* option,
                          QPainter* painter,
                          const QWidget* widget) const {
    if (!shades_) return QProxyStyle::drawPrimitive(element, option, painter, widget);
    const bool enabled = option->state.testFlag(State_Enabled);
    if (const auto angle = arrowAngle(element))
        return drawChevron(*painter,
                           QRectF(option->rect).center(),
                           *angle,
                           enabled ? shades_->muted : shades_->disabled);
    switch (element) {
    case PE_IndicatorCheckBox:
        return drawCheckBox(*option, *painter);
    case PE_IndicatorBranch:
        return drawBranch(*option, *painter);
    case PE_IndicatorTabClose:
        return drawCross(*option, *painter);
    case PE_IndicatorMenuCheckMark:
        return drawTick(*painter, option->rect, enabled ? shades_->text : shades_->disabled);
    case PE_FrameFocusRect:
        return;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void Style::drawCheckBox(const QStyleOption& option, QPainter& painter) const {
    const bool enabled = option.state.testFlag(State_Enabled);
    const bool on = option.state.testFlag(State_On);
    const bool hovered = enabled && option.state.testFlag(State_MouseOver);
    const bool focused = option.state.testFlag(State_HasFocus);
    QColor fill = enabled ? shades_->field : shades_->background;
    QColor border = hovered ? shades_->focus : shades_->borderStrong;
    const bool mixed = option.state.testFlag(State_NoChange);
    if ((on || mixed) && enabled) fill = border = shades_->accent;
    if (focused) border = shades_->focus;
    if (!enabled) border = shades_->border;
    drawBox(painter, option.rect, fill, border);
    const QColor ink = enabled ? shades_->accentText : shades_->disabled;
    if (on) drawTick(painter, option.rect, ink);
    if (mixed) drawDash(painter, option.rect, ink);
}

/// Of a tab: quiet until the mouse is on it.
void Style::drawCross(const QStyleOption& option, QPainter& painter) const {
    const bool hovered =
            option.state.testFlag(State_Raised) ||
            (option.state.testFlag(State_MouseOver) && option.state.testFlag(State_Enabled));
    const QRectF area = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (hovered) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(shades_->raisedHover);
        painter.drawRoundedRect(area, RADIUS, RADIUS);
    }
    painter.setPen(
            QPen(hovered ? shades_->text : shades_->muted, 1.3, Qt::SolidLine, Qt::RoundCap));
    const QPointF middle = area.center();
    constexpr qreal reach = 3.2;
    painter.drawLine(middle - QPointF(reach, reach), middle + QPointF(reach, reach));
    painter.drawLine(middle - QPointF(reach, -reach), middle + QPointF(reach, -reach));
    painter.restore();
}

void Style::drawBranch(const QStyleOption& option, QPainter& painter) const {
    if (!option.state.testFlag(State_Children)) return;
    const bool open = option.state.testFlag(State_Open);
    const bool hovered = option.state.testFlag(State_MouseOver);
    drawChevron(painter,
                QRectF(option.rect).center(),
                open ? 0 : 270,
                hovered ? shades_->text : shades_->muted);
}

/// What the base style has is made for light grounds, and it would load every picture plugin for
/// the arrow of a bar that is too short, whether it is ever seen or not.
QIcon Style::standardIcon(StandardPixmap which,
                          const QStyleOption* option,
                          const QWidget* widget) const {
    if (!shades_) return QProxyStyle::standardIcon(which, option, widget);
    switch (which) {
    case SP_ToolBarHorizontalExtensionButton:
        return drawIcon(16, [this](QPainter& painter) {
            drawChevron(painter, QPointF(8, 8), 270, shades_->text);
        });
    case SP_MessageBoxInformation:
        return drawSign("i", shades_->accent, shades_->accentText);
    case SP_MessageBoxQuestion:
        return drawSign("?", shades_->accent, shades_->accentText);
    case SP_MessageBoxWarning:
    case SP_MessageBoxCritical:
        return drawSign("!", shades_->problem, QColor(Qt::white));
    default:
        return QProxyStyle::standardIcon(which, option, widget);
    }
}

void Style::drawControl(ControlElement element,
                        const QStyleOption* option,
                        QPainter* painter,
                        const QWidget* widget) const {
    const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
    if (element != CE_ComboBoxLabel || combo == nullptr)
        return QProxyStyle::drawControl(element, option, painter, widget);
    // The base style cuts a letter in two where the room ends.
    QStyleOptionComboBox shown = *combo;
    const QRect room = subControlRect(CC_ComboBox, combo, SC_ComboBoxEditField, widget);
    shown.currentText = combo->fontMetrics.elidedText(
            combo->currentText, Qt::ElideRight, room.width() - COMBO_TEXT_INSET);
    QProxyStyle::drawControl(element, &shown, painter, widget);
}

void Style::drawComplexControl(ComplexControl control,
                               const QStyleOptionComplex* option,
                               QPainter* painter,
                               const QWidget* widget) const {
    if (control == CC_ComboBox && shades_)
        drawComboBox(*option, *painter);
    else
        QProxyStyle::drawComplexControl(control, option, painter, widget);
}

void Style::drawComboBox(const QStyleOptionComplex& option, QPainter& painter) const {
    const bool enabled = option.state.testFlag(State_Enabled);
    const bool hovered = enabled && option.state.testFlag(State_MouseOver);
    const bool focused = enabled && option.state.testFlag(State_HasFocus);
    QColor fill = hovered ? shades_->raisedHover : shades_->raised;
    if (!enabled) fill = shades_->background;
    QColor border = hovered ? shades_->borderStrong : shades_->border;
    if (focused) border = shades_->focus;
    drawBox(painter, option.rect, fill, border);
    const QPointF centre(option.rect.right() - ARROW_ROOM / 2.0, QRectF(option.rect).center().y());
    drawChevron(painter, centre, 0, enabled ? shades_->muted : shades_->disabled);
}

QRect Style::subControlRect(ComplexControl control,
                            const QStyleOptionComplex* option,
                            SubControl part,
                            const QWidget* widget) const {
    if (control == CC_ComboBox) {
        const QRect area = option->rect;
        if (part == SC_ComboBoxArrow) return area.adjusted(area.width() - ARROW_ROOM, 0, 0, 0);
        if (part == SC_ComboBoxEditField) return area.adjusted(7, 1, -ARROW_ROOM, -1);
    }
    return QProxyStyle::subControlRect(control, option, part, widget);
}

QSize Style::sizeFromContents(ContentsType type,
                              const QStyleOption* option,
                              const QSize& contents,
                              const QWidget* widget) const {
    QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    if (type == CT_ItemViewItem) size.setHeight(std::max(size.height(), LINE_HEIGHT));
    return size;
}

int Style::pixelMetric(PixelMetric metric,
                       const QStyleOption* option,
                       const QWidget* widget) const {
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
        return 15;
    case PM_CheckBoxLabelSpacing:
        return 7;
    case PM_SmallIconSize:
    case PM_TabCloseIndicatorWidth:
    case PM_TabCloseIndicatorHeight:
        return 16;
    case PM_MessageBoxIconSize:
        return 32;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int Style::styleHint(StyleHint hint,
                     const QStyleOption* option,
                     const QWidget* widget,
                     QStyleHintReturn* returned) const {
    switch (hint) {
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
    // A list that folds out below the box, where the eyes are, rather than over it.
    case SH_ComboBox_Popup:
        return 0;
    case SH_ToolTip_WakeUpDelay:
        return 500;
    case SH_UnderlineShortcut:
        return 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returned);
    }
}

} // namespace vlWinUi
