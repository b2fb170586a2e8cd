// The control that has the focus shows it, however the focus came there, in light and dark.
#include "app/main_window/appearance.h"
#include "app/main_window/frmAMain.h"
#include "support/fresh_shop.h"
#include "ui/screen.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

constexpr int plain = 30; // shades of grey that an eye sees side by side

// Pixels in which \a one and \a other differ plainly.
int plainDifference(const QImage &one, const QImage &other)
{
    int count = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const int difference = qGray(one.pixel(x, y)) - qGray(other.pixel(x, y));
            count += qAbs(difference) >= plain ? 1 : 0;
        }
    }
    return count;
}

QImage imageOf(QWidget &widget) { return widget.grab().toImage(); }

class SmallScreen : public ui::Screen
{
public:
    explicit SmallScreen(workspace::Workspace &workspace)
        : Screen(workspace)
    {
        auto *column = new QVBoxLayout(this);
        flat.setFlat(true);
        payment.addItems({u"現金"_s, u"振込"_s});
        typed.setEditable(true);
        for (QWidget *control : controls)
            column->addWidget(control);
        setUp();
        show();
        activateWindow();
    }

    QLineEdit first;
    QPushButton store{u"保存(&S)"_s}, flat{u"一覧"_s};
    QComboBox payment, typed;
    QCheckBox inclusive{u"内税"_s};
    QDateEdit date;
    const QList<QWidget *> controls{&first, &payment, &typed, &inclusive, &date, &store, &flat};
};

} // namespace

class TestFocus : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { app::setUpAppearance(*qApp); }

    void showsAfterEnter_data() { colours(); }
    void showsAfterEnter();
    void showsOnTheMainWindow_data();
    void showsOnTheMainWindow();

private:
    static void colours()
    {
        QTest::addColumn<int>("colours");
        QTest::newRow("light") << static_cast<int>(app::Colours::Light);
        QTest::newRow("dark") << static_cast<int>(app::Colours::Dark);
    }
};

void TestFocus::showsAfterEnter()
{
    QFETCH(int, colours);
    app::applyColours(static_cast<app::Colours>(colours));
    FreshShop shop;
    SmallScreen screen(shop.workspace);
    QVERIFY(QTest::qWaitForWindowActive(&screen));
    screen.first.setFocus();
    for (qsizetype i = 1; i < screen.controls.size(); ++i) {
        QWidget *control = screen.controls.at(i);
        const QImage without = imageOf(*control);
        if (i + 1 < screen.controls.size()) // Enter presses the button
            QTest::keyClick(screen.controls.at(i - 1), Qt::Key_Return);
        else
            control->setFocus();
        QVERIFY(control->hasFocus());
        const int difference = plainDifference(without, imageOf(*control));
        QVERIFY2(difference >= control->height(), qPrintable(u"control %1: %2"_s.arg(i).arg(difference)));
    }
}

void TestFocus::showsOnTheMainWindow_data()
{
    QTest::addColumn<QString>("colours");
    QTest::newRow("light") << u"mnuColoursLight"_s;
    QTest::newRow("dark") << u"mnuColoursDark"_s;
}

void TestFocus::showsOnTheMainWindow()
{
    QFETCH(QString, colours);
    FreshShop shop;
    shop.connection.close();
    app::frmAMain window(shop.workspace, app::screenOpeners());
    window.load(u'"' + shop.path(u"shop.cdb"_s) + u'"');
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.menuBar()->findChild<QAction *>(colours)->trigger();

    auto *tabs = window.findChild<QTabWidget *>(u"SSTab1"_s);
    int seen = 0;
    for (int page = 0; page < tabs->count(); ++page) {
        tabs->setCurrentIndex(page);
        QList<QWidget *> controls;
        for (QPushButton *button : window.findChildren<QPushButton *>())
            controls << button;
        for (QComboBox *list : window.findChildren<QComboBox *>())
            controls << list;
        for (QWidget *control : controls) {
            if (!control->isVisible() || !control->isEnabled())
                continue;
            tabs->tabBar()->setFocus();
            const QImage without = imageOf(*control);
            control->setFocus();
            const int difference = plainDifference(without, imageOf(*control));
            QVERIFY2(difference >= control->width(),
                     qPrintable(u"%1: %2"_s.arg(control->objectName()).arg(difference)));
            ++seen;
        }
    }
    QVERIFY(seen > 60);
}

QTEST_MAIN(TestFocus)
#include "tst_focus.moc"
