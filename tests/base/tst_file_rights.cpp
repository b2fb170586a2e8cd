// Whom a program beside this one is taken from. Other owners and groups need the superuser.
#include "base/file_rights.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace
{

constexpr uid_t stranger = 65534;
constexpr gid_t shop = 4242;
constexpr gid_t others = 4243;

void give(const QString &path, uid_t owner, gid_t group, mode_t mode)
{
    const QByteArray name = QFile::encodeName(path);
    if (::chown(name.constData(), owner, group) != 0 || ::chmod(name.constData(), mode) != 0)
        qFatal("cannot change %s", name.constData());
}

// This process as one of the group, for a while.
class Member
{
public:
    explicit Member(bool isIn)
        : m_before(static_cast<std::size_t>(::getgroups(0, nullptr)))
    {
        const gid_t own = shop;
        if (::getgroups(static_cast<int>(m_before.size()), m_before.data()) < 0 ||
            ::setgroups(isIn ? 1 : 0, &own) != 0)
            qFatal("cannot change the groups");
    }
    ~Member() { (void)!::setgroups(m_before.size(), m_before.data()); }
    Member(const Member &) = delete;
    Member &operator=(const Member &) = delete;

private:
    std::vector<gid_t> m_before;
};

} // namespace

struct Rights
{
    uid_t owner;
    gid_t group;
    mode_t mode;
};

class TestFileRights : public QObject
{
    Q_OBJECT

private slots:
    void trusted_data();
    void trusted();
    void missingOnesAreNot();
};

void TestFileRights::trusted_data()
{
    QTest::addColumn<Rights>("folder");
    QTest::addColumn<Rights>("program");
    QTest::addColumn<bool>("isMember"); // this user, of the shop's group
    QTest::addColumn<bool>("isTrusted");
    const uid_t own = ::geteuid();
    const Rights shared{stranger, shop, 0775};
    QTest::newRow("own") << Rights{own, others, 0700} << Rights{own, others, 0755} << false << true;
    QTest::newRow("colleague's in the shared folder")
        << shared << Rights{stranger, shop, 0755} << true << true;
    QTest::newRow("colleagues can write it") << shared << Rights{own, shop, 0775} << true << true;
    QTest::newRow("folder of a group of others") << shared << Rights{stranger, shop, 0755} << false << false;
    QTest::newRow("own program there") << shared << Rights{own, shop, 0755} << false << false;
    QTest::newRow("own folder of a group of others")
        << Rights{own, shop, 0775} << Rights{own, shop, 0755} << false << false;
    QTest::newRow("others can write it") << shared << Rights{own, others, 0775} << true << false;
    QTest::newRow("a group can write it in a folder that it cannot")
        << Rights{own, shop, 0755} << Rights{own, shop, 0775} << true << false;
    QTest::newRow("stranger's") << shared << Rights{stranger, others, 0755} << true << false;
    QTest::newRow("stranger's folder")
        << Rights{stranger, shop, 0755} << Rights{own, shop, 0755} << true << false;
    QTest::newRow("everybody can write it") << shared << Rights{own, shop, 0777} << true << false;
    QTest::newRow("everybody's folder")
        << Rights{own, shop, 01777} << Rights{own, shop, 0755} << true << false;
}

void TestFileRights::trusted()
{
    QFETCH(Rights, folder);
    QFETCH(Rights, program);
    QFETCH(bool, isMember);
    if (::geteuid() != 0)
        QSKIP("only the superuser can give files away");
    const QTemporaryDir there;
    const QString name = there.filePath(u"program"_s);
    QVERIFY(QFile(name).open(QIODevice::WriteOnly));
    give(name, program.owner, program.group, program.mode);
    give(there.path(), folder.owner, folder.group, folder.mode);
    const Member member(isMember);
    QTEST(base::isTrusted(name, there.path()), "isTrusted");
}

void TestFileRights::missingOnesAreNot()
{
    const QTemporaryDir there;
    QVERIFY(!base::isTrusted(there.filePath(u"program"_s), there.path()));
    QVERIFY(!base::isTrusted(there.path(), there.filePath(u"folder"_s)));
}

QTEST_APPLESS_MAIN(TestFileRights)
#include "tst_file_rights.moc"
