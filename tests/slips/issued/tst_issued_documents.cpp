// The copies of issued documents: their rows and their files, whatever becomes of the slips, the folder and
// the disk.
#include "db/keys.h"
#include "printing/pdf_mark.h"
#include "slips/issued/carried_documents.h"
#include "slips/issued/document_files.h"
#include "slips/issued/issued_documents.h"
#include "slips/issued/withdrawn_prints.h"
#include "support/fresh_shop.h"
#include "support/ordinary_user.h"
#include "workspace/document_places.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace slips;

namespace
{

IssuedDocument note(const QString &number = u"O1"_s, book::CounterpartKey counterpart = 1)
{
    return {.kind = QString::fromUtf16(deliveryNoteKind),
            .number = number,
            .date = QDate(2026, 4, 1),
            .slipKind = book::sale,
            .counterpart = counterpart,
            .counterpartName = u"山田商店"_s,
            .amount = 1100};
}

struct Office
{
    base::Status keep(const IssuedDocument &document, const QByteArray &pdf)
    {
        return keepDocument(shop.connection, folder(), document, pdf, shop.now, u"木村"_s);
    }
    QString folder() const { return workspace::documentFolderOf(shop.path(u"shop.cdb"_s)); }
    QString fileOf(const QByteArray &pdf) const
    {
        return folder() + u'/' + pathOf({QDate(2026, 4, 1), hashOf(pdf)});
    }
    QStringList files() const
    {
        return QDir(folder() + u"/2026"_s).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    QStringList chain() { return shop.rows(u"SELECT 発行ID, 種類, 訂正元 FROM 発行控 ORDER BY 発行ID"_s); }
    FoundDocument find(const QByteArray &pdf) const
    {
        return findDocument({folder()}, {QDate(2026, 4, 1), hashOf(pdf)});
    }

    FreshShop shop;
};

void damage(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(content), content.size());
}

} // namespace

class TestIssuedDocuments : public QObject
{
    Q_OBJECT

private slots:
    // A backup that is put back lacks what was issued since, and may have gone its own way.
    void rowsAreCarriedOver_data()
    {
        QTest::addColumn<QString>("meanwhile"); // issued in the backup
        QTest::addColumn<QStringList>("chain");
        QTest::newRow("plainly") << QString()
                                 << QStringList{u"1|納品書|-"_s, u"2|納品書|1"_s, u"3|納品書|2"_s};
        QTest::newRow("keys taken") << u"O9"_s
                                    << QStringList{u"1|納品書|-"_s, u"2|納品書|-"_s, u"3|納品書|1"_s,
                                                   u"4|納品書|3"_s};
    }

    void rowsAreCarriedOver()
    {
        QFETCH(QString, meanwhile);
        Office office;
        QVERIFY(office.keep(note(), "%PDF first"));
        QVERIFY(office.keep(note(), "%PDF second"));
        QVERIFY(office.keep(note(), "%PDF third"));
        const auto rows = allIssuedRows(office.shop.connection);
        QVERIFY(rows && rows->size() == 3);
        office.shop.run(u"DELETE FROM 発行控 WHERE 発行ID > 1"_s);
        if (!meanwhile.isEmpty())
            QVERIFY(office.keep(note(meanwhile), "%PDF of the backup"));
        const auto carried = carryOver(office.shop.connection, *rows);
        QVERIFY(carried);
        QCOMPARE(*carried, 2);
        QTEST(office.chain(), "chain");
        const auto twice = carryOver(office.shop.connection, *rows);
        if (meanwhile.isEmpty())
            QVERIFY(twice && *twice == 0);
    }

private slots:
    void aRowTellsAllOfTheDocument()
    {
        Office office;
        QVERIFY(office.keep(note(), "%PDF one"));
        QCOMPARE(office.shop.rows(
                     u"SELECT 種類, 番号, 日付, 伝票種別, 相手先ID, 相手先名, 税込金額, 発行日時, 社員名, "
                     "訂正元, 内容, length(ハッシュ) FROM 発行控"_s),
                 QStringList{u"納品書|O1|2026-04-01|O|1|山田商店|1100|2026-04-01 10:00:00|木村|-|-|64"_s});
        QFile kept(office.fileOf("%PDF one"));
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), "%PDF one");
        QCOMPARE(kept.permissions() & (QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther),
                 QFile::Permissions());
    }

    void versions_data()
    {
        QTest::addColumn<QStringList>("issued"); // number, counterpart, contents
        QTest::addColumn<QString>("rows");       // 発行ID, 種類, 訂正元
        QTest::addColumn<int>("files");
        QTest::newRow("two versions")
            << QStringList{u"O1 1 a"_s, u"O1 1 b"_s} << u"1|納品書|- 2|納品書|1"_s << 2;
        QTest::newRow("the same once more")
            << QStringList{u"O1 1 a"_s, u"O1 1 a"_s} << u"1|納品書|- 2|納品書（再発行）|-"_s << 1;
        QTest::newRow("changed after it was printed again")
            << QStringList{u"O1 1 a"_s, u"O1 1 a"_s, u"O1 1 b"_s}
            << u"1|納品書|- 2|納品書（再発行）|- 3|納品書|2"_s << 2;
        QTest::newRow("changed and changed back") << QStringList{u"O1 1 a"_s, u"O1 1 b"_s, u"O1 1 a"_s}
                                                  << u"1|納品書|- 2|納品書|1 3|納品書|2"_s << 2;
        QTest::newRow("another slip between") << QStringList{u"O1 1 a"_s, u"O2 1 b"_s, u"O1 1 c"_s}
                                              << u"1|納品書|- 2|納品書|- 3|納品書|1"_s << 3;
        QTest::newRow("the number, for somebody else")
            << QStringList{u"O1 1 a"_s, u"O1 2 b"_s} << u"1|納品書|- 2|納品書|-"_s << 2;
        QTest::newRow("for nobody") << QStringList{u"O1 0 a"_s, u"O1 0 b"_s} << u"1|納品書|- 2|納品書|-"_s
                                    << 2;
    }

    void versions()
    {
        QFETCH(QStringList, issued);
        Office office;
        for (const QString &each : std::as_const(issued)) {
            const QStringList parts = each.split(u' ');
            QVERIFY(office.keep(note(parts.at(0), parts.at(1).toLongLong()), parts.at(2).toUtf8()));
        }
        QTEST(office.chain().join(u' '), "rows");
        QTEST(int(office.files().size()), "files");
    }

    // A job that never came out: the row nearest to it is followed by one that says so, once.
    void whatWasTakenBackAtThePrinterIsNotedInARowOfItsOwn()
    {
        Office office;
        QVERIFY(office.keep(note(), "%PDF one"));
        const QDateTime first = office.shop.now;
        office.shop.now = first.addSecs(600);
        QVERIFY(office.keep(note(), "%PDF one"));
        QVERIFY(office.keep(note(u"O12"_s), "%PDF other"));
        const auto takenBack = [&](const QString &title, const QDateTime &taken) {
            QVERIFY(noteWithdrawn(office.shop.connection, title, taken, first.addSecs(900), u"鈴木"_s));
        };
        for (const QString &title : {u"納品書 O1　山田商店"_s, u"納品書 O1"_s, u"納品書"_s, u"残高一覧 O1"_s,
                                     u"納品書 O99"_s, u"請求書 O1"_s})
            takenBack(title, first.addSecs(2));
        takenBack(u"納品書（再発行） O1　山田商店（再発行）"_s, first.addSecs(601));
        QCOMPARE(office.chain().join(u' '), u"1|納品書|- 2|納品書（再発行）|- 3|納品書|- "
                                            "4|納品書（印刷取消）|1 5|納品書（印刷取消）|2"_s);
        QCOMPARE(
            office.shop.rows(u"SELECT 番号, 日付, 相手先ID, 相手先名, 税込金額, 発行日時, 社員名, ハッシュ = "
                             "(SELECT ハッシュ FROM 発行控 WHERE 発行ID = 1) FROM 発行控 WHERE 発行ID = 4"_s),
            QStringList{u"O1|2026-04-01|1|山田商店|1100|2026-04-01 10:15:00|鈴木|1"_s});
        // The copy goes on: what is printed again is the same document, and what has changed corrects it.
        QVERIFY(office.keep(note(), "%PDF one"));
        QVERIFY(noteReissue(office.shop.connection, 4, office.shop.now, u"鈴木"_s));
        QVERIFY(office.chain().join(u' ').endsWith(u"6|納品書（再発行）|- 7|納品書（再発行）|-"_s));
    }

    // Printed on another printer, or after its position was adjusted, it says what it said.
    void otherBytesThatSayTheSameAreNoVersion()
    {
        const auto pdf = [](const QByteArray &words, const QByteArray &look) {
            QByteArray made = look + " /CreationDate (D:20260401100000Z) " + words;
            QCryptographicHash said(QCryptographicHash::Sha256);
            said.addData(words);
            printing::markPdf(made, &said);
            return made;
        };
        Office office;
        for (const QByteArray &each : {pdf("100", "laser"), pdf("100", "dot"), pdf("200", "dot"),
                                       pdf("200", "file"), pdf("200", "file")})
            QVERIFY(office.keep(note(), each));
        QCOMPARE(office.chain().join(u' '),
                 u"1|納品書|- 2|納品書（再発行）|- 3|納品書|2 4|納品書（再発行）|- "
                 "5|納品書（再発行）|-"_s);
        QCOMPARE(office.files().size(), 4); // each as it went out
    }

    void anEstimateIsNoVersionOfANote()
    {
        Office office;
        QVERIFY(office.keep(note(), "a"));
        IssuedDocument estimate = note();
        estimate.kind = QString::fromUtf16(estimateKind);
        estimate.slipKind = book::estimate;
        QVERIFY(office.keep(estimate, "b"));
        QCOMPARE(office.chain().join(u' '), u"1|納品書|- 2|見積書|-"_s);
    }

    void reissuesAreNoted()
    {
        Office office;
        QVERIFY(office.keep(note(), "a"));
        QVERIFY(noteReissue(office.shop.connection, 1, office.shop.now.addDays(400), u"田中"_s));
        QVERIFY(noteReissue(office.shop.connection, 2, office.shop.now.addDays(401), {}));
        QCOMPARE(office.chain().join(u' '), u"1|納品書|- 2|納品書（再発行）|- 3|納品書（再発行）|-"_s);
        QCOMPARE(office.shop.value(u"SELECT count(DISTINCT ハッシュ) FROM 発行控"_s), QVariant(1));
        QCOMPARE(office.shop.value(u"SELECT 社員名 || 発行日時 FROM 発行控 WHERE 発行ID = 2"_s),
                 QVariant(u"田中2027-05-06 10:00:00"_s));
        const auto gone = noteReissue(office.shop.connection, 9, office.shop.now, {});
        QVERIFY(!gone && gone.error().gone);
    }

    // The file comes first: a row never names one that is not there.
    void whatCannotBeWrittenLeavesNoRow()
    {
        Office office;
        QVERIFY(QDir().mkpath(office.folder()));
        const auto kept = [&] {
            const OrdinaryUser user({office.shop.folder.path()});
            return office.keep(note(), "a");
        }();
        QVERIFY(!kept);
        QVERIFY(kept.error().text.contains(u"書き込み"_s));
        QVERIFY(office.chain().isEmpty());
        QVERIFY(office.keep(note(), "a"));
    }

    void aFileInPlaceOfTheFolderIsTold()
    {
        Office office;
        QFile file(office.folder());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(!office.keep(note(), "a"));
        QVERIFY(office.chain().isEmpty());
    }

    void aFailingRowLeavesTheFileAlone()
    {
        Office office;
        office.shop.fireTriggers();
        office.shop.run(
            u"CREATE TEMP TRIGGER t BEFORE INSERT ON 発行控 BEGIN SELECT RAISE(ABORT, 'x'); END"_s);
        QVERIFY(!office.keep(note(), "a"));
        office.shop.run(u"DROP TRIGGER t"_s);
        QVERIFY(office.keep(note(), "a"));
        QCOMPARE(office.files().size(), 1);
    }

    void damagedFilesAreFound_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("truncated") << QByteArray("%PD");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("one byte") << QByteArray("%PDF twp");
        QTest::newRow("longer") << QByteArray("%PDF two ");
    }

    void damagedFilesAreFound()
    {
        QFETCH(QByteArray, content);
        Office office;
        QVERIFY(office.keep(note(), "%PDF two"));
        damage(office.fileOf("%PDF two"), content);
        QVERIFY(office.find("%PDF two").state == DocumentState::Damaged);
        // A whole one elsewhere stands in for it.
        const QString backup = office.shop.path(u"backup"_s);
        QVERIFY(storeDocument(backup, {QDate(2026, 4, 1), hashOf("%PDF two")}, "%PDF two"));
        const auto found = findDocument({office.folder(), backup}, {QDate(2026, 4, 1), hashOf("%PDF two")});
        QVERIFY(found.state == DocumentState::Whole);
        QCOMPARE(found.pdf, "%PDF two");
        // Printed again, it is whole again.
        QVERIFY(office.keep(note(), "%PDF two"));
        QVERIFY(office.find("%PDF two").state == DocumentState::Whole);
    }

    void aFolderThatIsGoneIsTold()
    {
        Office office;
        QVERIFY(office.keep(note(), "a"));
        QVERIFY(QDir(office.folder()).removeRecursively());
        QVERIFY(office.find("a").state == DocumentState::Missing);
    }

    void hashesLeadNowhereElse()
    {
        for (const QString &hash : {u"../../shop"_s, u"/etc/passwd"_s, QString(), QString(64, u'/'),
                                    hashOf("a").toUpper(), hashOf("a") + u"\n"_s})
            QVERIFY2(pathOf({QDate(2026, 4, 1), hash}).isEmpty(), qPrintable(hash));
        QCOMPARE(pathOf({QDate(), hashOf("a")}), u"日付なし/"_s + hashOf("a") + u".pdf"_s);
    }

    void theProgramNeverDeletesThem()
    {
        Office office;
        QVERIFY(office.keep(note(), "a"));
        QVERIFY(!db::deleteRows(office.shop.connection, u"DELETE FROM 発行控"_s));
        QCOMPARE(office.chain().size(), 1);
    }

    void folders_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("folder");
        QTest::newRow("shop") << u"shop.cdb"_s << u"shop.発行控"_s;
        QTest::newRow("points") << u"店.2026.cdb"_s << u"店.2026.発行控"_s;
        QTest::newRow("blanks") << u"店 2026.cdb"_s << u"店 2026.発行控"_s;
        QTest::newRow("kept beside it") << u"shop 復元前 2026-04-01.cdb"_s << u"shop.発行控"_s;
        QTest::newRow("twice") << u"shop 破損 2026-04-01 復元前 2026-04-02 (2).cdb"_s << u"shop.発行控"_s;
        QTest::newRow("before a migration") << u"shop 版12 2026-04-01.cdb"_s << u"shop.発行控"_s;
        QTest::newRow("backup") << u"shop~1a2b3c 2026-04-01.cdb"_s << u"shop~1a2b3c.発行控"_s;
        QTest::newRow("backup, kept")
            << u"shop~1a2b3c 2026-04-01 削除前 2026-04-02.cdb"_s << u"shop~1a2b3c.発行控"_s;
        QTest::newRow("backup of an opened one")
            << u"shop~1a2b3c 2026-04-01 写し 2026-04-02~9f8e7d 2026-04-03.cdb"_s << u"shop~1a2b3c.発行控"_s;
        QTest::newRow("last exit") << u"BackupKanbalore 別のファイル 2026-04-01.cdb"_s
                                   << u"BackupKanbalore.発行控"_s;
        QTest::newRow("a name of the shop's own")
            << u"復元前 2026-04-01.cdb"_s << u"復元前 2026-04-01.発行控"_s;
    }

    void folders()
    {
        QFETCH(QString, file);
        QFETCH(QString, folder);
        QTemporaryDir place;
        QCOMPARE(workspace::documentFolderOf(place.filePath(file)), place.filePath(folder));
    }
};

QTEST_GUILESS_MAIN(TestIssuedDocuments)
#include "tst_issued_documents.moc"
