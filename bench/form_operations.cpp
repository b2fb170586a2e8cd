#include "form_operations.h"

#include "bare_pages.h"
#include "measuring.h"

#include "printing/forms/form_files.h"
#include "printing/frmPreview.h"
#include "printing/pdf.h"
#include "printing/renderer.h"
#include "slips/documents/delivery_note.h"

#include <QTemporaryDir>

#include <malloc.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace bench
{

namespace
{

constexpr int notes = 1000;
constexpr int linesOfANote = 8;
const QString face = QString::fromUtf16(bareFace);

slips::DeliveryNoteData noteOf(int number)
{
    slips::DeliveryNoteData data;
    data.sender.name1 = u"有限会社山田茶舗"_s;
    data.sender.zip = u"420-0001"_s;
    data.sender.address1 = u"静岡市葵区井宮町１２３"_s;
    data.sender.tel1 = u"054-123-4567"_s;
    data.slip.number = u"O24-%1"_s.arg(number);
    data.slip.date = QDate(2026, 4, 1).addDays(number % 30);
    data.slip.name1 = u"株式会社東京百貨店第%1売場"_s.arg(number);
    data.slip.zip = u"150-%1"_s.arg(number, 4, 10, QChar(u'0'));
    data.slip.address1 = u"東京都渋谷区神宮前%1－２－３"_s.arg(number);
    data.slip.tel = u"03-1234-%1"_s.arg(number, 4, 10, QChar(u'0'));
    for (int i = 0; i < linesOfANote; ++i) {
        const double price = 980 + number % 700 + i;
        data.slip.lines.push_back({u"煎茶 %1号"_s.arg((number * 7 + i) % 300), u"100g"_s, i + 1.0, u"袋"_s,
                                   price, price * (i + 1)});
        data.total += price * (i + 1);
    }
    return data;
}

printing::Document documentOf(int count)
{
    printing::Document document;
    document.title = u"納品書"_s;
    document.sheets = {static_cast<std::size_t>(count),
                       [form = printing::builtInForm(QString::fromUtf16(slips::plainDeliveryNoteLayout),
                                                     slips::deliveryNoteItems())](std::size_t number) {
                           return slips::deliveryNote(noteOf(static_cast<int>(number)), form).front();
                       }};
    return document;
}

/// Bytes that the program has asked for and not given back.
std::size_t bytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

/// The most that drawing so many notes takes beside the PDF, megabytes.
double megabytesBesidePdf(int count)
{
    const std::size_t before = bytesInUse();
    std::size_t most = before;
    const auto pdf = printing::pdfOf(documentOf(count), printing::Look{face, false},
                                     [&most](qint64 page, qint64 /*pages*/) {
                                         if (page % 50 == 0)
                                             most = std::max(most, bytesInUse());
                                         return true;
                                     });
    if (!pdf)
        qFatal("%s", qPrintable(pdf.error().text));
    return (double(most) - double(before) - double(pdf->size())) / 1e6;
}

/// From the document to the preview's first page.
double secondsToPreview(OpenShop &shop, int pages)
{
    std::unique_ptr<printing::frmPreview> preview;
    return secondsOf([&] {
        preview = std::make_unique<printing::frmPreview>(shop.workspace, documentOf(pages));
        preview->show();
        settle();
    });
}

void registerPreviews(std::vector<Row> &rows)
{
    constexpr double most = 100; // milliseconds more
    auto shop = std::make_shared<OpenShop>();
    rows.push_back({"delivery notes previewed to the first page", "1 note"});
    const std::size_t one = rows.size() - 1;
    add(one, "ours", [shop] { return secondsToPreview(*shop, 1); });
    rows.push_back({"delivery notes previewed to the first page", "1,000 notes", 0, most, one});
    add(rows.size() - 1, "ours", [shop] { return secondsToPreview(*shop, notes); });
}

// Megabytes in the column of milliseconds.
void registerMemory(std::vector<Row> &rows)
{
    constexpr double most = 8; // the file grows by doubling the room for it
    rows.push_back({"memory for delivery notes to one PDF beside it, MB", "1,000 notes"});
    const std::size_t few = rows.size() - 1;
    add(few, "ours", [] { return megabytesBesidePdf(notes) / 1000; });
    rows.push_back({"memory for delivery notes to one PDF beside it, MB", "4,000 notes", 0, most, few});
    add(rows.size() - 1, "ours", [] { return megabytesBesidePdf(4 * notes) / 1000; });
}

} // namespace

void registerFormOperations(std::vector<Row> &rows)
{
    auto folder = std::make_shared<QTemporaryDir>();
    auto bare = std::make_shared<BarePages>(documentOf(notes));
    rows.push_back({"delivery notes through the form engine to one PDF", "1,000 notes", 1.5});
    add(rows.size() - 1, "ours", [folder] {
        return secondsOf([&] {
            const base::Status written = printing::writePdf(documentOf(notes), printing::Look{face, false},
                                                            folder->filePath(u"ours.pdf"_s));
            if (!written)
                qFatal("%s", qPrintable(written.error().text));
        });
    });
    add(rows.size() - 1, "bare",
        [folder, bare] { return secondsOf([&] { bare->write(folder->filePath(u"bare.pdf"_s)); }); });
    registerPreviews(rows);
    registerMemory(rows);
}

} // namespace bench
