#include "ui/date_box.h"

#include <QLineEdit>
#include <QTest>
#include <QToolTip>

using namespace Qt::StringLiterals;

class TestDateBox : public QObject
{
    Q_OBJECT

private slots:
    void typedDates_data();
    void typedDates();
    void anUnusualDateStandsOut();
};

void TestDateBox::typedDates_data()
{
    QTest::addColumn<bool>("selectAll");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QDate>("date");
    for (const bool all : {false, true}) {
        const QByteArray how = all ? " over the whole date" : " from the year on";
        QTest::newRow(("slashes" + how).constData()) << all << u"2025/12/31"_s << QDate(2025, 12, 31);
        QTest::newRow(("digits alone" + how).constData()) << all << u"20251231"_s << QDate(2025, 12, 31);
        QTest::newRow(("other signs" + how).constData()) << all << u"2025-12.31"_s << QDate(2025, 12, 31);
        QTest::newRow(("one digit" + how).constData()) << all << u"2025/2/3"_s << QDate(2025, 2, 3);
        QTest::newRow(("zeros" + how).constData()) << all << u"2024/02/09"_s << QDate(2024, 2, 9);
        // What is left of it is told to be looked at.
        QTest::newRow(("no such day" + how).constData()) << all << u"2026/02/30"_s << QDate(2026, 2, 3);
        QTest::newRow(("before 1900" + how).constData()) << all << u"1899/12/31"_s << QDate(1899, 12, 31);
    }
}

void TestDateBox::typedDates()
{
    QFETCH(bool, selectAll);
    QFETCH(QString, keys);
    ui::DateBox box;
    box.setDisplayFormat(u"yyyy/MM/dd"_s);
    box.setDateRange(QDate(100, 1, 1), QDate(2999, 12, 31));
    box.setDate(QDate(2026, 4, 1));
    box.show();
    QVERIFY(QTest::qWaitForWindowActive(&box));
    box.setFocus();
    box.setSelectedSection(QDateTimeEdit::YearSection);
    if (selectAll)
        QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
    QToolTip::showText({}, {});
    QTest::keyClicks(&box, keys);
    QCOMPARE(QToolTip::text().isEmpty(), keys != u"2026/02/30"_s);
    QTest::keyClick(&box, Qt::Key_Return);
    QTEST(box.date(), "date");
}

void TestDateBox::anUnusualDateStandsOut()
{
    ui::DateBox box;
    const QColor usual = box.palette().color(QPalette::Base);
    box.setDate(QDate(2026, 3, 31));
    QCOMPARE(box.palette().color(QPalette::Base), usual);
    box.markAllBut(QDate(2026, 4, 1));
    QVERIFY(box.palette().color(QPalette::Base) != usual);
    QVERIFY(box.palette().color(QPalette::Disabled, QPalette::Base) != usual);
    QVERIFY(box.accessibleDescription().contains(u"2026/04/01"_s));
    box.setDate(QDate(2026, 4, 1));
    QCOMPARE(box.palette().color(QPalette::Base), usual);
    QVERIFY(box.accessibleDescription().isEmpty());
}

QTEST_MAIN(TestDateBox)
#include "tst_date_box.moc"
