#pragma once

#include "PrintControl.h"

#include <QImage>
#include <QList>
#include <QString>

#include <functional>

class PaperPainter;

// Taking paper away from the printer window: a document as text, a document as a picture, a whole
// roll as a PDF. Files are written aside and renamed into place: a failed export leaves nothing.
namespace paper_export {

using BitmapOf = std::function<QImage(qsizetype index)>;

// The elements [first, last] as the printer's columns: alignment applied, double width taking two
// columns a character, barcodes, bitmaps, feeds and the fiscal logo as their bracketed text.
QString DocumentText(const QList<sim::PrintedLine>& lines, qsizetype first, qsizetype last);

// The tallest picture an export draws, in pixels.
inline constexpr int kMaxImageHeight = 30000;

// The elements [first, last] drawn on paper; a null image, with `error` set, when too tall.
QImage RenderDocument(const PaperPainter& painter, const QList<sim::PrintedLine>& lines, qsizetype first,
                      qsizetype last, const BitmapOf& bitmapOf, QString* error);

// Each answers false with a sentence for the person in `error`.
bool SavePng(const QImage& image, const QString& path, QString* error);
bool SavePdf(const PaperPainter& painter, const QList<sim::PrintedLine>& lines, const BitmapOf& bitmapOf,
             const QString& path, QString* error);

} // namespace paper_export
