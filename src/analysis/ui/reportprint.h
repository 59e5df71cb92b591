#pragma once

// A printed report of several tables, under the run list's page header ("Page n", the
// program's line, the title) and over its "Printed" footer. Tables run on across pages with
// their column headers repeated.

#include "common/textgrid.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

class QPagedPaintDevice;
class QWidget;

namespace slipbook::analysis {

struct ReportSection {
    QString heading;
    QString note;  // a line under the heading; none when empty
    const TextGridModel* table = nullptr;
};

struct Report {
    QString title;
    QStringList lines;  // printed at the top of the first page
    std::vector<ReportSection> sections;
    // Read as the pages are painted; the system clock when empty.
    std::function<QDateTime()> now;
};

// Landscape when a table is wider than a portrait page.
bool ReportWantsLandscape(const Report& report);

// Paints the pages; returns their number.
int PrintReport(const Report& report, QPagedPaintDevice& device);

// The preview, from which the user prints; modal.
void PreviewReport(const Report& report, QWidget* parent);
// The same pages on letter paper to a PDF file; false when nothing could be written.
bool PrintReportToPdf(const Report& report, const QString& path);

}  // namespace slipbook::analysis
