#include "registers/register_screen.h"

#include "registers/counterpart.h"
#include "registers/duplicates/DialogNameless.h"
#include "registers/duplicates/nameless_hint.h"
#include "registers/last_counterparts.h"
#include "registers/lists/customer_deletion.h"
#include "text/numbers.h"
#include "ui/both_versions.h"
#include "ui/grid.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui/width_check.h"
#include "workspace/workspace.h"

#include <QLabel>
#include <QPushButton>

#include <utility>

using namespace Qt::StringLiterals;

namespace registers
{

RegisterScreen::RegisterScreen(workspace::Workspace &workspace, const QString &entryOpen, QWidget *parent)
    : ui::Screen(workspace, parent)
    , m_rows(workspace.connection)
    , m_entryOpen(entryOpen)
{}

void RegisterScreen::bindList(ui::Grid *list, QLabel *count)
{
    m_count = count;
    m_rows.setSaver([this] {
        const auto failure = trySave();
        return failure ? base::Status(base::Error{failure->text}) : base::Status();
    });
    list->bind(m_rows, [this](const QString &) { tellFailure(); });
    connect(&m_rows, &db::Recordset::currentRowChanged, this, &RegisterScreen::followRow);
    connect(list, &ui::Grid::wentTo, this, &RegisterScreen::rememberRow);
    connect(&m_rows, &db::Recordset::extended, this, [this] { m_count->setText(countText()); });
}

void RegisterScreen::bindUndo(QPushButton *undo)
{
    m_undo = undo;
    connect(&m_rows, &db::Recordset::edited, this, &RegisterScreen::showUndo);
    connect(undo, &QPushButton::clicked, this, [this] {
        forgetBoxes();
        takeBack();
        showRow();
        showUndo();
    });
}

void RegisterScreen::bindNameless(QPushButton *button, book::Party party)
{
    m_nameless = new NamelessHint(button, workspace().connection, party);
    connect(button, &QPushButton::clicked, this, [this, party] { careForNameless(party); });
}

// --- Opening and closing ---

bool RegisterScreen::opened(const base::Status &opened)
{
    m_opened = true;
    rememberRow();
    return tell(opened);
}

void RegisterScreen::showEvent(QShowEvent *event)
{
    if (!m_opened)
        tell(openRows());
    m_opened = true;
    ui::Screen::showEvent(event);
    countNameless();
    // Once the screen stands, so that a message has a window behind it.
    if (m_startsNew)
        QMetaObject::invokeMethod(this, &RegisterScreen::add, Qt::QueuedConnection);
    m_startsNew = false;
}

// A new row is stored from the start, so giving up what was typed leaves it with what it started with; the
// clerk finds it in the list and fills it in later.
bool RegisterScreen::mayClose()
{
    if (!m_rows.isDirty())
        return true;
    switch (ui::prompts::askToSave(
        this, m_mode == Mode::Entry ? m_entryOpen : u"変更が保存されていません。保存しますか？"_s)) {
    case ui::prompts::Choice::Save:
        return (m_mode != Mode::Entry || mayHaveTwin()) && save();
    case ui::prompts::Choice::Discard:
        m_rows.revert();
        return true;
    case ui::prompts::Choice::Cancel:
        break;
    }
    return false;
}

// --- The row ---

bool RegisterScreen::mayHaveTwin()
{
    settleBoxes();
    // What cannot be looked for is no reason to refuse a row.
    const auto twin = twinOf(workspace().connection, m_rows);
    return !twin || twin->isEmpty() ||
           ui::prompts::askCautiously(
               this, u"同じ名前と電話番号の%1が登録されています。\n%2\n別の%1として登録しますか？"_s.arg(
                         m_rows.table(), *twin));
}

void RegisterScreen::saveAndBrowse()
{
    const bool wasEntry = m_mode == Mode::Entry;
    if ((wasEntry && !mayHaveTwin()) || !save())
        return;
    setMode(Mode::Browsing);
    if (wasEntry)
        entryEnded();
}

void RegisterScreen::cancelEntry()
{
    if (!deleteShown())
        return;
    setMode(Mode::Browsing);
    entryEnded();
}

void RegisterScreen::removeRow()
{
    if (m_rows.isEmpty() ||
        !ui::prompts::askCautiously(this, ui::messages::deleteQuestion(), removalRemark()))
        return;
    if (deleteShown())
        setMode(Mode::Browsing);
}

// The list goes to another row by itself then.
bool RegisterScreen::deleteShown()
{
    const qint64 key = m_rows.currentKey();
    const LastCounterparts before = lastCounterparts(workspace());
    if (!tell(m_rows.remove()))
        return false;
    workspace().keep(before);
    forgetCounterpart(workspace(), party(), key);
    return true;
}

// Which one goes. Nothing is said of slips where there are none, or where they cannot be counted; the
// deleting tells why.
QString RegisterScreen::removalRemark() const
{
    const QString name = m_rows.text(m_rows.table() + u"名1"_s).trimmed();
    const QString who = u"削除する%1： %2　%3"_s.arg(m_rows.table(), QString::number(m_rows.currentKey()),
                                                     name.isEmpty() ? u"（名前なし）"_s : name);
    const auto left = slipsLeftBy(workspace().connection, m_rows.table(), m_rows.currentKey());
    if (!left || *left == 0)
        return who;
    return who + u"\nこの%1には伝票が %2 件あります。伝票は残りますが、%1の名前は分からなくなります。"_s.arg(
                     m_rows.table(), text::formatAmount(static_cast<double>(*left)));
}

std::optional<RegisterScreen::Failure> RegisterScreen::trySave()
{
    const QString title = u"更新"_s;
    settleBoxes();
    m_failure = refusal();
    if (m_failure)
        return m_failure;
    if (const auto tooWide = ui::WidthCheck::refusal(this)) {
        m_failure = Failure{*tooWide, QString::fromUtf16(ui::prompts::errorCheck), {}};
        return m_failure;
    }
    const qint64 key = m_rows.currentKey();
    const base::Status stored = ui::saveBesideOthers(
        this, {&m_rows}, [this] { return store(); },
        [this](const QString &column, const QVariant &value) { return wordsFor(column, value); });
    if (stored) {
        m_savedKey = key;
        rememberRow();
        if (m_mode == Mode::Browsing)
            countNameless();
    } else {
        m_failure = Failure{stored.error().text, title, {}};
    }
    showRow();
    showUndo();
    return m_failure;
}

bool RegisterScreen::save()
{
    const bool saved = !trySave();
    if (!saved)
        tellFailure();
    return saved;
}

bool RegisterScreen::openRowsAt(qint64 key)
{
    return tell(openRows()) && tell(m_rows.moveToKey(key)) && m_rows.currentKey() == key;
}

bool RegisterScreen::leaveRow() { return !m_rows.isDirty() || save(); }

void RegisterScreen::tellFailure()
{
    if (!m_failure || m_failure->text.isEmpty())
        return;
    ui::prompts::inform(this, m_failure->text, m_failure->title);
    focusColumn(m_failure->column);
}

// --- Rows without a name ---

void RegisterScreen::careForNameless(book::Party party)
{
    if (!leaveRow())
        return;
    const qint64 before = m_rows.currentKey();
    DialogNameless dialog(workspace(), party, this);
    dialog.exec();
    if (!dialog.chosen()) {
        tell(m_rows.requery());
    } else if (openRowsAt(*dialog.chosen())) {
        focusColumn(m_rows.table() + u"名1"_s);
    } else {
        tell(m_rows.moveToKey(before));
        ui::prompts::inform(this, u"選んだ行は、ほかのパソコンで削除されています。"_s);
    }
    countNameless();
}

void RegisterScreen::countNameless()
{
    if (m_nameless)
        m_nameless->countAnew();
}

// --- States ---

// The same row read anew leaves what was typed into the boxes to be looked after.
void RegisterScreen::followRow()
{
    const qint64 key = m_rows.currentKey();
    const qint64 before = std::exchange(m_shownKey, key);
    if (before != key)
        forgetBoxes();
    showStates();
}

book::Party RegisterScreen::party() const
{
    return m_rows.table() == u"納品先"_s ? book::Party::Customer : book::Party::Supplier;
}

// Whom the clerk dealt with last: the row that was gone to, asked for or saved. The first one of a list
// stands there by itself.
void RegisterScreen::rememberRow() { rememberCounterpart(workspace(), party(), m_rows.currentKey()); }

void RegisterScreen::setMode(Mode mode)
{
    m_mode = mode;
    showStates();
    // A row that is being entered has no name yet.
    if (mode == Mode::Browsing)
        countNameless();
}

void RegisterScreen::showStates()
{
    for (const State &state : states()) {
        const bool whileBrowsing = m_rows.isEmpty() ? state.withoutRow : state.browsing;
        state.control->setEnabled(m_mode == Mode::Entry ? state.entry : whileBrowsing);
    }
    m_count->setText(countText());
    showUndo();
}

// A new row is given up as a whole.
void RegisterScreen::showUndo() { m_undo->setEnabled(m_mode == Mode::Browsing && canTakeBack()); }

QString RegisterScreen::countText() const
{
    return text::formatAmount(m_rows.count()) + (m_rows.isComplete() ? u" 件"_s : u" 件以上"_s);
}

} // namespace registers
