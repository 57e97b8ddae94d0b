#include "FiscalMemoryFile.h"
#include "MacroRunner.h"
#include "SimulatedFiscalPrinter.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    SimulatedFiscalPrinter device;
    QTextStream out(stdout);
    QTextStream err(stderr);
    return RunnerMain(app.arguments(), device, out, err,
                      [&device](const QString& file, const QString& deviceName, QString& message) {
                          return sim::UseFiscalMemoryFile(device, file, deviceName, message);
                      });
}
