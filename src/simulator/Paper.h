#pragma once

#include "PrintControl.h"

#include <QList>
#include <QObject>
#include <QString>

namespace sim {

// A paper roll: the receipt or the journal. Appending costs the same for every element, a feed of
// two billion lines included, and announces the element so that a window can follow the roll.
class PaperRoll : public QObject {
    Q_OBJECT
public:
    explicit PaperRoll(QObject* parent = nullptr) : QObject(parent) {}

    void Append(const PrintedLine& line);
    void AppendText(const QString& textWithSequences, const PrintAttributes& base = {}); // interpret + append
    const QList<PrintedLine>& Lines() const { return m_lines; }
    qsizetype Count() const { return m_lines.size(); }
    // One text line per element, as PlainLine writes it, joined by "\n".
    QString PlainText(qsizetype fromLine = 0) const;
    void Clear();

signals:
    void appended(qsizetype index);
    void cleared();

private:
    QList<PrintedLine> m_lines;
};

} // namespace sim
