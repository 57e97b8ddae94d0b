#include "Paper.h"

#include <algorithm>

namespace sim {

void PaperRoll::Append(const PrintedLine& line) {
    if (m_lines.size() >= kCapacity)
        TearOff();
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

void PaperRoll::TearOff() {
    qsizetype count = m_lines.size() / 2;
    for (qsizetype i = count - 1; i < m_lines.size() && i < count + kCutSearch; ++i) {
        if (m_lines[i].cutAfter) {
            count = i + 1;
            break;
        }
    }
    m_lines.remove(0, count); // moves the list's start, not the elements kept
    m_tornOff += count;
    emit tornOff(count);
}

void PaperRoll::Clear() {
    m_lines.clear();
    m_tornOff = 0;
    emit cleared();
}

} // namespace sim
