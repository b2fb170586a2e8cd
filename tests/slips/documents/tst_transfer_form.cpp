// What a machine reads has to stand in its cell, and nothing may stand where it does not belong.
#include "printing/pdf.h"
#include "slips/documents/transfer_form_print.h"
#include "support/fresh_shop.h"
#include "workspace/settings.h"

#include <QApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace slips;

namespace
{

/// A word as it lies on the page, millimetres.
struct Word
{
    QString text;
    QRectF area;
};

QString read(const QString &pdf, const QStringList &options)
{
    QProcess reader;
    reader.start(u"pdftotext"_s, options + QStringList{pdf, u"-"_s});
    reader.waitForFinished();
    return QString::fromUtf8(reader.readAll());
}

/// What has its middle in \a area of the page, in tenths of a millimetre.
QString textIn(const QString &pdf, const QRectF &area)
{
    const auto tenths = [](double measure) { return QString::number(qRound(measure * 10)); };
    return read(pdf, {u"-r"_s, u"254"_s, u"-x"_s, tenths(area.x()), u"-y"_s, tenths(area.y()), u"-W"_s,
                      tenths(area.width()), u"-H"_s, tenths(area.height())})
        .trimmed();
}

std::vector<Word> wordsOf(const QString &pdf, QSizeF &page)
{
    constexpr double mm = 25.4 / 72;
    static const QRegularExpression line(
        uR"x(<page width="([0-9.]+)" height="([0-9.]+)">|)x"
        uR"x(<word xMin="([-0-9.]+)" yMin="([-0-9.]+)" xMax="([-0-9.]+)" yMax="([-0-9.]+)">(.*)</word>)x"_s);
    std::vector<Word> words;
    auto found = line.globalMatch(read(pdf, {u"-bbox"_s}));
    while (found.hasNext()) {
        const auto match = found.next();
        const auto number = [&](int group) { return match.captured(group).toDouble() * mm; };
        if (match.captured(7).isEmpty())
            page = {number(1), number(2)};
        else
            words.push_back(
                {match.captured(7), QRectF(QPointF(number(3), number(4)), QPointF(number(5), number(6)))});
    }
    return words;
}

/// A row of cells of the paper with what they are to say; "_" for nothing, before all others.
struct Cells
{
    QString digits;
    double x;
    double y;
};

constexpr double cellWidth = 5.08;
constexpr double cellHeight = 8;

QRectF cellOf(const Cells &cells, qsizetype index)
{
    return {cells.x + double(index) * cellWidth, cells.y, cellWidth, cellHeight};
}

/// A box of the paper with the texts in it.
struct Field
{
    QStringList texts;
    QRectF box;
};

/// What is wrong with \a cells on the page, which is moved; empty when each digit is in the middle of its
/// cell.
QString wrongIn(const QString &pdf, const Cells &cells, const QPoint &moved)
{
    constexpr double aside = 0.4;
    const qsizetype empty = cells.digits.count(u'_');
    QRectF before = cellOf(cells, 0).translated(moved);
    before.setWidth(double(empty) * cellWidth);
    if (empty > 0 && !textIn(pdf, before).isEmpty())
        return u"the cells from %1, %2 on are not empty"_s.arg(cells.x).arg(cells.y);
    for (qsizetype i = empty; i < cells.digits.size(); ++i) {
        const QRectF cell = cellOf(cells, i).translated(moved);
        const QRectF middle(cell.center().x() - aside, cell.top(), 2 * aside, cellHeight);
        if (const QString found = textIn(pdf, middle); found != QString(cells.digits.at(i)))
            return u"cell %1 of the row at %2, %3 says %4"_s.arg(i).arg(cells.x).arg(cells.y).arg(found);
    }
    return {};
}

TransferForm order()
{
    return {.payer = {u"株式会社山田商店"_s, u"仕入部　御担当"_s, u"３８０-０８２１"_s,
                      u"長野県長野市上千歳町１１３７"_s, u"コーポ千歳２０１"_s, u"026(224)1137"_s},
            .amount = 1980,
            .texts = {u"00990-4-313097"_s, u"信州りんご園"_s, u"ふじ１０㎏"_s, u"十日以内に"_s}};
}

QString wide(int characters) { return QString(characters, u'鷹'); }

TransferForm longest()
{
    return {.payer = {wide(22), wide(22), u"1000001"_s, wide(22), wide(22), u"090-1234-5678"_s},
            .amount = 12'345'678,
            .texts = {u"01234-5-6789012"_s, wide(40), wide(60), wide(60)}};
}

} // namespace

class TestTransferForm : public QObject
{
    Q_OBJECT

private slots:
    void accounts_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("read"); // or the beginning of what is told
        const auto row = [](const char16_t *typed, const char16_t *read) {
            QTest::newRow(qPrintable(QString::fromUtf16(typed)))
                << QString::fromUtf16(typed) << QString::fromUtf16(read);
        };
        row(u"00990-4-313097", u"00990 4 313097");
        row(u" ００９９０－４－３１３０９７ ", u"00990 4 313097");
        row(u"00990ー4ー313097", u"00990 4 313097");
        row(u"00990 4 7", u"00990 4 7");
        row(u"0099041234567", u"00990 4 1234567");
        row(u"", u"口座番号が入力されていません。");
        row(u"10940-12345671", u"「1」で始まるのは貯金");
        row(u"20990-4-313097", u"口座番号が正しくありません。");
        row(u"00990-4-12345678", u"口座番号が正しくありません。");
        row(u"00990-43-13097", u"口座番号が正しくありません。");
        row(u"0990-4-313097", u"口座番号が正しくありません。");
        row(u"00990-4-0000", u"口座番号が正しくありません。");
        row(u"00990-4-31309A", u"口座番号が正しくありません。");
        row(u"00990-4-", u"口座番号が正しくありません。");
    }

    void accounts()
    {
        QFETCH(QString, typed);
        QFETCH(QString, read);
        const auto account = transferAccount(typed);
        const QString told =
            account ? account->symbol + u' ' + account->check + u' ' + account->number : account.error().text;
        QVERIFY2(account ? told == read : told.startsWith(read), qPrintable(told));
    }

    void amountsThatNoFormCanBear()
    {
        QCOMPARE(*transferDigits(1), u"1"_s);
        QCOMPARE(*transferDigits(99'999'999), u"99999999"_s);
        for (const double amount :
             {0.0, -0.0, -1.0, -1980.0, 0.5, 1980.5, 100'000'000.0, 1e300, qInf(), qQNaN()})
            QVERIFY2(!transferDigits(amount), qPrintable(QString::number(amount)));
    }

    void everyDigitIsInItsCellAndNothingElsewhere_data()
    {
        QTest::addColumn<bool>("isLong");
        QTest::addColumn<bool>("turned");
        QTest::addColumn<QPoint>("moved");
        QTest::newRow("upright") << false << false << QPoint(0, 0);
        QTest::newRow("longest") << true << false << QPoint(0, 0);
        QTest::newRow("moved, turned") << false << true << QPoint(-2, 4);
    }

    // The measures are those of the bank's paper.
    void everyDigitIsInItsCellAndNothingElsewhere()
    {
        QFETCH(bool, isLong);
        QFETCH(bool, turned);
        QFETCH(QPoint, moved);
        FreshShop shop;
        shop.settings.write(workspace::keys::oderOption1, turned);
        shop.settings.write(workspace::keys::oderOffsetX, moved.x());
        shop.settings.write(workspace::keys::oderOffsetY, moved.y());
        const TransferForm form = isLong ? longest() : order();
        const auto document = transferDocument(shop.workspace, form);
        QVERIFY2(document, document ? "" : qPrintable(document.error().text));
        QCOMPARE(document->sheets.size(), std::size_t(1));
        const printing::Sheet &sheet = document->sheets.front();
        QCOMPARE(QSizeF(sheet.paperWidth, sheet.paperHeight), turned ? QSizeF(114, 184) : QSizeF(184, 114));

        const QString pdf = shop.path(u"form.pdf"_s);
        QVERIFY(printing::writePdf(*document, {u"IPAMincho"_s}, pdf));
        QSizeF page;
        std::vector<Word> words = wordsOf(pdf, page);
        QVERIFY2(std::abs(page.width() - 184) < 0.5 && std::abs(page.height() - 114) < 0.5,
                 qPrintable(u"%1 x %2"_s.arg(page.width()).arg(page.height())));
        for (Word &word : words)
            word.area.translate(-moved);
        const QString number = isLong ? u"6789012"_s : u"_313097"_s;
        const QString symbol = isLong ? u"01234"_s : u"00990"_s;
        const QString check = isLong ? u"5"_s : u"4"_s;
        const QString amount = isLong ? u"12345678"_s : u"___¥1980"_s;
        for (const Cells &row :
             {Cells{symbol, 4.00, 15}, Cells{check, 31.94, 15}, Cells{number, 39.56, 15},
              Cells{amount, 80.20, 15}, Cells{symbol, 136.08, 15}, Cells{check, 164.02, 15},
              Cells{number, 141.16, 26}, Cells{amount, 136.08, 47}}) {
            const QString wrong = wrongIn(pdf, row, moved);
            QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
            const double em = 0.2; // that of the type is higher than its digits
            const QRectF all(row.x, row.y, double(row.digits.size()) * cellWidth, cellHeight + em);
            std::erase_if(words, [&all](const Word &word) { return all.contains(word.area); });
        }
        checkTexts(words, form);
    }

    void telephonesAndPostalCodes_data()
    {
        QTest::addColumn<QString>("tel");
        QTest::addColumn<QString>("zip");
        QTest::addColumn<QStringList>("expected"); // parts, across, first and second part of the code
        QTest::newRow("three parts") << u"０３-1234-5678"_s << u"100-0001"_s
                                     << QStringList{u"03 1234 5678"_s, u""_s, u"100"_s, u"0001"_s};
        QTest::newRow("in one") << u"09012345678"_s << u"1000001"_s
                                << QStringList{u"  "_s, u"09012345678"_s, u"100"_s, u"0001"_s};
        QTest::newRow("with an extension")
            << u"03-1234-5678-9"_s << u"100"_s << QStringList{u"  "_s, u"03-1234-5678-9"_s, u""_s, u""_s};
        QTest::newRow("none") << u""_s << u""_s << QStringList{u"  "_s, u""_s, u""_s, u""_s};
    }

    void telephonesAndPostalCodes()
    {
        QFETCH(QString, tel);
        QFETCH(QString, zip);
        TransferForm form = order();
        form.payer.tel = tel;
        form.payer.zip = zip;
        const auto values = transferFormValues(form);
        const auto text = [&](const QString &item) {
            const auto found = values->items.find(item);
            return found == values->items.end() ? QString() : std::get<QString>(*found);
        };
        QTEST((QStringList{text(u"依頼人.電話1"_s) + u' ' + text(u"依頼人.電話2"_s) + u' ' +
                               text(u"依頼人.電話3"_s),
                           text(u"依頼人.電話"_s), text(u"依頼人.郵便番号1"_s), text(u"依頼人.郵便番号2"_s)}),
              "expected");
    }

private:
    // What is no digit stands in its box; nothing is left over, so nothing is in the way of the machine.
    static void checkTexts(std::vector<Word> &words, const TransferForm &form)
    {
        const TransferPayer &payer = form.payer;
        const QStringList names{payer.name1, payer.name2};
        const QStringList address{payer.address1, payer.address2};
        const Field fields[] = {{{form.texts.payee}, {9.08, 24.75, 66.04, 8.25}},
                                {{form.texts.note1, form.texts.note2}, {11.08, 33, 109.76, 24.5}},
                                {{}, {15, 57.5, 45, 4.5}}, // postal code
                                {address, {15.5, 62, 69.9, 13}},
                                {names, {15.5, 75.5, 63.5, 9.5}},
                                {{}, {31, 85, 29, 4.5}}, // telephone
                                {{form.texts.payee}, {136.08, 35.75, 40.64, 8.25}},
                                {address + names, {138.58, 58.5, 36.14, 18.5}}};
        for (const Field &field : fields) {
            QString inside;
            std::erase_if(words, [&](const Word &word) {
                const bool isIn = field.box.adjusted(-0.1, -0.1, 0.1, 0.1).contains(word.area);
                inside += isIn ? word.text : QString();
                return isIn;
            });
            QString expected = field.texts.join(QString()).remove(u'　');
            QVERIFY2(field.texts.isEmpty() ? !inside.isEmpty() : inside == expected,
                     qPrintable(expected + u" / "_s + inside));
        }
        for (const Word &word : words)
            QFAIL(qPrintable(u"%1 at %2, %3, %4 x %5 is in no box"_s.arg(word.text)
                                 .arg(word.area.x())
                                 .arg(word.area.y())
                                 .arg(word.area.width())
                                 .arg(word.area.height())));
    }
};

QTEST_MAIN(TestTransferForm)
#include "tst_transfer_form.moc"
