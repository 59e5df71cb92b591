#pragma once

#include "common/textgrid.h"

#include <QDateTime>
#include <QString>
#include <functional>

class QFont;
class QPagedPaintDevice;
class QPaintDevice;
class QPainter;
class QRectF;
class QWidget;

namespace slipbook::shell {

// The printed run list: every row with its column headers; the header "Page n", the program's
// line and the list's title; the footer "Printed" with date and time. Columns keep their widths;
// a list wider than the page continues in further bands of columns, each headed by the columns
// that identify a row (the first visible column when none is marked).
struct GridPrintJob {
    const TextGridModel* model = nullptr;
    QString title;
    // Read as the pages are painted: a preview left open and printed later stamps the time it
    // printed. The system clock when empty.
    std::function<QDateTime()> now;
};

// Landscape when the columns are wider than a portrait page.
bool PrintWantsLandscape(const TextGridModel& model);

// Paints the pages; returns the number of pages.
int PrintGrid(const GridPrintJob& job, QPagedPaintDevice& device);

// The preview, from which the user prints; modal.
void PreviewGrid(const GridPrintJob& job, QWidget* parent);
// The same pages on letter paper to a PDF file; false when nothing could be written.
bool PrintGridToPdf(const GridPrintJob& job, const QString& path);

QString PrintHeaderProgramLine();  // "Quadrumex Slipbook Drag Electronic Logbook"

// The heading every printed page of the program carries, as the list's pages carry it: "Page n"
// at the left, the program's line in the middle, the title at the right, laid out for the widest
// page number up to `lastPage` so that it stands alike on every page. Its height, and drawing it.
qreal PageHeadingHeight(const QFont& bold, QPaintDevice* device, const QRectF& area, int lastPage,
                        const QString& title);
void DrawPageHeading(QPainter& p, const QFont& bold, const QRectF& area, int page, int lastPage,
                     const QString& title);

}  // namespace slipbook::shell
