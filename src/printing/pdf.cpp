#include "printing/pdf.h"

#include "base/replacement.h"
#include "printing/pdf_mark.h"
#include "printing/queue/print_system.h"
#include "printing/renderer.h"
#include "workspace/workspace.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QFile>
#include <QHashSeed>
#include <QPdfWriter>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr int dotsPerInch = 1440; // one to the twip

// The toolkit writes a document's fonts in the order of their hashes, which it seeds anew at each start.
class OneOrder
{
public:
    OneOrder() { QHashSeed::setDeterministicGlobalSeed(); }
    ~OneOrder() { QHashSeed::resetRandomGlobalSeed(); }
    OneOrder(const OneOrder &) = delete;
    OneOrder &operator=(const OneOrder &) = delete;
};

void addWords(QCryptographicHash &said, const Document &document)
{
    for (const Sheet &sheet : document.sheets) {
        for (const TextItem &item : sheet.texts)
            said.addData(item.text.toUtf8() + '\n');
        for (const RichTextSlot &slot : sheet.richTexts) {
            if (const auto found = document.richTexts.find(slot.name); found != document.richTexts.end())
                said.addData(found->second->toPlainText().toUtf8() + '\n');
        }
        said.addData("\f");
    }
}

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
    const OneOrder order;
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
    QByteArray pdf = buffer.data();
    // A list that nobody keeps may be long, and its sheets are made anew each time.
    QCryptographicHash said(QCryptographicHash::Sha256);
    if (document.keep)
        addWords(said, document);
    markPdf(pdf, document.keep ? &said : nullptr);
    return pdf;
}

base::Status writePdf(const Document &document, const Look &look, const QString &fileName,
                      const base::Progress &progress)
{
    // Drawn in memory first: the PDF engine does not report a full disk.
    const auto pdf = pdfOf(document, look, progress);
    return pdf ? writePdf(*pdf, fileName) : pdf.error();
}

base::Status writePdf(const QByteArray &pdf, const QString &fileName)
{
    base::Replacement file(fileName);
    if (const base::Status begun = file.begin(); !begun)
        return base::Error{u"PDF を保存できませんでした。"_s + begun.error().text};
    const base::Status written = writeWhole(file.name(), pdf);
    return written ? file.finish() : written;
}

base::Status writePdf(const workspace::Workspace &workspace, const Document &document,
                      const QString &fileName)
{
    return writePdf(document, Look{fontFace(workspace.settings, document.purpose)}, fileName);
}

} // namespace printing
