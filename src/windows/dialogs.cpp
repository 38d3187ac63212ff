#include "windows/dialogs.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include "windows/texts.h"

namespace velora::windows {

namespace {

QMessageBox::Icon icon_named(Icon icon)
{
    switch (icon) {
        case Icon::Information:
            return QMessageBox::Information;
        case Icon::Critical:
            return QMessageBox::Critical;
        default:
            return QMessageBox::Warning;
    }
}

/// Texts and patterns in turn become the toolkit's filters: "All Files (*.*)".
QString filters_of(const std::string& filter)
{
    const QStringList parts = shown(filter).split('|');
    QStringList filters;
    for (qsizetype at = 0; at + 1 < parts.size(); at += 2) {
        const QString text = parts[at].section('(', 0, 0).trimmed();
        filters += text + " (" + (parts[at + 1] == "*.*" ? "*" : parts[at + 1]) + ')';
    }
    return filters.join(";;");
}

}  // namespace

void Dialogs::show(const MessageBox& box)
{
    QMessageBox dialog(icon_named(box.icon), shown(box.title), shown(box.text), QMessageBox::Ok,
                       QApplication::activeWindow());
    dialog.setTextFormat(Qt::PlainText);  // what data hold is never read as marks
    // A script has nobody to press the button.
    if (windows_.is_scripted()) QTimer::singleShot(0, &dialog, [&dialog] { QTest::keyClick(&dialog, Qt::Key_Return); });
    dialog.exec();
}

void Dialogs::show_pages(std::shared_ptr<PageView> pages, const std::string& caption)
{
    windows_.desk().show_viewer(std::move(pages), caption);
}

std::optional<std::vector<std::string>> Dialogs::choose_files(const FileQuestion& question)
{
    QFileDialog dialog(QApplication::activeWindow(), shown(question.title), shown(question.folder),
                       filters_of(question.filter));
    dialog.setFileMode(question.several ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    std::vector<std::string> files;
    for (const QString& file : dialog.selectedFiles()) files.push_back(file.toStdString());
    return files;
}

std::optional<std::string> Dialogs::choose_folder(const FolderQuestion& question)
{
    QFileDialog dialog(QApplication::activeWindow(), shown(question.title));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return dialog.selectedFiles().front().toStdString();
}

std::optional<std::string> Dialogs::choose_target(const FileQuestion& question)
{
    QFileDialog dialog(QApplication::activeWindow(), shown(question.title), shown(question.folder),
                       filters_of(question.filter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    const auto suffix_of = [](const QString& filter) { return filter.section("(*.", 1).section(')', 0, 0); };
    dialog.setDefaultSuffix(suffix_of(dialog.selectedNameFilter()));
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog,
                     [&](const QString& filter) { dialog.setDefaultSuffix(suffix_of(filter)); });
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return dialog.selectedFiles().front().toStdString();
}

void Dialogs::copy_text(const std::string& text)
{
    QApplication::clipboard()->setText(shown(text));
}

void Dialogs::progress(size_t done, size_t total)
{
    windows_.show_progress(done, total);
}

}  // namespace velora::windows
