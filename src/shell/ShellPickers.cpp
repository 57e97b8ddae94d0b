#include "ShellPickers.h"

#include "BenchSettings.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QSettings>

namespace ShellPickers {

QStringList NameFilters(const QString& filter) {
    QStringList parts = filter.split(QLatin1Char('|'));
    if (filter.endsWith(QLatin1Char('|')))
        parts.removeLast();
    QStringList out;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts.at(i + 1).trimmed();
        patterns.replace(QLatin1Char(';'), QLatin1Char(' '));
        out.append(parts.at(i) + QStringLiteral(" (") + patterns + QLatin1Char(')'));
    }
    return out;
}

void ConfigureFileDialog(QFileDialog& dialog, FileMode mode, const QString& filter, const QString& title,
                         const QString& initialFolder) {
    // The description is shown as written, as the system dialog shows it.
    dialog.setOptions(QFileDialog::DontUseNativeDialog | QFileDialog::HideNameFilterDetails);
    if (mode == FileMode::Open) {
        dialog.setAcceptMode(QFileDialog::AcceptOpen);
        dialog.setFileMode(QFileDialog::ExistingFile);
    } else {
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setFileMode(QFileDialog::AnyFile);
    }
    const QStringList filters = NameFilters(filter);
    if (!filters.isEmpty())
        dialog.setNameFilters(filters);
    if (!title.isEmpty())
        dialog.setWindowTitle(title);
    if (!initialFolder.isEmpty())
        dialog.setDirectory(initialFolder);
    // No default suffix: a name typed without an extension stays without one.
    dialog.setDefaultSuffix(QString());
}

void ConfigureFolderDialog(QFileDialog& dialog, const QString& startFolder, const QString& title) {
    dialog.setOptions(QFileDialog::DontUseNativeDialog | QFileDialog::ShowDirsOnly);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    if (!title.isEmpty())
        dialog.setWindowTitle(title);
    if (!startFolder.isEmpty())
        dialog.setDirectory(startFolder);
}

void ConfigureMessageBox(QMessageBox& box, const QString& text, MsgButtons buttons, const QString& title) {
    box.setText(text);
    box.setWindowTitle(title.isEmpty() ? ProgramTitle : title);
    box.setIcon(buttons == MsgButtons::RetryCancel ? QMessageBox::Warning : QMessageBox::NoIcon);
    switch (buttons) {
    case MsgButtons::Ok:
        box.setStandardButtons(QMessageBox::Ok);
        box.setDefaultButton(QMessageBox::Ok);
        break;
    case MsgButtons::RetryCancel:
        box.setStandardButtons(QMessageBox::Retry | QMessageBox::Cancel);
        box.setDefaultButton(QMessageBox::Retry);
        break;
    case MsgButtons::OkCancel:
        box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        box.setDefaultButton(QMessageBox::Ok);
        break;
    case MsgButtons::YesNo:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(QMessageBox::Yes);
        break;
    }
}

MsgResult ResultOf(QMessageBox::StandardButton button) {
    switch (button) {
    case QMessageBox::Ok:
        return MsgResult::Ok;
    case QMessageBox::Retry:
        return MsgResult::Retry;
    case QMessageBox::Yes:
        return MsgResult::Yes;
    case QMessageBox::No:
        return MsgResult::No;
    default:
        return MsgResult::Cancel; // closing the box counts as Cancel
    }
}

QString LastFolderKey(PickerKind kind, const QString& filter) {
    QString name;
    if (kind == PickerKind::Folder) {
        name = QStringLiteral("folder");
    } else {
        const QString pattern = filter.section(QLatin1Char('|'), 1, 1).section(QLatin1Char(';'), 0, 0);
        for (const QChar c : pattern.section(QLatin1Char('.'), -1).toLower())
            if (c.isLetterOrNumber())
                name.append(c);
        if (name.isEmpty())
            name = QStringLiteral("files");
    }
    return BenchSettings::LastFolder + QLatin1Char('/') + name;
}

QString PickRemembering(const QString& key, PickerKind kind, const QString& startFolder,
                        const std::function<QString(const QString& start)>& dialog) {
    QSettings settings;
    QString start = startFolder;
    if (start.isEmpty()) {
        const QString last = settings.value(key).toString();
        if (!last.isEmpty() && QFileInfo(last).isDir())
            start = last;
    }
    const QString picked = dialog(start);
    if (!picked.isEmpty()) {
        const QFileInfo info(picked);
        settings.setValue(key, kind == PickerKind::Folder ? info.absoluteFilePath() : info.absolutePath());
    }
    return picked;
}

namespace {

QString RunFileDialog(QWidget* owner, FileMode mode, const QString& filter, const QString& title,
                      const QString& initialFolder) {
    QFileDialog dialog(owner);
    ConfigureFileDialog(dialog, mode, filter, title, initialFolder);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    return dialog.selectedFiles().constFirst().trimmed();
}

} // namespace

QString PickFolderDialog(const QString& startFolder, QWidget* owner, const QString& title) {
    return PickRemembering(LastFolderKey(PickerKind::Folder, {}), PickerKind::Folder, startFolder,
                           [owner, &title](const QString& start) {
                               QFileDialog dialog(owner);
                               ConfigureFolderDialog(dialog, start, title);
                               if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
                                   return QString();
                               return dialog.selectedFiles().constFirst();
                           });
}

QString PickOpenFileDialog(QWidget* owner, const QString& filter, const QString& title,
                           const QString& initialFolder) {
    return PickRemembering(
        LastFolderKey(PickerKind::File, filter), PickerKind::File, initialFolder,
        [&](const QString& start) { return RunFileDialog(owner, FileMode::Open, filter, title, start); });
}

QString PickSaveFileDialog(QWidget* owner, const QString& filter, const QString& title,
                           const QString& initialFolder) {
    return PickRemembering(
        LastFolderKey(PickerKind::File, filter), PickerKind::File, initialFolder,
        [&](const QString& start) { return RunFileDialog(owner, FileMode::Save, filter, title, start); });
}

MsgResult MessageBoxDialog(const QString& text, MsgButtons buttons, const QString& title) {
    QMessageBox box(QApplication::activeWindow());
    ConfigureMessageBox(box, text, buttons, title);
    box.exec();
    return ResultOf(box.standardButton(box.clickedButton()));
}

void InstallDialogSeams() {
    SetMessageBoxHandler(&MessageBoxDialog);
    SetFilePickerHandlers({&PickFolderDialog, &PickOpenFileDialog, &PickSaveFileDialog});
}

} // namespace ShellPickers
