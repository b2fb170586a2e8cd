#include "masters/rich_text/rtf_file.h"

#include "masters/rich_text/rich_text_limits.h"
#include "masters/rich_text/rtf_writer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace masters
{

base::Result<RichText> readRtfFile(const QString &fileName)
{
    const QString shown = u"「"_s + QDir::toNativeSeparators(fileName) + u"」\n"_s;
    QFile file(fileName);
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly))
        return base::Error{shown + u"ファイルを開くことができません。場所と名前を確かめてください。"_s};
    const QByteArray rtf = file.read(limits::fileBytes + 1); // one more, so that too much is seen
    if (file.error() != QFileDevice::NoError)
        return base::Error{shown + u"ファイルを読み込むことができません。"_s};
    base::Result<RichText> text = readRtf(rtf);
    if (!text)
        return base::Error{shown + text.error().text};
    return text;
}

base::Status saveRtfFile(const RichTextDocument &document, const QString &fileName)
{
    const base::Result<QByteArray> rtf = writeRtf(document);
    if (!rtf)
        return rtf.error();
    QSaveFile file(fileName); // written beside, flushed and renamed
    if (!file.open(QIODevice::WriteOnly) || file.write(*rtf) != rtf->size() || !file.commit())
        return base::Error{u"「"_s + QDir::toNativeSeparators(fileName) +
                           u"」\nファイルを保存できませんでした。前の内容はそのまま残っています。"
                           u"空き容量と、書き込みのできる場所かどうかを確かめてください。"_s};
    return {};
}

} // namespace masters
