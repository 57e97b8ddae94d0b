#include "BarcodeSymbol.h"

#include <zint.h>

#include <memory>

namespace {

int ZintSymbology(int type) {
    switch (type) {
    case 1:
        return BARCODE_EANX;
    case 2:
        return BARCODE_UPCA;
    case 3:
        return BARCODE_C25INTER;
    case 4:
        return BARCODE_CODE39;
    default:
        return 0;
    }
}

struct ZintDeleter {
    void operator()(zint_symbol* s) const { ZBarcode_Delete(s); }
};

} // namespace

QString BarcodeTypeName(int type) {
    switch (type) {
    case 1:
        return QStringLiteral("EAN13");
    case 2:
        return QStringLiteral("UPC");
    case 3:
        return QStringLiteral("ITLV2of5");
    case 4:
        return QStringLiteral("CODE39");
    default:
        return QStringLiteral("type ") + QString::number(type);
    }
}

BarcodeSymbol EncodeBarcode(int type, const QString& data) {
    BarcodeSymbol out;
    const int symbology = ZintSymbology(type);
    if (symbology == 0) {
        out.error = QStringLiteral("unknown barcode type ") + QString::number(type);
        return out;
    }
    if (data.isEmpty()) {
        out.error = QStringLiteral("no data");
        return out;
    }
    const std::unique_ptr<zint_symbol, ZintDeleter> symbol(ZBarcode_Create());
    if (!symbol) {
        out.error = QStringLiteral("out of memory");
        return out;
    }
    symbol->symbology = symbology;
    symbol->show_hrt = 1;
    const QByteArray bytes = data.toLatin1();
    const int rc = ZBarcode_Encode_and_Buffer_Vector(
        symbol.get(), reinterpret_cast<const unsigned char*>(bytes.constData()), int(bytes.size()), 0);
    if (rc >= ZINT_ERROR || !symbol->vector) {
        // zint's messages read "Error 275: Invalid check digit ..."; the number means nothing here.
        QString reason = QString::fromLatin1(symbol->errtxt);
        const qsizetype colon = reason.indexOf(QLatin1String(": "));
        if (reason.startsWith(QLatin1String("Error")) && colon > 0)
            reason = reason.mid(colon + 2);
        out.error = reason.isEmpty() ? QStringLiteral("refused by the encoder") : reason;
        return out;
    }
    // Vector units are two per module at scale 1.
    const double unit = 2.0 * (symbol->scale > 0 ? symbol->scale : 1.0);
    const zint_vector* v = symbol->vector;
    out.width = v->width / unit;
    out.height = v->height / unit;
    for (const zint_vector_rect* r = v->rectangles; r; r = r->next)
        out.bars.append(QRectF(r->x / unit, r->y / unit, r->width / unit, r->height / unit));
    for (const zint_vector_string* s = v->strings; s; s = s->next)
        out.texts.append({QPointF(s->x / unit, s->y / unit),
                          QString::fromUtf8(reinterpret_cast<const char*>(s->text)), s->halign});
    return out;
}
