#include "SimulatedFiscalPrinter.h"

#include "OposAll.h"
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

int DateNumber(const QDateTime& when) {
    const QDate d = when.date();
    return d.year() * 10000 + d.month() * 100 + d.day();
}
} // namespace

int32_t SimulatedFiscalPrinter::DirectIO(int32_t& Command, DirectIOData& pData, QString& pString) {
    if (Check("DirectIO", kAny, 0))
        return m_resultCode;
    const int32_t rc = DirectIOCommand(Command, pData, pString);
    // Vendor commands print at once, never through the queue.
    if (rc == 0)
        Apply(m_out);
    m_out.clear();
    return rc;
}

int32_t SimulatedFiscalPrinter::WriteReport(const QString& name, int fileMode, const QStringList& lines,
                                            QString& text) {
    const auto path = sim::ResolveReportPath(name);
    if (!path)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Report file outside the report folder"));
    if (!sim::WriteReportFile(*path, fileMode, lines))
        return Result(OPOS_E_FAILURE, 0, QStringLiteral("Report file cannot be written"));
    text = *path;
    return Ok();
}

QStringList SimulatedFiscalPrinter::JournalReportLines(const DirectIOData& data) const {
    const int mode = data[1];
    const int type = data[2];
    const int currentDay = static_cast<int>(m_memory->ZRecords().size()) + 1;
    QStringList out;
    out << QStringLiteral("GIORNALE ELETTRONICO");
    for (const auto& doc : m_memory->Journal()) {
        if (type != 0 && static_cast<int>(doc.kind) != type)
            continue;
        const int d = DateNumber(doc.when);
        if (mode == 1 && (d < data[3] || d > data[4]))
            continue;
        if (mode == 2 && (doc.number < data[5] || doc.number > data[6]))
            continue;
        if (mode == 3 && doc.zNumber != currentDay)
            continue;
        out << QStringLiteral("---- %1 %2 %3")
                   .arg(doc.kind == sim::JournalDocument::Kind::ZReport      ? QStringLiteral("Z")
                        : doc.kind == sim::JournalDocument::Kind::NonFiscal  ? QStringLiteral("NF")
                        : doc.kind == sim::JournalDocument::Kind::CreditNote ? QStringLiteral("NC")
                                                                             : QStringLiteral("SF"))
                   .arg(doc.number, 4, 10, QLatin1Char('0'))
                   .arg(doc.when.toString(QStringLiteral("dd-MM-yyyy HH:mm")));
        out << doc.lines;
    }
    return out;
}

QStringList SimulatedFiscalPrinter::FiscalMemorySummary() const {
    QStringList out;
    out << QStringLiteral("MEMORIA FISCALE");
    out << QStringLiteral("MATRICOLA 99ZS000123");
    out << QStringLiteral("CHIUSURE %1").arg(m_memory->ZRecords().size());
    out << QStringLiteral("RECORD LIBERI %1").arg(m_memory->Remaining());
    for (const auto& z : m_memory->ZRecords())
        out << QStringLiteral("Z %1 %2 %3")
                   .arg(z.number, 4, 10, QLatin1Char('0'))
                   .arg(z.when.toString(QStringLiteral("dd-MM-yyyy HH:mm")),
                        sim::MoneyText(z.day.Sum(TotalKind::Net)));
    out << QStringLiteral("GRAN TOTALE %1").arg(sim::MoneyText(m_memory->GrandTotals().Sum(TotalKind::Net)));
    return out;
}

int32_t SimulatedFiscalPrinter::DirectIOCommand(int32_t command, DirectIOData& data, QString& text) {
    auto illegal = [this](const char* why) { return Result(OPOS_E_ILLEGAL, 0, QString::fromLatin1(why)); };
    auto wrongState = [this](const char* why) {
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_WRONG_STATE, QString::fromLatin1(why));
    };
    auto physical = [this](int stations) -> int32_t {
        if (auto fault = PhysicalFault(stations))
            return Refuse(*fault);
        return 0;
    };
    auto fromCode = [this](int32_t code) {
        return code == 0 ? Ok()
                         : Result(code, 0,
                                  code == OPOS_E_NOEXIST ? QStringLiteral("No such file")
                                                         : QStringLiteral("Bad bitmap or slot"));
    };

    switch (command) {
    case DIRECTIO_FPTR_DRAWER_OPEN:
        m_drawer->Open();
        emit changed();
        return Ok();
    case DIRECTIO_FPTR_DRAWER_GET:
        data[0] = m_drawer->IsOpen() ? 1 : 0;
        return Ok();
    case DIRECTIO_FPTR_DRAWER_WAIT:
        if (m_drawer->WaitClosed(data[0] < 0 ? 0 : data[0]))
            return Ok();
        return Result(OPOS_E_TIMEOUT, 0, QStringLiteral("Drawer still open"));

    case DIRECTIO_FPTR_BMPLOAD:
        if (m_dayOpened)
            return wrongState("Fiscal day open");
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
        emit changed();
        return Ok();
    case DIRECTIO_FPTR_DY_PRINTTEXT:
        if (!m_display.PrintText(data[0], text))
            return illegal("Bad display row");
        emit changed();
        return Ok();
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
        if (EffectivePrinterState() != FPTR_PS_MONITOR)
            return wrongState("Printer not in monitor state");
        if (physical(FPTR_S_JOURNAL_RECEIPT))
            return m_resultCode;
        StartReceipt(FPTR_RT_REFUND, text); // printed at once: DirectIO is never queued
        return Ok();
    case DIRECTIO_FPTR_CREDITNOTE_END:
        if (EffectivePrinterState() != FPTR_PS_FISCAL_RECEIPT_ENDING || !m_receipt ||
            m_receipt->ReceiptType() != FPTR_RT_REFUND)
            return wrongState("No credit note to end");
        if (physical(FPTR_S_JOURNAL_RECEIPT))
            return m_resultCode;
        FinishReceipt(m_receiptVoided);
        return Ok();

    case DIRECTIO_FPTR_REPORT_EJ: {
        if (data[0] < 0 || data[0] > 2 || data[1] < 0 || data[1] > 3 || data[2] < 0 || data[2] > 4)
            return illegal("Bad report parameters");
        const QStringList lines = JournalReportLines(data);
        if (data[0] == 2) {
            if (physical(FPTR_S_RECEIPT))
                return m_resultCode;
            for (const auto& l : lines)
                Emit(FPTR_S_RECEIPT, l);
            return Ok();
        }
        return WriteReport(text, data[0], lines, text);
    }
    case DIRECTIO_FPTR_REPORT_X:
        if (data[0] < 0 || data[0] > 1)
            return illegal("Bad file mode");
        return WriteReport(text, data[0], QStringList{QStringLiteral("LETTURA GIORNALIERA")} + XReportLines(),
                           text);
    case DIRECTIO_FPTR_REPORT_REQUEST:
        if (data[0] < 0 || data[0] > 1 || data[1] != 20)
            return illegal("Unknown report");
        return WriteReport(text, data[0], FiscalMemorySummary(), text);
    case DIRECTIO_FPTR_RESET_TOTALIZERS:
        if (EffectivePrinterState() != FPTR_PS_MONITOR)
            return wrongState("Printer not in monitor state");
        if (m_dayOpened)
            return wrongState("Fiscal day open");
        if (physical(FPTR_S_JOURNAL_RECEIPT))
            return m_resultCode;
        m_memory->ResetDay();
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
        m_journalRoll.Append(
            PrintedLine{PrintedLine::Kind::Text, QStringLiteral("TASTIERA %1").arg(text), {}, 0, 0, 0});
        emit changed();
        return Ok();
    }
    case DIRECTIO_FPTR_DEPARTMENTCFG:
        if (data[0] == 0) {
            text = DepartmentLinks();
            return Ok();
        }
        if (data[0] == 1) {
            static const QRegularExpression link(QStringLiteral("^(\\d{1,3})([A-Za-z])$"));
            QMap<int, int> links;
            const QStringList parts = text.split(u',');
            for (const auto& p : parts) {
                const auto m = link.match(p.trimmed());
                if (!m.hasMatch())
                    return illegal("Bad department links");
                const int dept = m.captured(1).toInt();
                const int rate = m.captured(2).toUpper().at(0).unicode() - u'A' + 1;
                if (dept < 1 || dept > 250 || rate > m_model.numVatRates)
                    return illegal("Bad department links");
                links[dept] = rate;
            }
            m_departments = links;
            return Ok();
        }
        return illegal("Bad department command");
    case DIRECTIO_FPTR_GETVIRTUALTICKET:
        text = ReceiptText();
        return Ok();
    case DIRECTIO_FPTR_SETPOLLINGTIME:
        if (data[1] < 100 || data[1] > 32767)
            return illegal("Bad polling time");
        m_pollingMs = data[1];
        return Ok();
    case DIRECTIO_FPTR_DEBUG:
        text = QStringLiteral("model=%1 printerState=%2 day=%3 receipt=%4 total=%5 training=%6 queue=%7 "
                              "cover=%8 rec=%9 jrn=%10 z=%11")
                   .arg(m_model.deviceName)
                   .arg(EffectivePrinterState())
                   .arg(m_dayOpened ? QStringLiteral("open") : QStringLiteral("closed"))
                   .arg(m_receiptNumber)
                   .arg(sim::CentsText(m_receipt ? m_receipt->Total() : 0))
                   .arg(m_training ? 1 : 0)
                   .arg(m_queue.size())
                   .arg(m_coverOpen ? 1 : 0)
                   .arg(static_cast<int>(m_recPaper))
                   .arg(static_cast<int>(m_jrnPaper))
                   .arg(m_memory->ZRecords().size());
        return Ok();
    default:
        return illegal("Unknown command");
    }
}
