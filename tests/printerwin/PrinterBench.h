#pragma once

#include "OposAll.h"
#include "SimulatedFiscalPrinter.h"

#include <QDir>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QString>

// Short calls on the simulated printer for the printer window's tests, screenshot and benchmark.
namespace pw {

inline const QString Esc(QChar(27));

inline QString Seq(const char* token) {
    return Esc + QLatin1String(token);
}

inline Amount Euros(int cents) {
    return Amount{cents} * 100;
}

// Open, claim, enable; false when a step fails.
inline bool Ready(IFiscalPrinter& p, QString name = QStringLiteral("ZorvaneFPU")) {
    int32_t timeout = 1000;
    if (p.Open(name) != 0 || p.ClaimDevice(timeout) != 0)
        return false;
    p.SetDeviceEnabled(true);
    return p.ResultCode() == 0;
}

inline int32_t DirectIO(IFiscalPrinter& p, int32_t command, DirectIOData data, QString text) {
    return p.DirectIO(command, data, text);
}

// A small monochrome picture written as a BMP file: a frame, a diagonal and a word.
inline QString WriteBitmapFile(const QDir& folder, int width = 240, int height = 64) {
    QImage img(width, height, QImage::Format_RGB32);
    img.fill(Qt::white);
    QPainter p(&img);
    p.setPen(QPen(Qt::black, 3));
    p.drawRect(2, 2, width - 5, height - 5);
    p.drawLine(2, height - 3, height - 3, 2);
    QFont f;
    f.setPixelSize(height / 2);
    f.setBold(true);
    p.setFont(f);
    p.drawText(QRect(height, 0, width - height, height), Qt::AlignCenter, QStringLiteral("fpubench"));
    p.end();
    const QString path = folder.filePath(QStringLiteral("logo.bmp"));
    img.convertToFormat(QImage::Format_Mono).save(path, "BMP");
    return path;
}

// Prints `text` as one non-fiscal document on the receipt station; the result of the first call
// that fails, else 0.
inline int32_t NonFiscal(IFiscalPrinter& p, const QStringList& lines,
                         int32_t station = OposAll::FPTR_S_RECEIPT) {
    if (const int32_t rc = p.BeginNonFiscal())
        return rc;
    for (QString line : lines)
        if (const int32_t rc = p.PrintNormal(station, line))
            return rc;
    return p.EndNonFiscal();
}

// One paid sale: items, a message line, the total paid in cash.
inline int32_t Sale(IFiscalPrinter& p, const QStringList& items, const QString& message = {}) {
    bool header = true;
    if (const int32_t rc = p.BeginFiscalReceipt(header))
        return rc;
    Amount total = 0;
    int cents = 150;
    for (QString item : items) {
        Amount price = Euros(cents);
        int32_t quantity = 0, vat = 1;
        Amount unitPrice = 0;
        QString unit;
        if (const int32_t rc = p.PrintRecItem(item, price, quantity, vat, unitPrice, unit))
            return rc;
        total += price;
        cents += 75;
    }
    if (!message.isEmpty()) {
        QString m = message;
        if (const int32_t rc = p.PrintRecMessage(m))
            return rc;
    }
    Amount t = total, paid = total;
    QString cash = QStringLiteral("0");
    if (const int32_t rc = p.PrintRecTotal(t, paid, cash))
        return rc;
    return p.EndFiscalReceipt(header);
}

} // namespace pw
