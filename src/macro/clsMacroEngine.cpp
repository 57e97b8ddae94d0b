#include "clsMacroEngine.h"

#include "Seams.h"
#include "Tools.h"
#include "clsFprtWrapper.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QHash>
#include <QItemSelectionModel>
#include <QLocale>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStringConverter>
#include <QStringListModel>
#include <QTimer>
#include <QVarLengthArray>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

// A wait longer than this is cut to it: an hour is beyond any sensible pause between two device
// calls, and far below what the timer can hold.
constexpr double MaxDelayMs = 3600000.0;

// Text that is a number as a whole: what a property flag or the contractor id may hold.
bool IsNumberText(const QString& text) {
    static const QRegularExpression number(
        QStringLiteral(R"(^\s*(?:[+-]?(?:\d+\.?\d*|\.\d+)|&H[0-9A-Fa-f]+)\s*$)"));
    return number.match(text).hasMatch();
}

// A line's fields, split at every "$" (at most MaxFields; the surplus is dropped). They point
// into the line, which must outlive them: only the fields that become texts are copied.
using Fields = QVarLengthArray<QStringView, 16>;

Fields SplitFields(QStringView line) {
    Fields out;
    qsizetype start = 0;
    while (out.size() < clsMacroEngine::MaxFields) {
        const qsizetype pos = line.indexOf(u'$', start);
        if (pos < 0) {
            out.append(line.sliced(start));
            break;
        }
        out.append(line.sliced(start, pos - start));
        start = pos + 1;
    }
    return out;
}

// The fields of one line with their conversions. A number that can't be held in 32 bits marks the
// line as bad, and the line then makes no call.
struct LineArgs {
    clsFprtWrapper& w;
    Fields f;
    bool bad = false;

    QStringView field(int i) const { return i < f.size() ? f[i] : QStringView(); }
    QString text(int i) const { return field(i).toString(); }
    int32_t num(int i) {
        const auto v = Tools::LeadingInteger(field(i));
        if (!v) {
            bad = true;
            return 0;
        }
        return *v;
    }
    bool flag(int i) const { return Tools::LeadingNumber(field(i)) != 0; }
    Amount amount(int i) const {
        QString t = text(i);
        return Tools::TextToAmount(t);
    }
};

using Handler = int32_t (*)(LineArgs&);
constexpr int32_t Failure = clsMacroEngine::Failure;

// Each handler converts its fields in their order first, so that the messages of bad amounts come
// in the order of the line, then makes its one call.
const QHash<QString, Handler>& MethodTable() {
    static const QHash<QString, Handler> table{
        {QStringLiteral("F_Open"),
         [](LineArgs& a) -> int32_t {
             // Only the second model's name is replayed; a recorded "ZorvaneFPU" fails here.
             if (a.text(1) != QLatin1StringView("Tessorim"))
                 return Failure;
             return a.w.WOpen(a.text(1));
         }},
        {QStringLiteral("F_Close"), [](LineArgs& a) { return a.w.WClose(); }},
        {QStringLiteral("F_ClaimDevice"),
         [](LineArgs& a) {
             const int32_t timeout = a.num(1);
             return a.bad ? Failure : a.w.ClaimDevice(timeout);
         }},
        {QStringLiteral("F_ReleaseDevice"), [](LineArgs& a) { return a.w.ReleaseDevice(); }},
        {QStringLiteral("F_CheckHealth"),
         [](LineArgs& a) {
             const int32_t lvl = a.num(1);
             return a.bad ? Failure : a.w.CheckHealth(lvl);
         }},
        {QStringLiteral("F_ClearError"), [](LineArgs& a) { return a.w.ClearError(); }},
        {QStringLiteral("F_ClearOutput"), [](LineArgs& a) { return a.w.ClearOutput(); }},
        {QStringLiteral("F_DirectIO"),
         [](LineArgs& a) {
             int32_t command = a.num(1);
             DirectIOData data{};
             for (int i = 0; i < 11; ++i)
                 data[static_cast<size_t>(i)] = a.num(2 + i);
             QString text = a.text(13);
             return a.bad ? Failure : a.w.DirectIO(command, data, text);
         }},
        {QStringLiteral("F_BeginFiscalReceipt"),
         [](LineArgs& a) { return a.w.BeginFiscalReceipt(a.flag(1)); }},
        {QStringLiteral("F_EndFiscalReceipt"), [](LineArgs& a) { return a.w.EndFiscalReceipt(a.flag(1)); }},
        {QStringLiteral("F_BeginNonFiscal"), [](LineArgs& a) { return a.w.BeginNonFiscal(); }},
        {QStringLiteral("F_EndNonFiscal"), [](LineArgs& a) { return a.w.EndNonFiscal(); }},
        {QStringLiteral("F_BeginTraining"), [](LineArgs& a) { return a.w.BeginTraining(); }},
        {QStringLiteral("F_EndTraining"), [](LineArgs& a) { return a.w.EndTraining(); }},
        {QStringLiteral("F_GetData"),
         [](LineArgs& a) {
             const int32_t item = a.num(1);
             const int32_t opt = a.num(2);
             QString data;
             return a.bad ? Failure : a.w.GetData(item, opt, data);
         }},
        {QStringLiteral("F_GetDate"), [](LineArgs&) { return int32_t{0}; }},
        {QStringLiteral("F_GetTotalizer"), [](LineArgs&) { return int32_t{0}; }},
        {QStringLiteral("F_GetVatEntry"),
         [](LineArgs& a) {
             const int32_t id = a.num(1);
             const int32_t opt = a.num(2);
             int32_t rate = 0;
             return a.bad ? Failure : a.w.GetVatEntry(id, opt, rate);
         }},
        {QStringLiteral("F_PrintDuplicateReceipt"), [](LineArgs& a) { return a.w.PrintDuplicateReceipt(); }},
        {QStringLiteral("F_PrintNormal"),
         [](LineArgs& a) {
             const int32_t station = a.num(1);
             return a.bad ? Failure : a.w.PrintNormal(station, a.text(2));
         }},
        {QStringLiteral("F_PrintPeriodicTotalsReport"),
         [](LineArgs& a) { return a.w.PrintPeriodicTotalsReport(a.text(1), a.text(2)); }},
        {QStringLiteral("F_PrintRecItem"),
         [](LineArgs& a) {
             const Amount price = a.amount(2);
             const int32_t quantity = a.num(3);
             const int32_t vatInfo = a.num(4);
             const Amount unitPrice = a.amount(5);
             return a.bad ? Failure
                          : a.w.PrintRecItem(a.text(1), price, quantity, vatInfo, unitPrice, a.text(6));
         }},
        {QStringLiteral("F_PrintRecItemAdjustment"),
         [](LineArgs& a) {
             const int32_t type = a.num(1);
             const Amount amount = a.amount(3);
             const int32_t vatInfo = a.num(4);
             return a.bad ? Failure : a.w.PrintRecItemAdjustment(type, a.text(2), amount, vatInfo);
         }},
        {QStringLiteral("F_PrintRecItemAdjustmentVoid"),
         [](LineArgs& a) {
             const int32_t type = a.num(1);
             const Amount amount = a.amount(3);
             const int32_t vatInfo = a.num(4);
             return a.bad ? Failure : a.w.PrintRecItemAdjustmentVoid(type, a.text(2), amount, vatInfo);
         }},
        {QStringLiteral("F_PrintRecItemVoid"),
         [](LineArgs& a) {
             const Amount price = a.amount(2);
             const int32_t quantity = a.num(3);
             const int32_t vatInfo = a.num(4);
             const Amount unitPrice = a.amount(5);
             return a.bad ? Failure
                          : a.w.PrintRecItemVoid(a.text(1), price, quantity, vatInfo, unitPrice, a.text(6));
         }},
        {QStringLiteral("F_PrintRecMessage"), [](LineArgs& a) { return a.w.PrintRecMessage(a.text(1)); }},
        {QStringLiteral("F_PrintRecNotPaid"),
         [](LineArgs& a) {
             const Amount amount = a.amount(2);
             return a.w.PrintRecNotPaid(a.text(1), amount);
         }},
        {QStringLiteral("F_PrintRecRefund"),
         [](LineArgs& a) {
             const Amount amount = a.amount(2);
             const int32_t vatInfo = a.num(3);
             return a.bad ? Failure : a.w.PrintRecRefund(a.text(1), amount, vatInfo);
         }},
        {QStringLiteral("F_PrintRecRefundVoid"),
         [](LineArgs& a) {
             const Amount amount = a.amount(2);
             const int32_t vatInfo = a.num(3);
             return a.bad ? Failure : a.w.PrintRecRefundVoid(a.text(1), amount, vatInfo);
         }},
        {QStringLiteral("F_PrintRecSubtotal"), [](LineArgs& a) { return a.w.PrintRecSubtotal(a.amount(1)); }},
        {QStringLiteral("F_PrintRecSubtotalAdjustment"),
         [](LineArgs& a) {
             const int32_t type = a.num(1);
             const Amount amount = a.amount(3);
             return a.bad ? Failure : a.w.PrintRecSubtotalAdjustment(type, a.text(2), amount);
         }},
        {QStringLiteral("F_PrintRecSubtotalAdjustVoid"),
         [](LineArgs& a) {
             const int32_t type = a.num(1);
             const Amount amount = a.amount(2);
             return a.bad ? Failure : a.w.PrintRecSubtotalAdjustVoid(type, amount);
         }},
        {QStringLiteral("F_PrintRecTotal"),
         [](LineArgs& a) {
             const Amount total = a.amount(1);
             const Amount payment = a.amount(2);
             return a.w.PrintRecTotal(total, payment, a.text(3));
         }},
        {QStringLiteral("F_PrintRecVoid"), [](LineArgs& a) { return a.w.PrintRecVoid(a.text(1)); }},
        {QStringLiteral("F_PrintReport"),
         [](LineArgs& a) {
             const int32_t type = a.num(1);
             return a.bad ? Failure : a.w.PrintReport(type, a.text(2), a.text(3));
         }},
        {QStringLiteral("F_PrintXReport"), [](LineArgs& a) { return a.w.PrintXReport(); }},
        {QStringLiteral("F_PrintZReport"), [](LineArgs& a) { return a.w.PrintZReport(); }},
        {QStringLiteral("F_ResetPrinter"), [](LineArgs& a) { return a.w.ResetPrinter(); }},
        {QStringLiteral("F_SetDate"), [](LineArgs& a) { return a.w.SetDate(a.text(1)); }},
        {QStringLiteral("F_SetHeaderLine"),
         [](LineArgs& a) {
             const int32_t line = a.num(1);
             return a.bad ? Failure : a.w.SetHeaderLine(line, a.text(2), a.flag(3));
         }},
        {QStringLiteral("F_SetTrailerLine"),
         [](LineArgs& a) {
             const int32_t line = a.num(1);
             return a.bad ? Failure : a.w.SetTrailerLine(line, a.text(2), a.flag(3));
         }},
        {QStringLiteral("F_SetPOSID"), [](LineArgs& a) { return a.w.SetPOSID(a.text(1), a.text(2)); }},
        {QStringLiteral("F_SetVatTable"), [](LineArgs& a) { return a.w.SetVatTable(); }},
        {QStringLiteral("F_SetVatValue"),
         [](LineArgs& a) {
             const int32_t id = a.num(1);
             return a.bad ? Failure : a.w.SetVatValue(id, a.text(2));
         }},
    };
    return table;
}

// The value of a P_ line in the bench-side type of its property; nullopt when it can't be read,
// and the line then writes nothing.
std::optional<QVariant> PropertyValue(Prop id, const QString& value) {
    if (id == Prop::ChangeDue) {
        double d = Tools::LeadingNumber(value);
        if (d == 0.0)
            d = 0.0; // no "-0"
        return QVariant(QString::number(d, 'f', QLocale::FloatingPointShortest));
    }
    if (id == Prop::ContractorId) {
        if (!IsNumberText(value))
            return std::nullopt;
        const auto v = Tools::LeadingInteger(value);
        return v ? std::optional<QVariant>(QVariant::fromValue(*v)) : std::nullopt;
    }
    const PropKind kind = PropertyOf(id).kind;
    if (IsBenchText(kind))
        return QVariant(value);
    if (IsBenchBoolean(kind)) {
        if (value == QLatin1StringView("True"))
            return QVariant(true);
        if (value == QLatin1StringView("False"))
            return QVariant(false);
        if (IsNumberText(value))
            return QVariant(Tools::LeadingNumber(value) != 0);
        return std::nullopt;
    }
    const auto v = Tools::LeadingInteger(value);
    return v ? std::optional<QVariant>(QVariant::fromValue(*v)) : std::nullopt;
}

// One text line of a macro file. Lines that aren't valid in the system's code page are taken as
// Latin-1, which is close to the Windows code page that older macro files were written in: no
// byte is lost and no line is dropped. One decoder serves the whole file.
QString DecodeLine(QStringDecoder& decoder, QByteArrayView bytes) {
    // Plain ASCII, by far the usual line, reads the same in every code page and decodes fastest so.
    if (std::all_of(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) == 0; }))
        return QString::fromLatin1(bytes);
    QString text = decoder.decode(bytes);
    if (decoder.hasError()) {
        decoder.resetState();
        return QString::fromLatin1(bytes);
    }
    return text;
}

} // namespace

clsMacroEngine::clsMacroEngine(clsFprtWrapper& wrapper, QObject* parent)
    : QObject(parent), m_wrapper(wrapper), m_list(new QStringListModel(this)),
      m_selection(new QItemSelectionModel(m_list, this)), m_delayTimer(new QTimer(this)) {
    m_delayTimer->setObjectName(QStringLiteral("tmrDelayForMacroCls"));
    connect(m_delayTimer, &QTimer::timeout, m_delayTimer, &QTimer::stop);
    m_wrapper.SetRecorder(this);
}

clsMacroEngine::~clsMacroEngine() {
    m_wrapper.SetRecorder(nullptr);
}

int32_t clsMacroEngine::Construct() {
    m_lineCount = 0;
    PlaceCursor(-1);
    m_list->setStringList({});
    SelectListRow(-1);
    return 0;
}

int32_t clsMacroEngine::AddCommand(QString& cmd) {
    if (m_lineCursor != -1)
        return 1;
    // A full store refuses like a running one: the lines held stay as they are.
    if (m_lineCount >= StoreSize)
        return 1;
    cmd = Tools::CrLfToTokens(cmd);
    m_lineStore[static_cast<size_t>(m_lineCount)] = cmd;
    ++m_lineCount;
    const int row = m_list->rowCount();
    if (m_list->insertRows(row, 1))
        m_list->setData(m_list->index(row), cmd);
    return 0;
}

int32_t clsMacroEngine::ProcessMacro(QStringList& lines) {
    for (QString& line : lines) {
        ShowMessage(line);
        QString copy = line;
        ExecuteLine(copy);
        for (int i = 0; i < 5000; ++i)
            QCoreApplication::processEvents();
    }
    return 0;
}

void clsMacroEngine::StartSavedMacro() {
    PopulateListBoxMacro();
    PlaceCursor(0);
}

void clsMacroEngine::StopMacro() {
    PlaceCursor(-1);
}

int32_t clsMacroEngine::PlayLineMacro() {
    if (m_lineCursor == -1)
        return Failure;
    // The cursor can stand beyond the macro (a shorter file loaded during a replay, a rewind of
    // an empty macro): the slot there is no longer a line, so the replay ends instead.
    if (m_lineCursor < 0 || m_lineCursor >= m_lineCount) {
        m_lineCursor = -1;
        FollowCursor(-1);
        return Failure;
    }
    const quint64 placement = m_placements;
    QString line = m_lineStore[static_cast<size_t>(m_lineCursor)];
    const int32_t result = ExecuteLine(line);
    // A Stop, Run, Clear or double click while the line ran (during an F_Delay) has put the cursor
    // where the operator wants it; raising it now would skip a line.
    if (placement != m_placements)
        return result;
    const int32_t next = static_cast<int32_t>(m_lineCursor) + 1;
    if (next >= 0 && next < m_lineCount) {
        m_lineCursor = static_cast<int16_t>(next);
        FollowCursor(next);
    } else {
        m_lineCursor = -1;
        FollowCursor(-1);
    }
    return result;
}

bool clsMacroEngine::IsRunningMacro() const {
    return m_lineCursor != -1;
}

int32_t clsMacroEngine::LoadFromFile(const QString& fileName) {
    m_loadError = LoadError::None;
    if (fileName.isEmpty()) {
        m_lineCount = 0;
        m_loadError = LoadError::NoFileName;
        return Failure;
    }
    // The whole file is read before the store is touched, so a file that can't be opened or read,
    // or is too large, leaves the macro as it was.
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        m_loadError = LoadError::Unreadable;
        return Failure;
    }
    if (!file.isSequential() && file.size() > MaxFileBytes) {
        m_loadError = LoadError::TooLarge;
        return Failure;
    }
    // Read in steps and never beyond the limit: a device with no size of its own (a pipe,
    // /dev/zero) would otherwise grow the buffer until the process dies.
    QByteArray bytes;
    if (!file.isSequential())
        bytes.reserve(file.size());
    char chunk[64 * 1024];
    for (;;) {
        const qint64 n = file.read(chunk, sizeof chunk);
        if (n < 0) {
            m_loadError = LoadError::Unreadable;
            return Failure;
        }
        if (n == 0)
            break;
        if (bytes.size() + n > MaxFileBytes) {
            m_loadError = LoadError::TooLarge;
            return Failure;
        }
        bytes.append(chunk, n);
    }
    file.close();

    m_lineCount = 0;
    bool truncated = false;
    QStringDecoder decoder(QStringConverter::System, QStringConverter::Flag::Stateless);
    // Editors that mark UTF-8 files would otherwise glue the mark to the first command word.
    qsizetype start = bytes.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    const qsizetype size = bytes.size();
    while (start < size) {
        qsizetype end = start;
        while (end < size && bytes[end] != '\r' && bytes[end] != '\n')
            ++end;
        if (m_lineCount >= StoreSize) {
            truncated = true;
            break;
        }
        m_lineStore[static_cast<size_t>(m_lineCount++)] =
            DecodeLine(decoder, QByteArrayView(bytes).sliced(start, end - start));
        if (end < size && bytes[end] == '\r' && end + 1 < size && bytes[end + 1] == '\n')
            ++end;
        start = end + 1;
    }
    PopulateListBoxMacro();
    if (truncated)
        m_loadError = LoadError::TooManyLines;
    return truncated ? Failure : 0;
}

int32_t clsMacroEngine::SaveToFile(const QString& fileName) {
    if (fileName.isEmpty())
        return Failure;
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return Failure;
    QStringEncoder encoder(QStringConverter::System);
    for (int32_t i = 0; i < m_lineCount; ++i) {
        QByteArray bytes = encoder.encode(m_lineStore[static_cast<size_t>(i)]);
        bytes.append("\r\n");
        if (file.write(bytes) != bytes.size()) {
            file.cancelWriting();
            return Failure;
        }
    }
    return file.commit() ? 0 : Failure;
}

void clsMacroEngine::PopulateListBoxMacro() {
    m_list->setStringList(Lines());
    SelectListRow(m_lineCount > 0 ? 0 : -1);
}

int32_t clsMacroEngine::SetLineMacro(int16_t& line) {
    PlaceCursor(line);
    return 0;
}

QString clsMacroEngine::Line(int32_t index) const {
    if (index < 0 || index >= m_lineCount)
        return {};
    return m_lineStore[static_cast<size_t>(index)];
}

QStringList clsMacroEngine::Lines() const {
    QStringList out;
    out.reserve(m_lineCount);
    for (int32_t i = 0; i < m_lineCount; ++i)
        out.append(m_lineStore[static_cast<size_t>(i)]);
    return out;
}

int32_t clsMacroEngine::ExecuteLine(QString& line) {
    LineArgs args{m_wrapper, SplitFields(line)};
    const QStringView word = args.field(0);

    // The key borrows the line's characters: looking a word up copies nothing.
    const QHash<QString, Handler>& methods = MethodTable();
    if (const auto it = methods.constFind(QString::fromRawData(word.data(), word.size()));
        it != methods.constEnd())
        return static_cast<int16_t>((*it)(args));

    if (word == QLatin1StringView("F_Delay")) {
        Delay(Tools::LeadingNumber(args.field(1)));
        return 0;
    }

    if (word.startsWith(QLatin1StringView("P_"))) {
        const PropertyInfo* info = FindProperty(word.mid(2));
        if (info && info->writable) {
            const auto value = PropertyValue(info->id, args.text(1));
            if (!value)
                return Failure;
            m_wrapper.WriteProperty(info->id, *value);
            return 0;
        }
    }

    ShowMessage(QStringLiteral("Unknown command ") + line);
    return 0;
}

void clsMacroEngine::Delay(double ms) {
    // Nothing to wait for at 0 or below; NaN compares false and lands here too.
    if (!(ms >= 0.5))
        return;
    const int interval = static_cast<int>(std::nearbyint(std::min(ms, MaxDelayMs)));
    if (m_delayWait) {
        m_delayWait(interval);
        return;
    }
    m_delayTimer->setInterval(interval);
    m_delayTimer->start();
    while (m_delayTimer->isActive())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

void clsMacroEngine::PlaceCursor(int16_t line) {
    m_lineCursor = line;
    ++m_placements;
    // A wait in progress belongs to the line the operator has just moved away from.
    m_delayTimer->stop();
}

QItemSelectionModel* clsMacroEngine::lstMacroCodeSelection() const {
    ApplyPendingRow();
    return m_selection;
}

void clsMacroEngine::SetListFollowed(bool followed) {
    m_listFollowed = followed;
    if (followed)
        ApplyPendingRow();
}

void clsMacroEngine::FollowCursor(int row) {
    if (m_listFollowed) {
        SelectListRow(row);
        return;
    }
    // Moving a selection costs as much as the rest of a replayed line; nobody sees it now.
    m_pendingRow = row;
}

void clsMacroEngine::ApplyPendingRow() const {
    if (m_pendingRow == NoPendingRow)
        return;
    SelectListRow(m_pendingRow);
}

void clsMacroEngine::SelectListRow(int row) const {
    // A move made now replaces the one a replay left for later.
    m_pendingRow = NoPendingRow;
    if (row < 0 || row >= m_list->rowCount()) {
        m_selection->clearSelection();
        m_selection->clearCurrentIndex();
        return;
    }
    m_selection->setCurrentIndex(m_list->index(row), QItemSelectionModel::ClearAndSelect);
}
