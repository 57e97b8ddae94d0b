#include "SimulatedFiscalPrinter.h"

#include "DebugCommand.h"
#include "Money.h"
#include "OposAll.h"
#include "ReportFiles.h"
#include "Reports.h"
#include "Zorvane6DirectIO.h"

#include <QRegularExpression>

using namespace OposAll;
using namespace Zorvane6DirectIO;
using sim::PrintedLine;
using sim::TotalKind;

namespace {
constexpr unsigned In(int32_t s) {
    return 1u << s;
}
constexpr unsigned kAny = 0xFFFFFFFFu & ~In(FPTR_PS_LOCKED);

// The stations of the vendor commands count as the bench's list does: 1 receipt, 2 journal, 3 both.
int VendorStation(int32_t n) {
    switch (n) {
    case 1:
        return FPTR_S_RECEIPT;
    case 2:
        return FPTR_S_JOURNAL;
    case 3:
        return FPTR_S_JOURNAL_RECEIPT;
    default:
        return 0;
    }
}

QString PaperText(sim::PaperLevel level) {
    return level == sim::PaperLevel::Ok        ? QStringLiteral("ok")
           : level == sim::PaperLevel::NearEnd ? QStringLiteral("nearend")
                                               : QStringLiteral("empty");
}
} // namespace

int32_t SimulatedFiscalPrinter::DirectIO(int32_t& Command, DirectIOData& pData, QString& pString) {
    // The simulator's own API answers in every state, offline and while output is queued.
    if (Check("DirectIO", kAny, 0, Command == DIRECTIO_FPTR_DEBUG ? unsigned{Debug} : 0u))
        return m_resultCode;
    const int32_t rc = DirectIOCommand(Command, pData, pString);
    // Vendor commands print at once, never through the queue.
    if (rc == 0)
        Apply(m_out);
    m_out.clear();
    return rc;
}

QString SimulatedFiscalPrinter::StateDump() const {
    const auto& day = m_memory->DayCounters();
    QStringList failures;
    for (auto it = m_machine.PendingFailures().cbegin(); it != m_machine.PendingFailures().cend(); ++it)
        failures << it.key() + u':' + QString::number(it.value().first) + u'/' +
                        QString::number(it.value().second);
    failures.sort();
    const auto pair = [](const char* key, const QString& value) { return QLatin1String(key) + u'=' + value; };
    const auto num = [](qint64 n) { return QString::number(n); };
    return QStringList{
        pair("model", m_model.deviceName),
        pair("state", num(EffectivePrinterState())),
        pair("day", DayOpen() ? QStringLiteral("open") : QStringLiteral("closed")),
        pair("receipt", num(m_doc.number)),
        pair("total", sim::CentsText(m_doc.receipt ? m_doc.receipt->Total() : 0)),
        pair("training", num(m_training)),
        pair("queue", num(m_queue.Pending())),
        pair("error", num(m_queue.InError())),
        pair("cover", m_machine.CoverOpen() ? QStringLiteral("open") : QStringLiteral("closed")),
        pair("rec", PaperText(m_machine.ReceiptPaper())),
        pair("jrn", PaperText(m_machine.JournalPaper())),
        pair("offline", num(m_machine.Offline())),
        pair("power", m_machine.PowerOff() ? QStringLiteral("off") : QStringLiteral("on")),
        pair("clock", (m_machine.ClockOffsetSeconds() < 0 ? QString() : QStringLiteral("+")) +
                          num(m_machine.ClockOffsetSeconds()) + u's'),
        pair("printtime", num(m_queue.PrintTimePerLineMs())),
        pair("fail", failures.isEmpty() ? QStringLiteral("-") : failures.join(u',')),
        pair("z", num(m_memory->ZRecords().size())),
        pair("remaining", num(m_memory->Remaining())),
        pair("daytotal", sim::CentsText(m_memory->DayTotals().Sum(TotalKind::Net))),
        pair("grandtotal", sim::CentsText(m_memory->GrandTotals().Sum(TotalKind::Net))),
        pair("fiscal", num(day.fiscalReceipts)),
        pair("voided", num(day.voidedReceipts)),
        pair("creditnotes", num(day.creditNotes)),
        pair("nonfiscal", num(day.nonFiscalDocs)),
        pair("restarts", num(m_memory->GrandCounters().restarts)),
        pair("journal", num(m_memory->JournalCount())),
    }
        .join(u' ');
}

int32_t SimulatedFiscalPrinter::RunDebugCommand(const sim::DebugCommand& c) {
    using K = sim::DebugCommand::Kind;
    switch (c.kind) {
    case K::Cover:
        SetCoverOpen(c.on);
        break;
    case K::ReceiptPaper:
        SetReceiptPaper(c.level);
        break;
    case K::JournalPaper:
        SetJournalPaper(c.level);
        break;
    case K::Offline:
        SetOffline(c.on);
        break;
    case K::Power:
        SetPowerOff(c.on);
        break;
    case K::Fail:
        FailNextCall(c.method, c.code, c.extended);
        break;
    case K::Clock:
        SetClockOffsetSeconds(ClockOffsetSeconds() + c.seconds);
        break;
    case K::PrintTime:
        SetPrintTimePerLineMs(c.ms);
        break;
    }
    return Ok();
}

int32_t SimulatedFiscalPrinter::WriteReport(const QString& name, int fileMode, const QStringList& lines,
                                            QString& text) {
    const auto path = sim::ResolveReportPath(name);
    if (!path)
        return Result(OPOS_E_ILLEGAL, 0,
                      QStringLiteral("Report file name refused: outside the report folder"));
    if (!sim::WriteReportFile(*path, fileMode, lines))
        return Result(OPOS_E_FAILURE, 0, QStringLiteral("Report file cannot be written"));
    text = *path;
    return Ok();
}

int32_t SimulatedFiscalPrinter::DirectIOCommand(int32_t command, DirectIOData& data, QString& text) {
    auto illegal = [this](const char* why) { return Result(OPOS_E_ILLEGAL, 0, QString::fromLatin1(why)); };
    auto wrongState = [this](const char* why) {
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_WRONG_STATE, QString::fromLatin1(why));
    };
    auto physical = [this](int stations) -> int32_t {
        if (const auto fault = m_machine.PhysicalFault(stations))
            return Refuse(*fault);
        return 0;
    };
    auto fromCode = [this](int32_t code) {
        return code == 0 ? Ok()
                         : Result(code, 0,
                                  code == OPOS_E_NOEXIST ? QStringLiteral("No such file")
                                                         : QStringLiteral("Bad bitmap or slot"));
    };
    const bool monitor = EffectivePrinterState() == FPTR_PS_MONITOR;

    switch (command) {
    case DIRECTIO_FPTR_DRAWER_OPEN:
        m_drawer.Open();
        return Ok();
    case DIRECTIO_FPTR_DRAWER_GET:
        data[0] = m_drawer.IsOpen() ? 1 : 0;
        return Ok();
    case DIRECTIO_FPTR_DRAWER_WAIT:
        if (m_drawer.WaitClosed(data[0] < 0 ? 0 : data[0]))
            return Ok();
        return Result(OPOS_E_TIMEOUT, 0, QStringLiteral("Drawer still open"));

    case DIRECTIO_FPTR_BMPLOAD:
        if (DayOpen() || m_training)
            return wrongState(m_training ? "Training mode" : "Fiscal day open");
        return fromCode(m_bitmaps.Load(data[0], text));
    case DIRECTIO_FPTR_BMPPRINT: {
        const int station = VendorStation(data[0]);
        const int32_t mode = data[1];
        const int32_t justify = mode & ~(4 | 8 | 64);
        if (!station || justify < 48 || justify > 50)
            return illegal("Bad station or print mode");
        if (!m_bitmaps.Has(data[2]))
            return illegal("Empty bitmap slot");
        if (physical(station))
            return m_resultCode;
        PrintedLine line;
        line.kind = PrintedLine::Kind::Bitmap;
        line.bitmapSlot = data[2];
        line.attr.align = justify == 48   ? sim::Align::Left
                          : justify == 49 ? sim::Align::Right
                                          : sim::Align::Center;
        line.attr.doubleHeight = mode & 4;
        line.attr.doubleWidth = mode & 8;
        line.attr.reverse = mode & 64;
        EmitLine(station, line);
        return Ok();
    }
    case DIRECTIO_FPTR_BMPERASE:
        return fromCode(m_bitmaps.Erase(data[0]));
    case DIRECTIO_FPTR_BARCODEPRINT: {
        const int station = VendorStation(data[0]);
        if (!station || !sim::IsValidBarcode(data[1], text))
            return illegal("Bad barcode");
        if (physical(station))
            return m_resultCode;
        PrintedLine line;
        line.kind = PrintedLine::Kind::Barcode;
        line.text = text;
        line.barcodeType = data[1];
        EmitLine(station, line);
        return Ok();
    }

    case DIRECTIO_FPTR_DY_SETMODE:
        return m_display.SetMode(data[0]) ? Ok() : illegal("Bad display mode");
    case DIRECTIO_FPTR_DY_CLEAR:
        m_display.Clear();
        return Ok();
    case DIRECTIO_FPTR_DY_PRINTTEXT:
        return m_display.PrintText(data[0], text) ? Ok() : illegal("Bad display row");
    case DIRECTIO_FPTR_DY_BMPLOAD:
        return fromCode(m_display.LoadBitmap(data[0], text));
    case DIRECTIO_FPTR_DY_BMPERASE:
        return fromCode(m_display.EraseBitmap(data[0]));
    case DIRECTIO_FPTR_DY_BMPSHOW:
        return fromCode(m_display.ShowBitmap(data[0], data[1], data[2]));
    case DIRECTIO_FPTR_DY_BMPNOW:
        return fromCode(m_display.ShowBitmapFile(data[0], data[1], text));
    case DIRECTIO_FPTR_DY_SBYTEXT:
        m_display.SetStandbyText(text);
        return Ok();
    case DIRECTIO_FPTR_DY_SBYBMP:
        return fromCode(m_display.SetStandbyBitmap(data[0], data[1], data[2]));

    case DIRECTIO_FPTR_CREDITNOTE_BEGIN:
        if (!monitor)
            return wrongState("Printer not in monitor state");
        if (sim::DayEndRequired(*m_memory, Now()))
            return Result(OPOS_E_EXTENDED, sim::kDayEndRequired,
                          QStringLiteral("Day end required: print a Z report"));
        if (physical(FPTR_S_JOURNAL_RECEIPT))
            return m_resultCode;
        StartReceipt(FPTR_RT_REFUND, text);
        return Ok();
    case DIRECTIO_FPTR_CREDITNOTE_END:
        if (EffectivePrinterState() != FPTR_PS_FISCAL_RECEIPT_ENDING || !m_doc.receipt ||
            m_doc.receipt->ReceiptType() != FPTR_RT_REFUND)
            return wrongState("No credit note to end");
        if (physical(FPTR_S_JOURNAL_RECEIPT))
            return m_resultCode;
        FinishReceipt();
        return Ok();

    case DIRECTIO_FPTR_REPORT_EJ: {
        if (data[0] < 0 || data[0] > 2 || data[1] < 0 || data[1] > 3 || data[2] < 0 || data[2] > 4)
            return illegal("Bad report parameters");
        const QStringList lines =
            sim::JournalReportLines(*m_memory, data[1], data[2], data[3], data[4], data[5], data[6]);
        if (data[0] == 2) {
            if (physical(FPTR_S_RECEIPT))
                return m_resultCode;
            for (const auto& l : lines)
                EmitLine(FPTR_S_RECEIPT, PrintedLine::Plain(l));
            return Ok();
        }
        return WriteReport(text, data[0], lines, text);
    }
    case DIRECTIO_FPTR_REPORT_X:
        if (data[0] < 0 || data[0] > 1)
            return illegal("Bad file mode");
        return WriteReport(text, data[0],
                           QStringList{QStringLiteral("LETTURA GIORNALIERA")} +
                               sim::DayReportLines(*m_memory, m_model),
                           text);
    case DIRECTIO_FPTR_REPORT_REQUEST:
        if (data[0] < 0 || data[0] > 1 || data[1] != 20)
            return illegal("Unknown report");
        return WriteReport(text, data[0], sim::FiscalMemorySummary(*m_memory), text);
    case DIRECTIO_FPTR_RESET_TOTALIZERS:
        if (!monitor)
            return wrongState("Printer not in monitor state");
        if (DayOpen() || m_training)
            return wrongState(m_training ? "Training mode" : "Fiscal day open");
        if (physical(FPTR_S_JOURNAL_RECEIPT))
            return m_resultCode;
        m_memory->CommitDayReset();
        CommitNotice();
        Emit(FPTR_S_JOURNAL_RECEIPT, QStringLiteral("AZZERAMENTO TOTALI"));
        if (!text.isEmpty())
            Emit(FPTR_S_JOURNAL_RECEIPT, text);
        return Ok();

    case DIRECTIO_FPTR_SIMULATE_KEYBOARD: {
        QString keys;
        for (const auto& part : text.split(u',', Qt::SkipEmptyParts)) {
            bool ok = false;
            const int code = part.trimmed().toInt(&ok);
            if (!ok || code < 1 || code > 255)
                return illegal("Bad key code");
            keys.append(QChar(code));
        }
        if (keys.isEmpty())
            return illegal("No keys");
        m_display.PrintText(1, keys);
        m_journalRoll.Append(PrintedLine::Plain(QStringLiteral("TASTIERA ") + text));
        return Ok();
    }
    case DIRECTIO_FPTR_DEPARTMENTCFG: {
        if (data[0] == 0) {
            text = DepartmentLinks();
            return Ok();
        }
        if (data[0] != 1)
            return illegal("Bad department command");
        static const QRegularExpression link(QStringLiteral("^(\\d{1,3})([A-Za-z])$"));
        QMap<int, int> links;
        for (const auto& p : text.split(u',')) {
            const auto m = link.match(p.trimmed());
            if (!m.hasMatch())
                return illegal("Bad department links");
            const int dept = m.captured(1).toInt();
            const int rate = m.captured(2).toUpper().at(0).unicode() - u'A' + 1;
            if (dept < 1 || dept > 250 || rate > m_model.numVatRates)
                return illegal("Bad department links");
            links[dept] = rate;
        }
        m_memory->CommitDepartmentLinks(links);
        CommitNotice();
        return Ok();
    }
    case DIRECTIO_FPTR_GETVIRTUALTICKET:
        text = ReceiptText();
        return Ok();
    case DIRECTIO_FPTR_SETPOLLINGTIME:
        if (data[1] < 100 || data[1] > 32767)
            return illegal("Bad polling time");
        m_pollingMs = data[1];
        return Ok();
    case DIRECTIO_FPTR_DEBUG:
        if (!text.trimmed().isEmpty()) {
            QString why;
            const auto command = sim::ParseDebugCommand(text, &why);
            if (!command)
                return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad simulator command: ") + why);
            RunDebugCommand(*command);
        }
        text = StateDump();
        return Ok();
    default:
        return illegal("Unknown command");
    }
}
