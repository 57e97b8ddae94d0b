#include "NonFiscalTicket.h"

#include "OposAll.h"
#include "ScriptText.h"
#include "clsFprtWrapper.h"

using namespace OposAll;

namespace AutoScripts {

namespace {

// The scripts build their sequences themselves, from the character 27 and a literal.
QString Esc(const char* text) {
    return QChar(27) + QLatin1StringView(text);
}

} // namespace

QString BarcodeText(const QString& code) {
    return QChar(27) + QStringLiteral("|") + Tools::NumberText(code.size()) + QStringLiteral("R") + code;
}

void PrintNonFiscalTicket(clsFprtWrapper& fprt, const Refresh& refresh) {
    const int32_t both = FPTR_S_JOURNAL_RECEIPT;
    auto print = [&](const QString& text) {
        fprt.PrintNormal(both, text);
        refresh();
    };

    fprt.BeginNonFiscal();
    refresh();
    print(QStringLiteral("THE QUICK BROWN FOX JUMPS OVER\r\nTHE LAZY DOG'S BACK"));
    print(Esc("|2CDouble width"));
    print(Esc("|3CDouble height"));
    print(Esc("|5CHalf height"));
    print(Esc("|6CFramed"));
    print(BarcodeText(QStringLiteral("1") + QStringLiteral("4007817504598"))); // EAN13
    print(BarcodeText(QStringLiteral("2") + QStringLiteral("26443247343")));   // UPC
    print(BarcodeText(QStringLiteral("2") + QStringLiteral("641223")));        // UPC
    print(BarcodeText(QStringLiteral("3") + QStringLiteral("01234567")));      // ITLV2of5
    print(BarcodeText(QStringLiteral("4") + QStringLiteral("1234567890")));    // CODE39
    print(Esc("|1B"));                                                         // bitmap 1
    fprt.EndNonFiscal();
    refresh();
}

} // namespace AutoScripts
