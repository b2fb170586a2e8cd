#include "printing/pdf.h"

#include "app/workspace.h"
#include "db/flush.h"
#include "printing/renderer.h"

#include <QBuffer>
#include <QFile>
#include <QPdfWriter>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr int dotsPerInch = 1440; // one to the twip

db::Status writeWhole(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        return db::Error{u"PDF を保存できませんでした。保存先を確かめてください。("_s + file.errorString() +
                         u")"_s};
    file.close();
    return db::flushFile(fileName);
}

} // namespace

db::Status writePdf(const Document &document, const Look &look, const QString &fileName,
                    const db::Progress &progress)
{
    // Drawn in memory first: the PDF engine does not report a full disk.
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setResolution(dotsPerInch);
        writer.setTitle(document.title);
        writer.setCreator(u"Kanbalore"_s);
        setPage(writer, document);
        if (const db::Status drawn = drawDocument(writer, document, look, progress); !drawn)
            return drawn;
    }
    const QString temporary = fileName + u".tmp"_s;
    db::Status written = writeWhole(temporary, buffer.data());
    if (written)
        written = db::replaceFile(temporary, fileName);
    if (!written)
        QFile::remove(temporary);
    return written;
}

db::Status writePdf(const app::Workspace &workspace, const Document &document, const QString &fileName)
{
    return writePdf(document, Look{fontFace(workspace.settings, document.purpose)}, fileName);
}

} // namespace printing
