#include "PaperExport.h"

#include "PaperPainter.h"

#include <QDir>
#include <QFileInfo>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>

namespace paper_export {

namespace {

QString Columns(const sim::PrintedLine& l) {
    QString text = l.kind == sim::PrintedLine::Kind::Text ? PrintableText(l.text) : sim::PlainLine(l);
    const int per = l.attr.doubleWidth ? 2 : 1;
    const int width = int(text.size()) * per;
    const int room = PaperPainter::kColumns;
    if (width >= room)
        return text;
    const int free = room - width;
    switch (l.attr.align) {
    case sim::Align::Center:
        return QString(free / 2, u' ') + text;
    case sim::Align::Right:
        return QString(free, u' ') + text;
    case sim::Align::Left:
        break;
    }
    return text;
}

QString WriteError(const QString& path, const QString& reason) {
    return QStringLiteral("Cannot write %1: %2").arg(QDir::toNativeSeparators(path), reason);
}

} // namespace

QString DocumentText(const QList<sim::PrintedLine>& lines, qsizetype first, qsizetype last) {
    QStringList out;
    for (qsizetype i = std::max<qsizetype>(first, 0); i <= last && i < lines.size(); ++i)
        out << Columns(lines[i]);
    return out.join(u'\n') + u'\n';
}

QImage RenderDocument(const PaperPainter& painter, const QList<sim::PrintedLine>& lines, qsizetype first,
                      qsizetype last, const BitmapOf& bitmapOf, QString* error) {
    qint64 height = 0;
    for (qsizetype i = first; i <= last; ++i)
        height += painter.Height(lines[i], bitmapOf(i));
    if (height <= 0 || height > kMaxImageHeight) {
        if (error)
            *error = QStringLiteral("The document is %1 pixels long, more than a picture can hold (%2).")
                         .arg(height)
                         .arg(kMaxImageHeight);
        return {};
    }
    QImage image(painter.PaperWidth(), int(height), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    int top = 0;
    for (qsizetype i = first; i <= last; ++i) {
        const QImage bitmap = bitmapOf(i);
        painter.Draw(p, lines[i], top, bitmap);
        top += painter.Height(lines[i], bitmap);
    }
    return image;
}

bool SavePng(const QImage& image, const QString& path, QString* error) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        *error = WriteError(path, file.errorString());
        return false;
    }
    if (!image.save(&file, "PNG")) {
        file.cancelWriting();
        *error = WriteError(path, QStringLiteral("the picture could not be encoded"));
        return false;
    }
    if (!file.commit()) {
        *error = WriteError(path, file.errorString());
        return false;
    }
    return true;
}

bool SavePdf(const PaperPainter& painter, const QList<sim::PrintedLine>& lines, const BitmapOf& bitmapOf,
             const QString& path, QString* error) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        *error = WriteError(path, file.errorString());
        return false;
    }
    {
        // 80 mm paper; a page holds as much roll as an A4 page is high.
        QPdfWriter pdf(&file);
        pdf.setPageSize(QPageSize(QSizeF(80, 297), QPageSize::Millimeter));
        pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
        pdf.setResolution(203); // a thermal printer's dots per inch
        pdf.setTitle(QFileInfo(path).completeBaseName());
        QPainter p;
        if (!p.begin(&pdf)) {
            file.cancelWriting();
            *error = WriteError(path, QStringLiteral("the PDF could not be started"));
            return false;
        }
        const QRect page = pdf.pageLayout().paintRectPixels(pdf.resolution());
        const qreal scale = qreal(page.width()) / painter.PaperWidth();
        const int pageHeight = int(page.height() / scale);
        p.scale(scale, scale);
        int top = 0;
        for (qsizetype i = 0; i < lines.size(); ++i) {
            const QImage bitmap = bitmapOf(i);
            const int h = painter.Height(lines[i], bitmap);
            if (top > 0 && top + h > pageHeight) {
                pdf.newPage();
                top = 0;
            }
            p.save();
            p.setClipRect(QRect(0, top, painter.PaperWidth(), std::min(h, pageHeight)));
            painter.Draw(p, lines[i], top, bitmap);
            p.restore();
            top += h;
        }
        p.end();
    }
    if (!file.commit()) {
        *error = WriteError(path, file.errorString());
        return false;
    }
    return true;
}

} // namespace paper_export
