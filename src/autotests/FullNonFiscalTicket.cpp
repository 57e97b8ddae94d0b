#include "FullNonFiscalTicket.h"

#include "OposTypes.h"
#include "Tools.h"
#include "Zorvane6DirectIO.h"
#include "clsFprtWrapper.h"

#include <QDir>

using namespace Zorvane6DirectIO;

namespace AutoScripts {

QString NonFiscalBitmapPath() {
    return Tools::AppFolder() + QDir::separator() + QStringLiteral("nftest.bmp");
}

void PrintFullNonFiscalTicket(clsFprtWrapper& fprt, const Refresh& refresh) {
    if (fprt.DayOpened())
        fprt.PrintZReport();

    const QString path = NonFiscalBitmapPath();
    DirectIOData pData{};
    pData[0] = 1; // the bitmap's number
    int32_t command = DIRECTIO_FPTR_BMPLOAD;
    QString text = path;
    if (fprt.DirectIO(command, pData, text) != 0) {
        fprt.PrintZReport();
        pData[0] = 1;
        command = DIRECTIO_FPTR_BMPLOAD;
        text = path;
        fprt.DirectIO(command, pData, text);
    }
    refresh();

    PrintNonFiscalTicket(fprt, refresh);
}

} // namespace AutoScripts
