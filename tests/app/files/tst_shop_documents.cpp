// The documents that were issued go wherever a copy of the shop goes, and through whatever befalls the
// database.
#include "app/files/backups.h"
#include "app/files/shop_documents.h"
#include "app/files/table_emptying.h"
#include "app/shop_files.h"
#include "book/slip_counts.h"
#include "slips/issued/document_copies.h"
#include "slips/issued/issued_documents.h"
#include "slips/issued/issued_search.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "workspace/document_places.h"

#include <QDirIterator>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace app;

namespace
{

slips::IssuedDocument note(int number, qint64 customer = 1)
{
    return {.kind = QString::fromUtf16(slips::deliveryNoteKind),
            .number = u"O%1"_s.arg(number),
            .date = QDate(2026, 4, 1),
            .slipKind = book::sale,
            .counterpart = customer,
            .counterpartName = u"顧客%1"_s.arg(customer),
            .amount = 100.0 * number};
}

/// A shop of which some notes were issued.
struct DocumentStage : Stage
{
    explicit DocumentStage(int notes = 3)
    {
        reopen();
        for (int number = 1; number <= notes; ++number)
            issue(number);
        shop.connection.close();
    }

    void reopen()
    {
        if (!shop.connection.open(file))
            qFatal("the shop cannot be opened");
    }
    void issue(int number)
    {
        const QString folder = workspace::documentFolderOf(shop.connection.fileName());
        if (!slips::keepDocument(shop.connection, folder, note(number), "%PDF " + QByteArray::number(number),
                                 shop.now, u"山田"_s))
            qFatal("nothing is kept");
    }
    /// How many of the documents of the open database are whole where it looks for them.
    int whole()
    {
        const QStringList folders =
            workspace::documentFoldersOf(shop.connection.fileName(), shop.folder.path());
        int count = 0;
        const auto rows = slips::readIssued(shop.connection, *slips::allIssued(shop.connection));
        for (const slips::IssuedRow &row : *rows)
            count += slips::findDocument(folders, row.place()).state == slips::DocumentState::Whole;
        return count;
    }
    /// How many PDFs there are below \a folder of the application folder.
    int pdfs(const QString &folder = {}) const
    {
        int count = 0;
        for (QDirIterator all(shop.path(folder), {u"*.pdf"_s}, QDir::Files, QDirIterator::Subdirectories);
             all.hasNext(); all.next())
            ++count;
        return count;
    }
    [[nodiscard]] QString datedBackup() const
    {
        const QDir folder(shop.path(u"Backup"_s));
        return folder.filePath(folder.entryList({u"shop~*.cdb"_s}, QDir::Files).value(0));
    }
};

} // namespace

class TestShopDocuments : public ScriptedTest
{
    Q_OBJECT

private slots:
    void backupsShareOneCopy();
    void backupsCopyWhatIsNew();
    void aFailedCopyIsToldAndHarmsNothing();
    void aStoppedCopyGoesOnTheNextTime();
    void damagedOnesAreNotPassedOn();
    void saveAsTakesThemAlong();
    void openedBackupsFindThem();
    void restoringBringsThemBack();
    void rebuildingTakesThemAlong();
    void emptyingSparesThem();
};

// That of the last exit and those of all days.
void TestShopDocuments::backupsShareOneCopy()
{
    DocumentStage stage;
    for (int day = 0; day < 3; ++day) {
        openAndClose(stage, stage.file);
        stage.shop.now = stage.shop.now.addDays(1);
    }
    QCOMPARE(stage.pdfs(u"shop.発行控"_s), 3);
    QCOMPARE(stage.pdfs(), 6);
    const QStringList backups{stage.datedBackup(), stage.shop.path(u"BackupKanbalore.cdb"_s)};
    QVERIFY(QDir(stage.shop.path(u"shop.発行控"_s)).removeRecursively());
    for (const QString &backup : backups) {
        QVERIFY(stage.shop.connection.open(backup));
        QCOMPARE(stage.whole(), 3);
    }
}

void TestShopDocuments::backupsCopyWhatIsNew()
{
    DocumentStage stage;
    openAndClose(stage, stage.file);
    const QString first =
        QDirIterator(stage.shop.path(u"Backup"_s), {u"*.pdf"_s}, QDir::Files, QDirIterator::Subdirectories)
            .next();
    QFile::setPermissions(first, QFile::ReadOwner | QFile::WriteOwner);
    write(first, "worked in"); // what is there is not written again
    stage.reopen();
    stage.issue(4);
    stage.shop.connection.close();
    openAndClose(stage, stage.file);
    QCOMPARE(stage.pdfs(u"Backup"_s), 4);
    QFile file(first);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), "worked in");
}

void TestShopDocuments::aFailedCopyIsToldAndHarmsNothing()
{
    DocumentStage stage;
    openAndClose(stage, stage.file);
    const QDir backups(stage.shop.path(u"Backup"_s));
    const QString folder = backups.filePath(backups.entryList({u"*.発行控"_s}, QDir::Dirs).value(0));
    QVERIFY(QDir(folder).removeRecursively());
    write(folder, "in the way");
    change(stage.file, "INSERT INTO 納品先 (納品先ID) VALUES (301)");
    ui::prompts::expectInform({});
    openAndClose(stage, stage.file);
    QCOMPARE(customersIn(stage.datedBackup()), 301);
    QCOMPARE(customersIn(stage.shop.path(u"BackupKanbalore.cdb"_s)), 301);
    QVERIFY(QFile::remove(folder));
    openAndClose(stage, stage.file);
    QCOMPARE(stage.pdfs(u"Backup"_s), 3);
}

void TestShopDocuments::aStoppedCopyGoesOnTheNextTime()
{
    DocumentStage stage;
    stage.reopen();
    const QString to = stage.shop.path(u"copy"_s);
    const QStringList from{stage.shop.path(u"shop.発行控"_s)};
    const auto stopped =
        slips::copyDocuments(stage.shop.connection, from, {to}, [](qint64 done, qint64) { return done < 2; });
    QVERIFY(!stopped && stopped.error().cancelled);
    QCOMPARE(stage.pdfs(u"copy"_s), 2);
    const auto rest = slips::copyDocuments(stage.shop.connection, from, {to}, base::unwatched);
    QCOMPARE(rest->copied, 1);
    QCOMPARE(stage.pdfs(u"copy"_s), 3);
}

void TestShopDocuments::damagedOnesAreNotPassedOn()
{
    DocumentStage stage;
    const QString folder = stage.shop.path(u"shop.発行控/2026/"_s);
    const QStringList names = QDir(folder).entryList(QDir::Files, QDir::Name);
    QFile::setPermissions(folder + names.at(0), QFile::ReadOwner | QFile::WriteOwner);
    write(folder + names.at(0), "%PDF ?");
    QVERIFY(QFile::remove(folder + names.at(1)));
    stage.reopen();
    const QString told = takeDocumentsAlong(stage.shop.connection, stage.file, stage.shop.path(u"copy.cdb"_s),
                                            stage.shop.folder.path(), base::unwatched);
    QVERIFY2(told.contains(u" 2 件"_s), qPrintable(told));
    QCOMPARE(stage.pdfs(u"copy.発行控"_s), 1);
}

void TestShopDocuments::saveAsTakesThemAlong()
{
    DocumentStage stage;
    stage.load();
    QVERIFY(QDir().mkpath(stage.shop.path(u"支店"_s)));
    const QString copy = stage.shop.path(u"支店/新しい店.cdb"_s);
    ui::file_dialogs::expectFile(copy);
    stage.choose("mnuSave");
    QCOMPARE(stage.shop.connection.fileName(), copy);
    QCOMPARE(stage.pdfs(u"支店/新しい店.発行控"_s), 3);
    QVERIFY(QDir(stage.shop.path(u"shop.発行控"_s)).removeRecursively());
    QVERIFY(QDir(stage.shop.path(u"Backup"_s)).removeRecursively());
    QCOMPARE(stage.whole(), 3);
}

// Nothing has to be copied to look into a backup, and what is issued in it is kept.
void TestShopDocuments::openedBackupsFindThem()
{
    DocumentStage stage;
    openAndClose(stage, stage.file);
    QVERIFY(QDir(stage.shop.path(u"shop.発行控"_s)).removeRecursively());
    stage.file = stage.datedBackup();
    stage.load();
    QVERIFY(stage.shop.connection.fileName().contains(u"写し"_s));
    QCOMPARE(stage.whole(), 3);
    stage.issue(4);
    QCOMPARE(stage.whole(), 4);
    QCOMPARE(stage.pdfs(), 4);
    ui::file_dialogs::expectFile(stage.shop.path(u"戻した店.cdb"_s));
    ui::prompts::expectInform({}, ui::prompts::anyRemark); // that the copy was worked in
    stage.choose("mnuSave");
    QCOMPARE(stage.pdfs(u"戻した店.発行控"_s), 4);
}

void TestShopDocuments::restoringBringsThemBack()
{
    DocumentStage stage;
    openAndClose(stage, stage.file);
    QVERIFY(QDir(stage.shop.path(u"shop.発行控"_s)).removeRecursively());
    QVERIFY(restoreBackup(stage.datedBackup(), stage.file, stage.shop.path(u"shop 復元前.cdb"_s),
                          base::unwatched));
    stage.reopen();
    QVERIFY(takeDocumentsAlong(stage.shop.connection, stage.datedBackup(), stage.file,
                               stage.shop.folder.path(), base::unwatched)
                .isEmpty());
    QCOMPARE(stage.pdfs(u"shop.発行控"_s), 3);
}

void TestShopDocuments::rebuildingTakesThemAlong()
{
    DocumentStage stage;
    stage.load();
    QTimer::singleShot(0, stage.window.get(), [&] {
        QWidget *dialog = QApplication::activeModalWidget();
        ui::file_dialogs::expectFile(stage.shop.path(u"作り直し.cdb"_s));
        ui::prompts::expectAsk({}, false);
        dialog->findChild<QPushButton *>(u"Command1"_s)->click();
        dialog->close();
    });
    stage.click("Command7");
    QCOMPARE(stage.pdfs(u"作り直し.発行控"_s), 3);
}

// The slips begin anew with the same numbers, the counterparts with other ones.
void TestShopDocuments::emptyingSparesThem()
{
    DocumentStage stage;
    stage.reopen();
    const int rates = stage.shop.value(u"SELECT count(*) FROM 税率"_s).toInt();
    QVERIFY(emptyTables(stage.shop.connection, u"すべて選択"_s));
    QCOMPARE(stage.shop.value(u"SELECT count(*) FROM 入出庫マスター"_s), QVariant(0));
    QCOMPARE(stage.shop.value(u"SELECT count(*) FROM 発行控"_s), QVariant(3));
    QCOMPARE(stage.shop.value(u"SELECT count(*) FROM 税率"_s), QVariant(rates));
    QCOMPARE(stage.whole(), 3);

    const auto next = book::keyWithoutSlips(stage.shop.connection, book::Party::Customer, 1);
    const QString folder = workspace::documentFolderOf(stage.file);
    QVERIFY(slips::keepDocument(stage.shop.connection, folder, note(1, *next), "%PDF of another",
                                stage.shop.now, {}));
    QVERIFY(stage.shop.value(u"SELECT 訂正元 FROM 発行控 WHERE 発行ID = 4"_s).isNull());
    QCOMPARE(stage.shop.value(u"SELECT 種類 FROM 発行控 WHERE 発行ID = 4"_s).toString(), u"納品書"_s);
}

QTEST_MAIN(TestShopDocuments)
#include "tst_shop_documents.moc"
