#include "support/scripted_test.h"

#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui/width_check.h"

#include <QBoxLayout>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

// Two guarded boxes, one free one, and a button that gives the entry up.
struct Form : QDialog
{
    Form()
    {
        auto *layout = new QVBoxLayout(this);
        for (QWidget *widget : std::initializer_list<QWidget *>{&first, &second, &third, &giveUp})
            layout->addWidget(widget);
        ui::WidthCheck::guard(&first, ui::nameWidth);
        ui::WidthCheck::guard(&second, ui::nameWidth);
        connect(&giveUp, &QPushButton::clicked, &first, &QLineEdit::clear);
        show();
        activateWindow();
        first.setFocus();
    }

    QLineEdit first, second, third;
    QPushButton giveUp;
};

const QString tooWide = QString(45, u'a');

} // namespace

class TestWidthCheck : public ScriptedTest
{
    Q_OBJECT

private slots:
    void measures_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("fits");
        QTest::addColumn<QString>("named");
        const QString full(22, u'山');
        QTest::newRow("empty") << QString() << true << QString();
        QTest::newRow("10 full-width") << QString(10, u'社') << true << QString();
        QTest::newRow("44 half-width") << QString(44, u'a') << true << QString();
        QTest::newRow("45 half-width") << tooWide << false << QString();
        QTest::newRow("44 half-width kana") << QString(44, u'ｱ') << true << QString();
        QTest::newRow("22 full-width") << full << true << QString();
        QTest::newRow("22 full-width and 1") << full + u'a' << false << QString();
        QTest::newRow("23 full-width") << QString(23, u'山') << false << QString();
        QTest::newRow("emoji as the last two bytes") << QString(42, u'a') + u"😀"_s << true << QString();
        QTest::newRow("emoji over the 44th byte") << QString(43, u'a') + u"😀"_s << false << u"😀"_s;
        QTest::newRow("each stranger once") << u"𠮷😀𠮷"_s + QString(40, u'a') << false << u"𠮷😀"_s;
    }

    void measures()
    {
        QFETCH(QString, text);
        QFETCH(bool, fits);
        QFETCH(QString, named);
        const auto error = ui::widthError(text, ui::nameWidth);
        QCOMPARE(!error, fits);
        if (fits)
            return;
        QCOMPARE(error->section(u'\n', 0, 0),
                 u"このテキストは全角で２２文字、半角で４４文字以内の制限があります。"_s);
        QCOMPARE(error->contains(u'\n'), !named.isEmpty());
        QVERIFY(error->endsWith(named));
    }

    void leavingBringsTheCursorBack_data()
    {
        QTest::addColumn<bool>("byMouse");
        QTest::newRow("tab") << false;
        QTest::newRow("mouse") << true;
    }

    void leavingBringsTheCursorBack()
    {
        QFETCH(bool, byMouse);
        Form form;
        QVERIFY(QTest::qWaitForWindowActive(&form));
        QTest::keyClicks(&form.first, tooWide);
        ui::prompts::expectInform(ui::messages::widthLimit());
        if (byMouse)
            QTest::mouseClick(&form.third, Qt::LeftButton);
        else
            QTest::keyClick(&form.first, Qt::Key_Tab);
        QVERIFY(form.focusWidget() != &form.first);
        QTRY_VERIFY(form.first.hasFocus());
        QCOMPARE(form.first.text(), tooWide);
    }

    void twoWideBoxesDoNotFightForTheCursor()
    {
        Form form;
        form.second.setText(tooWide);
        QVERIFY(QTest::qWaitForWindowActive(&form));
        QTest::keyClicks(&form.first, tooWide);
        ui::prompts::expectInform(ui::messages::widthLimit());
        QTest::keyClick(&form.first, Qt::Key_Tab);
        QTest::qWait(100);
        QVERIFY(form.first.hasFocus());
    }

    void aClickedButtonActsFirst()
    {
        Form form;
        QVERIFY(QTest::qWaitForWindowActive(&form));
        QTest::keyClicks(&form.first, tooWide);
        QTest::mouseClick(&form.giveUp, Qt::LeftButton);
        QTest::qWait(100);
        QCOMPARE(form.first.text(), QString());
        QVERIFY(form.giveUp.hasFocus());
    }

    void noWordWhenTheScreenIsLeft_data()
    {
        QTest::addColumn<bool>("closes");
        QTest::newRow("closed") << true;
        QTest::newRow("another window comes up") << false;
    }

    void noWordWhenTheScreenIsLeft()
    {
        QFETCH(bool, closes);
        Form form;
        QVERIFY(QTest::qWaitForWindowActive(&form));
        QTest::keyClicks(&form.first, tooWide);
        QDialog other;
        if (closes) {
            QTest::keyClick(&form, Qt::Key_Escape);
        } else {
            other.show();
            QVERIFY(QTest::qWaitForWindowActive(&other));
        }
        QTest::qWait(100);
        QVERIFY(!form.first.hasFocus());
    }

    void savingAsksAllBoxes()
    {
        Form form;
        form.second.setText(tooWide);
        QVERIFY(QTest::qWaitForWindowActive(&form));
        ui::prompts::expectInform(ui::messages::widthLimit());
        QVERIFY(!ui::WidthCheck::allFit(&form));
        QVERIFY(form.second.hasFocus());
        form.second.clear();
        QVERIFY(ui::WidthCheck::allFit(&form));
    }
};

QTEST_MAIN(TestWidthCheck)
#include "tst_width_check.moc"
