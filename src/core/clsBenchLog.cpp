#include "clsBenchLog.h"

#include "Seams.h"
#include "Tools.h"

#include <QBuffer>
#include <QSaveFile>
#include <QStringEncoder>

namespace {

// A long log goes out in pieces of about this many characters, not as one copy of the whole.
constexpr qsizetype SaveChunkChars = 1 << 16;

} // namespace

clsBenchLog::clsBenchLog(QObject* parent) : QObject(parent) {}

void clsBenchLog::Append(const QString& line) {
    const QString tokens = Tools::CrLfToTokens(Tools::EscBytesToTokens(line));
    if (DebugOutputWanted())
        DebugOutput(tokens + QStringLiteral("\r\n"));
    m_lines.append(tokens);
    emit appended(m_lines.size() - 1, 1);
}

void clsBenchLog::Clear() {
    m_lines.clear();
    emit cleared();
}

bool clsBenchLog::WriteSavedForm(QIODevice& out) const {
    QStringEncoder encode(QStringConverter::System);
    QString chunk(QLatin1Char('"'));
    bool ok = true;
    const auto flush = [&] {
        const QByteArray bytes = encode(chunk);
        ok = ok && out.write(bytes) == bytes.size();
        chunk.clear();
    };
    for (const QString& line : m_lines) {
        chunk += line;
        chunk += QStringLiteral("\r\n");
        if (chunk.size() >= SaveChunkChars)
            flush();
    }
    chunk += QStringLiteral("\"\r\n");
    flush();
    return ok;
}

QByteArray clsBenchLog::SavedForm() const {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    WriteSavedForm(buffer);
    return bytes;
}

bool clsBenchLog::SaveToFile(const QString& path) const {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    return WriteSavedForm(file) && file.commit();
}
