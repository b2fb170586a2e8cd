#include "db/recordset.h"
#include "support/fresh_shop.h"
#include "ui/record_panel.h"
#include "ui/slip_grid_model.h"

#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int megabytes = 5'000'000;

} // namespace

/// A file with megabytes in a text column: seen by their beginning, and never cut in the file.
class TestLongValues : public QObject
{
    Q_OBJECT

private slots:
    void beginningIsShown_data();
    void beginningIsShown();
    void gridsShowTheBeginning();
};

void TestLongValues::beginningIsShown_data()
{
    QTest::addColumn<QString>("content");
    QTest::newRow("text") << u"replace(hex(zeroblob(2500000)), '00', 'ab')"_s;
    QTest::newRow("bytes") << u"CAST(replace(hex(zeroblob(2500000)), '00', 'ab') AS BLOB)"_s;
}

void TestLongValues::beginningIsShown()
{
    QFETCH(QString, content);
    FreshShop shop;
    shop.run(
        u"INSERT INTO 納品先 (納品先ID, 納品先名1, メモ) VALUES (1, '山田', %1), (2, '佐藤', '短い')"_s.arg(
            content));
    db::Recordset customers(shop.connection);
    ui::RecordPanel panel(customers, &customers);
    QLineEdit name;
    QLineEdit note;
    panel.bind(&name, u"納品先名1"_s);
    panel.bind(&note, u"メモ"_s);
    customers.setEditable({u"メモ"_s}, [](const QString &, const QString &typed) { return QVariant(typed); });
    QVERIFY(customers.open({u"納品先ID, 納品先名1, メモ, 更新日, 版"_s, u"納品先"_s}));
    QVERIFY(note.text().startsWith(u"abab"_s) && note.text().size() < 3000);
    QVERIFY(note.isReadOnly() && !name.isReadOnly());
    const int column = customers.columnOf(u"メモ"_s);
    QVERIFY(!customers.flags(customers.index(0, column)).testFlag(Qt::ItemIsEditable));
    QVERIFY(customers.index(0, column).data().toString().size() < 3000);

    // Neither what stands in the box nor what a screen works out goes into the file; the rest does.
    name.setText(u"山田商店"_s);
    customers.setValue(u"メモ"_s, note.text());
    QVERIFY(customers.update());
    QCOMPARE(shop.rows(u"SELECT 納品先名1, length(メモ) FROM 納品先 WHERE 納品先ID = 1"_s),
             QStringList{u"山田商店|%1"_s.arg(megabytes)});
    QVERIFY(customers.moveTo(1));
    QVERIFY(!note.isReadOnly());
    note.setText(u"別"_s);
    QVERIFY(customers.update());
    QCOMPARE(shop.value(u"SELECT メモ FROM 納品先 WHERE 納品先ID = 2"_s).toString(), u"別"_s);
}

void TestLongValues::gridsShowTheBeginning()
{
    ui::SlipGridModel model(std::vector{base::Column{.heading = u"商品名"_s}}, nullptr);
    model.setRows({{QString(megabytes, u'x')}});
    QVERIFY(model.index(0, 0).data().toString().size() < 3000);
}

QTEST_MAIN(TestLongValues)
#include "tst_long_values.moc"
