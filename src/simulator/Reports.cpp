#include "Reports.h"

#include "ModelSwitches.h"
#include "Money.h"

#include <QRegularExpression>

namespace sim {

namespace {

QString RateLetter(int vat) {
    return QString(QChar(u'A' + vat - 1));
}

QString Padded(int n, int width) {
    return QString::number(n).rightJustified(width, u'0');
}

QString KindTag(JournalDocument::Kind kind) {
    switch (kind) {
    case JournalDocument::Kind::ZReport:
        return QStringLiteral("Z");
    case JournalDocument::Kind::NonFiscal:
        return QStringLiteral("NF");
    case JournalDocument::Kind::CreditNote:
        return QStringLiteral("NC");
    default:
        return QStringLiteral("SF");
    }
}

} // namespace

QString DocumentTime(const QDateTime& when) {
    return when.toString(QStringLiteral("dd-MM-yyyy HH:mm"));
}

std::optional<QDateTime> ParseFiscalDate(const QString& text) {
    static const QRegularExpression twelveDigits(QStringLiteral("^\\d{12}$"));
    if (!twelveDigits.match(text).hasMatch())
        return std::nullopt;
    const QDateTime dt = QDateTime::fromString(text, QStringLiteral("ddMMyyyyHHmm"));
    if (!dt.isValid())
        return std::nullopt;
    return dt;
}

Totals DayVat(const IFiscalMemory& memory, const ModelSwitches& model) {
    const Totals& day = memory.DayTotals();
    Totals vat;
    const QList<int32_t>& rates = memory.VatRates();
    for (int v = 1; v <= model.numVatRates && v < kVatSlots; ++v) {
        if (!model.vatOnDayTotals) {
            vat.At(TotalKind::Vat, v) = day.Get(TotalKind::Vat, v);
            continue;
        }
        const int32_t rate = rates.value(v - 1);
        const Amount net = day.Get(TotalKind::Net, v);
        vat.At(TotalKind::Vat, v) = RoundDiv(static_cast<__int128>(net / 100) * rate, 10000 + rate) * 100;
    }
    return vat;
}

QStringList DayReportLines(const IFiscalMemory& memory, const ModelSwitches& model) {
    const Totals& t = memory.DayTotals();
    const Counters& c = memory.DayCounters();
    const Totals vat = DayVat(memory, model);
    QStringList lines;
    lines << MoneyLine(u"TOTALE GIORNALIERO", t.Sum(TotalKind::Net));
    if (t.Get(TotalKind::Net, 0) != 0)
        lines << MoneyLine(u"ESENTE", t.Get(TotalKind::Net, 0));
    for (int v = 1; v <= model.numVatRates && v < kVatSlots; ++v) {
        if (t.Get(TotalKind::Net, v) == 0)
            continue;
        const QString rate = RateLetter(v) + u' ' + PercentText(memory.VatRates().value(v - 1));
        lines << MoneyLine(QString(QStringLiteral("ALIQUOTA ") + rate), t.Get(TotalKind::Net, v));
        lines << MoneyLine(QString(QStringLiteral("IVA ") + rate), vat.Get(TotalKind::Vat, v));
    }
    lines << MoneyLine(u"SCONTI", t.Sum(TotalKind::Discount) + t.Sum(TotalKind::SubtotalDiscount));
    lines << MoneyLine(u"MAGGIORAZIONI", t.Sum(TotalKind::Surcharge) + t.Sum(TotalKind::SubtotalSurcharge));
    lines << MoneyLine(u"STORNI", t.Sum(TotalKind::ItemVoid));
    lines << MoneyLine(u"RESI", t.Sum(TotalKind::Refund));
    lines << MoneyLine(u"NON RISCOSSO", t.Sum(TotalKind::NotPaid));
    lines << MoneyLine(u"IVA TOTALE", vat.Sum(TotalKind::Vat));
    lines << QStringLiteral("SCONTRINI FISCALI ") + QString::number(c.fiscalReceipts);
    lines << QStringLiteral("SCONTRINI ANNULLATI ") + QString::number(c.voidedReceipts);
    lines << QStringLiteral("NOTE DI CREDITO ") + QString::number(c.creditNotes);
    lines << QStringLiteral("DOCUMENTI NON FISCALI ") + QString::number(c.nonFiscalDocs);
    lines << MoneyLine(u"GRAN TOTALE", memory.GrandTotals().Sum(TotalKind::Net));
    return lines;
}

QList<ZRecord> RecordsByNumber(const IFiscalMemory& memory, int from, int to) {
    QList<ZRecord> out;
    for (const ZRecord& z : memory.ZRecords())
        if (z.number >= from && z.number <= to)
            out << z;
    return out;
}

QList<ZRecord> RecordsByDate(const IFiscalMemory& memory, const QDateTime& from, const QDateTime& to) {
    QList<ZRecord> out;
    for (const ZRecord& z : memory.ZRecords())
        if (z.when >= from && z.when <= to.addSecs(59))
            out << z;
    return out;
}

QStringList RecordReportLines(const QList<ZRecord>& records) {
    QStringList lines;
    for (const ZRecord& z : records)
        lines << MoneyLine(QString(QStringLiteral("Z ") + Padded(z.number, 4) + u' ' +
                                   z.when.toString(QStringLiteral("dd-MM-yyyy"))),
                           z.day.Sum(TotalKind::Net));
    lines << QStringLiteral("RECORD ") + QString::number(records.size());
    return lines;
}

QStringList PeriodicReportLines(const QList<ZRecord>& records, const QDateTime& from, const QDateTime& to) {
    Totals sum;
    for (const ZRecord& z : records)
        sum.Add(z.day);
    return {QStringLiteral("DAL ") + from.toString(QStringLiteral("dd-MM-yyyy")) + QStringLiteral(" AL ") +
                to.toString(QStringLiteral("dd-MM-yyyy")),
            MoneyLine(u"TOTALE", sum.Sum(TotalKind::Net)), MoneyLine(u"IVA", sum.Sum(TotalKind::Vat)),
            QStringLiteral("CHIUSURE ") + QString::number(records.size())};
}

QStringList JournalReportLines(const IFiscalMemory& memory, int mode, int type, int fromDate, int toDate,
                               int fromNumber, int toNumber) {
    JournalFilter filter;
    filter.kind = type;
    if (mode == 1)
        filter.dates = std::pair{fromDate, toDate};
    else if (mode == 2)
        filter.numbers = std::pair{fromNumber, toNumber};
    else if (mode == 3)
        filter.day = CurrentDayNumber(memory);
    QStringList out{QStringLiteral("GIORNALE ELETTRONICO")};
    for (const JournalDocument& doc : memory.JournalDocuments(filter)) {
        out << QStringLiteral("---- ") + KindTag(doc.kind) + u' ' + Padded(doc.number, 4) + u' ' +
                   DocumentTime(doc.when);
        out << doc.lines;
    }
    return out;
}

QStringList FiscalMemorySummary(const IFiscalMemory& memory) {
    QStringList out{QStringLiteral("MEMORIA FISCALE"), QStringLiteral("MATRICOLA 99ZS000123"),
                    QStringLiteral("CHIUSURE ") + QString::number(memory.ZRecords().size()),
                    QStringLiteral("RECORD LIBERI ") + QString::number(memory.Remaining())};
    for (const ZRecord& z : memory.ZRecords())
        out << QStringLiteral("Z ") + Padded(z.number, 4) + u' ' + DocumentTime(z.when) + u' ' +
                   MoneyText(z.day.Sum(TotalKind::Net));
    out << QStringLiteral("GRAN TOTALE ") + MoneyText(memory.GrandTotals().Sum(TotalKind::Net));
    return out;
}

} // namespace sim
