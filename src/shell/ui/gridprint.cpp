#include "shell/ui/gridprint.h"

#include <QCoreApplication>
#include <QFont>
#include <QFontMetricsF>
#include <QPageSize>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrinter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace slipbook::shell {

namespace {

// A text that does not fit where it stands shrinks in these steps, down to 60 % of its size.
constexpr double kScales[] = {1.0, 0.9, 0.8, 0.7, 0.6};
constexpr int kTopLeft = Qt::AlignLeft | Qt::AlignTop;
constexpr int kTopRight = Qt::AlignRight | Qt::AlignTop;

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
    return alignment == 1 ? Qt::AlignRight : alignment == 2 ? Qt::AlignHCenter : Qt::AlignLeft;
}

QFont Scaled(const QFont& font, double scale) {
    QFont out = font;
    out.setPointSizeF(font.pointSizeF() * scale);
    return out;
}

// Whether the text, wrapped as the flags say, fits the width in at most that many lines.
bool Fits(const QFont& font, QPaintDevice* device, const QString& text, qreal width, int lines,
          int flags) {
    if (width <= 0) {
        return false;
    }
    const QFontMetricsF fm(font, device);
    const QRectF r = fm.boundingRect(QRectF(0, 0, width, 1e9), flags, text);
    return r.width() <= width + 0.5 && r.height() < fm.lineSpacing() * (lines + 0.5);
}

struct Piece {
    QRectF rect;
    QFont font;
    int flags = 0;
    QString text;
};

struct PageHeader {
    Piece page;  // its text changes from page to page; the rect is wide enough for the last
    Piece program;
    Piece title;
    qreal height = 0;
};

// The program's line stands in the middle where it can, the page number at the left, the title
// at the right; the title takes what room is left, on two lines or in a smaller size if it must.
// On a page too narrow for that it goes on a line of its own below. The parts never overlap.
PageHeader LayoutPageHeader(const QFont& bold, QPaintDevice* device, const QRectF& area,
                            const QString& widestPage, const QString& title) {
    QFont font = bold;
    QFontMetricsF fm(font, device);
    qreal gap = fm.averageCharWidth() * 3;
    qreal wp = fm.horizontalAdvance(widestPage);
    qreal wm = fm.horizontalAdvance(PrintHeaderProgramLine());
    const qreal width = area.width();
    if (wp + wm + 2 * gap > width * 0.75) {
        // The fixed parts leave at least a quarter of the line to the title.
        font = Scaled(font, width * 0.75 / (wp + wm + 2 * gap));
        fm = QFontMetricsF(font, device);
        gap = fm.averageCharWidth() * 3;
        wp = fm.horizontalAdvance(widestPage);
        wm = fm.horizontalAdvance(PrintHeaderProgramLine());
    }
    const qreal line = fm.lineSpacing();
    const qreal leftmost = wp + gap;
    const qreal centred = std::max(leftmost, (width - wm) / 2);

    PageHeader h;
    h.page = {QRectF(area.left(), area.top(), wp, line), font, kTopLeft, {}};
    for (double scale : kScales) {
        const QFont titleFont = Scaled(font, scale);
        for (int lines : {1, 2}) {
            const int wrap = lines > 1 ? Qt::TextWordWrap : 0;
            for (qreal programLeft : {centred, leftmost}) {
                const qreal titleLeft = programLeft + wm + gap;
                const qreal room = width - titleLeft;
                if (!Fits(titleFont, device, title, room, lines, wrap)) {
                    continue;
                }
                h.program = {QRectF(area.left() + programLeft, area.top(), wm, line), font,
                             kTopLeft, PrintHeaderProgramLine()};
                const qreal height = QFontMetricsF(titleFont, device).lineSpacing() * lines;
                h.title = {QRectF(area.left() + titleLeft, area.top(), room, height), titleFont,
                           kTopRight | wrap, title};
                h.height = std::max(line, height);
                return h;
            }
        }
    }
    h.program = {QRectF(area.left() + centred, area.top(), wm, line), font, kTopLeft,
                 PrintHeaderProgramLine()};
    const int wrap = Qt::TextWordWrap;
    const bool whole = Fits(font, device, title, width, 2, wrap);
    const int lines = whole && !Fits(font, device, title, width, 1, 0) ? 2 : 1;
    h.title = {QRectF(area.left(), area.top() + line, width, line * lines), font,
               kTopRight | (whole ? wrap : 0),
               whole ? title : fm.elidedText(title, Qt::ElideRight, width)};
    h.height = line * (1 + lines);
    return h;
}

QString WidestPage(int lastPage) {
    return QStringLiteral("Page ") + QString(QString::number(std::max(1, lastPage)).size(), u'8');
}

// A column caption is printed whole: on two lines where one is too narrow, smaller where two
// are; only a caption that fits in no way breaks within a word.
struct Caption {
    QFont font;
    int flags = 0;
    int lines = 1;
};

Caption FitCaption(const QFont& bold, QPaintDevice* device, const QString& caption, qreal width) {
    for (double scale : kScales) {
        const QFont font = Scaled(bold, scale);
        for (int lines : {1, 2}) {
            const int wrap = lines > 1 ? Qt::TextWordWrap : 0;
            if (Fits(font, device, caption, width, lines, wrap)) {
                return {font, wrap, lines};
            }
        }
    }
    return {Scaled(bold, kScales[std::size(kScales) - 1]), Qt::TextWrapAnywhere, 2};
}

struct Band {
    std::vector<int> columns;
    std::vector<qreal> widths;
};

// Every band starts with the columns that identify a row, as many of them as take no more
// than half the page, then as many further columns as fit. Widths are by model column.
std::vector<Band> MakeBands(const TextGridModel& model, const std::vector<qreal>& widthOf,
                            qreal pageWidth) {
    const std::vector<int> visible = VisibleColumns(model);
    std::vector<int> keys;
    for (int c : visible) {
        if (model.Column(c).identifiesRow) {
            keys.push_back(c);
        }
    }
    if (keys.empty() && !visible.empty()) {
        keys.push_back(visible.front());
    }
    Band head;
    qreal headWidth = 0;
    for (int c : keys) {
        if (headWidth + widthOf[c] > pageWidth / 2) {
            break;
        }
        head.columns.push_back(c);
        head.widths.push_back(widthOf[c]);
        headWidth += widthOf[c];
    }

    std::vector<Band> bands{head};
    qreal used = headWidth;
    bool hasOwn = false;
    for (int c : visible) {
        if (std::find(head.columns.begin(), head.columns.end(), c) != head.columns.end()) {
            continue;
        }
        if (used + widthOf[c] > pageWidth && hasOwn) {
            bands.push_back(head);
            used = headWidth;
        }
        bands.back().columns.push_back(c);
        bands.back().widths.push_back(widthOf[c]);
        used += widthOf[c];
        hasOwn = true;
    }
    return bands;
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
    const QDateTime now = job.now ? job.now() : QDateTime::currentDateTime();
    const QString printed =
        QStringLiteral("Printed ") + now.toString(QStringLiteral("M/d/yyyy h:mm:ss AP"));
    QFont font(QStringLiteral("Arial"));
    font.setStyleHint(QFont::SansSerif);
    font.setPointSizeF(7.5);
    QFont bold = font;
    bold.setBold(true);
    const QRectF sheet = p.viewport();
    const qreal margin = sheet.width() / 40;
    const QRectF area = sheet.adjusted(margin, margin, -margin, -margin);
    const QFontMetricsF fm(font, &device);
    const QFontMetricsF bm(bold, &device);
    const qreal line = std::ceil(fm.height() * 1.3);
    // Each cell keeps this much paper on either side, so neighbours never run together.
    const qreal pad = device.logicalDpiX() / 32.0;

    // Columns keep their own widths (twips are 1/1440 inch, drawn a little narrower on paper),
    // widened where the longest word of a caption needs it, so that no caption is broken within
    // a word, or where a little more keeps a caption on one line.
    const qreal perTwip = device.logicalDpiX() / 1440.0 * 0.8;
    std::vector<qreal> widths(model.ColumnCount());
    for (int c = 0; c < model.ColumnCount(); ++c) {
        const QString& caption = model.Column(c).caption;
        qreal width = TwipsOf(model.Column(c)) * perTwip;
        for (const QString& w : caption.split(u' ', Qt::SkipEmptyParts)) {
            width = std::max(width, bm.horizontalAdvance(w) + 2 * pad + 1);
        }
        const qreal whole = bm.horizontalAdvance(caption) + 2 * pad + 1;
        if (whole < width * 1.15) {
            width = std::max(width, whole);
        }
        widths[c] = std::min(area.width(), width);
    }
    const std::vector<Band> bands = MakeBands(model, widths, area.width());
    std::vector<Caption> captions(model.ColumnCount());
    int captionLines = 1;
    for (const Band& band : bands) {
        for (size_t i = 0; i < band.columns.size(); ++i) {
            const int c = band.columns[i];
            captions[c] =
                FitCaption(bold, &device, model.Column(c).caption, band.widths[i] - 2 * pad);
            captionLines = std::max(captionLines, captions[c].lines);
        }
    }
    const int rows = model.RowCount();
    // The header is laid out once, for the widest page number there can be, so that every
    // page holds the same rows in every band.
    const qsizetype digits = QString::number(bands.size() * std::max(1, rows)).size();
    const PageHeader head = LayoutPageHeader(
        bold, &device, area, QStringLiteral("Page ") + QString(digits, u'8'), job.title.trimmed());
    const qreal captionTop = area.top() + head.height + line / 2;
    const qreal captionHeight = bm.lineSpacing() * captionLines;
    const qreal rowsTop = captionTop + captionHeight + pad;
    const qreal footerTop = area.bottom() - line;
    const int rowsPerPage = std::max(1, static_cast<int>((footerTop - line / 2 - rowsTop) / line));
    const int pagesPerBand = std::max(1, (rows + rowsPerPage - 1) / rowsPerPage);

    auto draw = [&p](const Piece& piece, const QString& text) {
        p.setFont(piece.font);
        p.drawText(piece.rect, piece.flags, text);
    };
    int pageNumber = 0;
    for (const Band& band : bands) {
        for (int page = 0; page < pagesPerBand; ++page) {
            if (pageNumber++ > 0) {
                device.newPage();
            }
            draw(head.page, QStringLiteral("Page %1").arg(pageNumber));
            draw(head.program, head.program.text);
            draw(head.title, head.title.text);

            // Column headers on every page; one-line captions sit on the lower line.
            qreal x = area.left();
            for (size_t i = 0; i < band.columns.size(); ++i) {
                const GridColumn& c = model.Column(band.columns[i]);
                const Caption& caption = captions[band.columns[i]];
                p.setFont(caption.font);
                p.drawText(QRectF(x + pad, captionTop, band.widths[i] - 2 * pad, captionHeight),
                           AlignOf(c.headerFollowsCells ? c.alignment : 0) | Qt::AlignBottom |
                               caption.flags,
                           c.caption);
                x += band.widths[i];
            }
            p.drawLine(QPointF(area.left(), rowsTop - pad / 2), QPointF(x, rowsTop - pad / 2));

            // Cells are cut short with an ellipsis; drawText clips what still overhangs.
            p.setFont(font);
            const int first = page * rowsPerPage;
            const int last = std::min(rows, first + rowsPerPage);
            for (int r = first; r < last; ++r) {
                qreal cx = area.left();
                const qreal y = rowsTop + (r - first) * line;
                for (size_t i = 0; i < band.columns.size(); ++i) {
                    const GridColumn& c = model.Column(band.columns[i]);
                    const qreal inner = band.widths[i] - 2 * pad;
                    const QString text =
                        fm.elidedText(model.Cell(r, band.columns[i]), Qt::ElideRight, inner);
                    p.drawText(QRectF(cx + pad, y, inner, line),
                               AlignOf(c.alignment) | Qt::AlignVCenter | Qt::TextSingleLine, text);
                    cx += band.widths[i];
                }
            }
            p.setFont(font);
            p.drawText(QRectF(area.left(), footerTop, area.width(), line),
                       Qt::AlignLeft | Qt::AlignVCenter, printed);
        }
    }
    return pageNumber;
}

void PreviewGrid(const GridPrintJob& job, QWidget* parent) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(PrintWantsLandscape(*job.model) ? QPageLayout::Landscape
                                                               : QPageLayout::Portrait);
    printer.setDocName(job.title.trimmed());
    QPrintPreviewDialog preview(&printer, parent);
    preview.setWindowTitle(QStringLiteral("Print Preview"));
    // The preview paints when it opens and again for the printer, each time with the clock.
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, &preview,
                     [&job](QPrinter* target) { PrintGrid(job, *target); });
    preview.exec();
}

bool PrintGridToPdf(const GridPrintJob& job, const QString& path) {
    QPdfWriter pdf(path);
    pdf.setTitle(job.title.trimmed());
    pdf.setPageSize(QPageSize(QPageSize::Letter));
    pdf.setPageOrientation(PrintWantsLandscape(*job.model) ? QPageLayout::Landscape
                                                           : QPageLayout::Portrait);
    pdf.setResolution(300);
    return PrintGrid(job, pdf) > 0;
}

qreal PageHeadingHeight(const QFont& bold, QPaintDevice* device, const QRectF& area, int lastPage,
                        const QString& title) {
    return LayoutPageHeader(bold, device, area, WidestPage(lastPage), title.trimmed()).height;
}

void DrawPageHeading(QPainter& p, const QFont& bold, const QRectF& area, int page, int lastPage,
                     const QString& title) {
    const PageHeader head =
        LayoutPageHeader(bold, p.device(), area, WidestPage(lastPage), title.trimmed());
    for (const Piece* piece : {&head.page, &head.program, &head.title}) {
        p.setFont(piece->font);
        p.drawText(piece->rect, piece->flags,
                   piece == &head.page ? QStringLiteral("Page %1").arg(page) : piece->text);
    }
}

}  // namespace slipbook::shell
