#pragma once

#include "clsBenchLog.h"

#include <QStringList>

// The lines of a log from line `from` on, for comparing in one go.
inline QStringList LinesOf(const clsBenchLog& log, qsizetype from = 0) {
    QStringList lines;
    for (qsizetype i = from; i < log.LineCount(); ++i)
        lines.append(log.Line(i));
    return lines;
}
