// Parts of the history are deleted only as they were shown, and after a copy of the file was kept.
#include "db/care/plain_handle.h"
#include "shipped.h"
#include "shipping/history/frmKuroneko8.h"
#include "support/ordinary_user.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace shipping;

namespace
{

struct Desk : FreshShop
{
    Desk()
    {
        for (const QString &category : {u"お歳暮"_s, u"お歳暮"_s, u"通販"_s, u""_s}) {
            Shipment each = parcel(u"山田"_s, u"高橋"_s);
            each.category = category;
            ship(*this, each);
        }
        screen = std::make_unique<frmKuroneko8>(workspace);
        hand = std::make_unique<ScreenDriver>(screen.get());
        hand->show();
    }
    QString left() { return rows(u"SELECT 発送ID FROM 発送マスター ORDER BY 発送ID"_s).join(u' '); }
    void choose(const QString &part)
    {
        QComboBox &parts = hand->list("cmbKubun");
        hand->choose("cmbKubun", parts.findText(part, Qt::MatchStartsWith));
    }
    QStringList copies() { return QDir(folder.path()).entryList({u"shop 削除前*"_s}); }

    std::unique_ptr<frmKuroneko8> screen;
    std::unique_ptr<ScreenDriver> hand;
};

const QString ofGifts =
    u"発送履歴：2 行　受付日 2026/03/01 ～ 2026/03/01\nこのうち 2 件は、送り状番号がまだ入力されていません。"_s;

QString kept(const QString &extent)
{
    return extent + u"\n削除する前の内容は「shop 削除前 2026-04-01.cdb」に残します。"_s;
}

} // namespace

class TestFrmKuroneko8 : public ScriptedTest
{
    Q_OBJECT

private slots:
    void nothingIsChosenBeforehand()
    {
        Desk desk;
        QVERIFY(!desk.hand->the("cmdDelete").isEnabled());
        desk.hand->key(Qt::Key_Return);
        turnWheelOver(desk.hand->list("cmbKubun"));
        QVERIFY(!desk.hand->the("cmdDelete").isEnabled());
        QTest::keyClick(desk.screen.get(), Qt::Key_D, Qt::AltModifier);
        QCOMPARE(desk.left(), u"1 2 3 4"_s);
    }

    void aCategoryGoes()
    {
        Desk desk;
        desk.choose(u"お歳暮　2 件"_s);
        QCOMPARE(desk.hand->the<QLabel>("lblWhat").text(), ofGifts);
        const QString question = u"発送区分「お歳暮」の発送履歴を削除します。よろしいですか。"_s;
        ui::prompts::expectAskCautiously(question, false, kept(ofGifts));
        desk.hand->press("cmdDelete");
        QCOMPARE(desk.left(), u"1 2 3 4"_s);
        QCOMPARE(desk.copies(), QStringList());
        ui::prompts::expectAskCautiously(question, true, kept(ofGifts));
        ui::prompts::expectInform(u"発送マスターを削除しました。"_s, ofGifts);
        desk.hand->press("cmdDelete");
        QCOMPARE(desk.left(), u"3 4"_s);
        QCOMPARE(desk.copies(), QStringList(u"shop 削除前 2026-04-01.cdb"_s));
        db::PlainHandle before;
        QVERIFY(before.open(desk.path(u"shop 削除前 2026-04-01.cdb"_s)));
        QCOMPARE(*before.number("SELECT count(*) FROM 発送マスター"), 4);
        QVERIFY(!desk.hand->the("cmdDelete").isEnabled());
        QCOMPARE(desk.hand->list("cmbKubun").count(), 3); // the rest, and all
    }

    void everythingGoes()
    {
        Desk desk;
        desk.choose(u"すべての発送　4 件"_s);
        ui::prompts::expectAskCautiously(u"発送履歴をすべて削除します。よろしいですか。"_s, true,
                                         ui::prompts::anyRemark);
        ui::prompts::expectInform(u"発送マスターを削除しました。"_s, ui::prompts::anyRemark);
        desk.hand->press("cmdDelete");
        QCOMPARE(desk.left(), QString());
        QCOMPARE(desk.hand->list("cmbKubun").count(), 0);
    }

    void onlyWhatWasShownGoes()
    {
        Desk desk;
        desk.choose(u"（発送区分なし）"_s);
        ui::prompts::expectAskCautiously({}, true, ui::prompts::anyRemark);
        ui::prompts::meanwhile([&desk] { ship(desk, parcel(u"佐藤"_s, u"伊藤"_s)); });
        ui::prompts::expectInform({});
        desk.hand->press("cmdDelete");
        QCOMPARE(desk.left(), u"1 2 3 4 5"_s);
    }

    void nothingGoesWithoutTheCopy()
    {
        Desk desk;
        desk.choose(u"お歳暮"_s);
        const QString folder = desk.folder.path();
        const OrdinaryUser user({folder, desk.path(u"shop.cdb"_s)});
        const QFile::Permissions rights = QFile::permissions(folder);
        ui::prompts::expectAskCautiously({}, true, ui::prompts::anyRemark);
        ui::prompts::meanwhile(
            [&folder] { QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner); });
        ui::prompts::expectInform({});
        desk.hand->press("cmdDelete");
        QVERIFY(QFile::setPermissions(folder, rights | QFile::WriteOwner));
        QCOMPARE(desk.left(), u"1 2 3 4"_s);
        QCOMPARE(desk.copies(), QStringList());
    }
};

QTEST_MAIN(TestFrmKuroneko8)
#include "tst_frmkuroneko8.moc"
