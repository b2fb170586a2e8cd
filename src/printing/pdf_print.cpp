#include "printing/pdf_print.h"

#include "printing/DialogPrint.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "workspace/workspace.h"

#include <QRegularExpression>

#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr double pointsPerInch = 72;
constexpr double millimetresPerInch = 25.4;

constexpr auto cutPapers = std::to_array<QSizeF>(
    {{297, 420}, {210, 297}, {148, 210}, {105, 148}, {257, 364}, {182, 257}, {128, 182}, {100, 148}});

// A sheet that is read across its feed is drawn across in the PDF; a continuous form is as it lies there.
QSizeF asFed(const QSizeF &drawn)
{
    constexpr double tolerance = 1; // millimetres; a PDF counts in whole points
    for (const QSizeF &paper : cutPapers) {
        if (std::abs(drawn.width() - paper.height()) < tolerance &&
            std::abs(drawn.height() - paper.width()) < tolerance)
            return paper;
    }
    return drawn;
}

} // namespace

std::optional<PdfPages> pagesOf(const QByteArray &pdf)
{
    static const QRegularExpression box(u"/MediaBox \\[0 0 ([0-9.]+) ([0-9.]+)\\]"_s);
    const auto match = box.match(QString::fromLatin1(pdf));
    const int count = int(pdf.count("/Type /Page\n"));
    const auto millimetres = [&match](int group) {
        return match.captured(group).toDouble() / pointsPerInch * millimetresPerInch;
    };
    const QSizeF drawn(millimetres(1), millimetres(2));
    if (!match.hasMatch() || count == 0 || drawn.isEmpty())
        return std::nullopt;
    return PdfPages{count, asFed(drawn)};
}

bool printPdf(workspace::Workspace &workspace, QWidget *parent, const QByteArray &pdf, const QString &title,
              Purpose purpose)
{
    const auto pages = pagesOf(pdf);
    PrintSystem &system = printSystem(workspace);
    if (!pages || !system.takesPdf()) {
        ui::prompts::inform(
            parent, u"ここからは印刷できません。「開く」で PDF を開いて、その画面から印刷してください。"_s);
        return false;
    }
    const auto selected = selectPrinter(system, workspace.settings, purpose);
    if (!selected || selected->installed.isEmpty()) {
        ui::prompts::inform(parent, selected ? u"プリンタが見つかりません。プリンタを設定してください。"_s
                                             : selected.error().text);
        return false;
    }
    Sheet sheet;
    sheet.paperWidth = pages->paper.width();
    sheet.paperHeight = pages->paper.height();
    Document document;
    document.title = title;
    document.purpose = purpose;
    document.sheets = std::vector<Sheet>(std::size_t(pages->count), sheet);
    DialogPrint dialog(workspace, document, *selected, parent);
    dialog.keepTogether();
    dialog.exec();
    if (!dialog.choice())
        return false;
    const auto job = ui::runWithProgress(parent, u"印刷しています。"_s, [&](const base::Progress &) {
        return system.printPdf(pdf, title, dialog.choice()->settings);
    });
    if (!job)
        ui::prompts::inform(parent, job.error().text);
    return bool(job);
}

} // namespace printing
