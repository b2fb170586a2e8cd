#include "printing/pdf.h"

#include "base/replacement.h"
#include "printing/queue/print_system.h"
#include "printing/renderer.h"
#include "workspace/workspace.h"

#include <QBuffer>
#include <QFile>
#include <QPdfWriter>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr int dotsPerInch = 1440; // one to the twip

base::Status writeWhole(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush())
        return {};
    if (file.error() == QFileDevice::ResourceError)
        return base::Error{u"ディスクの空き容量が足りないため、PDF を保存できませんでした。"
                           "不要なファイルを削除してから、もう一度実行してください。"_s};
    return base::Error{u"PDF を保存できませんでした。保存先を確かめてください。("_s + file.errorString() +
                       u")"_s};
}

} // namespace

Look lookOn(const JobSettings &settings, const Look &look)
{
    Look there = look;
    there.unprintable = settings.unprintable;
    return there;
}

base::Result<QByteArray> pdfOf(const Document &document, const Look &look, const base::Progress &progress)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setResolution(dotsPerInch);
        writer.setTitle(document.title);
        writer.setCreator(u"Kanbalore"_s);
        setPage(writer, document);
        if (const base::Status drawn = drawDocument(writer, document, look, progress); !drawn)
            return drawn.error();
    }
    return buffer.data();
}

base::Status writePdf(const Document &document, const Look &look, const QString &fileName,
                      const base::Progress &progress)
{
    // Drawn in memory first: the PDF engine does not report a full disk.
    const auto pdf = pdfOf(document, look, progress);
    if (!pdf)
        return pdf.error();
    base::Replacement file(fileName);
    if (const base::Status begun = file.begin(); !begun)
        return base::Error{u"PDF を保存できませんでした。"_s + begun.error().text};
    const base::Status written = writeWhole(file.name(), *pdf);
    return written ? file.finish() : written;
}

base::Status writePdf(const workspace::Workspace &workspace, const Document &document,
                      const QString &fileName)
{
    return writePdf(document, Look{fontFace(workspace.settings, document.purpose)}, fileName);
}

} // namespace printing
