#include "masters/DialogMyCo.h"
#include "masters/rich_text/rich_text_edit.h"
#include "masters/rich_text/rtf_file.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "workspace/settings.h"

#include "masters/rich_text/rich_text_samples.h"
#include "support/fresh_shop.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace masters;
using samples::described;
using ui::prompts::Choice;

Q_DECLARE_METATYPE(ui::prompts::Choice)

class tst_DialogMyCo : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void opensTheRegisteredFile();
    void theRegisteredNameIsEditedOnlyWhenAsked();
    void tellsWhyTheRegisteredFileIsNotShown();
    void formattingNeedsASelection_data();
    void formattingNeedsASelection();
    void formatsTheSelection_data();
    void formatsTheSelection();
    void offersBlueFirst();
    void sizeBox_data();
    void sizeBox();
    void savesAndRegisters();
    void asksBeforeReplacingAnotherFile();
    void failedSavingKeepsTextAndFile();
    void failedOpeningChangesNothing();
    void asksForUnsavedText_data();
    void asksForUnsavedText();
    void insertsPictureAndAttachment();
    void refusesWhatCannotBeInserted();
    void copiesWithPicturesAndAttachments();
    void pasteLoadsNothing();
    void pasteOfFilesIsRefused();

private:
    template <typename T>
    T *control(const QString &name) const
    {
        T *found = m_screen->findChild<T *>(name);
        Q_ASSERT(found);
        return found;
    }
    RichTextEdit *box() const { return control<RichTextEdit>(u"RichTextBox1"_s); }
    void press(const QString &key) const
    {
        auto *action = control<QAction>(key);
        QVERIFY(action->isEnabled());
        action->trigger();
    }
    void click(const QString &name) const { QTest::mouseClick(control<QPushButton>(name), Qt::LeftButton); }
    void show();
    void typeAndSelect(const QString &text) const;
    QString registered() const { return m_shop->settings.text(workspace::keys::richTextFileName); }
    QString writeFile(const QString &name, const QByteArray &content) const;

    std::unique_ptr<FreshShop> m_shop;
    std::unique_ptr<DialogMyCo> m_screen;
};

void tst_DialogMyCo::initTestCase()
{
    ui::prompts::beginScript();
    ui::file_dialogs::beginScript();
}

void tst_DialogMyCo::init()
{
    m_shop = std::make_unique<FreshShop>();
    show();
}

void tst_DialogMyCo::cleanup()
{
    m_screen.reset();
    QCOMPARE(ui::prompts::takeUnexpected(), QString());
    QCOMPARE(ui::file_dialogs::takeUnexpected(), QString());
}

void tst_DialogMyCo::show()
{
    m_screen = std::make_unique<DialogMyCo>(m_shop->workspace);
    m_screen->show();
    QVERIFY(QTest::qWaitForWindowActive(m_screen.get()));
}

void tst_DialogMyCo::typeAndSelect(const QString &text) const
{
    box()->textCursor().insertText(text);
    box()->selectAll();
}

QString tst_DialogMyCo::writeFile(const QString &name, const QByteArray &content) const
{
    QFile file(m_shop->path(name));
    file.open(QIODevice::WriteOnly);
    file.write(content);
    return file.fileName();
}

void tst_DialogMyCo::opensTheRegisteredFile()
{
    const QString name =
        writeFile(u"社名.rtf"_s, "{\\rtf1\\ansi\\ansicpg932{\\pict\\emfblip 00}\\qc \\'8e\\'52}");
    m_shop->settings.write(workspace::keys::richTextFileName, name);
    ui::prompts::expectInform(u"表示できない形式の図が 1 個あったため、除いて読み込みました。"_s);
    show();
    QCOMPARE(control<QLineEdit>(u"Text1"_s)->text(), name);
    QCOMPARE(described(box()->richDocument()), u"^{ＭＳ 明朝 12 -}山"_s);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_X, Qt::Key_Delete})
        QTest::keyClick(box(), key);
    QTest::keyClick(control<QLineEdit>(u"Text1"_s), Qt::Key_X);
    m_screen->close(); // nothing was changed, nothing is asked
    QVERIFY(!m_screen->isVisible());
    QCOMPARE(registered(), name);
}

void tst_DialogMyCo::theRegisteredNameIsEditedOnlyWhenAsked()
{
    const QString name = writeFile(u"社名.rtf"_s, "{\\rtf1\\ansi\\ansicpg932 a}");
    m_shop->settings.write(workspace::keys::richTextFileName, name);
    show();
    QVERIFY(!control<QAction>(u"太字"_s)->isEnabled());
    QTest::keyClick(m_screen.get(), Qt::Key_F2);
    QVERIFY(box()->hasFocus());
    QVERIFY(control<QAction>(u"太字"_s)->isEnabled());
    QTest::keyClick(box(), Qt::Key_X);
    QVERIFY(box()->richDocument().isModified());
    ui::prompts::expectAskToSave({}, ui::prompts::Choice::Discard);
    m_screen->close();
}

void tst_DialogMyCo::tellsWhyTheRegisteredFileIsNotShown()
{
    const QString name = m_shop->path(u"none.rtf"_s);
    m_shop->settings.write(workspace::keys::richTextFileName, name);
    ui::prompts::expectInform(
        u"「%1」\nファイルを開くことができません。場所と名前を確かめてください。"_s.arg(name));
    show();
    QCOMPARE(control<QLineEdit>(u"Text1"_s)->text(), name);
    QVERIFY(box()->richDocument().isEmpty());
}

void tst_DialogMyCo::formattingNeedsASelection_data()
{
    QTest::addColumn<QString>("key");
    for (const QString &key : {u"フォント"_s, u"文字色"_s, u"太字"_s, u"斜体"_s, u"下線"_s, u"取消線"_s,
                               u"左揃え"_s, u"中央揃え"_s, u"右揃え"_s})
        QTest::newRow(qPrintable(key)) << key;
}

void tst_DialogMyCo::formattingNeedsASelection()
{
    QFETCH(QString, key);
    box()->textCursor().insertText(u"社名"_s);
    const QString before = described(box()->richDocument());
    ui::prompts::expectInform(u"変更する文字を選択(反転)してください。"_s);
    press(key);
    QCOMPARE(described(box()->richDocument()), before);
    QVERIFY(!control<QAction>(key)->isChecked());
    box()->richDocument().setModified(false);
}

void tst_DialogMyCo::formatsTheSelection_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("once");
    QTest::addColumn<QString>("twice");
    const QString plain = u"<{ＭＳ 明朝 12 -}社名"_s;
    QTest::newRow("bold") << u"太字"_s << u"<{ＭＳ 明朝 12b -}社名"_s << plain;
    QTest::newRow("italic") << u"斜体"_s << u"<{ＭＳ 明朝 12i -}社名"_s << plain;
    QTest::newRow("underline") << u"下線"_s << u"<{ＭＳ 明朝 12u -}社名"_s << plain;
    QTest::newRow("strike-through") << u"取消線"_s << u"<{ＭＳ 明朝 12s -}社名"_s << plain;
    QTest::newRow("left") << u"左揃え"_s << plain << plain;
    QTest::newRow("centre") << u"中央揃え"_s << u"^{ＭＳ 明朝 12 -}社名"_s << u"^{ＭＳ 明朝 12 -}社名"_s;
    QTest::newRow("right") << u"右揃え"_s << u">{ＭＳ 明朝 12 -}社名"_s << u">{ＭＳ 明朝 12 -}社名"_s;
}

void tst_DialogMyCo::formatsTheSelection()
{
    QFETCH(QString, key);
    typeAndSelect(u"社名"_s);
    press(key);
    QTEST(described(box()->richDocument()), "once");
    press(key);
    QTEST(described(box()->richDocument()), "twice");
    box()->richDocument().setModified(false);
}

void tst_DialogMyCo::offersBlueFirst()
{
    typeAndSelect(u"社名"_s);
    QFont font(u"ＭＳ ゴシック"_s, 20);
    font.setItalic(true);
    ui::file_dialogs::expectFont(font);
    press(u"フォント"_s);
    ui::file_dialogs::expectColor(QColor(Qt::blue));
    press(u"文字色"_s);
    QCOMPARE(described(box()->richDocument()), u"<{ＭＳ ゴシック 20i #0000ff}社名"_s);
    ui::file_dialogs::expectFont({});
    press(u"フォント"_s);
    ui::file_dialogs::expectColor({});
    press(u"文字色"_s);
    QCOMPARE(described(box()->richDocument()), u"<{ＭＳ ゴシック 20i #0000ff}社名"_s);
    box()->richDocument().setModified(false);
}

void tst_DialogMyCo::sizeBox_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::newRow("whole") << u"20"_s << u"20"_s;
    QTest::newRow("half points") << u"10.5"_s << u"10.5"_s;
    QTest::newRow("full width") << u"２４"_s << u"24"_s;
    QTest::newRow("rounded to half points") << u"10.7"_s << u"10.5"_s;
    QTest::newRow("words") << u"大"_s << u"12"_s;
    QTest::newRow("empty") << u""_s << u"12"_s;
    QTest::newRow("nothing") << u"0"_s << u"12"_s;
    QTest::newRow("negative") << u"-8"_s << u"12"_s;
    QTest::newRow("too large") << u"401"_s << u"12"_s;
    QTest::newRow("beyond numbers") << u"1e400"_s << u"12"_s;
}

void tst_DialogMyCo::sizeBox()
{
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    typeAndSelect(u"社名"_s);
    auto *size = control<QLineEdit>(u"Text7"_s);
    size->setFocus();
    size->selectAll();
    size->insert(typed); // as an input method does
    QTest::keyClick(size, Qt::Key_Return);
    QCOMPARE(size->text(), shown);
    QCOMPARE(described(box()->richDocument()), u"<{ＭＳ 明朝 %1 -}社名"_s.arg(shown));
    box()->richDocument().setModified(false);
}

void tst_DialogMyCo::savesAndRegisters()
{
    box()->setFocus();
    QTest::keyClicks(box(), u"Yamada"_s);
    QTest::keyClick(box(), Qt::Key_Return);
    QTest::keyClicks(box(), u"Tel"_s);
    ui::file_dialogs::expectFile({}); // cancelled
    click(u"Command2"_s);
    ui::file_dialogs::expectFile(m_shop->path(u"社名"_s));
    click(u"Command2"_s);
    const QString name = m_shop->path(u"社名.rtf"_s);
    QCOMPARE(control<QLineEdit>(u"Text1"_s)->text(), name);
    QCOMPARE(registered(), QString());
    m_screen->close();
    QCOMPARE(registered(), name);
    QCOMPARE(described(*readRtfFile(name)->document), u"<{ＭＳ 明朝 12 -}Yamada\n<{ＭＳ 明朝 12 -}Tel"_s);
}

void tst_DialogMyCo::asksBeforeReplacingAnotherFile()
{
    const QString name = writeFile(u"a.rtf"_s, "old");
    typeAndSelect(u"新"_s);
    ui::file_dialogs::expectFile(name);
    ui::prompts::expectAsk(u"「a.rtf」は既にあります。置き換えますか。"_s, false);
    press(u"保存"_s);
    QVERIFY(!readRtfFile(name));
    ui::file_dialogs::expectFile(name);
    ui::prompts::expectAsk(u"「a.rtf」は既にあります。置き換えますか。"_s, true);
    press(u"保存"_s);
    QCOMPARE(readRtfFile(name)->document->toPlainText(), u"新"_s);
    ui::file_dialogs::expectFile(name); // its own file now
    press(u"保存"_s);
}

void tst_DialogMyCo::failedSavingKeepsTextAndFile()
{
    typeAndSelect(u"社名"_s);
    ui::file_dialogs::expectFile(m_shop->path(u"none/a.rtf"_s));
    ui::prompts::expectInform({});
    click(u"Command2"_s);
    QCOMPARE(control<QLineEdit>(u"Text1"_s)->text(), QString());
    QVERIFY(box()->richDocument().isModified());
    ui::prompts::expectAskToSave({}, Choice::Cancel);
    m_screen->close();
    QVERIFY(m_screen->isVisible());
    box()->richDocument().setModified(false);
}

void tst_DialogMyCo::failedOpeningChangesNothing()
{
    typeAndSelect(u"社名"_s);
    box()->richDocument().setModified(false);
    ui::file_dialogs::expectFile(writeFile(u"a.rtf"_s, "{\\rtf1 cut off"));
    ui::prompts::expectInform({});
    press(u"開く"_s);
    QCOMPARE(box()->toPlainText(), u"社名"_s);
    QCOMPARE(control<QLineEdit>(u"Text1"_s)->text(), QString());

    ui::file_dialogs::expectFile(writeFile(u"b.rtf"_s, "{\\rtf1 whole}"));
    press(u"開く"_s);
    QCOMPARE(box()->toPlainText(), u"whole"_s);
    QCOMPARE(control<QLineEdit>(u"Text1"_s)->text(), m_shop->path(u"b.rtf"_s));
}

void tst_DialogMyCo::asksForUnsavedText_data()
{
    QTest::addColumn<Choice>("choice");
    QTest::addColumn<bool>("left");
    QTest::addColumn<QString>("saved");
    QTest::newRow("save") << Choice::Save << true << u"new old"_s;
    QTest::newRow("discard") << Choice::Discard << true << u"old"_s;
    QTest::newRow("cancel") << Choice::Cancel << false << u"old"_s;
}

void tst_DialogMyCo::asksForUnsavedText()
{
    QFETCH(Choice, choice);
    QFETCH(bool, left);
    const QString name = writeFile(u"a.rtf"_s, "{\\rtf1 old}");
    ui::file_dialogs::expectFile(name);
    press(u"開く"_s);
    QTextCursor(&box()->richDocument()).insertText(u"new "_s);
    ui::prompts::expectAskToSave(u"社名の変更が保存されていません。保存しますか。"_s, choice);
    press(u"新規作成"_s);
    QCOMPARE(box()->toPlainText().isEmpty(), left);
    QTEST(readRtfFile(name)->document->toPlainText(), "saved");
    box()->richDocument().setModified(false);
}

void tst_DialogMyCo::insertsPictureAndAttachment()
{
    auto *file = control<QLineEdit>(u"Text3"_s);
    const QByteArray png = samples::encoded(samples::plainImage(2000, 100), "PNG");
    ui::file_dialogs::expectFile(writeFile(u"logo.png"_s, png));
    click(u"Command3"_s);
    QCOMPARE(file->text(), m_shop->path(u"logo.png"_s));
    click(u"Command1"_s);
    file->setText(writeFile(u"表 1.doc"_s, samples::allBytes()));
    file->setFocus();
    QTest::keyClick(file, Qt::Key_Return);
    QCOMPARE(described(box()->richDocument()), u"<[2000x100][表 1.doc]"_s);
    const QTextFormat picture = box()->richDocument().begin().begin().fragment().charFormat();
    QCOMPARE(twipsOf(picture.toImageFormat()), QSizeF(6 * 1440, 432)); // the width of a line at most

    const auto attachment = box()->attachmentAt(box()->textCursor());
    QVERIFY(attachment);
    ui::file_dialogs::expectFile(m_shop->path(u"out"_s));
    emit box()->attachmentWanted(*attachment);
    QFile out(m_shop->path(u"out.doc"_s));
    QVERIFY(out.open(QIODevice::ReadOnly));
    QCOMPARE(out.readAll(), samples::allBytes());
    box()->richDocument().setModified(false);
}

void tst_DialogMyCo::refusesWhatCannotBeInserted()
{
    auto *file = control<QLineEdit>(u"Text3"_s);
    for (const QString &name : {QString(), m_shop->path(u"none.doc"_s), m_shop->folder.path(),
                                writeFile(u"huge"_s, QByteArray(9 * 1024 * 1024, 'x'))}) {
        file->setText(name);
        ui::prompts::expectInform({});
        click(u"Command1"_s);
        QVERIFY(box()->richDocument().isEmpty());
    }
    QVERIFY(!box()->richDocument().isModified());
}

void tst_DialogMyCo::copiesWithPicturesAndAttachments()
{
    RichTextDocument &document = box()->richDocument();
    const Attachment attachment{u"a.doc"_s, samples::allBytes()};
    box()->textCursor().insertText(u"社"_s);
    box()->insertEmbedded(document.addPicture(*encodePicture(samples::plainImage(5, 6), 100)));
    box()->insertEmbedded(document.addAttachment(attachment));
    box()->selectAll();
    box()->copy();
    box()->richDocument().setModified(false);
    press(u"新規作成"_s);
    box()->paste();
    QCOMPARE(described(box()->richDocument()), u"<{ＭＳ 明朝 12 -}社[5x6][a.doc]"_s);
    QCOMPARE(box()->attachmentAt(box()->textCursor()), attachment);
    box()->richDocument().setModified(false);
}

void tst_DialogMyCo::pasteLoadsNothing()
{
    const QString name = writeFile(u"red.png"_s, samples::encoded(samples::plainImage(50, 50), "PNG"));
    auto *data = new QMimeData;
    data->setHtml(u"<html><head><link rel=stylesheet href='%1'/></head><body background='%1'><b>A</b><img "
                  u"src='%1' width=50 height=50>"
                  u"<img src='file://%1'><p style=\"background-image:url('%1')\">B</p></body>"_s.arg(name));
    QApplication::clipboard()->setMimeData(data);
    box()->paste();
    QCOMPARE(described(box()->richDocument()).count(u'['), 0);
    QCOMPARE(box()->toPlainText(), u"A\nB"_s);
    const QImage shown = box()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    for (int y = 0; y < shown.height(); ++y)
        for (int x = 0; x < shown.width(); ++x)
            QVERIFY(shown.pixelColor(x, y) != QColor(Qt::red));
    box()->richDocument().setModified(false);
}

void tst_DialogMyCo::pasteOfFilesIsRefused()
{
    auto *data = new QMimeData;
    data->setUrls({QUrl::fromLocalFile(m_shop->path(u"shop.cdb"_s))});
    QApplication::clipboard()->setMimeData(data);
    box()->paste();
    QVERIFY(box()->richDocument().isEmpty());

    auto *image = new QMimeData;
    image->setImageData(samples::plainImage(7, 8));
    QApplication::clipboard()->setMimeData(image);
    box()->paste();
    QCOMPARE(described(box()->richDocument()), u"<[7x8]"_s);
    box()->richDocument().setModified(false);
}

QTEST_MAIN(tst_DialogMyCo)
#include "tst_dialog_myco.moc"
