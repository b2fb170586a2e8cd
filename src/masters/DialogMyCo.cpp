#include "masters/DialogMyCo.h"

#include "masters/rich_text/embed_file.h"
#include "masters/rich_text/rich_text_icons.h"
#include "masters/rich_text/rich_text_limits.h"
#include "masters/rich_text/rtf_file.h"
#include "text/numbers.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include "ui_DialogMyCo.h"
#include "workspace/workspace_targets.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QShortcut>

#include <cmath>

using namespace Qt::StringLiterals;

namespace masters
{

namespace
{

QString rtfFilter() { return u"rtfのﾌｧｲﾙ (*.rtf)"_s; }
QString allFilter() { return u"すべてのファイル (*.*)"_s; }
QString saveTitle() { return u"名前を付けて保存"_s; }
QString openTitle() { return u"開く"_s; }

QString leftOutNotice(int pictures)
{
    return pictures == 0 ? QString()
                         : u"表示できない形式の図が %1 個あったため、除いて読み込みました。"_s.arg(pictures);
}

} // namespace

DialogMyCo::DialogMyCo(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , ui(std::make_unique<Ui::DialogMyCo>())
{
    ui->setupUi(this);
    fillToolbar();
    connectControls();
    setUp();

    setOnlyShown(false);
    const QString registered = workspace.settings.text(workspace::keys::richTextFileName);
    ui->Text1->setText(registered);
    if (!registered.isEmpty()) {
        auto text = readRtfFile(registered);
        m_pendingNotice = text ? leftOutNotice(text->picturesLeftOut) : text.error().text;
        if (text) {
            m_fileName = registered;
            ui->RichTextBox1->setRichDocument(std::move(text->document));
            setOnlyShown(true);
        }
    }
    showFormat();
    ui->RichTextBox1->setFocus();
}

DialogMyCo::~DialogMyCo()
{
    // The box with the cursor loses the focus only in the base's destructor, after the controls are gone
    // here.
    ui->Text7->disconnect(this);
    ui->RichTextBox1->disconnect(this);
}

QList<DialogMyCo::ToolbarCommand> DialogMyCo::toolbarCommands()
{
    const ToolbarCommand separator;
    return {
        {u"新規作成"_s, QKeySequence::New, [this] { clearText(); }},
        {u"保存"_s, QKeySequence::Save, [this] { saveAs(); }},
        {u"開く"_s, QKeySequence::Open, [this] { open(); }},
        separator,
        {u"フォント"_s, {}, [this] { chooseFont(); }},
        {u"文字色"_s, {}, [this] { chooseColour(); }},
        separator,
        {u"太字"_s, QKeySequence::Bold, [this] { toggleBold(); }, &TextLook::bold},
        {u"斜体"_s, QKeySequence::Italic,
         [this] { toggle(&TextLook::italic, &QTextCharFormat::setFontItalic); }, &TextLook::italic},
        {u"下線"_s, QKeySequence::Underline,
         [this] { toggle(&TextLook::underline, &QTextCharFormat::setFontUnderline); }, &TextLook::underline},
        {u"取消線"_s,
         {},
         [this] { toggle(&TextLook::strikeOut, &QTextCharFormat::setFontStrikeOut); },
         &TextLook::strikeOut},
        separator,
        {u"左揃え"_s, Qt::CTRL | Qt::Key_L, [this] { align(Qt::AlignLeft); }},
        {u"中央揃え"_s, Qt::CTRL | Qt::Key_E, [this] { align(Qt::AlignHCenter); }},
        {u"右揃え"_s, Qt::CTRL | Qt::Key_R, [this] { align(Qt::AlignRight); }},
    };
}

void DialogMyCo::fillToolbar()
{
    const QList<ToolbarCommand> commands = toolbarCommands();
    for (const ToolbarCommand &command : commands) {
        if (command.key.isEmpty()) {
            ui->Toolbar1->addSeparator();
            continue;
        }
        QAction *action = ui->Toolbar1->addAction(richTextIcon(command.key, palette()), command.key);
        action->setObjectName(command.key);
        action->setShortcut(command.shortcut);
        const QString keys = command.shortcut.toString(QKeySequence::NativeText);
        action->setToolTip(keys.isEmpty() ? command.key : command.key + u" ("_s + keys + u')');
        connect(action, &QAction::triggered, this, command.run);
        if (command.state) {
            action->setCheckable(true);
            connect(
                this, &DialogMyCo::lookShown, action,
                [action, state = command.state](const TextLook &look) { action->setChecked(look.*state); });
        }
    }
    ui->Toolbar1->setMinimumWidth(ui->Toolbar1->sizeHint().width()); // no button hides behind an arrow
}

void DialogMyCo::connectControls()
{
    connect(ui->RichTextBox1, &QTextEdit::currentCharFormatChanged, this, &DialogMyCo::showFormat);
    connect(ui->RichTextBox1, &QTextEdit::selectionChanged, this, &DialogMyCo::showFormat);
    connect(ui->RichTextBox1, &RichTextEdit::attachmentWanted, this, &DialogMyCo::saveAttachedFile);
    connect(ui->Text7, &QLineEdit::editingFinished, this, &DialogMyCo::applySize);
    connect(ui->Command1, &QPushButton::clicked, this, &DialogMyCo::insertObject);
    connect(ui->Command2, &QPushButton::clicked, this, &DialogMyCo::saveAs);
    connect(ui->Command3, &QPushButton::clicked, this, &DialogMyCo::browse);
    connect(ui->cmdEdit, &QPushButton::clicked, this, [this] {
        setOnlyShown(false);
        ui->RichTextBox1->setFocus();
    });
    connect(new QShortcut(Qt::Key_F2, this), &QShortcut::activated, ui->cmdEdit, &QPushButton::click);
}

// The registered name is there to be read first: Enter and a slip of the hand change nothing on the papers.
void DialogMyCo::setOnlyShown(bool onlyShown)
{
    ui->RichTextBox1->setReadOnly(onlyShown);
    setReadOnly(ui->Text1, onlyShown);
    for (QWidget *part : std::initializer_list<QWidget *>{ui->Text7, ui->Text3, ui->Command1, ui->Command3})
        part->setEnabled(!onlyShown);
    const auto actions = ui->Toolbar1->actions();
    for (QAction *action : actions)
        action->setEnabled(!onlyShown || action->objectName() == u"新規作成" ||
                           action->objectName() == u"開く");
    ui->cmdEdit->setEnabled(onlyShown);
}

void DialogMyCo::becameActive()
{
    if (!m_pendingNotice.isEmpty())
        ui::prompts::inform(this, std::exchange(m_pendingNotice, {}));
}

bool DialogMyCo::mayClose()
{
    if (!mayLeaveText())
        return false;
    workspace().settings.write(workspace::keys::richTextFileName, ui->Text1->text());
    return true;
}

void DialogMyCo::clearText()
{
    if (!mayLeaveText())
        return;
    m_fileName.clear();
    setOnlyShown(false);
    ui->RichTextBox1->setRichDocument(std::make_unique<RichTextDocument>());
    showFormat();
}

void DialogMyCo::open()
{
    if (!mayLeaveText())
        return;
    const QString fileName =
        ui::file_dialogs::openFile(this, openTitle(), rtfFilter() + u";;"_s + allFilter());
    if (fileName.isEmpty() || !load(fileName))
        return;
    ui->Text1->setText(QDir::toNativeSeparators(fileName));
    setOnlyShown(false);
}

bool DialogMyCo::saveAs()
{
    const QString proposal = m_fileName.isEmpty() ? ui->Text1->text() : m_fileName;
    const QString fileName = ui::file_dialogs::saveFile(this, saveTitle(), rtfFilter(), u"rtf"_s, proposal);
    if (fileName.isEmpty() || !mayReplace(fileName) || !save(fileName))
        return false;
    ui->Text1->setText(QDir::toNativeSeparators(fileName));
    return true;
}

void DialogMyCo::chooseFont()
{
    if (!hasSelection())
        return;
    const auto font =
        ui::file_dialogs::chooseFont(this, formatOf(ui->RichTextBox1->look()).font(), u"フォント"_s);
    if (!font)
        return;
    QTextCharFormat chosen;
    chosen.setFontFamilies({font->family()});
    chosen.setFontPointSize(font->pointSizeF());
    chosen.setFontWeight(font->bold() ? QFont::Bold : QFont::Normal);
    chosen.setFontItalic(font->italic());
    chosen.setFontUnderline(font->underline());
    chosen.setFontStrikeOut(font->strikeOut());
    format(chosen);
}

void DialogMyCo::chooseColour()
{
    if (!hasSelection())
        return;
    if (const auto colour = ui::file_dialogs::chooseColor(this, Qt::blue, u"文字色"_s)) {
        QTextCharFormat chosen;
        chosen.setForeground(*colour);
        format(chosen);
    }
}

void DialogMyCo::toggle(bool TextLook::*state, void (QTextCharFormat::*set)(bool))
{
    if (!hasSelection())
        return;
    QTextCharFormat toggled;
    (toggled.*set)(!(ui->RichTextBox1->look().*state));
    format(toggled);
}

void DialogMyCo::toggleBold()
{
    if (!hasSelection())
        return;
    QTextCharFormat toggled;
    toggled.setFontWeight(ui->RichTextBox1->look().bold ? QFont::Normal : QFont::Bold);
    format(toggled);
}

void DialogMyCo::align(Qt::Alignment alignment)
{
    if (hasSelection())
        ui->RichTextBox1->setAlignment(alignment);
}

void DialogMyCo::applySize()
{
    if (!ui->Text7->isModified())
        return;
    const auto points = text::parseNumber(ui->Text7->text());
    if (!points || *points < limits::smallestPoints || *points > limits::largestPoints) {
        QApplication::beep();
    } else {
        QTextCharFormat sized;
        sized.setFontPointSize(std::round(*points * 2) / 2); // the file keeps half points
        ui->RichTextBox1->mergeCurrentCharFormat(sized);
    }
    showFormat();
}

void DialogMyCo::browse()
{
    const QString fileName =
        ui::file_dialogs::openFile(this, openTitle(), u"ﾜｰﾄﾞ形式のﾌｧｲﾙ (*.doc)"_s + u";;"_s + allFilter());
    if (!fileName.isEmpty())
        ui->Text3->setText(QDir::toNativeSeparators(fileName));
}

void DialogMyCo::insertObject()
{
    if (ui->Text3->text().isEmpty()) {
        ui::prompts::inform(this, u"挿入するファイルを「参照」で選んでください。"_s);
        ui->Text3->setFocus();
        return;
    }
    const auto image =
        embedFile(ui->RichTextBox1->richDocument(), QDir::fromNativeSeparators(ui->Text3->text()));
    if (!image) {
        ui::prompts::inform(this, image.error().text);
        return;
    }
    ui->RichTextBox1->insertEmbedded(*image);
    ui->RichTextBox1->setFocus();
}

void DialogMyCo::saveAttachedFile(const Attachment &attachment)
{
    const QString fileName =
        ui::file_dialogs::saveFile(this, u"添付ファイルを保存"_s, allFilter(),
                                   QFileInfo(attachment.fileName).suffix(), attachment.fileName);
    if (!fileName.isEmpty() && mayReplace(fileName))
        tell(saveAttachment(attachment, fileName));
}

// \return whether the text now is that of the file; on failure everything stays as it was
bool DialogMyCo::load(const QString &fileName)
{
    auto text = readRtfFile(fileName);
    if (!text) {
        ui::prompts::inform(this, text.error().text);
        return false;
    }
    m_fileName = fileName;
    const int leftOut = text->picturesLeftOut;
    ui->RichTextBox1->setRichDocument(std::move(text->document));
    showFormat();
    if (leftOut > 0)
        ui::prompts::inform(this, leftOutNotice(leftOut));
    return true;
}

bool DialogMyCo::save(const QString &fileName)
{
    if (!tell(saveRtfFile(ui->RichTextBox1->richDocument(), fileName)))
        return false;
    m_fileName = fileName;
    ui->RichTextBox1->richDocument().setModified(false);
    return true;
}

// \return whether the text may be given up: it is saved, or the user does not want it
bool DialogMyCo::mayLeaveText()
{
    if (!ui->RichTextBox1->richDocument().isModified())
        return true;
    switch (ui::prompts::askToSave(this, u"社名の変更が保存されていません。保存しますか。"_s)) {
    case ui::prompts::Choice::Save:
        return m_fileName.isEmpty() ? saveAs() : save(m_fileName);
    case ui::prompts::Choice::Discard:
        return true;
    case ui::prompts::Choice::Cancel:
        break;
    }
    return false;
}

bool DialogMyCo::mayReplace(const QString &fileName)
{
    if (workspace::isDatabase(workspace(), fileName)) {
        ui::prompts::inform(this, ui::messages::databaseTarget());
        return false;
    }
    const QFileInfo file(fileName);
    if (!file.exists() || file == QFileInfo(m_fileName))
        return true;
    return ui::prompts::askCautiously(this, u"「%1」は既にあります。置き換えますか。"_s.arg(file.fileName()));
}

bool DialogMyCo::hasSelection()
{
    if (ui->RichTextBox1->textCursor().hasSelection())
        return true;
    showFormat(); // the button that was pressed comes up again
    ui::prompts::inform(this, u"変更する文字を選択(反転)してください。"_s, u"入力事項の確認"_s,
                        ui::prompts::Icon::Exclamation);
    return false;
}

void DialogMyCo::format(const QTextCharFormat &format)
{
    ui->RichTextBox1->mergeCurrentCharFormat(format);
    showFormat();
}

void DialogMyCo::showFormat()
{
    const TextLook look = ui->RichTextBox1->look();
    ui->Text7->setText(text::formatPlain(look.points));
    emit lookShown(look);
}

} // namespace masters
