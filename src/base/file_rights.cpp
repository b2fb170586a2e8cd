#include "base/file_rights.h"

#include "base/flush.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>
#endif
#ifdef Q_OS_LINUX
#include <sys/xattr.h>
#endif

using namespace Qt::StringLiterals;

namespace base
{

QString linkedFile(const QString &fileName)
{
    constexpr int mostLinks = 40; // as many as the operating system follows
    QString name = fileName;
    for (int i = 0; i < mostLinks && QFileInfo(name).isSymLink(); ++i)
        name = QFileInfo(name).symLinkTarget();
    return name;
}

#ifdef Q_OS_WIN

// There a folder hands its rules down by itself.
Status makePrivateFile(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly | QIODevice::NewOnly)
               ? Status()
               : Error{u"ファイルを作成できませんでした。("_s + fileName + u")"_s};
}

void giveRightsOf(const QString &model, const QString &fileName)
{
    QFile::setPermissions(fileName, QFile::permissions(model));
}

void giveRightsOfNewFile(const QString &) {}

bool isTrusted(const QString &, const QString &) { return true; }

bool makeSharedFolder(const QString &folder) { return QDir().mkpath(folder); }

bool linkFile(const QString &from, const QString &to)
{
    return CreateHardLinkW(reinterpret_cast<const wchar_t *>(to.utf16()),
                           reinterpret_cast<const wchar_t *>(from.utf16()), nullptr);
}

#else

namespace
{

constexpr mode_t ownerAlone = S_IRUSR | S_IWUSR;
constexpr mode_t withGroup = ownerAlone | S_IRGRP | S_IWGRP;

std::optional<struct stat> statOf(const QString &path)
{
    struct stat found = {};
    if (::stat(QFile::encodeName(path).constData(), &found) != 0)
        return std::nullopt;
    return found;
}

bool hasRule([[maybe_unused]] const QString &path, [[maybe_unused]] const char *rule)
{
#ifdef Q_OS_LINUX
    return ::getxattr(QFile::encodeName(path).constData(), rule, nullptr, 0) > 0;
#else
    return false;
#endif
}

// Rules for single users and groups beside the mode.
void copyRules([[maybe_unused]] const QString &model, [[maybe_unused]] const QString &fileName)
{
#ifdef Q_OS_LINUX
    static constexpr const char *rules = "system.posix_acl_access";
    std::array<char, 4096> value{};
    const ssize_t size = ::getxattr(QFile::encodeName(model).constData(), rules, value.data(), value.size());
    if (size > 0)
        (void)::setxattr(QFile::encodeName(fileName).constData(), rules, value.data(),
                         static_cast<std::size_t>(size), 0);
#endif
}

bool handsRulesDown(const QString &folder) { return hasRule(folder, "system.posix_acl_default"); }

// \return whether the file is of \a group now
bool giveToGroup(const QByteArray &path, gid_t group)
{
    struct stat own = {};
    return (::stat(path.constData(), &own) == 0 && own.st_gid == group) ||
           ::chown(path.constData(), static_cast<uid_t>(-1), group) == 0;
}

bool isMemberOf(gid_t group)
{
    if (group == ::getegid())
        return true;
    std::vector<gid_t> groups(static_cast<std::size_t>(std::max(::getgroups(0, nullptr), 0)));
    const int found = ::getgroups(static_cast<int>(groups.size()), groups.data());
    return std::find(groups.begin(), groups.begin() + std::max(found, 0), group) !=
           groups.begin() + std::max(found, 0);
}

} // namespace

Status makePrivateFile(const QString &fileName)
{
    const mode_t mode = handsRulesDown(QFileInfo(fileName).absolutePath()) ? withGroup : ownerAlone;
    const int file =
        ::open(QFile::encodeName(fileName).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (file < 0)
        return diskError(u"ファイルを作成できませんでした。"_s, fileName, errno);
    ::close(file);
    return {};
}

// What the group was allowed is not handed to another group, where the file cannot be given to the same one.
void giveRightsOf(const QString &model, const QString &fileName)
{
    const auto rights = statOf(model);
    if (!rights)
        return;
    const QByteArray path = QFile::encodeName(fileName);
    const bool isOfGroup = giveToGroup(path, rights->st_gid);
    (void)::chmod(path.constData(), rights->st_mode & (isOfGroup ? 0777U : 0707U));
    if (isOfGroup)
        copyRules(model, fileName);
    if (::geteuid() == 0)
        (void)!::chown(path.constData(), rights->st_uid, static_cast<gid_t>(-1));
}

// A folder into which a group but not everybody may write is shared.
void giveRightsOfNewFile(const QString &fileName)
{
    const QString folder = QFileInfo(fileName).absolutePath();
    const auto rights = statOf(folder);
    if (!rights || handsRulesDown(folder))
        return;
    const QByteArray path = QFile::encodeName(fileName);
    const bool isShared = (rights->st_mode & S_IWGRP) && !(rights->st_mode & S_IWOTH);
    if (isShared && giveToGroup(path, rights->st_gid))
        (void)::chmod(path.constData(), withGroup);
}

bool isTrusted(const QString &fileName, const QString &folder)
{
    const auto shared = statOf(folder);
    const auto program = statOf(fileName);
    if (!shared || !program)
        return false;
    const bool isShared = (shared->st_mode & S_IWGRP) && isMemberOf(shared->st_gid);
    const auto isKnown = [&](const struct stat &rights) {
        const bool isOwn = rights.st_uid == ::geteuid() || rights.st_uid == 0;
        const bool isOfGroup = isShared && rights.st_gid == shared->st_gid;
        const mode_t strangers = isOfGroup ? S_IWOTH : S_IWGRP | S_IWOTH;
        return (isOwn || isOfGroup) && !(rights.st_mode & strangers);
    };
    return isKnown(*shared) && isKnown(*program);
}

bool makeSharedFolder(const QString &folder)
{
    if (QFileInfo(folder).isDir())
        return true;
    if (!QDir().mkpath(folder))
        return false;
    const auto above = statOf(QFileInfo(folder).absolutePath());
    const QByteArray path = QFile::encodeName(folder);
    if (above && giveToGroup(path, above->st_gid))
        (void)::chmod(path.constData(), above->st_mode & 07777U);
    return true;
}

bool linkFile(const QString &from, const QString &to)
{
    return ::link(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

#endif

} // namespace base
