#include "db/care/file_repair.h"

#include "base/file_rights.h"
#include "db/care/backup.h"
#include "db/errors.h"
#include "db/file_header.h"
#include "db/schema.h"

#include <QFileInfo>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

bool meansDamage(int code) { return (code & 0xff) == SQLITE_CORRUPT || (code & 0xff) == SQLITE_NOTADB; }

} // namespace

// The name itself may be a link; what it leads to is what is replaced.
FileRepair::FileRepair(const QString &fileName)
    : m_fileName(base::linkedFile(fileName))
    , m_new(m_fileName, u"CompactFileName"_s)
{}

base::Status FileRepair::begin()
{
    if (!QFileInfo(m_fileName).isFile())
        return base::Error{u"ファイルが見つからないため、修復できませんでした。("_s + m_fileName + u")"_s};
    if (storedVersion(m_fileName) > schemaVersion)
        return checkHeader(m_fileName);
    m_isOurs = storedVersion(m_fileName) > 0;
    if (const base::Status alone = m_mark.set(m_fileName, UseMark::Kind::Exclusive); !alone)
        return alone;
    if (const base::Status made = m_new.begin(); !made)
        return made;
    if (const base::Status opened = m_file.open(m_fileName); !opened)
        return opened;
    // From here on no other program can write; a file too damaged to be locked is nobody's to write in.
    const base::Status locked =
        m_file.run("PRAGMA locking_mode = EXCLUSIVE; PRAGMA journal_mode = DELETE; BEGIN EXCLUSIVE; COMMIT");
    return locked || meansDamage(sqlite3_errcode(m_file.get())) ? base::Status() : locked;
}

base::Result<int> FileRepair::check(const base::Progress &progress)
{
    auto faults = countFaults(m_file, progress);
    // Sound for SQLite, yet not to be opened as ours: its rows may be.
    if (faults && *faults == 0 && !m_isOurs)
        faults = 1;
    return faults;
}

base::Status FileRepair::compact(const base::Progress &progress)
{
    return compactInto(m_file, m_new.name(), progress);
}

base::Result<Salvage> FileRepair::salvage(const base::Progress &progress)
{
    auto done = db::salvage(m_file, m_new.name(), progress);
    if (done && done->carried() == 0)
        return base::Error{u"読み取れる行が見つからないため、修復できませんでした。"
                           "バックアップファイルを開いてください。"_s};
    return done;
}

base::Status FileRepair::finish(const QString &kept)
{
    m_file.close();
    const base::Status replaced = replaceDatabase(m_new, m_mark, kept.isEmpty() ? Replacing() : keptAs(kept));
    m_mark.release();
    return replaced;
}

base::Status compactInto(PlainHandle &source, const QString &target, const base::Progress &progress)
{
    const auto pages = source.number("PRAGMA page_count");
    const auto pageSize = source.number("PRAGMA page_size");
    const qint64 size = pages && pageSize ? *pages * *pageSize : 0;
    source.watch(progress, [target, size] { return std::pair(QFileInfo(target).size(), size); });
    PlainStatement vacuum(source, "VACUUM INTO ?");
    const QByteArray name = target.toUtf8();
    if (!vacuum)
        return source.error();
    sqlite3_bind_text(vacuum.get(), 1, name.constData(), static_cast<int>(name.size()), SQLITE_STATIC);
    return vacuum.step() == SQLITE_DONE ? base::Status() : base::Status(source.error());
}

base::Result<int> countFaults(PlainHandle &file, const base::Progress &progress)
{
    file.watch(progress);
    PlainStatement check(file, "PRAGMA integrity_check(100)");
    int faults = 0;
    int code = check ? SQLITE_ROW : sqlite3_errcode(file.get());
    while (check && (code = check.step()) == SQLITE_ROW) {
        if (check.text(0) != "ok"_L1)
            ++faults;
    }
    if (meansDamage(code))
        return faults + 1;
    return code == SQLITE_DONE ? base::Result<int>(faults) : base::Result<int>(file.error());
}

} // namespace db
