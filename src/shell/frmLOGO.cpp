#include "frmLOGO.h"

#include "ShellBuildInfo.h"

frmLOGO::frmLOGO()
    : Icon(QStringLiteral(":/fpubench/fpubench.png")), lblCaption(QStringLiteral(FPUBENCH_CAPTION_TEXT)),
      lblSOName(QStringLiteral(FPUBENCH_SO_NAME_TEXT)) {}

QString MainWindowTitle(const QString& caption) {
    return caption + QStringLiteral(" V%1.%2.%3")
                         .arg(FPUBENCH_VERSION_MAJOR)
                         .arg(FPUBENCH_VERSION_MINOR)
                         .arg(FPUBENCH_VERSION_PATCH);
}
