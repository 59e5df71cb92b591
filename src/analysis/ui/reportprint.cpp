#include "analysis/ui/reportprint.h"

#include "shell/ui/gridprint.h"

#include <QAbstractTextDocumentLayout>
#include <QFont>
#include <QFontMetricsF>
#include <QPageSize>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QTextDocument>

#include <cmath>

namespace slipbook::analysis {

namespace {

QString Escaped(const QString& text) {
    return text.toHtmlEscaped();
}

QString TableHtml(const TextGridModel& model) {
    QString html = QStringLiteral(
        "<table width=\"100%\" cellspacing=\"0\" cellpadding=\"3\" border=\"1\" "
        "style=\"border-collapse: collapse; border-color: #808080\"><thead><tr>");
    for (int c = 0; c < model.ColumnCount(); ++c) {
        const GridColumn& col = model.Column(c);
        if (!col.visible) {
            continue;
        }
        html += QStringLiteral("<th align=\"%1\" bgcolor=\"#e8e8e8\">%2</th>")
                    .arg(col.headerFollowsCells && col.alignment == 1 ? QStringLiteral("right")
                                                                      : QStringLiteral("left"),
                         Escaped(col.caption));
    }
    html += QStringLiteral("</tr></thead>");
    for (int r = 0; r < model.RowCount(); ++r) {
        html += QStringLiteral("<tr>");
        for (int c = 0; c < model.ColumnCount(); ++c) {
            const GridColumn& col = model.Column(c);
            if (!col.visible) {
                continue;
            }
            html += QStringLiteral("<td align=\"%1\">%2</td>")
                        .arg(col.alignment == 1 ? QStringLiteral("right") : QStringLiteral("left"),
                             Escaped(model.Cell(r, c)));
        }
        html += QStringLiteral("</tr>");
    }
    return html + QStringLiteral("</table>");
}

QString ReportHtml(const Report& report) {
    QString html;
    for (const QString& line : report.lines) {
        // Kept as written: the lines space their parts with runs of blanks.
        html += QStringLiteral("<p style=\"white-space: pre-wrap\">") + Escaped(line) +
                QStringLiteral("</p>");
    }
    for (const ReportSection& s : report.sections) {
        html += QStringLiteral("<h3>") + Escaped(s.heading) + QStringLiteral("</h3>");
        if (!s.note.isEmpty()) {
            html += QStringLiteral("<p>") + Escaped(s.note) + QStringLiteral("</p>");
        }
        if (s.table != nullptr) {
            html += TableHtml(*s.table);
        }
    }
    return html;
}

}  // namespace

bool ReportWantsLandscape(const Report& report) {
    for (const ReportSection& s : report.sections) {
        if (s.table != nullptr && shell::PrintWantsLandscape(*s.table)) {
            return true;
        }
    }
    return false;
}

int PrintReport(const Report& report, QPagedPaintDevice& device) {
    QPainter p(&device);
    if (!p.isActive()) {
        return 0;
    }
    const QDateTime now = report.now ? report.now() : QDateTime::currentDateTime();
    const QString printed =
        QStringLiteral("Printed ") + now.toString(QStringLiteral("M/d/yyyy h:mm:ss AP"));
    QFont font(QStringLiteral("Arial"));
    font.setStyleHint(QFont::SansSerif);
    font.setPointSizeF(8);
    QFont bold = font;
    bold.setBold(true);
    const QRectF sheet = p.viewport();
    const qreal margin = sheet.width() / 40;
    const QRectF area = sheet.adjusted(margin, margin, -margin, -margin);
    const QFontMetricsF fm(bold, &device);
    const qreal line = std::ceil(fm.height() * 1.3);
    // The heading leaves room for page numbers of three digits: a report runs to fewer pages.
    constexpr int kWidestPage = 999;
    const qreal heading = shell::PageHeadingHeight(bold, &device, area, kWidestPage, report.title);
    const qreal top = area.top() + heading + line / 2;
    const QRectF body(area.left(), top, area.width(), area.bottom() - line * 1.5 - top);

    QTextDocument doc;
    doc.documentLayout()->setPaintDevice(&device);
    doc.setDefaultFont(font);
    doc.setDocumentMargin(0);
    doc.setPageSize(body.size());
    doc.setHtml(ReportHtml(report));
    const int pages = doc.pageCount();

    for (int page = 0; page < pages; ++page) {
        if (page > 0) {
            device.newPage();
        }
        shell::DrawPageHeading(p, bold, area, page + 1, kWidestPage, report.title);

        p.save();
        p.translate(body.left(), body.top() - page * body.height());
        doc.drawContents(&p, QRectF(0, page * body.height(), body.width(), body.height()));
        p.restore();

        p.setFont(font);
        p.drawText(QRectF(area.left(), area.bottom() - line, area.width(), line),
                   Qt::AlignLeft | Qt::AlignVCenter, printed);
    }
    return pages;
}

void PreviewReport(const Report& report, QWidget* parent) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(ReportWantsLandscape(report) ? QPageLayout::Landscape
                                                            : QPageLayout::Portrait);
    printer.setDocName(report.title);
    QPrintPreviewDialog preview(&printer, parent);
    preview.setWindowTitle(QStringLiteral("Print Preview"));
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, &preview,
                     [&report](QPrinter* target) { PrintReport(report, *target); });
    preview.exec();
}

bool PrintReportToPdf(const Report& report, const QString& path) {
    QPdfWriter pdf(path);
    pdf.setTitle(report.title);
    pdf.setPageSize(QPageSize(QPageSize::Letter));
    pdf.setPageOrientation(ReportWantsLandscape(report) ? QPageLayout::Landscape
                                                        : QPageLayout::Portrait);
    pdf.setResolution(300);
    return PrintReport(report, pdf) > 0;
}

}  // namespace slipbook::analysis
