#include "Call.h"
#include "Native.h"
#include "Text.h"
#include "WindowSheet.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/FileExplorer.h>

#include <QFileDialog>

namespace vlWinUi {
namespace {

struct FileExplorerNative final : Native {
    FileExplorerNative() : Native(new QFileDialog) {
        wearSheet(dialog());
        dialog().setWindowModality(Qt::ApplicationModal);
        connect(&dialog(), &QFileDialog::fileSelected, this, [this](const QString& path) {
            selection = path;
            if (follow) directory = QFileInfo(path).absolutePath();
            call(chosen, fromQt(path));
        });
    }
    QFileDialog& dialog() { return *static_cast<QFileDialog*>(widget); }

    QStringList filters;
    QString directory;
    QString selection;
    bool follow = true;
    FileExplorer::Mode mode = FileExplorer::Mode::Open;
    std::function<void(const std::string&)> chosen;
};

void setMode(QFileDialog& dialog, FileExplorer::Mode mode) {
    using Mode = FileExplorer::Mode;
    dialog.setAcceptMode(mode == Mode::Save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(mode == Mode::Save   ? QFileDialog::AnyFile
                       : mode == Mode::Open ? QFileDialog::ExistingFile
                                            : QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly, mode == Mode::Directory);
}

} // namespace

FileExplorer::FileExplorer(std::string name)
    : Component(std::move(name), TYPE, std::make_unique<FileExplorerNative>()) {
}

void FileExplorer::setText(vlMemory::StringView text) {
    native().widget->setWindowTitle(toQt(text));
}

std::string FileExplorer::getText() const {
    return fromQt(native().widget->windowTitle());
}

void FileExplorer::setMode(Mode mode) {
    nativeAs<FileExplorerNative>(*this).mode = mode;
}

void FileExplorer::addFilter(vlMemory::StringView label, vlMemory::StringView extension) {
    nativeAs<FileExplorerNative>(*this).filters.append(
            toQt(std::string(label) + " (*." + std::string(extension) + ")"));
}

void FileExplorer::setFollowSelfDir(bool follow) {
    nativeAs<FileExplorerNative>(*this).follow = follow;
}

void FileExplorer::setCurrentDir(vlMemory::StringView absolutePath) {
    nativeAs<FileExplorerNative>(*this).directory = toQt(absolutePath);
}

std::string FileExplorer::getCurrentDir() const {
    return fromQt(nativeAs<FileExplorerNative>(*this).directory);
}

void FileExplorer::open(std::function<void(const std::string&)> chosen) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<FileExplorerNative>(*this);
    native.chosen = std::move(chosen);
    vlWinUi::setMode(native.dialog(), native.mode);
    if (native.mode != Mode::Directory)
        native.dialog().setNameFilters(native.filters + QStringList{"All files (*)"});
    native.dialog().setDirectory(native.directory);
    native.dialog().show();
    native.dialog().raise();
}

std::string FileExplorer::getCurrentSelection() const {
    return fromQt(nativeAs<FileExplorerNative>(*this).selection);
}

void FileExplorer::setCurrentSelection(vlMemory::StringView path) {
    vlCommon::assertUiThread();
    nativeAs<FileExplorerNative>(*this).selection = toQt(path);
}

} // namespace vlWinUi
