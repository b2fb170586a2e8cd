#include "ui/date_box.h"

#include <QClipboard>
#include <QLineEdit>
#include <QTest>
#include <QToolTip>

#include <memory>

using namespace Qt::StringLiterals;

class TestDateBox : public QObject
{
    Q_OBJECT

private slots:
    void typedDates_data();
    void typedDates();
    void typedAnywhere_data();
    void typedAnywhere();
    void pastedDates_data();
    void pastedDates();
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

namespace
{

std::unique_ptr<ui::DateBox> shownBox(const QDate &date)
{
    auto box = std::make_unique<ui::DateBox>();
    box->setDisplayFormat(u"yyyy/MM/dd"_s);
    box->setDateRange(QDate(100, 1, 1), QDate(2999, 12, 31));
    box->setDate(date);
    box->show();
    if (!QTest::qWaitForWindowActive(box.get()))
        return nullptr;
    box->setFocus();
    QToolTip::showText({}, {});
    return box;
}

} // namespace

// Where the mouse put the cursor, or Home and End did.
void TestDateBox::typedAnywhere_data()
{
    QTest::addColumn<int>("place"); // of the click, in characters
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QDate>("date");
    QTest::addColumn<bool>("isTold");
    for (const int place : {2, 6, 9})
        QTest::addRow("whole date at %d", place) << place << u"20261005"_s << QDate(2026, 10, 5) << false;
    QTest::newRow("day alone") << 9 << u"05"_s << QDate(2026, 11, 5) << false;
    QTest::newRow("month and day") << 6 << u"0207"_s << QDate(2026, 2, 7) << false;
    QTest::newRow("year and on") << 1 << u"2025/3/4"_s << QDate(2025, 3, 4) << false;
    QTest::newRow("a digit lost") << 9 << u"2026105"_s << QDate(2026, 11, 22) << true;
    QTest::newRow("no day") << 6 << u"20261399"_s << QDate(2026, 11, 22) << true;
}

void TestDateBox::typedAnywhere()
{
    QFETCH(int, place);
    QFETCH(QString, keys);
    const auto box = shownBox({2026, 11, 22});
    QVERIFY(box);
    auto *line = box->findChild<QLineEdit *>();
    const int character = line->fontMetrics().horizontalAdvance(u'0');
    QTest::mouseClick(line, Qt::LeftButton, {}, QPoint(place * character, line->height() / 2));
    QTest::keyClicks(box.get(), keys);
    QTest::keyClick(box.get(), Qt::Key_Return);
    QTEST(box->date(), "date");
    QFETCH(bool, isTold);
    QTRY_COMPARE(!QToolTip::text().isEmpty(), isTold);
}

// As they come from mails and spreadsheets.
void TestDateBox::pastedDates_data()
{
    QTest::addColumn<QDate>("before");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDate>("date");
    const QDate day(2026, 11, 22);
    QTest::newRow("over the last day of a month") << QDate(2026, 2, 28) << u"2026/11/22"_s << day;
    QTest::newRow("over a month of thirty") << QDate(2026, 11, 28) << u"2026/03/09"_s << QDate(2026, 3, 9);
    QTest::newRow("digits") << QDate(2026, 1, 31) << u"20261122"_s << day;
    QTest::newRow("a cell") << QDate(2026, 1, 31) << u"2026-11-22\n"_s << day;
    QTest::newRow("era") << QDate(2026, 1, 31) << u"令和8年11月22日"_s << day;
    QTest::newRow("wide") << QDate(2026, 1, 31) << u"２０２６／１１／２２"_s << day;
    QTest::newRow("no date") << day << u"山田商店"_s << day;
    QTest::newRow("no day") << day << u"2026/02/30"_s << day;
    QTest::newRow("a price") << day << u"1980"_s << day;
    QTest::newRow("beyond every slip") << day << u"9999/01/01"_s << day;
}

void TestDateBox::pastedDates()
{
    QFETCH(QDate, before);
    QFETCH(QString, text);
    QFETCH(QDate, date);
    for (const bool all : {false, true}) {
        const auto box = shownBox(before);
        QVERIFY(box);
        if (all)
            QTest::keyClick(box.get(), Qt::Key_A, Qt::ControlModifier);
        QApplication::clipboard()->setText(text);
        QTest::keyClick(box.get(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(box->date(), date);
        QCOMPARE(QToolTip::text().isEmpty(), before != date);
        // What an input method writes.
        box->setDate(before);
        QInputMethodEvent written;
        written.setCommitString(text);
        QApplication::sendEvent(box.get(), &written);
        if (text != u"1980" && text != u"2026/02/30") // are typed, part by part
            QCOMPARE(box->date(), date);
    }
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
