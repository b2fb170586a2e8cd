#include "masters/master_desk.h"
#include "support/scripted_test.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QtTest>

using Desk = MasterDesk;

class TestFrmMyco : public ScriptedTest
{
    Q_OBJECT

private slots:
    void theOwnCompanyIsReadFirst()
    {
        Desk desk(cases.at(7));
        desk.store({1});
        QVERIFY(desk.open());
        for (const char *keys : {"\r", "x", "\r", "7", " "})
            QTest::keyClicks(desk.screen->focusWidget(), QString::fromLatin1(keys));
        QCOMPARE(desk.nameBox()->text(), u"n1"_s);
        QVERIFY(!desk.box(u"txtZip"_s)->isModified());
        QTest::keyClick(desk.screen.get(), Qt::Key_F2);
        QVERIFY(desk.nameBox()->hasFocus());
        QCOMPARE(desk.enabled(), u"Add Update Delete"_s);
        QTest::keyClicks(desk.nameBox(), u"abc"_s);
        desk.click(u"cmdUpdate"_s);
        QCOMPARE(desk.stored(), u"1=n1abc"_s);
        QVERIFY(desk.nameBox()->isReadOnly());
        QCOMPARE(desk.enabled(), u"Add Delete"_s);
    }

    // Stored as it stands in the box it would lose its end.
    void whatIsShownInPartIsNotEdited()
    {
        Desk desk(cases.at(7));
        desk.store({1});
        desk.shop.run(u"UPDATE 自社情報 SET 備考 = replace(hex(zeroblob(200000)), '00', 'ab')"_s);
        QVERIFY(desk.open());
        desk.edit();
        QVERIFY(desk.box(u"txtMemo"_s)->isReadOnly());
        QVERIFY(!desk.nameBox()->isReadOnly());
    }

    void theOwnCompanyKeepsAllItsColumns()
    {
        Desk desk(cases.at(7));
        QVERIFY(desk.open());
        const QStringList boxes{u"txtName1"_s,    u"txtName2"_s, u"txtZip"_s,  u"txtAddress1"_s,
                                u"txtAddress2"_s, u"txtTel1"_s,  u"txtTel2"_s, u"txtFax"_s,
                                u"txtBank1"_s,    u"txtBank2"_s, u"txtMemo"_s};
        for (const QString &name : boxes)
            QTest::keyClicks(desk.box(name), name.mid(3));
        desk.click(u"cmdUpdate"_s);
        QCOMPARE(desk.shop
                     .rows(u"SELECT 会社名1, 会社名2, 郵便番号, 住所1, 住所2, TEL1, TEL2, FAX, 取引銀行1, "
                           "取引銀行2, 備考 FROM 自社情報"_s)
                     .first(),
                 u"Name1|Name2|Zip|Address1|Address2|Tel1|Tel2|Fax|Bank1|Bank2|Memo"_s);
    }

    void numbersAreStoredInTheirForm_data()
    {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("remark");
        const QString registration = u"txtRegistration"_s;
        const QString form = u"登録番号は「T」と数字13桁です。"_s;
        QTest::newRow("telephone") << u"txtTel1"_s << u"０３ー１２３４ー５６７８"_s << u"03-1234-5678"_s
                                   << QString();
        QTest::newRow("fax") << u"txtFax"_s << u"０３（１２３４）５６７８"_s << u"03(1234)5678"_s
                             << QString();
        // The corporate number of the tax agency.
        QTest::newRow("corporate") << registration << u"ｔ７０００ー０１２ー０５０００２"_s
                                   << u"T7000012050002"_s << QString();
        QTest::newRow("digits alone")
            << registration << u"7000012050002 "_s << u"T7000012050002"_s << QString();
        QTest::newRow("a person's, or a slip of the hand")
            << registration << u"T7000012050020"_s << u"T7000012050020"_s
            << u"法人番号の検査数字と合いません。法人のときは、番号を確かめてください。"_s;
        QTest::newRow("too short") << registration << u"T700001205000"_s << u"T700001205000"_s << form;
    }

    // Also where the button is pressed by its letter, with the cursor still in the box.
    void numbersAreStoredInTheirForm()
    {
        QFETCH(QString, box);
        QFETCH(QString, typed);
        QFETCH(QString, stored);
        QFETCH(QString, remark);
        for (const bool isLeft : {true, false}) {
            Desk desk(cases.at(7));
            desk.store({1});
            QVERIFY(desk.open());
            desk.edit();
            desk.box(box)->setFocus();
            desk.box(box)->insert(typed);
            const bool isShort = stored.size() == 13 && stored.startsWith(u'T');
            if (isLeft)
                QTest::keyClick(desk.box(box), Qt::Key_Return);
            if (isShort)
                ui::prompts::expectAskCautiously(
                    u"登録番号「%1」は「T」と数字13桁ではありません。このまま登録しますか。"_s.arg(stored),
                    isLeft);
            desk.button(u"cmdUpdate"_s)->click();
            const QString column = box == "txtRegistration"_L1 ? u"登録番号"_s : box.mid(3).toUpper();
            const QString kept =
                desk.shop.value(u"SELECT ifnull(%1, '') FROM 自社情報"_s.arg(column)).toString();
            QCOMPARE(kept, isShort && !isLeft ? QString() : stored);
            QCOMPARE(desk.screen->findChild<QLabel *>(u"lblRegistrationRemark"_s)->text(), remark);
            if (isShort && !isLeft) {
                ui::prompts::expectAskToSave({}, ui::prompts::Choice::Discard);
                desk.screen->close();
            }
        }
    }

    void theOwnCompanyFitsItsPrintedLines_data()
    {
        QTest::addColumn<QString>("box");
        for (const QString &box : {u"txtName1"_s, u"txtName2"_s, u"txtAddress1"_s, u"txtAddress2"_s})
            QTest::newRow(qPrintable(box)) << box;
    }

    void theOwnCompanyFitsItsPrintedLines()
    {
        QFETCH(QString, box);
        constexpr int limit = 44; // bytes
        const QString refusal = ui::messages::widthLimit();
        Desk desk(cases.at(7));
        desk.store({1});
        QVERIFY(desk.open());
        desk.edit();
        QLineEdit *line = desk.box(box);
        line->setFocus();
        line->setText(QString(limit, u'a'));
        QTest::keyClick(line, Qt::Key_Return);
        QTest::qWait(50);
        QVERIFY(!line->hasFocus());

        line->setFocus();
        line->setText(QString(limit + 1, u'a'));
        ui::prompts::expectInform(refusal);
        QTest::keyClick(line, Qt::Key_Return);
        QTRY_VERIFY(line->hasFocus());
        QCOMPARE(line->text().size(), limit + 1);

        // The buttons can be pressed by a key without leaving the box.
        ui::prompts::expectInform(refusal);
        QTest::keyClick(line, Qt::Key_N, Qt::AltModifier);
        QTRY_COMPARE(desk.enabled(), u"Add Update Delete"_s);
        QTest::qWait(200);
        QCOMPARE(desk.stored(), u"1=n1"_s);
        ui::prompts::expectAskToSave(editQuestion, ui::prompts::Choice::Discard);
        QTest::keyClick(line, Qt::Key_Escape);
        QVERIFY(!desk.screen->isVisible());
        QCOMPARE(desk.stored(), u"1=n1"_s);
    }
};

QTEST_MAIN(TestFrmMyco)
#include "tst_frmmyco.moc"
