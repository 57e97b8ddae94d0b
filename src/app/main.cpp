#include "MDITestFPOPOS.h"
#include "SimulatedFiscalPrinter.h"

#include <QApplication>

#include <memory>

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    MDITestFPOPOS window(std::make_unique<SimulatedFiscalPrinter>());
    window.show();
    return app.exec();
}
