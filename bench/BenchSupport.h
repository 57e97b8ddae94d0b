#pragma once

// What the benchmarks share: the memory the process holds, and a macro of plain receipts.
#include <QByteArray>
#include <QFile>
#include <QList>

namespace bench {

// A field of /proc/self/status in KiB: "VmRSS:" the resident memory, "VmHWM:" its peak; -1 when
// it can't be read.
inline long StatusKiB(const char* field = "VmRSS:") {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith(field))
            return line.mid(qstrlen(field)).trimmed().split(' ').first().toLong();
    return -1;
}

inline double ResidentMiB(const char* field = "VmRSS:") {
    const long kib = StatusKiB(field);
    return kib < 0 ? -1 : kib / 1024.0;
}

// `receipts` receipts of two items paid in cash, five macro lines each.
inline QByteArray ReceiptMacro(int receipts) {
    QByteArray text;
    for (int i = 0; i < receipts; ++i) {
        text += "F_BeginFiscalReceipt$0\r\n";
        text += "F_PrintRecItem$Articolo test 1$1.00$0$1$0.00$Kg\r\n";
        text += "F_PrintRecItem$Articolo test 2$2.50$0$2$0.00$Kg\r\n";
        text += "F_PrintRecTotal$3.50$5.00$0\r\n";
        text += "F_EndFiscalReceipt$0\r\n";
    }
    return text;
}

} // namespace bench
