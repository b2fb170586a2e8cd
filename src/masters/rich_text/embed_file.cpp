#include "masters/rich_text/embed_file.h"

#include "masters/rich_text/rich_text_limits.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace masters
{

namespace
{
constexpr double twipsPerPixel = 1440.0 / 96;
constexpr double lineTwips = 6 * 1440; // about the text width of an A4 page
} // namespace

base::Result<QTextImageFormat> embedFile(RichTextDocument &document, const QString &fileName)
{
    const QString shown = u"「"_s + QDir::toNativeSeparators(fileName) + u"」\n"_s;
    QFile file(fileName);
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly))
        return base::Error{shown + u"ファイルを開くことができません。場所と名前を確かめてください。"_s};
    const QByteArray data = file.read(limits::attachmentBytes + 1); // one more, so that too much is seen
    if (file.error() != QFileDevice::NoError)
        return base::Error{shown + u"ファイルを読み込むことができません。"_s};
    if (data.size() > limits::attachmentBytes)
        return base::Error{
            shown + u"ファイルが大きすぎるため、挿入できません。８ＭＢまでのファイルを選んでください。"_s};
    const auto picture = decodePicture(data, limits::pixels - document.pixels());
    if (!picture)
        return document.addAttachment({QFileInfo(fileName).fileName(), data});
    const QSizeF size = QSizeF(picture->image.size()) * twipsPerPixel;
    return document.addPicture(*picture, size * std::min(1.0, lineTwips / size.width()));
}

base::Status saveAttachment(const Attachment &attachment, const QString &fileName)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(attachment.data) != attachment.data.size() ||
        !file.commit())
        return base::Error{u"「"_s + QDir::toNativeSeparators(fileName) +
                           u"」\nファイルを保存できませんでした。"
                           u"空き容量と、書き込みのできる場所かどうかを確かめてください。"_s};
    return {};
}

} // namespace masters
