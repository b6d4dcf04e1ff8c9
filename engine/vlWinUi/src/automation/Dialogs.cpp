#include "Text.h"
#include "automation/Events.h"
#include "automation/Steps.h"

#include <vlWinUi/ComponentManager.h>

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

namespace vlWinUi {
namespace {

using vlCommon::Result;

/// The innermost dialog of the kind that is shown; null when there is none.
template <class D> D* dialogInFront() {
    D* front = nullptr;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* dialog = qobject_cast<D*>(widget);
        if (dialog != nullptr && dialog->isVisible() &&
            (front == nullptr || dialog == QApplication::activeModalWidget()))
            front = dialog;
    }
    return front;
}

Result<> answer(bool accept) {
    QMessageBox* dialog = dialogInFront<QMessageBox>();
    if (dialog == nullptr) return vlCommon::fail("no confirmation is open");
    QAbstractButton* button = dialog->button(accept ? QMessageBox::Yes : QMessageBox::Cancel);
    if (button == nullptr) button = dialog->button(accept ? QMessageBox::Ok : QMessageBox::No);
    if (button == nullptr) button = dialog->button(QMessageBox::Ok);
    if (button == nullptr)
        return vlCommon::fail("the dialog '" + fromQt(dialog->windowTitle()) +
                              "' has no such answer");
    sendClick({button, button->rect().center()}, Qt::LeftButton);
    return {};
}

Result<> enterPath(const QString& given) {
    auto* dialog = dialogInFront<QFileDialog>();
    if (dialog == nullptr) return vlCommon::fail("no file dialog is open");
    if (given.isEmpty()) {
        dialog->reject();
        return {};
    }
    const QFileInfo file(given);
    const std::string path = fromQt(file.absoluteFilePath());
    if (dialog->acceptMode() == QFileDialog::AcceptOpen && !file.exists())
        return refuse(path, "does not exist");
    if (dialog->fileMode() == QFileDialog::Directory && !file.isDir())
        return refuse(path, "is no folder");
    auto* edit = dialog->findChild<QLineEdit*>("fileNameEdit");
    const auto* buttons = dialog->findChild<QDialogButtonBox*>();
    if (edit == nullptr || buttons == nullptr)
        return vlCommon::fail("the file dialog is the desktop's own: it takes no path from here");
    edit->setText(toQt(path));
    QAbstractButton* accept = buttons->button(dialog->acceptMode() == QFileDialog::AcceptSave
                                                      ? QDialogButtonBox::Save
                                                      : QDialogButtonBox::Open);
    if (accept == nullptr || !accept->isEnabled()) return refuse(path, "cannot be chosen here");
    sendClick({accept, accept->rect().center()}, Qt::LeftButton);
    return {};
}

} // namespace

void Automation::confirm(bool accept, Done done) {
    Steps::run({[accept] { return answer(accept); }}, std::move(done));
}

void Automation::choose(vlMemory::StringView path, Done done) {
    Steps::run({[path = toQt(path)] { return enterPath(path); }}, std::move(done));
}

void Automation::resize(vlMemory::StringView name, unsigned width, unsigned height, Done done) {
    Steps::run({[name = std::string(name), width, height]() -> Result<> {
                   const auto found = findComponent(name);
                   if (!found) return tl::unexpected(found.error());
                   QWidget& widget = *(*found)->native().widget;
                   if (!widget.isWindow()) return refuse(name, "is no window of its own");
                   if (!widget.isVisible()) return refuse(name, "is not visible");
                   widget.resize(static_cast<int>(width), static_cast<int>(height));
                   return {};
               }},
               std::move(done));
}

void Automation::close(vlMemory::StringView name, Done done) {
    Steps::run({[name = std::string(name)]() -> Result<> {
                   const auto found = findUsable(name);
                   if (!found) return tl::unexpected(found.error());
                   QWidget& widget = *(*found)->native().widget;
                   if (!widget.isWindow()) return refuse(name, "is no window of its own");
                   widget.close();
                   return {};
               }},
               std::move(done));
}

} // namespace vlWinUi
