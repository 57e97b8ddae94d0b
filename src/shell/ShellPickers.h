#pragma once

#include "Seams.h"

#include <QMessageBox>
#include <QString>
#include <QStringList>

#include <functional>

class QFileDialog;
class QWidget;

// The windowed faces of the seams: Qt's own file dialogs and message boxes. The shell installs
// them at start-up; tests put their own handlers in their place.
namespace ShellPickers {

// "Desc|pattern|Desc|pattern" (closing "|" optional) as Qt name filters. A pattern list such as
// "*.gif;*.bmp" becomes "*.gif *.bmp"; a description without its pattern is dropped.
QStringList NameFilters(const QString& filter);

enum class FileMode { Open, Save };
// Sets a dialog up as the pickers use it; split out so it can be checked without showing it.
void ConfigureFileDialog(QFileDialog& dialog, FileMode mode, const QString& filter, const QString& title,
                         const QString& initialFolder);
void ConfigureFolderDialog(QFileDialog& dialog, const QString& startFolder, const QString& title);
void ConfigureMessageBox(QMessageBox& box, const QString& text, MsgButtons buttons, const QString& title);
MsgResult ResultOf(QMessageBox::StandardButton button);

// The last folder of each picker, kept between runs. Folder pickers share one; file pickers keep
// one for each kind of file, named by the first pattern of their filter: "oposcmd" for macros,
// opened or saved, "log" for logs.
enum class PickerKind { Folder, File };
QString LastFolderKey(PickerKind kind, const QString& filter);
// Runs `dialog` from `startFolder` when the caller gives one, else from the folder last picked
// under `key`, if it still exists. Remembers the folder of what the operator picked; a cancel
// changes nothing.
QString PickRemembering(const QString& key, PickerKind kind, const QString& startFolder,
                        const std::function<QString(const QString& start)>& dialog);

QString PickFolderDialog(const QString& startFolder, QWidget* owner, const QString& title);
QString PickOpenFileDialog(QWidget* owner, const QString& filter, const QString& title,
                           const QString& initialFolder);
QString PickSaveFileDialog(QWidget* owner, const QString& filter, const QString& title,
                           const QString& initialFolder);
MsgResult MessageBoxDialog(const QString& text, MsgButtons buttons, const QString& title);

// Message boxes and file pickers on Qt's dialogs.
void InstallDialogSeams();

} // namespace ShellPickers
