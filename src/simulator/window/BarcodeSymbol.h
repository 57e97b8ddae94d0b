#pragma once

#include <QList>
#include <QRectF>
#include <QString>

// A barcode laid out in modules (one module is the narrowest bar), ready to be drawn at any whole
// number of pixels per module: bars as rectangles and the human-readable text under them, quiet
// zones included. Encoded by the zint library; when zint refuses the data, `error` says why and
// there are no bars.
struct BarcodeSymbol {
    struct Text {
        QPointF baseline; // in modules
        QString text;
        int align = 0; // 0 centred on x, 1 left from x, 2 right up to x
    };
    double width = 0, height = 0; // in modules, text included
    QList<QRectF> bars;
    QList<Text> texts;
    QString error;

    bool IsValid() const { return error.isEmpty() && !bars.isEmpty(); }
};

// The printer's barcode types: 1 EAN13, 2 UPC, 3 ITLV2of5, 4 CODE39.
QString BarcodeTypeName(int type);
// Encodes `data` as the printer's barcode `type`. Never throws; a refusal is in `error`.
BarcodeSymbol EncodeBarcode(int type, const QString& data);
