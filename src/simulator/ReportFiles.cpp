#include "ReportFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>

#include <unistd.h>

namespace sim {

namespace {

bool HasControlCharacter(const QString& name) {
    return std::any_of(name.begin(), name.end(), [](QChar c) {
        return c.unicode() < 0x20 || c.unicode() == 0x7f || c.category() == QChar::Other_Control;
    });
}

// The real path of `path`: its deepest existing ancestor resolved through every symbolic link,
// with the components that don't exist yet appended. nullopt for a dangling link on the way,
// whose target nobody can check.
std::optional<QString> RealPath(const QString& path) {
    QString existing = path;
    QStringList missing;
    while (!QFileInfo::exists(existing)) {
        const QFileInfo fi(existing);
        if (fi.isSymLink())
            return std::nullopt;
        missing.prepend(fi.fileName());
        const QString parent = fi.absolutePath();
        if (parent == existing)
            return std::nullopt;
        existing = parent;
    }
    QString real = QFileInfo(existing).canonicalFilePath();
    if (real.isEmpty())
        return std::nullopt;
    for (const QString& part : missing)
        real += u'/' + part;
    return real;
}

} // namespace

QString ReportFolder() {
    const QString folder =
        QDir::cleanPath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                        QStringLiteral("/fpubench/reports"));
    QDir().mkpath(folder);
    return folder;
}

std::optional<QString> ResolveReportPath(const QString& name) {
    if (HasControlCharacter(name))
        return std::nullopt;
    // The bench was born on Windows: its users type backslashes.
    QString n = name.trimmed();
    n.replace(u'\\', u'/');
    if (n.isEmpty() || n.endsWith(u'/'))
        return std::nullopt;
    if (n.split(u'/', Qt::SkipEmptyParts).contains(QStringLiteral("..")))
        return std::nullopt;

    const QString folder = ReportFolder();
    const QString realFolder = QFileInfo(folder).canonicalFilePath();
    const auto real = RealPath(QDir::cleanPath(QDir::isAbsolutePath(n) ? n : folder + u'/' + n));
    if (realFolder.isEmpty() || !real || !real->startsWith(realFolder + u'/'))
        return std::nullopt;
    if (QFileInfo(*real).isDir())
        return std::nullopt;
    return real;
}

bool WriteReportFile(const QString& fullPath, int fileMode, const QStringList& lines) {
    if (fullPath.isEmpty() || (fileMode != 0 && fileMode != 1))
        return false;
    QByteArray bytes;
    for (const QString& line : lines) {
        bytes += line.toUtf8();
        bytes += '\n';
    }
    QDir().mkpath(QFileInfo(fullPath).absolutePath());
    if (fileMode == 1) {
        QSaveFile file(fullPath);
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
    }
    QFile file(fullPath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
        return false;
    return file.write(bytes) == bytes.size() && file.flush() && ::fsync(file.handle()) == 0;
}

} // namespace sim
