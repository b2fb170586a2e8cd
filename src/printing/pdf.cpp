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
const QString creator = u"Kanbalore"_s;

// "(…)" of UTF-16 as PDF writes it. \a isStrict: with the escape that a carriage return needs.
QByteArray pdfText(const QString &text, bool isStrict)
{
    QByteArray bytes("\xfe\xff", 2);
    for (const QChar letter : text) {
        bytes.append(static_cast<char>(letter.unicode() >> 8));
        bytes.append(static_cast<char>(letter.unicode() & 0xff));
    }
    QByteArray written("(");
    for (const char byte : bytes) {
        if (byte == '(' || byte == ')' || byte == '\\')
            written += '\\';
        if (byte == '\r' && isStrict)
            written += "\\r";
        else
            written += byte;
    }
    return written + ')';
}

// The toolkit writes the second byte of 納 (7D0D) as it is, which readers take for the end of a line: 紊. The
// blanks that the creator's name was given for it make room, so that nothing behind moves.
void mendTitle(QByteArray &pdf, const QString &title)
{
    const QByteArray faulty = pdfText(title, false);
    const QByteArray strict = pdfText(title, true);
    const qsizetype more = strict.size() - faulty.size();
    const QByteArray roomy = pdfText(creator + QString(more, u' '), false);
    const qsizetype titleAt = pdf.indexOf("/Title " + faulty);
    const qsizetype creatorAt = pdf.indexOf("/Creator " + roomy);
    if (more == 0 || titleAt < 0 || creatorAt < titleAt)
        return;
    pdf.replace(creatorAt, 9 + roomy.size(), "/Creator " + pdfText(creator, false) + QByteArray(more, ' '));
    pdf.replace(titleAt, 7 + faulty.size(), "/Title " + strict);
}

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
    there.fed = settings.paper;
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
        writer.setCreator(
            creator +
            QString(pdfText(document.title, true).size() - pdfText(document.title, false).size(), u' '));
        setPage(writer, document, look);
        if (const base::Status drawn = drawDocument(writer, document, look, progress); !drawn)
            return drawn.error();
    }
    buffer.close();
    QByteArray pdf = buffer.data();
    mendTitle(pdf, document.title);
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
        return base::Error{u"PDF を保存できませんでした。保存先「%1」を確かめてください。"_s.arg(fileName)};
    const base::Status written = writeWhole(file.name(), pdf);
    return written ? file.finish() : written;
}

base::Status writePdf(const workspace::Workspace &workspace, const Document &document,
                      const QString &fileName)
{
    return writePdf(document, Look{fontFace(workspace.settings, document.purpose)}, fileName);
}

} // namespace printing
