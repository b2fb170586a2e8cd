#include "registers/postal/postal_file_set.h"

#include "base/flush.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

base::Status writeFlushed(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(content) != content.size() ||
        !file.flush())
        return base::Error{u"郵便番号データを書き込めませんでした。("_s + fileName + u": "_s +
                           file.errorString() + u")"_s};
    file.close();
    return base::flushFile(fileName);
}

class Replacement
{
public:
    Replacement(const QString &folder, const QString &name)
        : m_target(QDir(folder).filePath(name))
    {}

    base::Status write(const QByteArray &content) { return writeFlushed(fresh(), content); }

    base::Status takePlace()
    {
        // Only a file gives its place up: a folder of that name was put there by somebody.
        const QFileInfo target(m_target);
        if (target.exists() && !target.isFile())
            return base::Error{u"「%1」がファイルではないため、置き換えませんでした。"_s.arg(m_target)};
        if (target.exists()) {
            if (const base::Status moved = base::replaceFile(m_target, old()); !moved)
                return moved;
            m_hasOld = true;
        }
        const base::Status placed = base::replaceFile(fresh(), m_target);
        m_isPlaced = static_cast<bool>(placed);
        return placed;
    }

    void putBack()
    {
        if (m_isPlaced)
            QFile::remove(m_target);
        if (m_hasOld)
            (void)base::replaceFile(old(), m_target);
        QFile::remove(fresh());
    }

    void finish() { QFile::remove(old()); }

private:
    [[nodiscard]] QString fresh() const { return m_target + u".new"_s; }
    [[nodiscard]] QString old() const { return m_target + u".old"_s; }

    QString m_target;
    bool m_hasOld = false;
    bool m_isPlaced = false;
};

} // namespace

base::Status replaceTogether(const QString &folder, const std::vector<PostalFile> &files)
{
    std::vector<Replacement> replacements;
    for (const PostalFile &file : files)
        replacements.emplace_back(folder, file.name);
    const auto all = [&]() -> base::Status {
        for (std::size_t i = 0; i < files.size(); ++i)
            if (const base::Status written = replacements[i].write(files[i].content); !written)
                return written;
        for (Replacement &replacement : replacements)
            if (const base::Status placed = replacement.takePlace(); !placed)
                return placed;
        return {};
    };
    const base::Status done = all();
    for (Replacement &replacement : replacements) {
        if (done)
            replacement.finish();
        else
            replacement.putBack();
    }
    return done;
}

} // namespace registers
