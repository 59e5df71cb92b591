#include "shell/ui/gridprint.h"

#include <QFont>
#include <QFontMetrics>
#include <QPagedPaintDevice>
#include <QPainter>

namespace slipbook::shell {

namespace {

// Layout units of the column widths are twips; a default column is 1000 of them.
int TwipsOf(const GridColumn& c) {
    return c.width > 0 ? c.width : 1000;
}

std::vector<int> VisibleColumns(const TextGridModel& model) {
    std::vector<int> out;
    for (int c = 0; c < model.ColumnCount(); ++c) {
        if (model.Column(c).visible) {
            out.push_back(c);
        }
    }
    return out;
}

Qt::Alignment AlignOf(int alignment) {
    return Qt::AlignVCenter | (alignment == 1   ? Qt::AlignRight
                               : alignment == 2 ? Qt::AlignHCenter
                                                : Qt::AlignLeft);
}

}  // namespace

QString PrintHeaderProgramLine() {
    return QStringLiteral("Quadrumex Slipbook Drag Electronic Logbook");
}

bool PrintWantsLandscape(const TextGridModel& model) {
    int twips = 0;
    for (int c : VisibleColumns(model)) {
        twips += TwipsOf(model.Column(c));
    }
    // A letter page in portrait has some 10,800 twips between its margins.
    return twips > 10800;
}

int PrintGrid(const GridPrintJob& job, QPagedPaintDevice& device) {
    const TextGridModel& model = *job.model;
    QPainter p(&device);
    if (!p.isActive()) {
        return 0;
    }
    QFont font(QStringLiteral("Arial"));
    font.setStyleHint(QFont::SansSerif);
    font.setPointSizeF(7.5);
    QFont bold = font;
    bold.setBold(true);
    const QRect sheet = p.viewport();
    const int margin = sheet.width() / 40;
    const QRect area = sheet.adjusted(margin, margin, -margin, -margin);
    p.setFont(font);
    const int line = QFontMetrics(font, &device).height() + 4;

    // Columns keep their own widths (twips are 1/1440 inch, drawn a little narrower on paper);
    // a list wider than the page goes on in bands of columns, each band over all the rows.
    const double perTwip = device.logicalDpiX() / 1440.0 * 0.8;
    std::vector<std::vector<int>> bands(1);
    std::vector<std::vector<int>> bandWidths(1);
    int used = 0;
    for (int c : VisibleColumns(model)) {
        const int w = std::min(area.width(), static_cast<int>(TwipsOf(model.Column(c)) * perTwip));
        if (used + w > area.width() && !bands.back().empty()) {
            bands.emplace_back();
            bandWidths.emplace_back();
            used = 0;
        }
        bands.back().push_back(c);
        bandWidths.back().push_back(w);
        used += w;
    }

    const int headerHeight = line * 2;
    const int footerHeight = line * 2;
    const int rowsTop = area.top() + headerHeight + line;
    const int rowsPerPage = std::max(1, (area.bottom() - footerHeight - rowsTop) / line);
    const int rows = model.RowCount();
    const int pagesPerBand = std::max(1, (rows + rowsPerPage - 1) / rowsPerPage);
    const QString printed =
        QStringLiteral("Printed ") + job.printed.toString(QStringLiteral("M/d/yyyy h:mm:ss AP"));

    int pageNumber = 0;
    for (size_t band = 0; band < bands.size(); ++band) {
        const std::vector<int>& columns = bands[band];
        const std::vector<int>& widths = bandWidths[band];
        for (int page = 0; page < pagesPerBand; ++page) {
            if (pageNumber++ > 0) {
                device.newPage();
            }
            p.setFont(bold);
            const QRect header(area.left(), area.top(), area.width(), line);
            p.drawText(header, Qt::AlignLeft | Qt::AlignVCenter,
                       QStringLiteral("Page %1").arg(pageNumber));
            p.drawText(header, Qt::AlignHCenter | Qt::AlignVCenter, PrintHeaderProgramLine());
            p.drawText(header, Qt::AlignRight | Qt::AlignVCenter, job.title.trimmed());
            // Column headers on every page.
            int x = area.left();
            const int headTop = area.top() + headerHeight;
            for (size_t i = 0; i < columns.size(); ++i) {
                const GridColumn& c = model.Column(columns[i]);
                const QString caption =
                    p.fontMetrics().elidedText(c.caption, Qt::ElideRight, widths[i] - 4);
                p.drawText(QRect(x + 2, headTop, widths[i] - 4, line),
                           AlignOf(c.headerFollowsCells ? c.alignment : 0) | Qt::TextSingleLine,
                           caption);
                x += widths[i];
            }
            p.drawLine(area.left(), headTop + line, x, headTop + line);
            p.setFont(font);
            const int first = page * rowsPerPage;
            const int last = std::min(rows, first + rowsPerPage);
            for (int r = first; r < last; ++r) {
                int cx = area.left();
                const int y = rowsTop + (r - first) * line;
                for (size_t i = 0; i < columns.size(); ++i) {
                    const GridColumn& c = model.Column(columns[i]);
                    const QString text = p.fontMetrics().elidedText(model.Cell(r, columns[i]),
                                                                    Qt::ElideRight, widths[i] - 4);
                    p.drawText(QRect(cx + 2, y, widths[i] - 4, line),
                               AlignOf(c.alignment) | Qt::TextSingleLine, text);
                    cx += widths[i];
                }
            }
            p.drawText(QRect(area.left(), area.bottom() - line, area.width(), line),
                       Qt::AlignLeft | Qt::AlignVCenter, printed);
        }
    }
    return pageNumber;
}

}  // namespace slipbook::shell
