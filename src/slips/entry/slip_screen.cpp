#include "slips/entry/slip_screen.h"

#include "book/counterpart_name.h"
#include "book/numbering.h"
#include "registers/last_counterparts.h"
#include "slips/tax_rates_of.h"
#include "ui/date_box.h"
#include "ui/grid.h"
#include "ui/leave_watch.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace slips
{

void setWidths(ui::Grid *grid, const std::vector<int> &pixels)
{
    int column = 0;
    for (const int width : pixels) {
        grid->setColumnHidden(column, width == 0);
        grid->setColumnWidth(column++, width);
    }
}

SlipScreen::SlipScreen(workspace::Workspace &workspace, QWidget *parent, SlipDescription description)
    : Screen(workspace, parent)
    , m_description(std::move(description))
    , m_found(workspace.connection)
{}

void SlipScreen::setUpSlip(SlipControls controls)
{
    m_controls = std::move(controls);
    m_controls.counterpart->hide();
    tell(book::openCounterpart(m_found, m_description.search, 0));
    m_controls.found->bind(m_found, [this](const QString &refusal) { ui::prompts::inform(this, refusal); });
    setWidths(m_controls.found, m_description.foundWidths);
    m_controls.date->setDate(workspace().today());
    if (workspace().panel.automaticNumbers) {
        m_controls.number->setReadOnly(true);
        m_controls.number->setFocusPolicy(Qt::NoFocus);
    }
    setUpLines();
    connectControls();
    clearForNext({});
    enter(SlipState::NoHeader);
    setUp();
}

void SlipScreen::connectControls()
{
    const auto press = [this](QPushButton *button, void (SlipScreen::*action)()) {
        connect(button, &QPushButton::clicked, this, action);
    };
    press(m_controls.search, &SlipScreen::search);
    press(m_controls.save, &SlipScreen::saveHeader);
    press(m_controls.next, &SlipScreen::next);
    press(m_controls.cancel, &SlipScreen::cancelSlip);
    if (m_controls.newCounterpart)
        press(m_controls.newCounterpart, &SlipScreen::editNewCounterpart);
    connect(&m_found, &db::Recordset::currentRowChanged, this, &SlipScreen::showCounterpart);
    if (!workspace().panel.automaticNumbers)
        connect(new ui::LeaveWatch(m_controls.number), &ui::LeaveWatch::left, this, &SlipScreen::checkNumber);
}

qint64 SlipScreen::counterpart() const { return m_controls.counterpart->text().toLongLong(); }

QDate SlipScreen::date() const { return m_controls.date->date(); }

// --- The header ---

void SlipScreen::search()
{
    if (m_controls.key->text().trimmed().isEmpty()) {
        ui::prompts::inform(this, ui::messages::searchEmpty());
        m_controls.key->setFocus();
        return;
    }
    if (!tell(book::searchCounterparts(m_found, m_description.search, m_controls.key->text())))
        return;
    if (!m_found.isEmpty()) {
        if (m_found.count() == 1) // needs no choosing
            goOnWithHeader();
        else
            m_controls.found->setFocus();
        return;
    }
    m_controls.key->setFocus();
    if (ui::prompts::ask(this, QString::fromUtf16(m_description.nothingFound)))
        editNewCounterpart();
}

void SlipScreen::editNewCounterpart()
{
    const qint64 saved = m_counterpartEditor ? m_counterpartEditor(this) : 0;
    if (saved > 0 && tell(book::openCounterpart(m_found, m_description.search, saved)))
        goOnWithHeader();
}

void SlipScreen::beginFor(qint64 counterpart)
{
    if (tell(book::openCounterpart(m_found, m_description.search, counterpart)))
        goOnWithHeader();
}

void SlipScreen::goOnWithHeader()
{
    if (m_controls.number->isReadOnly())
        m_controls.date->setFocus();
    else
        m_controls.number->setFocus();
}

void SlipScreen::showCounterpart()
{
    const bool chosen = m_found.currentRow() >= 0;
    m_controls.counterpart->setText(chosen ? QString::number(m_found.currentKey()) : QString());
    for (const HeaderField &field : m_controls.fields) {
        field.box->setText(m_found.text(QString::fromUtf16(field.column)));
        field.box->setCursorPosition(0);
    }
    counterpartShown(chosen);
    if (chosen) {
        registers::rememberCounterpart(workspace(), m_description.search.party, counterpart());
        say({});
        enter(SlipState::NoHeader);
    }
}

void SlipScreen::checkNumber()
{
    const auto checked = book::checkManualNumber(workspace().connection, m_controls.number->text(),
                                                 m_description.manualLetter);
    if (checked)
        return;
    m_controls.number->setFocus();
    tellOfNumber(checked.error());
}

void SlipScreen::tellOfNumber(const base::Error &error)
{
    const bool isWrong = error.text == book::wrongNumber();
    ui::prompts::inform(this, error.text, QString::fromUtf16(ui::prompts::information),
                        ui::prompts::Icon::Information,
                        isWrong ? book::letterRemark(m_description.manualLetter) : QString());
}

// What \a slip is in the books as one of \a kind: its counterpart's key may be somebody's in the other
// register, or nobody's.
base::Result<QString> SlipScreen::slipAs(const book::SlipKind &kind, const book::NewSlip &slip)
{
    const QString party = book::tableOf(kind.party);
    const auto name = book::nameOfCounterpart(workspace().connection, kind.party, slip.counterpart);
    if (!name)
        return name;
    if (book::isUnknownCounterpartName(*name))
        return u"どの%1のものでもない%2（ID %3 の%1は登録されていません）"_s.arg(
            party, nameOf(kind), QString::number(slip.counterpart));
    return u"%1「%2」（ID %3）の%4"_s.arg(party, *name, QString::number(slip.counterpart), nameOf(kind));
}

// The books go by the letter, whatever screen a slip was entered on.
bool SlipScreen::mayBearNumber(const book::NewSlip &slip)
{
    const auto kind = slip.manualNumber ? book::kindOf(*slip.manualNumber) : std::nullopt;
    // One that is refused is not asked about.
    if (!kind || *kind == slip.kind || slip.counterpart == 0 ||
        !book::checkManualNumber(workspace().connection, *slip.manualNumber, slip.manualLetter))
        return true;
    const auto whose = slipAs(*kind, slip);
    if (!tell(whose.status()))
        return false;
    if (ui::prompts::askCautiously(
            this,
            u"伝票番号「%1」の最初の文字は%2を表すため、この伝票は%3ではなく、%4として数えられます。"
            "このまま保存しますか。"_s.arg(slip.manualNumber->left(30), nameOf(*kind), nameOf(slip.kind),
                                           *whose),
            u"番号を自動で付けると、%1の伝票になります（メイン画面の「伝票番号を自動で設定」）。"_s.arg(
                nameOf(slip.kind))))
        return true;
    m_controls.number->setFocus();
    return false;
}

void SlipScreen::saveHeader()
{
    m_found.refresh(); // another program may have given the counterpart another class of tax
    const workspace::Panel &panel = workspace().panel;
    const auto rate = slipRateOf(workspace(), m_controls.date->date());
    if (!tell(rate.status()))
        return;
    book::NewSlip slip;
    slip.kind = m_description.kind;
    slip.date = m_controls.date->date();
    slip.counterpart = counterpart();
    slip.employee = panel.employeeId;
    slip.taxRate = *rate;
    slip.inclusive = pricesIncludeTax();
    slip.infix = panel.numberInfix;
    if (!panel.automaticNumbers)
        slip.manualNumber = m_controls.number->text();
    slip.manualLetter = m_description.manualLetter;
    if (m_description.stampsCounterpart)
        slip.stamp = workspace().today();

    if (!mayBearNumber(slip))
        return;
    const auto saved = book::saveHeader(workspace().connection, slip);
    if (!saved) {
        if (slip.counterpart == 0 || saved.error().gone)
            m_controls.key->setFocus();
        else if (!book::isSlipDate(slip.date))
            m_controls.date->setFocus();
        else if (slip.manualNumber)
            m_controls.number->setFocus();
        tellOfNumber(saved.error());
        return;
    }
    m_header = *saved;
    m_controls.number->setText(m_header.number);
    beginLines();
    enter(SlipState::HeaderSaved);
    focusLine();
}

void SlipScreen::say(const QString &text) { m_controls.message->setText(text); }

// --- The end of a slip ---

bool SlipScreen::mayPassOverLine()
{
    if (!lineIsTyped() || ui::prompts::askCautiously(
                              this, u"入力途中の明細は、まだ伝票に入っていません。入れずに進みますか。"_s))
        return true;
    focusLine();
    return false;
}

void SlipScreen::next()
{
    if (!mayPassOverLine() || !storeRemark())
        return;
    const auto closed = closeSlip();
    if (!closed) {
        tellOfSlip(closed.error());
        return;
    }
    slipEnds();
    leaveSlip(*closed);
}

void SlipScreen::cancelSlip()
{
    if (ui::prompts::askCautiously(this, ui::messages::deleteQuestion(), cancelRemark()))
        deleteSlip();
}

bool SlipScreen::deleteSlip()
{
    db::Connection &connection = workspace().connection;
    const base::Status deleted =
        book::onSlip(connection, m_header, [&] { return book::deleteSlip(connection, m_header.id); });
    if (deleted)
        leaveSlip(u"伝票 %1 を取り消しました。"_s.arg(m_header.number));
    else
        tellOfSlip(deleted.error());
    return bool(deleted);
}

bool SlipScreen::storeLine(const std::function<base::Status(db::Connection &)> &add)
{
    db::Connection &connection = workspace().connection;
    const base::Status stored = book::onSlip(connection, m_header, [&] { return add(connection); });
    if (!stored)
        tellOfSlip(stored.error());
    return bool(stored);
}

std::optional<bool> SlipScreen::takeLineBack(int lines)
{
    db::Connection &connection = workspace().connection;
    const auto removed = book::onSlip(connection, m_header, [&]() -> base::Result<bool> {
        base::Result<bool> last = false;
        for (int line = 0; last && line < lines; ++line)
            last = book::removeLastLine(connection, m_header.id);
        return last;
    });
    if (removed)
        return *removed;
    tellOfSlip(removed.error());
    return std::nullopt;
}

void SlipScreen::tellOfSlip(const base::Error &error)
{
    ui::prompts::inform(this, error.text);
    if (error.gone)
        leaveSlip(u"伝票 %1 は削除されています。"_s.arg(m_header.number));
}

void SlipScreen::leaveSlip(const QString &message)
{
    clearForNext(message);
    enter(SlipState::Closed);
    m_controls.key->setFocus();
}

void SlipScreen::clearForNext(const QString &message)
{
    tell(book::openCounterpart(m_found, m_description.search, 0));
    m_header = {};
    clearLines();
    m_controls.key->clear();
    m_controls.number->setText(workspace().panel.automaticNumbers ? QString(QChar(m_description.kind.letter))
                                                                  : QString());
    m_controls.date->markAllBut(workspace().today());
    say(message + (message.isEmpty() ? QString() : dateRemark()));
}

// A pile of slips of one day is entered without typing its date each time; that it stays is said.
QString SlipScreen::dateRemark() const
{
    return date() == workspace().today()
               ? QString()
               : u"　日付は %1 のままです（今日ではありません）。"_s.arg(date().toString(u"yyyy/MM/dd"_s));
}

void SlipScreen::enter(SlipState state)
{
    m_state = state;
    const auto set = [state](QWidget *control, const ControlLife &life) {
        control->setEnabled(isUsable(life, state));
    };
    set(m_controls.header, headerLife);
    set(m_controls.lines, linesLife);
    set(m_controls.addLine, linesLife);
    set(m_controls.removeLine, linesLife);
    for (QPushButton *button : {m_controls.next, m_controls.cancel, m_controls.print})
        if (button)
            set(button, finishingLife);
}

// Leaving is no command of its own: Esc is pressed to get out of a list or a box, and once too often.
bool SlipScreen::mayClose()
{
    if (m_state != SlipState::HeaderSaved && m_state != SlipState::LinesPresent)
        return true;
    if (!mayPassOverLine() || !storeRemark())
        return false;
    return lineCount() > 0 ? leaveWithLines() : leaveWithoutLines();
}

bool SlipScreen::leaveWithLines()
{
    const QString text =
        taxIsDue() ? u"伝票 %1 はまだ閉じられておらず、消費税が計上されていません。画面を閉じますか。"_s
                   : u"伝票 %1 はまだ閉じられていません。画面を閉じますか。"_s;
    const ui::prompts::Ways ways =
        taxIsDue() ? ui::prompts::Ways{u"計上して閉じる(&S)"_s, u"計上せず閉じる(&D)"_s}
                   : ui::prompts::Ways{u"伝票を閉じる(&S)"_s, u"伝票を閉じずに残す(&D)"_s};
    switch (ui::prompts::askHowToLeave(this, text.arg(m_header.number), ways)) {
    case ui::prompts::Choice::Save:
        break;
    case ui::prompts::Choice::Discard:
        slipEnds();
        return true;
    case ui::prompts::Choice::Cancel:
        focusLine();
        return false;
    }
    const auto closed = closeSlip();
    if (closed)
        slipEnds();
    else
        tellOfSlip(closed.error());
    return bool(closed);
}

// The way out for a customer who was confirmed by mistake: no line can be cancelled yet.
bool SlipScreen::leaveWithoutLines()
{
    switch (ui::prompts::askHowToLeave(
        this, u"伝票 %1 には明細がありません。伝票を取り消しますか。"_s.arg(m_header.number),
        {u"伝票を取り消す(&D)"_s, u"伝票を残して閉じる(&L)"_s, true})) {
    case ui::prompts::Choice::Save:
        deleteSlip();
        return false; // the next one is entered here, for the right customer
    case ui::prompts::Choice::Discard:
        return true;
    case ui::prompts::Choice::Cancel:
        focusLine();
        break;
    }
    return false;
}

} // namespace slips
