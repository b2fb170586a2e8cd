#include "ui/prompts.h"

#include "ui/messages.h"

#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QQueue>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace ui::prompts
{

namespace
{

enum class Kind { Inform, Ask, AskCautiously, AskToSave, AskToGoBack, AskWhichVersion, AskWhichWay };

struct Expected
{
    Kind kind;
    QString text;
    int answer;
    QString remark = {};
    QString way = {}; // of AskWhichWay, without the mark of its letter
    std::function<void()> meanwhile = {};
};

struct Script
{
    bool running = false;
    QQueue<Expected> expected;
    QStringList unexpected;
};

// The one place where a test reaches into the program; a message box has no other owner to ask.
Script &script()
{
    static Script theScript;
    return theScript;
}

// A test that only answers a question need not know which answer is preset.
bool fits(Kind expected, Kind kind)
{
    return expected == kind || (expected == Kind::Ask && kind == Kind::AskCautiously) ||
           (expected == Kind::AskToSave && kind == Kind::AskToGoBack);
}

bool remarkFits(const QString &expected, const QString &remark)
{
    return expected == anyRemark ? !remark.isEmpty() : expected == remark;
}

Expected taken(Script &s)
{
    Expected expected = s.expected.dequeue();
    if (expected.meanwhile)
        expected.meanwhile();
    return expected;
}

// \return the scripted answer; for a box that nobody expected the harmless one
int scripted(Kind kind, const QString &text, int harmless, const QString &remark = {})
{
    Script &s = script();
    if (s.expected.isEmpty() || !fits(s.expected.head().kind, kind) ||
        (!s.expected.head().text.isEmpty() &&
         (s.expected.head().text != text || !remarkFits(s.expected.head().remark, remark)))) {
        s.unexpected << u"unexpected box: "_s + text + remark;
        return harmless;
    }
    return taken(s).answer;
}

QMessageBox::Icon iconOf(Icon icon)
{
    switch (icon) {
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::Exclamation:
        return QMessageBox::Warning;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButton show(QWidget *parent, const QString &text, const QString &title, Icon icon,
                                 QMessageBox::StandardButtons buttons, QMessageBox::StandardButton preset,
                                 const QString &remark = {})
{
    QMessageBox box(iconOf(icon), title, text, buttons, parent);
    box.setInformativeText(remark);
    // Names and file names stand in the texts; they are shown as they are.
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(preset);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

} // namespace

void inform(QWidget *parent, const QString &text, const QString &title, Icon icon, const QString &remark)
{
    if (script().running)
        scripted(Kind::Inform, text, 0, remark);
    else
        show(parent, text, title, icon, QMessageBox::Ok, QMessageBox::Ok, remark);
}

bool ask(QWidget *parent, const QString &text, const QString &title, const QString &remark)
{
    if (script().running)
        return scripted(Kind::Ask, text, 0, remark) != 0;
    return show(parent, text, title, Icon::Question, QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes,
                remark) == QMessageBox::Yes;
}

bool askToOverwrite(QWidget *parent, const QString &fileName, const QString &kept)
{
    const QString text = u"指定した名前のファイルが存在します。\n上書きしますか？"_s;
    if (!QFileInfo::exists(fileName))
        return true;
    return kept.isEmpty() ? ask(parent, text) : askCautiously(parent, text, messages::keptUnder(kept));
}

bool askCautiously(QWidget *parent, const QString &text, const QString &remark)
{
    if (script().running)
        return scripted(Kind::AskCautiously, text, 0, remark) != 0;
    return show(parent, text, QString::fromUtf16(question), Icon::Question,
                QMessageBox::Yes | QMessageBox::No, QMessageBox::No, remark) == QMessageBox::Yes;
}

Choice askToSave(QWidget *parent, const QString &text, const QString &title)
{
    if (script().running)
        return static_cast<Choice>(scripted(Kind::AskToSave, text, static_cast<int>(Choice::Cancel)));
    switch (show(parent, text, title, Icon::Question,
                 QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save)) {
    case QMessageBox::Save:
        return Choice::Save;
    case QMessageBox::Discard:
        return Choice::Discard;
    default:
        return Choice::Cancel;
    }
}

Version askWhichVersion(QWidget *parent, const QString &text)
{
    if (script().running)
        return static_cast<Version>(
            scripted(Kind::AskWhichVersion, text, static_cast<int>(Version::Undecided)));
    QMessageBox box(QMessageBox::Question, QString::fromUtf16(question), text, QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    const auto *mine = box.addButton(u"自分の入力を保存(&S)"_s, QMessageBox::AcceptRole);
    const auto *theirs = box.addButton(u"ほかの変更を残す(&T)"_s, QMessageBox::DestructiveRole);
    QPushButton *back = box.addButton(u"編集に戻る(&B)"_s, QMessageBox::RejectRole);
    box.setDefaultButton(back);
    box.setEscapeButton(back);
    box.exec();
    if (box.clickedButton() == mine)
        return Version::Mine;
    return box.clickedButton() == theirs ? Version::Theirs : Version::Undecided;
}

Choice askHowToLeave(QWidget *parent, const QString &text, const Ways &ways, const QString &remark)
{
    const Kind kind = ways.goesBackByItself ? Kind::AskToGoBack : Kind::AskToSave;
    if (script().running)
        return static_cast<Choice>(scripted(kind, text, static_cast<int>(Choice::Cancel), remark));
    QMessageBox box(QMessageBox::Question, QString::fromUtf16(question), text, QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(remark);
    QPushButton *save = box.addButton(ways.save, QMessageBox::AcceptRole);
    QPushButton *discard = box.addButton(ways.discard, QMessageBox::DestructiveRole);
    QPushButton *back = box.addButton(u"戻る(&B)"_s, QMessageBox::RejectRole);
    box.setDefaultButton(ways.goesBackByItself ? back : save);
    box.setEscapeButton(back);
    box.exec();
    if (box.clickedButton() == save)
        return Choice::Save;
    return box.clickedButton() == discard ? Choice::Discard : Choice::Cancel;
}

namespace
{

// Nothing goes back, which is harmless where nobody expected the question.
std::optional<qsizetype> scriptedWay(const QString &text, const QStringList &ways, const QString &remark)
{
    Script &s = script();
    const Expected expected = s.expected.isEmpty() ? Expected{} : s.expected.head();
    const bool fitsText = expected.kind == Kind::AskWhichWay &&
                          (expected.text.isEmpty() || expected.text == text) &&
                          (expected.remark.isEmpty() || expected.remark == remark);
    const auto way = std::ranges::find_if(
        ways, [&](const QString &caption) { return caption.section(u'(', 0, 0) == expected.way; });
    if (!fitsText || (way == ways.end() && !expected.way.isEmpty())) {
        s.unexpected << u"unexpected box: "_s + text + remark + ways.join(u' ');
        return std::nullopt;
    }
    taken(s);
    return way == ways.end() ? std::nullopt : std::optional(way - ways.begin());
}

} // namespace

std::optional<qsizetype> askWhichWay(QWidget *parent, const QString &text, const QStringList &ways,
                                     const QString &remark)
{
    if (script().running)
        return scriptedWay(text, ways, remark);
    QMessageBox box(QMessageBox::Question, QString::fromUtf16(question), text, QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(remark);
    QList<QAbstractButton *> buttons;
    for (const QString &way : ways)
        buttons << box.addButton(way, QMessageBox::ActionRole);
    QPushButton *back = box.addButton(u"戻る(&B)"_s, QMessageBox::RejectRole);
    box.setDefaultButton(back);
    box.setEscapeButton(back);
    box.exec();
    const qsizetype chosen = buttons.indexOf(box.clickedButton());
    return chosen < 0 ? std::nullopt : std::optional(chosen);
}

void beginScript() { script().running = true; }

void expectInform(const QString &text, const QString &remark)
{
    script().expected.enqueue({Kind::Inform, text, 0, remark});
}

void expectAsk(const QString &text, bool yes, const QString &remark)
{
    script().expected.enqueue({Kind::Ask, text, yes ? 1 : 0, remark});
}

void expectAskCautiously(const QString &text, bool yes, const QString &remark)
{
    script().expected.enqueue({Kind::AskCautiously, text, yes ? 1 : 0, remark});
}

void expectAskToSave(const QString &text, Choice choice)
{
    script().expected.enqueue({Kind::AskToSave, text, static_cast<int>(choice)});
}

void expectAskWhichVersion(const QString &text, Version version)
{
    script().expected.enqueue({Kind::AskWhichVersion, text, static_cast<int>(version)});
}

void expectAskHowToLeave(const QString &text, Choice choice, Choice preset)
{
    const Kind kind = preset == Choice::Cancel ? Kind::AskToGoBack : Kind::AskToSave;
    script().expected.enqueue({kind, text, static_cast<int>(choice)});
}

void expectAskWhichWay(const QString &text, const QString &way, const QString &remark)
{
    script().expected.enqueue({Kind::AskWhichWay, text, 0, remark, way});
}

void meanwhile(const std::function<void()> &action) { script().expected.last().meanwhile = action; }

QString takeUnexpected()
{
    Script &s = script();
    for (const Expected &expected : std::as_const(s.expected))
        s.unexpected << u"box that never came: "_s + expected.text;
    s.expected.clear();
    const QString all = s.unexpected.join(u'\n');
    s.unexpected.clear();
    return all;
}

} // namespace ui::prompts
