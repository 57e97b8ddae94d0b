#pragma once

#include <QIcon>
#include <QString>

// The never-shown customisation record of a build: its icon, the base of the main window
// title and the service object name that the toolbar's Open passes to the control.
struct frmLOGO {
    frmLOGO();

    QIcon Icon;
    QString lblCaption;
    QString lblSOName;
};

// The caption followed by " V" and the program's major, minor and revision numbers.
QString MainWindowTitle(const QString& caption);
