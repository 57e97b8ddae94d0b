#include "clsBenchLog.h"

#include "Seams.h"

#include <QBuffer>
#include <QSaveFile>
#include <QStringEncoder>

#include <algorithm>
#include <cstring>

namespace {

// Lines are packed into blocks of this size; a longer line gets a block of its own.
constexpr size_t BlockBytes = size_t(1) << 20;
// A long log goes out in pieces of about this many bytes, not as one copy of the whole.
constexpr qsizetype SaveChunkBytes = 1 << 16;
// The most bytes one UTF-16 unit can take once stored: "[ESC]" for character 27.
constexpr size_t MaxBytesPerUnit = 5;

// Writes `line` as UTF-8 with Esc, CR and LF as their tokens into `out`, which has room for
// MaxBytesPerUnit bytes a unit, and returns the end. An unpaired surrogate becomes U+FFFD, as
// the system's encoder writes it in the saved file. `units` gets the line's length in UTF-16
// units with the tokens in place.
char* EncodeLine(QStringView line, char* out, qsizetype& units) {
    const char16_t* p = line.utf16();
    const char16_t* const end = p + line.size();
    qsizetype extra = 0;
    while (p < end) {
        const char16_t c = *p++;
        if (c >= 0x20 && c < 0x80) {
            *out++ = char(c);
        } else if (c < 0x80) {
            switch (c) {
            case 27:
                std::memcpy(out, "[ESC]", 5);
                out += 5;
                extra += 4;
                break;
            case 13:
                std::memcpy(out, "[CR]", 4);
                out += 4;
                extra += 3;
                break;
            case 10:
                std::memcpy(out, "[LF]", 4);
                out += 4;
                extra += 3;
                break;
            default:
                *out++ = char(c);
            }
        } else if (c < 0x800) {
            *out++ = char(0xC0 | (c >> 6));
            *out++ = char(0x80 | (c & 0x3F));
        } else if (QChar::isHighSurrogate(c) && p < end && QChar::isLowSurrogate(*p)) {
            const char32_t u = QChar::surrogateToUcs4(c, *p++);
            *out++ = char(0xF0 | (u >> 18));
            *out++ = char(0x80 | ((u >> 12) & 0x3F));
            *out++ = char(0x80 | ((u >> 6) & 0x3F));
            *out++ = char(0x80 | (u & 0x3F));
        } else {
            const char32_t u = QChar::isSurrogate(c) ? char32_t(QChar::ReplacementCharacter) : c;
            *out++ = char(0xE0 | (u >> 12));
            *out++ = char(0x80 | ((u >> 6) & 0x3F));
            *out++ = char(0x80 | (u & 0x3F));
        }
    }
    units = line.size() + extra;
    return out;
}

// On Linux the system's code page is UTF-8 and the stored bytes are the saved bytes; elsewhere
// each line is encoded again.
bool SystemCodePageIsUtf8() {
    const QString probe = QStringLiteral(u"\u00e9\u20ac\U0001F600");
    QStringEncoder encode(QStringConverter::System);
    const QByteArray bytes = encode(probe);
    return !encode.hasError() && bytes == probe.toUtf8();
}

} // namespace

clsBenchLog::clsBenchLog(QObject* parent) : QObject(parent) {}

clsBenchLog::~clsBenchLog() = default;

char* clsBenchLog::Reserve(size_t maxBytes) {
    if (!m_blocks.empty()) {
        Block& last = m_blocks.back();
        if (last.size - last.used >= maxBytes)
            return last.bytes.get() + last.used;
    }
    // Not zeroed: pages count as resident only once lines are written into them.
    const size_t size = std::max(BlockBytes, maxBytes);
    m_blocks.push_back({std::make_unique_for_overwrite<char[]>(size), size, 0});
    return m_blocks.back().bytes.get();
}

void clsBenchLog::Append(const QString& line) {
    char* const begin = Reserve(size_t(line.size()) * MaxBytesPerUnit);
    qsizetype units = 0;
    char* const end = EncodeLine(line, begin, units);
    Block& block = m_blocks.back();
    m_starts.push_back({uint32_t(m_blocks.size() - 1), uint32_t(begin - block.bytes.get())});
    block.used += size_t(end - begin);
    if (block.size > BlockBytes && block.used < block.size) {
        // A block of its own was sized for the worst case; keep only what the line took.
        auto exact = std::make_unique_for_overwrite<char[]>(block.used);
        std::memcpy(exact.get(), block.bytes.get(), block.used);
        block.bytes = std::move(exact);
        block.size = block.used;
    }
    m_longest = std::max(m_longest, units);
    if (DebugOutputWanted()) {
        const QByteArrayView stored = LineUtf8(LineCount() - 1);
        DebugOutput(QString::fromUtf8(stored) + QStringLiteral("\r\n"));
    }
    emit appended(LineCount() - 1, 1);
}

QByteArrayView clsBenchLog::LineUtf8(qsizetype index) const {
    if (index < 0 || index >= LineCount())
        return {};
    const LineStart start = m_starts[size_t(index)];
    const Block& block = m_blocks[start.block];
    size_t end = block.used;
    if (index + 1 < LineCount() && m_starts[size_t(index) + 1].block == start.block)
        end = m_starts[size_t(index) + 1].offset;
    return QByteArrayView(block.bytes.get() + start.offset, qsizetype(end - start.offset));
}

QString clsBenchLog::Line(qsizetype index) const {
    return QString::fromUtf8(LineUtf8(index));
}

void clsBenchLog::Clear() {
    // Swapped out, not cleared, so that the memory goes back too.
    std::vector<Block>().swap(m_blocks);
    std::vector<LineStart>().swap(m_starts);
    m_longest = 0;
    emit cleared();
}

bool clsBenchLog::WriteSavedForm(QIODevice& out) const {
    static const bool storedIsSaved = SystemCodePageIsUtf8();
    QStringEncoder encode(QStringConverter::System);
    QByteArray chunk;
    chunk.reserve(SaveChunkBytes + 256);
    chunk += '"';
    bool ok = true;
    const auto flush = [&] {
        ok = ok && out.write(chunk) == chunk.size();
        chunk.resize(0);
    };
    for (qsizetype i = 0; i < LineCount(); ++i) {
        if (storedIsSaved)
            chunk += LineUtf8(i);
        else
            chunk += encode(Line(i));
        chunk += "\r\n";
        if (chunk.size() >= SaveChunkBytes)
            flush();
    }
    chunk += "\"\r\n";
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
