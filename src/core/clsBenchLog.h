#pragma once

#include "ILogWriter.h"

#include <QObject>
#include <QString>
#include <QStringList>

class QIODevice;

// The log: one line for every call that passes the wrapper and for every device event. It is
// the log's text of record in both programs; the log window shows it, the runner prints it, the
// tests read it. It grows until someone clears it.
class clsBenchLog : public QObject, public ILogWriter {
    Q_OBJECT
public:
    explicit clsBenchLog(QObject* parent = nullptr);

    // Esc, CR and LF become the tokens [ESC], [CR] and [LF], so one call always gives one line.
    // The line also goes to the debug output, with CR LF behind it.
    void Append(const QString& line) override;

    qsizetype LineCount() const { return m_lines.size(); }
    // Line `index`, 0 first; the empty text outside the log.
    QString Line(qsizetype index) const { return m_lines.value(index); }
    // Empties the log; the debug output keeps what it was given.
    void Clear();

    // The saved file: the whole log as one quoted value, every line closed by CR LF, then CR LF,
    // in the system's 8-bit code page. Quotation marks inside are written as they are.
    QByteArray SavedForm() const;
    // Writes the saved file aside and renames it into place: a file that can't be written is
    // left as it was, and false comes back.
    bool SaveToFile(const QString& path) const;

signals:
    void appended(qsizetype first, qsizetype count);
    void cleared();

private:
    bool WriteSavedForm(QIODevice& out) const;

    QStringList m_lines;
};
