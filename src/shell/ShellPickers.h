#pragma once

#include "Seams.h"

#include <QMessageBox>
#include <QString>
#include <QStringList>

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

QString PickFolderDialog(const QString& startFolder, QWidget* owner, const QString& title);
QString PickOpenFileDialog(QWidget* owner, const QString& filter, const QString& title,
                           const QString& initialFolder);
QString PickSaveFileDialog(QWidget* owner, const QString& filter, const QString& title,
                           const QString& initialFolder);
MsgResult MessageBoxDialog(const QString& text, MsgButtons buttons, const QString& title);

// Message boxes and file pickers on Qt's dialogs.
void InstallDialogSeams();

} // namespace ShellPickers
