// DirectIO with any block and any text on a fresh simulated printer, opened, claimed and enabled,
// between a few calls that move the printer through its states. One line of input is one step:
//
//   COMMAND$D0$D1$...$D10$TEXT   DirectIO; the numbers wrap to 32 bits, the text runs to the line's
//                                end, "[CR]", "[LF]" and "[ESC]" standing for their characters
//   begin | item$AMOUNT | total$AMOUNT$PAYMENT$DESCRIPTION | end | void | nonfiscal | endnonfiscal
//   | x | z | async | sync | events
//
// The first line's first character picks the model: "T" the strict one, anything else the other.
// After every step the printer's books must still add up. Report files go to a private folder.

#include "FuzzSupport.h"

#include "SimulatedFiscalPrinter.h"
#include "Tools.h"

#include <QCoreApplication>

#include <cstddef>
#include <cstdint>

namespace {

int32_t Wrapped(const QString& field) {
    return static_cast<int32_t>(static_cast<uint32_t>(field.trimmed().toLongLong()));
}

Amount Money(const QString& field) {
    QString text = field;
    return Tools::TextToAmount(text);
}

void Step(SimulatedFiscalPrinter& p, const QString& line) {
    const QStringList f = line.split(u'$');
    const QString& word = f.first();
    bool isNumber = false;
    word.trimmed().toLongLong(&isNumber);
    if (isNumber) {
        int32_t command = Wrapped(word);
        DirectIOData block{};
        for (int i = 0; i < 11; ++i)
            block[static_cast<size_t>(i)] = Wrapped(f.value(i + 1));
        QString text = line.section(u'$', 12);
        text.replace(QStringLiteral("[CR]"), QString(QChar(13)));
        text.replace(QStringLiteral("[LF]"), QString(QChar(10)));
        text = Tools::EscTokensToBytes(text);
        p.DirectIO(command, block, text);
        return;
    }
    bool header = true;
    if (word == QLatin1StringView("begin")) {
        p.BeginFiscalReceipt(header);
    } else if (word == QLatin1StringView("item")) {
        QString description = QStringLiteral("Articolo"), unit;
        Amount price = Money(f.value(1)), unitPrice = 0;
        int32_t quantity = 0, vat = 1;
        p.PrintRecItem(description, price, quantity, vat, unitPrice, unit);
    } else if (word == QLatin1StringView("total")) {
        Amount total = Money(f.value(1)), payment = Money(f.value(2));
        QString description = f.value(3);
        p.PrintRecTotal(total, payment, description);
    } else if (word == QLatin1StringView("end")) {
        p.EndFiscalReceipt(header);
    } else if (word == QLatin1StringView("void")) {
        QString description = QStringLiteral("ANNULLO");
        p.PrintRecVoid(description);
    } else if (word == QLatin1StringView("nonfiscal")) {
        p.BeginNonFiscal();
    } else if (word == QLatin1StringView("endnonfiscal")) {
        p.EndNonFiscal();
    } else if (word == QLatin1StringView("x")) {
        p.PrintXReport();
    } else if (word == QLatin1StringView("z")) {
        p.PrintZReport();
    } else if (word == QLatin1StringView("async") || word == QLatin1StringView("sync")) {
        p.SetAsyncMode(word == QLatin1StringView("async"));
    } else if (word == QLatin1StringView("events")) {
        QCoreApplication::processEvents();
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    fuzz::Init();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString input =
        fuzz::Text(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    SimulatedFiscalPrinter p;
    fuzz::ClearingSink sink;
    p.SetEventSink(&sink);
    p.Drawer().SetAutoCloseMs(1);
    p.SetPrintTimePerLineMs(0);
    QString model = input.startsWith(u'T') ? QStringLiteral("Tessorim") : QStringLiteral("ZorvaneFPU");
    int32_t timeout = 0;
    if (p.Open(model) != 0 || p.ClaimDevice(timeout) != 0)
        fuzz::Fail("the simulated printer does not open");
    p.SetDeviceEnabled(true);
    for (QString line : input.split(u'\n')) {
        if (line.endsWith(u'\r'))
            line.chop(1);
        Step(p, line);
        fuzz::CheckBooks(p);
    }
    QCoreApplication::processEvents();
    fuzz::CheckBooks(p);
    p.SetEventSink(nullptr);
    fuzz::TidyReports();
    return 0;
}
