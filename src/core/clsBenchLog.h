#pragma once

#include "ILogWriter.h"

#include <QByteArrayView>
#include <QObject>
#include <QString>

#include <cstdint>
#include <memory>
#include <vector>

class QIODevice;

// The log: one line for every call that passes the wrapper and for every device event. It is
// the log's text of record in both programs; the log window shows it, the runner prints it, the
// tests read it. It grows until someone clears it.
//
// A long replay leaves millions of lines, so each line is held once, as UTF-8 bytes packed into
// large blocks, with one small index entry; a line becomes a QString only when someone reads it.
class clsBenchLog : public QObject, public ILogWriter {
    Q_OBJECT
public:
    explicit clsBenchLog(QObject* parent = nullptr);
    ~clsBenchLog() override;

    // Esc, CR and LF become the tokens [ESC], [CR] and [LF], so one call always gives one line.
    // The line also goes to the debug output, with CR LF behind it.
    void Append(const QString& line) override;

    qsizetype LineCount() const { return qsizetype(m_starts.size()); }
    // Line `index`, 0 first; the empty text outside the log.
    QString Line(qsizetype index) const;
    // The same line as UTF-8 bytes, without a copy; valid until the log is cleared.
    QByteArrayView LineUtf8(qsizetype index) const;
    // Length in UTF-16 units of the longest line since the last Clear: how wide a view must be.
    qsizetype LongestLineLength() const { return m_longest; }
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
    struct Block {
        std::unique_ptr<char[]> bytes;
        size_t size = 0;
        size_t used = 0;
    };
    struct LineStart {
        uint32_t block;
        uint32_t offset;
    };

    // A place for a line of at most `maxBytes` bytes at the end of the last block, or in a new one.
    char* Reserve(size_t maxBytes);
    bool WriteSavedForm(QIODevice& out) const;

    std::vector<Block> m_blocks;
    std::vector<LineStart> m_starts;
    qsizetype m_longest = 0;
};
