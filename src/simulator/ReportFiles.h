#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace sim {

// The simulator's report folder: "fpubench/reports" under the user's data folder, created on demand.
QString ReportFolder();
// Where a report named `name` goes: a bare name into ReportFolder(), a relative one below it, an
// absolute one as it is. The path is resolved (symbolic links followed) before it is checked, and
// refused (nullopt) when it ends up outside the folder, names a folder, or holds a control character.
std::optional<QString> ResolveReportPath(const QString& name);
// fileMode 0 appends and syncs; 1 creates or rewrites: written aside and renamed into place, so a
// reader never sees half a report. False if the file can't be written (and then nothing changed).
bool WriteReportFile(const QString& fullPath, int fileMode, const QStringList& lines);

} // namespace sim
