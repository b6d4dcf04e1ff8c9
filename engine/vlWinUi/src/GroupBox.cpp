#include "Native.h"
#include "Text.h"

#include <vlWinUi/GroupBox.h>

#include <QGroupBox>

namespace vlWinUi {

GroupBox::GroupBox(std::string name)
    : Component(std::move(name), TYPE, std::make_unique<Native>(new QGroupBox)) {
}

void GroupBox::setText(vlMemory::StringView text) {
    widgetAs<QGroupBox>(*this).setTitle(labelToQt(text));
}

std::string GroupBox::getText() const {
    return labelFromQt(widgetAs<QGroupBox>(*this).title());
}

} // namespace vlWinUi
