#include "Call.h"
#include "Native.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/Notificator.h>

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include <vector>

namespace vlWinUi {
namespace {

constexpr const char* TEXT = "vlText";
constexpr const char* DETAILS = "vlDetails";
constexpr qsizetype LONGEST = 1500; ///< text that is shown whole, in characters
constexpr qsizetype LONGEST_WORD = 60;

/// Within the bounds of a screen, whatever a name in it is like: the middle is left out of what is
/// too long, and a word that fills lines may be broken.
QString bounded(const QString& text) {
    const QString whole = text.size() <= LONGEST ? text
                                                 : text.left(LONGEST / 2) + QChar(0x2026) +
                                                           text.right(LONGEST / 2);
    QString shown;
    qsizetype run = 0;
    for (const QChar letter : whole) {
        run = letter.isSpace() ? 0 : run + 1;
        if (run > LONGEST_WORD && !letter.isLowSurrogate()) {
            shown += QChar(0x200B);
            run = 1;
        }
        shown += letter;
    }
    return shown;
}

/// In the order of their opening.
std::vector<QPointer<QMessageBox>>& dialogs() {
    static std::vector<QPointer<QMessageBox>> all;
    return all;
}

QMessageBox* dialogInFront() {
    std::erase_if(dialogs(), [](const QPointer<QMessageBox>& one) {
        const QMessageBox* dialog = one;
        return dialog == nullptr || !dialog->isVisible();
    });
    return dialogs().empty() ? nullptr : dialogs().back().data();
}

QMessageBox& makeDialog(vlMemory::StringView text, Component& anchor, QMessageBox::Icon icon) {
    auto* dialog = new QMessageBox(anchor.native().widget->window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setObjectName("vlNotificator");
    dialog->setIcon(icon);
    dialog->setTextFormat(Qt::PlainText);
    dialog->setProperty(TEXT, toQt(text));
    dialog->setText(bounded(toQt(text)));
    dialogInFront();
    dialogs().emplace_back(dialog);
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
    return dialogInFront() != nullptr;
}

void Notificator::answer(bool accept) {
    vlCommon::assertUiThread();
    QMessageBox* open = dialogInFront();
    if (open == nullptr) return;
    QMessageBox& dialog = *open;
    QAbstractButton* button = dialog.button(accept ? QMessageBox::Yes : QMessageBox::Cancel);
    if (button == nullptr) button = dialog.button(QMessageBox::Ok);
    button->click();
}

void Notificator::setDetails(vlMemory::StringView text) {
    vlCommon::assertUiThread();
    QMessageBox* dialog = dialogInFront();
    if (dialog == nullptr) return;
    // As it is written: Qt takes what looks like marked-up text for such here, whatever the format.
    const QString written = bounded(toQt(text)).toHtmlEscaped().replace('\n', "<br>");
    dialog->setProperty(DETAILS, toQt(text));
    dialog->setInformativeText(written);
    if (auto* shown = dialog->findChild<QLabel*>("qt_msgbox_informativelabel")) {
        shown->setTextFormat(Qt::RichText);
        shown->setForegroundRole(QPalette::PlaceholderText);
    }
}

std::string Notificator::getText() {
    const QMessageBox* dialog = dialogInFront();
    return dialog == nullptr ? std::string() : fromQt(dialog->property(TEXT).toString());
}

std::string Notificator::getDetails() {
    const QMessageBox* dialog = dialogInFront();
    return dialog == nullptr ? std::string() : fromQt(dialog->property(DETAILS).toString());
}

} // namespace vlWinUi
