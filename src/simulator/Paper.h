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

    // A roll holds at most this many elements. Beyond, the oldest half is torn off (at the first cut
    // after it, when there is one near), so that a session of any length keeps a bounded roll.
    static constexpr qsizetype kCapacity = 50000;
    static constexpr qsizetype kCutSearch = 2000;

    void Append(const PrintedLine& line);
    void AppendText(const QString& textWithSequences, const PrintAttributes& base = {}); // interpret + append
    const QList<PrintedLine>& Lines() const { return m_lines; }
    qsizetype Count() const { return m_lines.size(); }
    // Elements torn off the front since the roll was new or cleared: index 0 is the one after them.
    qsizetype TornOff() const { return m_tornOff; }
    // One text line per element, as PlainLine writes it, joined by "\n".
    QString PlainText(qsizetype fromLine = 0) const;
    void Clear();

signals:
    void appended(qsizetype index);
    void cleared();
    // The first `count` elements went: every index held by a listener moves down by that much.
    void tornOff(qsizetype count);

private:
    void TearOff();

    QList<PrintedLine> m_lines;
    qsizetype m_tornOff = 0;
};

} // namespace sim
