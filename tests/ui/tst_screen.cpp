#include "support/fresh_shop.h"
#include "ui/prompts.h"
#include "ui/screen.h"

#include <QApplication>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

class CountingScreen : public ui::Screen
{
public:
    explicit CountingScreen(app::Workspace &workspace)
        : Screen(workspace)
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

class TestScreen : public QObject
{
    Q_OBJECT

private slots:
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
};

QTEST_MAIN(TestScreen)
#include "tst_screen.moc"
