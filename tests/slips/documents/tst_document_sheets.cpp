#include "document_cases.h"
#include "plain_sheets.h"

#include <QFile>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using printing::Sheet;

namespace
{

constexpr double tolerance = 0.1; // millimetres, and points

/// One thing on a sheet: its kind and texts, and its measures in millimetres.
struct Item
{
    QString words; // "text,left,bold|煎茶"
    std::vector<double> measures;
};

QString lineOf(const Item &item)
{
    QStringList numbers;
    for (const double measure : item.measures)
        numbers << QString::number(measure, 'f', 3);
    return numbers.join(u' ') + u'|' + item.words;
}

Item itemOf(const QString &line)
{
    Item item{line.section(u'|', 1), {}};
    for (const QString &number : line.section(u'|', 0, 0).split(u' '))
        item.measures.push_back(number.toDouble());
    return item;
}

double mm(double twips) { return twips / printing::twipsPerMillimetre; }

QString wordsOf(const printing::TextItem &text)
{
    const char *aligns[] = {"left", "centre", "right"};
    return u"text,%1%2|%3"_s.arg(QLatin1StringView(aligns[static_cast<int>(text.align)]),
                                 text.bold ? u",bold"_s : QString(), text.text);
}

std::vector<Item> itemsOf(const Sheet &sheet)
{
    std::vector<Item> items{{u"paper"_s, {sheet.paperWidth, sheet.paperHeight, double(sheet.origin)}}};
    for (const printing::Box &box : sheet.boxes)
        items.push_back(
            {u"box"_s,
             {mm(box.x), mm(box.y), mm(box.width), mm(box.height), mm(box.lineWidth), double(box.grey)}});
    for (const printing::Line &line : sheet.lines)
        items.push_back(
            {u"line"_s,
             {mm(line.x1), mm(line.y1), mm(line.x2), mm(line.y2), mm(line.width), double(line.grey)}});
    for (const printing::TextItem &text : sheet.texts)
        items.push_back({wordsOf(text), {mm(text.x), mm(text.y), text.points, mm(text.room)}});
    for (const printing::RichTextSlot &slot : sheet.richTexts)
        items.push_back({u"slot|"_s + slot.name, {mm(slot.x), mm(slot.y), mm(slot.width), mm(slot.height)}});
    return items;
}

bool alike(const Item &a, const Item &b)
{
    return a.words == b.words &&
           std::equal(a.measures.begin(), a.measures.end(), b.measures.begin(), b.measures.end(),
                      [](double left, double right) { return std::abs(left - right) <= tolerance; });
}

/// The recorded sheets of a document: "= case", "- sheet" and one line an item.
std::map<QString, std::vector<std::vector<Item>>> recorded(const QString &document)
{
    QFile file(QStringLiteral(RECORDED_FOLDER) + u'/' + document + u".txt"_s);
    std::map<QString, std::vector<std::vector<Item>>> cases;
    std::vector<std::vector<Item>> *current = nullptr;
    if (!file.open(QIODevice::ReadOnly))
        return cases;
    for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
        if (line.startsWith(u"= "_s))
            current = &cases[line.sliced(2)];
        else if (line == u"-"_s)
            current->emplace_back();
        else
            current->back().push_back(itemOf(line));
    }
    return cases;
}

/// What only one of the two has.
QStringList differences(std::vector<Item> expected, const std::vector<Item> &found)
{
    QStringList faults;
    for (const Item &item : found) {
        const auto match =
            std::find_if(expected.begin(), expected.end(), [&](const Item &e) { return alike(item, e); });
        if (match == expected.end())
            faults << u"+ "_s + lineOf(item);
        else
            expected.erase(match);
    }
    for (const Item &item : expected)
        faults << u"- "_s + lineOf(item);
    return faults;
}

void compare(const QString &document, const QString &name, const std::vector<Sheet> &sheets)
{
    const auto cases = recorded(document);
    QVERIFY2(cases.contains(name), qPrintable(name));
    const auto &expected = cases.at(name);
    QCOMPARE(sheets.size(), expected.size());
    for (std::size_t i = 0; i < sheets.size(); ++i) {
        const QStringList faults = differences(expected[i], itemsOf(sheets[i]));
        QVERIFY2(faults.isEmpty(), qPrintable(u"sheet %1\n"_s.arg(i + 1) + faults.join(u'\n')));
    }
}

template <class Cases>
void addRows(const Cases &cases)
{
    QTest::addColumn<QString>("name");
    for (const auto &[name, data] : cases)
        QTest::newRow(qPrintable(name)) << name;
}

} // namespace

/// The printed documents stay where they were, item by item.
class TestDocumentSheets : public QObject
{
    Q_OBJECT

private slots:
    void deliveryNotes_data() { addRows(document_cases::deliveryNotes()); }
    void deliveryNotes()
    {
        QFETCH(QString, name);
        compare(u"delivery_note"_s, name, plainSheets(document_cases::deliveryNotes().at(name)));
    }

    void estimates_data() { addRows(document_cases::estimates()); }
    void estimates()
    {
        QFETCH(QString, name);
        compare(u"estimate"_s, name, plainSheets(document_cases::estimates().at(name)));
    }
};

QTEST_MAIN(TestDocumentSheets)
#include "tst_document_sheets.moc"
