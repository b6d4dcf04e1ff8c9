#include "ElidedLabel.h"
#include "Native.h"
#include "Text.h"

#include <vlWinUi/Static.h>

namespace vlWinUi {
namespace {

Qt::Alignment alignmentOf(Static::Alignment alignment) {
    constexpr Qt::Alignment ROWS[] = {Qt::AlignTop, Qt::AlignVCenter, Qt::AlignBottom};
    constexpr Qt::Alignment COLUMNS[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
    const auto index = static_cast<std::size_t>(alignment);
    return ROWS[index / 3] | COLUMNS[index % 3];
}

} // namespace

Static::Static(std::string name)
    : Component(std::move(name), TYPE, std::make_unique<Native>(new ElidedLabel)) {
}

void Static::setText(vlMemory::StringView text) {
    widgetAs<ElidedLabel>(*this).setText(toQt(text));
}

std::string Static::getText() const {
    return fromQt(widgetAs<ElidedLabel>(*this).text());
}

void Static::setAlignment(Alignment alignment) {
    widgetAs<ElidedLabel>(*this).setAlignment(alignmentOf(alignment));
}

void Static::setPath(bool isPath) {
    widgetAs<ElidedLabel>(*this).setElision(isPath ? Qt::ElideMiddle : Qt::ElideRight);
}

void Static::setEmphasised(bool emphasised) {
    QFont font;
    font.setWeight(emphasised ? QFont::DemiBold : QFont::Normal);
    widgetAs<ElidedLabel>(*this).setFont(font);
}

void Static::setFocusable(bool focusable) {
    native().widget->setFocusPolicy(focusable ? Qt::StrongFocus : Qt::NoFocus);
}

} // namespace vlWinUi
