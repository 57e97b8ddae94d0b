#include "Paper.h"

#include <algorithm>

namespace sim {

void PaperRoll::Append(const PrintedLine& line) {
    m_lines.append(line);
    emit appended(m_lines.size() - 1);
}

void PaperRoll::AppendText(const QString& textWithSequences, const PrintAttributes& base) {
    for (const PrintedLine& line : InterpretPrintControl(textWithSequences, base))
        Append(line);
}

QString PaperRoll::PlainText(qsizetype fromLine) const {
    QString out;
    const qsizetype first = std::max<qsizetype>(fromLine, 0);
    for (qsizetype i = first; i < m_lines.size(); ++i) {
        if (i > first)
            out += u'\n';
        out += PlainLine(m_lines[i]);
    }
    return out;
}

void PaperRoll::Clear() {
    m_lines.clear();
    emit cleared();
}

} // namespace sim
