#include "base/dated_name.h"
#include "base/replacement.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

void write(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(fileName));
}

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

struct stat rightsOf(const QString &fileName)
{
    struct stat found = {};
    if (::stat(QFile::encodeName(fileName).constData(), &found) != 0)
        qFatal("no %s", qPrintable(fileName));
    return found;
}

void give(const QString &fileName, uint mode, gid_t group)
{
    const QByteArray path = QFile::encodeName(fileName);
    if (::chown(path.constData(), static_cast<uid_t>(-1), group) != 0 || ::chmod(path.constData(), mode) != 0)
        qFatal("cannot change %s", path.constData());
}

bool put(const QString &target, const QByteArray &content)
{
    base::Replacement file(target);
    if (!file.begin())
        return false;
    write(file.name(), content);
    return bool(file.finish());
}

// One to which this user can give files, another than his own where there is one.
gid_t anyGroup() { return ::geteuid() == 0 ? 4242 : ::getegid(); }

} // namespace

/// Files that take the place of others.
class TestReplacement : public QObject
{
    Q_OBJECT

private slots:
    void rightsStay_data();
    void rightsStay();
    void rightsOfANewFile_data();
    void rightsOfANewFile();
    void linksStay_data();
    void linksStay();
    void twoAtOnce();
    void unfinishedOnesGo();
    void datedNames_data();
    void datedNames();
};

void TestReplacement::rightsStay_data()
{
    QTest::addColumn<uint>("mode");
    QTest::newRow("shared by a group") << 0660U;
    QTest::newRow("private") << 0600U;
    QTest::newRow("read by all") << 0644U;
}

void TestReplacement::rightsStay()
{
    QFETCH(uint, mode);
    QTemporaryDir folder;
    const QString target = folder.filePath(u"shop.cdb"_s);
    write(target, "old");
    give(target, mode, anyGroup());
    QVERIFY(put(target, "new"));
    QCOMPARE(contentOf(target), "new");
    QCOMPARE(uint(rightsOf(target).st_mode & 07777U), mode);
    QCOMPARE(rightsOf(target).st_gid, anyGroup());
}

void TestReplacement::rightsOfANewFile_data()
{
    QTest::addColumn<uint>("folderMode");
    QTest::addColumn<uint>("mode");
    QTest::newRow("own folder that others may read") << 0755U << 0600U;
    QTest::newRow("shared folder") << 0770U << 0660U;
    QTest::newRow("shared folder whose files are the group's") << 02775U << 0660U;
    QTest::newRow("folder for everybody") << 0777U << 0600U;
}

void TestReplacement::rightsOfANewFile()
{
    QFETCH(uint, folderMode);
    QFETCH(uint, mode);
    QTemporaryDir folder;
    give(folder.path(), folderMode, anyGroup());
    const QString target = folder.filePath(u"export.csv"_s);
    base::Replacement file(target);
    QVERIFY(file.begin());
    QCOMPARE(uint(rightsOf(file.name()).st_mode & 0777U), 0600U);
    QVERIFY(file.finish());
    QCOMPARE(uint(rightsOf(target).st_mode & 0777U), mode);
    if (mode & S_IWGRP)
        QCOMPARE(rightsOf(target).st_gid, anyGroup());
}

void TestReplacement::linksStay_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::newRow("to a file") << true;
    QTest::newRow("to nothing yet") << false;
}

void TestReplacement::linksStay()
{
    QFETCH(bool, isThere);
    QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(u"disk"_s));
    const QString real = folder.filePath(u"disk/shop.cdb"_s);
    if (isThere)
        write(real, "old");
    QVERIFY(QFile::link(u"disk/shop.cdb"_s, folder.filePath(u"relative"_s)));
    const QString name = folder.filePath(u"shop.cdb"_s);
    QVERIFY(QFile::link(folder.filePath(u"relative"_s), name));
    QVERIFY(put(name, "new"));
    QVERIFY(QFileInfo(name).isSymLink());
    QCOMPARE(contentOf(real), "new");
    QCOMPARE(QDir(folder.path()).entryList({u"*.tmp"_s}), QStringList());
}

void TestReplacement::twoAtOnce()
{
    QTemporaryDir folder;
    const QString target = folder.filePath(u"shop.cdb"_s);
    base::Replacement one(target);
    base::Replacement other(target);
    QVERIFY(one.begin() && other.begin());
    write(one.name(), "one");
    write(other.name(), "other");
    QVERIFY(other.finish());
    QCOMPARE(contentOf(target), "other");
    QVERIFY(one.finish());
    QCOMPARE(contentOf(target), "one");
}

void TestReplacement::unfinishedOnesGo()
{
    QTemporaryDir folder;
    const QString target = folder.filePath(u"shop.cdb"_s);
    const QString old = folder.filePath(u"Kanbalore~0123abcd.tmp"_s);
    const QString young = folder.filePath(u"Kanbalore~4567abcd.tmp"_s);
    const QString foreign = folder.filePath(u"Kanbalore~memo.tmp"_s);
    for (const QString &name : {old, young, foreign})
        write(name, "left over");
    const timeval longAgo[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
    for (const QString &name : {old, foreign})
        QCOMPARE(::utimes(QFile::encodeName(name).constData(), longAgo), 0);
    {
        base::Replacement file(target);
        QVERIFY(file.begin());
        write(file.name(), "half");
    }
    QStringList left = {QFileInfo(young).fileName(), QFileInfo(foreign).fileName()};
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files, QDir::Name), left);
}

void TestReplacement::datedNames_data()
{
    QTest::addColumn<QDate>("day");
    QTest::addColumn<QString>("name");
    QTest::newRow("day") << QDate(2026, 4, 1) << u"shop 破損 2026-04-01.cdb"_s;
    QTest::newRow("clock far ahead") << QDate(10026, 4, 1) << u"shop 破損 10026-04-01.cdb"_s;
    QTest::newRow("no clock") << QDate() << u"shop 破損 0000-00-00.cdb"_s;
}

void TestReplacement::datedNames()
{
    QFETCH(QDate, day);
    QTemporaryDir folder;
    QTEST(QFileInfo(base::datedName(folder.filePath(u"shop.cdb"_s), u"破損"_s, day)).fileName(), "name");
}

QTEST_GUILESS_MAIN(TestReplacement)
#include "tst_replacement.moc"
