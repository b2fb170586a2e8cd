#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "ui/prompts.h"
#include "ui/screen.h"
#include "ui/twips.h"
#include "ui/width_check.h"

#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QMessageBox>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QVBoxLayout>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

class CountingScreen : public ui::Screen
{
public:
    explicit CountingScreen(workspace::Workspace &workspace, QWidget *parent = nullptr)
        : Screen(workspace, parent)
    {
        setObjectName(u"frmCounting"_s);
        setUp();
        show();
        activateWindow();
    }

    int activations = 0;

protected:
    void becameActive() override { ++activations; }
};

} // namespace

// On a desktop that puts the contents where the frame was to be.
class ShiftedScreen : public CountingScreen
{
public:
    using CountingScreen::CountingScreen;

protected:
    void showEvent(QShowEvent *event) override
    {
        CountingScreen::showEvent(event);
        move(pos() - QPoint(1, 20));
    }
};

// A page too long for its area, whose boxes the wheel comes to lie over.
class LongScreen : public ui::Screen
{
public:
    explicit LongScreen(workspace::Workspace &workspace)
        : Screen(workspace)
    {
        auto *page = new QWidget;
        auto *column = new QVBoxLayout(page);
        for (QComboBox *list : {&carriers, &typed}) {
            list->addItems({u"宅急便"_s, u"ゆうパック"_s, u"飛脚"_s});
            list->setCurrentIndex(1);
        }
        typed.setEditable(true);
        date.setDate(QDate(2026, 3, 31));
        copies.setValue(5);
        for (QWidget *box : std::initializer_list<QWidget *>{&first, &carriers, &typed, &date, &copies})
            column->addWidget(box);
        column->addSpacing(2000);
        area.setWidget(page);
        (new QVBoxLayout(this))->addWidget(&area);
        setUp();
        show();
        activateWindow();
        first.setFocus();
    }
    [[nodiscard]] QString values() const
    {
        return carriers.currentText() + u' ' + typed.currentText() + u' ' +
               date.date().toString(Qt::ISODate) + u' ' + copies.text();
    }

    QScrollArea area;
    QLineEdit first;
    QComboBox carriers, typed;
    QDateEdit date;
    QSpinBox copies;
};

// Message boxes are real here, as a script would keep them from taking the focus.
class TestScreen : public QObject
{
    Q_OBJECT

private slots:
    void aScreenOpensWhereItWas()
    {
        FreshShop shop;
        const auto placeAfter = [&](const QPoint &moved) {
            ShiftedScreen screen(shop.workspace);
            if (!QTest::qWaitForWindowActive(&screen))
                return QString();
            screen.move(screen.pos() + moved);
            screen.close();
            return shop.settings.layout(u"frmCounting/place"_s);
        };
        const QString first = placeAfter({0, 0});
        QCOMPARE(placeAfter({0, 0}), first);
        QCOMPARE(placeAfter({0, 0}), first);
        const QPoint at(first.section(u' ', 0, 0).toInt(), first.section(u' ', 1).toInt());
        const QString moved = u"%1 %2"_s.arg(at.x() + 30).arg(at.y() + 50);
        QCOMPARE(placeAfter({30, 50}), moved);
        QCOMPARE(placeAfter({0, 0}), moved);
    }

    void aMessageBoxIsNoAbsence()
    {
        FreshShop shop;
        CountingScreen screen(shop.workspace);
        QVERIFY(QTest::qWaitForWindowActive(&screen));
        QCOMPARE(screen.activations, 1);

        bool wasActive = true;
        QTimer::singleShot(100, &screen, [&] {
            wasActive = screen.isActiveWindow();
            QApplication::activeModalWidget()->close();
        });
        ui::prompts::inform(&screen, u"text"_s);
        QVERIFY(!wasActive);
        screen.activateWindow(); // which the platform does here, but not offscreen
        QVERIFY(QTest::qWaitForWindowActive(&screen));
        QCOMPARE(screen.activations, 1);

        CountingScreen other(shop.workspace);
        QVERIFY(QTest::qWaitForWindowActive(&other));
        other.close();
        screen.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&screen));
        QCOMPARE(screen.activations, 2);
    }

    void enterKeepsWhatAQuestionWouldDrop()
    {
        FreshShop shop;
        CountingScreen screen(shop.workspace);
        QVERIFY(QTest::qWaitForWindowActive(&screen));
        bool dropped = true;
        QTimer::singleShot(100, &screen, [] {
            QTest::keyClick(QApplication::activeModalWidget()->focusWidget(), Qt::Key_Return);
        });
        dropped = ui::prompts::askCautiously(&screen, u"text"_s);
        QVERIFY(!dropped);
    }

    void aWheelTurnedInPassingScrollsThePage()
    {
        FreshShop shop;
        LongScreen screen(shop.workspace);
        QVERIFY(QTest::qWaitForWindowActive(&screen));
        const QString before = screen.values();
        int scrolled = 0;
        for (QWidget *box : std::initializer_list<QWidget *>{&screen.carriers, screen.typed.lineEdit(),
                                                             &screen.date, &screen.copies}) {
            turnWheelOver(*box);
            QCOMPARE(screen.values(), before);
            QVERIFY(screen.first.hasFocus());
            QVERIFY(screen.area.verticalScrollBar()->value() > scrolled);
            scrolled = screen.area.verticalScrollBar()->value();
        }
        screen.carriers.setFocus();
        turnWheelOver(screen.carriers);
        QCOMPARE(screen.carriers.currentText(), u"飛脚"_s);
    }

    // With room left for the frame, which the platform adds around what the screen asks for.
    void aPlaceAndSizeOutOfReachIsBroughtOntoTheScreen()
    {
        FreshShop shop;
        shop.settings.write(workspace::keys::frmLeft, 1e6);
        shop.settings.write(workspace::keys::frmTop, 1e6);
        shop.settings.writeLayout(u"frmCounting/size"_s, u"99999 99999"_s);
        const CountingScreen screen(shop.workspace);
        const QRect room = screen.screen()->availableGeometry();
        QCOMPARE(screen.pos(), room.topLeft());
        QCOMPARE(screen.size(), ui::roomOn(*screen.screen()).size());
        QVERIFY(screen.width() < room.width() && screen.height() < room.height());
    }

    void theFirstDaysScreenStandsOverItsParent()
    {
        FreshShop shop;
        QWidget parent;
        parent.setGeometry(200, 200, 400, 300);
        parent.show();
        CountingScreen screen(shop.workspace, &parent);
        QVERIFY(parent.frameGeometry().contains(screen.geometry().center()));
        QVERIFY(screen.pos() != QPoint());
    }

    void aRefusedBoxGetsTheCursorBackOnce()
    {
        FreshShop shop;
        CountingScreen screen(shop.workspace);
        QLineEdit wide(QString(45, u'a'), &screen);
        QLineEdit next(&screen);
        next.move(0, 40);
        wide.show();
        next.show();
        ui::WidthCheck::guard(&wide, ui::nameWidth);
        QVERIFY(QTest::qWaitForWindowActive(&screen));
        wide.setFocus();

        int boxes = 0;
        QTimer closer;
        connect(&closer, &QTimer::timeout, &screen, [&] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                ++boxes;
                box->accept();
                screen.activateWindow();
            }
        });
        closer.start(50);
        QTest::keyClick(&wide, Qt::Key_Tab);
        QTest::qWait(500);
        QCOMPARE(boxes, 1);
        QVERIFY(wide.hasFocus());
    }
};

QTEST_MAIN(TestScreen)
#include "tst_screen.moc"
