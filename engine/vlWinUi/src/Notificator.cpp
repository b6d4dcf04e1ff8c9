#include "Call.h"
#include "Native.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/Notificator.h>

#include <QMessageBox>
#include <QPushButton>

namespace vlWinUi {
namespace {

QPointer<QMessageBox>& dialogInFront() {
    static QPointer<QMessageBox> dialog;
    return dialog;
}

QMessageBox& makeDialog(vlMemory::StringView text, Component& anchor, QMessageBox::Icon icon) {
    auto* dialog = new QMessageBox(anchor.native().widget->window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setObjectName("vlNotificator");
    dialog->setIcon(icon);
    dialog->setTextFormat(Qt::PlainText);
    dialog->setText(toQt(text));
    dialogInFront() = dialog;
    return *dialog;
}

} // namespace

void Notificator::confirm(vlMemory::StringView text,
                          Component& anchor,
                          std::function<void()> accept) {
    vlCommon::assertUiThread();
    QMessageBox& dialog = makeDialog(text, anchor, QMessageBox::Question);
    dialog.setStandardButtons(QMessageBox::Yes | QMessageBox::Cancel);
    dialog.setDefaultButton(QMessageBox::Cancel);
    QObject::connect(
            &dialog, &QDialog::finished, &dialog, [accept = std::move(accept)](int result) {
                if (result == QMessageBox::Yes) call(accept);
            });
    dialog.open();
}

void Notificator::inform(vlMemory::StringView text, Component& anchor) {
    vlCommon::assertUiThread();
    makeDialog(text, anchor, QMessageBox::Information).open();
}

bool Notificator::isOpen() {
    const QMessageBox* open = dialogInFront();
    return open != nullptr && open->isVisible();
}

void Notificator::answer(bool accept) {
    vlCommon::assertUiThread();
    QMessageBox* open = dialogInFront();
    if (open == nullptr || !open->isVisible()) return;
    QMessageBox& dialog = *open;
    QAbstractButton* button = dialog.button(accept ? QMessageBox::Yes : QMessageBox::Cancel);
    if (button == nullptr) button = dialog.button(QMessageBox::Ok);
    button->click();
}

} // namespace vlWinUi
