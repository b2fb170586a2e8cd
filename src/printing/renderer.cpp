#include "printing/renderer.h"

#include "printing/lead_lines.h"
#include "printing/text_painter.h"

#include <QAbstractTextDocumentLayout>
#include <QImage>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPrinter>

#include <algorithm>
#include <cmath>
#include <functional>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr double usualUnprintable = 4.2; // millimetres, a sixth of an inch

constexpr double millimetresPerInch = 25.4;

bool isDrawnTurned(const Sheet &sheet, const Look &look)
{
    return look.fed && sheet.turned && sheet.drawnClockwise;
}

QPageLayout pageOf(const Document &document, const Look &look)
{
    const Sheet &sheet = document.sheets.front();
    const bool isPrinters = look.fed && document.onPrintersPaper;
    const QSizeF paper = isPrinters ? *look.fed : QSizeF(sheet.paperWidth, sheet.paperHeight);
    const bool isAcross = sheet.turned && !isPrinters && !isDrawnTurned(sheet, look);
    // Exact: the page of a form must not become that of a standard paper which it nearly has.
    const QPageSize size(paper, QPageSize::Millimeter, {}, QPageSize::ExactMatch);
    QPageLayout layout(size, isAcross ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF(),
                       QPageLayout::Millimeter);
    layout.setMode(QPageLayout::FullPageMode);
    return layout;
}

// Without a part of black or blue, in which digits are read.
constexpr QColor vermilion(0xEB, 0x61, 0x01);

void drawBox(QPainter &painter, const Box &box)
{
    const QRectF area(box.x, box.y, box.width, box.height);
    if (box.grey < 255)
        painter.fillRect(area, QColor(box.grey, box.grey, box.grey));
    if (box.lineWidth > 0) {
        const QColor colour = box.vermilion ? vermilion : QColor(Qt::black);
        painter.setPen(QPen(colour, box.lineWidth, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        painter.drawRect(area);
    }
}

void drawLines(QPainter &painter, const std::vector<Line> &lines)
{
    const Line *last = nullptr;
    for (const Line &line : lines) {
        if (!last || last->width != line.width || last->grey != line.grey)
            painter.setPen(
                QPen(QColor(line.grey, line.grey, line.grey), line.width, Qt::SolidLine, Qt::FlatCap));
        last = &line;
        painter.drawLine(QPointF(line.x1, line.y1), QPointF(line.x2, line.y2));
    }
}

// A device of one dot to the twip, so that rich text is laid out in the sheet's own units.
QPaintDevice *twipDevice()
{
    static QImage device = [] {
        QImage image(1, 1, QImage::Format_Mono);
        const int dotsPerMetre = static_cast<int>(std::ceil(twipsPerInch * 1000 / millimetresPerInch));
        image.setDotsPerMeterX(dotsPerMetre);
        image.setDotsPerMeterY(dotsPerMetre);
        return image;
    }();
    return &device;
}

void drawRichText(QPainter &painter, const RichTextSlot &slot, QTextDocument &text)
{
    text.documentLayout()->setPaintDevice(twipDevice());
    text.setDocumentMargin(0);
    // As wide as the slot, so that centred and right-aligned lines stand where they should; wider when a line
    // needs it, and then the whole is made smaller.
    text.setTextWidth(-1);
    text.setTextWidth(std::max(slot.width, text.idealWidth()));
    const QSizeF size = text.size();
    const double scale = std::min({1.0, slot.width / size.width(), slot.height / size.height()});

    // Black on white whatever the screen's colours are.
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette = QPalette(Qt::black, Qt::white, Qt::white, Qt::black, Qt::gray, Qt::black, Qt::white);
    painter.save();
    painter.translate(slot.x, slot.y);
    painter.scale(scale, scale);
    text.documentLayout()->draw(&painter, context);
    painter.restore();
}

void drawGridLines(QPainter &painter, const Sheet &sheet, int step, const std::function<QPen(int at)> &pen)
{
    const double right = twipsFromMillimetres(sheet.readWidth());
    const double bottom = twipsFromMillimetres(sheet.readHeight());
    for (int x = 0; x <= sheet.readWidth(); x += step) {
        painter.setPen(pen(x));
        painter.drawLine(QPointF(twipsFromMillimetres(x), 0), QPointF(twipsFromMillimetres(x), bottom));
    }
    for (int y = 0; y <= sheet.readHeight(); y += step) {
        painter.setPen(pen(y));
        painter.drawLine(QPointF(0, twipsFromMillimetres(y)), QPointF(right, twipsFromMillimetres(y)));
    }
}

void drawGrid(QPainter &painter, const Sheet &sheet, const Look &look)
{
    constexpr int step = 10; // millimetres
    constexpr int labelledStep = 50;
    const QColor colour(120, 120, 120);
    if (look.fineGrid)
        drawGridLines(painter, sheet, 1, [](int) { return QPen(QColor(225, 225, 225), 0); });
    drawGridLines(painter, sheet, step,
                  [&colour](int at) { return QPen(colour, at % labelledStep == 0 ? 8 : 2); });
    applyFont(painter, look.face, 7);
    painter.setPen(colour);
    for (int x = labelledStep; x < sheet.readWidth(); x += labelledStep)
        painter.drawText(QPointF(twipsFromMillimetres(x + 0.5), twipsFromMillimetres(step - 1)),
                         QString::number(x));
    for (int y = labelledStep; y < sheet.readHeight(); y += labelledStep)
        painter.drawText(QPointF(twipsFromMillimetres(step), twipsFromMillimetres(y - 0.5)),
                         QString::number(y));
}

void drawContent(QPainter &painter, const Document &document, const Sheet &sheet, const Look &look,
                 TextPainter &texts)
{
    if (look.calibrationGrid)
        drawGrid(painter, sheet, look);
    for (const Box &box : sheet.boxes)
        drawBox(painter, box);
    drawLines(painter, sheet.lines);
    painter.setPen(Qt::black);
    texts.begin(painter);
    for (const TextItem &item : sheet.texts)
        texts.draw(item);
    for (const RichTextSlot &slot : sheet.richTexts) {
        if (const auto text = document.richTexts.find(slot.name); text != document.richTexts.end())
            drawRichText(painter, slot, *text->second);
    }
}

// Where the sheet's own positions are counted from, twips. A form that is printed line by line is drawn as
// for the printers that it is designed for where no printer tells what it cannot reach.
QPointF originOf(const Sheet &sheet, const QMarginsF &unprintable)
{
    switch (sheet.origin) {
    case Origin::PrintableArea:
        return {twipsFromMillimetres(unprintable.left()), twipsFromMillimetres(unprintable.top())};
    case Origin::LeadLines:
        if (unprintable != usualUnprintableMargins())
            return {0, twipsFromMillimetres(leadShift(unprintable.top()))};
        break;
    case Origin::PaperEdge:
        break;
    }
    return {};
}

void drawOn(QPainter &painter, const Document &document, const Sheet &sheet, const Look &look,
            const QMarginsF &unprintable, TextPainter &texts)
{
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform);
    painter.scale(painter.device()->logicalDpiX() / twipsPerInch,
                  painter.device()->logicalDpiY() / twipsPerInch);
    if (isDrawnTurned(sheet, look)) {
        painter.translate(twipsFromMillimetres(sheet.paperWidth), 0);
        painter.rotate(90);
    }
    painter.translate(originOf(sheet, unprintable));
    drawContent(painter, document, sheet, look, texts);
    painter.restore();
}

base::Status jobRefused()
{
    return base::Error{
        u"印刷を始められませんでした。プリンタの電源と接続を確かめて、もう一度印刷してください。"_s};
}

// Pages \a first to \a last, counted from 0, as often as the device does not repeat them by itself.
struct Pages
{
    std::size_t first;
    std::size_t last;
    int rounds = 1;
    int repeats = 1; // of a page in each round

    [[nodiscard]] qint64 count() const { return static_cast<qint64>(last - first + 1) * rounds * repeats; }
};

base::Status drawPages(QPagedPaintDevice &device, const Document &document, const Look &look,
                       const Pages &pages, const base::Progress &progress)
{
    QPainter painter;
    if (!painter.begin(&device))
        return jobRefused();
    const QMarginsF unprintable = look.unprintable.value_or(unprintableMargins(device));
    TextPainter texts(look.face);
    qint64 drawn = 0;
    for (int round = 0; round < pages.rounds; ++round) {
        for (std::size_t page = pages.first; page <= pages.last; ++page) {
            for (int repeat = 0; repeat < pages.repeats; ++repeat, ++drawn) {
                if (drawn > 0 && !progress(drawn, pages.count()))
                    return base::cancelled();
                if (drawn > 0 && !device.newPage())
                    return jobRefused();
                drawOn(painter, document, document.sheets[page], look, unprintable, texts);
            }
        }
    }
    return painter.end() ? base::Status() : jobRefused();
}

} // namespace

void drawSheet(QPainter &painter, const Document &document, const Sheet &sheet, const Look &look,
               const QMarginsF &unprintable)
{
    TextPainter texts(look.face);
    drawOn(painter, document, sheet, look, unprintable, texts);
}

QMarginsF usualUnprintableMargins()
{
    return {usualUnprintable, usualUnprintable, usualUnprintable, usualUnprintable};
}

QMarginsF unprintableMargins(const QPagedPaintDevice &device)
{
    QPageLayout layout = device.pageLayout();
    layout.setUnits(QPageLayout::Millimeter);
    const QMarginsF margins = layout.minimumMargins();
    return margins.isNull() ? usualUnprintableMargins() : margins;
}

void setPage(QPagedPaintDevice &device, const Document &document, const Look &look)
{
    if (!document.sheets.empty())
        device.setPageLayout(pageOf(document, look));
}

base::Status drawDocument(QPagedPaintDevice &device, const Document &document, const Look &look,
                          const base::Progress &progress)
{
    if (document.sheets.empty())
        return base::Error{u"印刷するものがありません。"_s};
    return drawPages(device, document, look, {0, document.sheets.size() - 1}, progress);
}

base::Status printDocument(QPrinter &printer, const Document &document, const Look &look,
                           const base::Progress &progress)
{
    if (document.sheets.empty())
        return base::Error{u"印刷するものがありません。"_s};
    if (!printer.isValid())
        return base::Error{u"プリンタ「%1」が見つからないため、印刷しませんでした。"
                           "プリンタを選び直すか、PDF に保存してください。"_s.arg(printer.printerName())};
    std::size_t first = 0;
    std::size_t last = document.sheets.size() - 1;
    if (printer.printRange() == QPrinter::PageRange && printer.fromPage() > 0) {
        first = std::min(last, static_cast<std::size_t>(printer.fromPage() - 1));
        last = std::clamp(static_cast<std::size_t>(std::max(1, printer.toPage()) - 1), first, last);
    }
    const int copies = printer.supportsMultipleCopies() ? 1 : std::max(1, printer.copyCount());
    const bool collated = printer.collateCopies();
    const Pages pages{first, last, collated ? copies : 1, collated ? 1 : copies};
    const auto watched = [&](qint64 done, qint64 total) {
        const bool goesOn = progress(done, total);
        if (!goesOn)
            printer.abort();
        return goesOn;
    };
    const base::Status drawn = drawPages(printer, document, look, pages, watched);
    return drawn && printer.printerState() == QPrinter::Error ? jobRefused() : drawn;
}

} // namespace printing
