#pragma once

#include "shell/common/textgrid.h"

#include <QDateTime>
#include <QString>

class QPagedPaintDevice;
class QPrinter;

namespace slipbook::shell {

// The printed run list: every row with its column headers; the header "Page n", the program's
// line and the list's title; the footer "Printed" with date and time. Columns keep their widths;
// a list wider than the page continues in further bands of columns.
struct GridPrintJob {
    const TextGridModel* model = nullptr;
    QString title;
    QDateTime printed;
};

// Landscape when the columns are wider than a portrait page.
bool PrintWantsLandscape(const TextGridModel& model);

// Paints the pages; returns the number of pages.
int PrintGrid(const GridPrintJob& job, QPagedPaintDevice& device);

QString PrintHeaderProgramLine();  // "Quadrumex Slipbook Drag Electronic Logbook"

}  // namespace slipbook::shell
