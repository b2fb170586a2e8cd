#include "slips/entry/slip_screen.h"

#include "book/numbering.h"
#include "ui/grid.h"
#include "ui/leave_watch.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "workspace/workspace.h"

#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

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

void SlipScreen::setUpSlip()
{
    findControls();
    tell(book::openCounterpart(m_found, m_description.search, 0));
    m_foundGrid->bind(m_found, [this](const QString &refusal) { ui::prompts::inform(this, refusal); });
    setWidths(m_foundGrid, m_description.foundWidths);
    m_date->setDate(workspace().today());
    if (workspace().panel.automaticNumbers) {
        m_number->setReadOnly(true);
        m_number->setFocusPolicy(Qt::NoFocus);
    }
    setUpLines();
    connectControls();
    clearForNext({});
    enter(SlipState::NoHeader);
    setUp();
}

void SlipScreen::findControls()
{
    const auto line = [this](QStringView name) { return findChild<QLineEdit *>(name.toString()); };
    m_key = line(u"txtKey1");
    m_counterpart = line(u"Text1");
    m_counterpart->hide();
    m_number = line(u"txtDenNo");
    m_date = findChild<QDateEdit *>(u"DTPicker1"_s);
    m_message = findChild<QLabel *>(u"lblMessage"_s);
    m_foundGrid = findChild<ui::Grid *>(u"DataGrid1"_s);
    for (const HeaderField &field : m_description.fields)
        m_fields.push_back(line(field.control));
    for (const ControlLife &life : controlLives) {
        if (auto *control = findChild<QWidget *>(QString::fromUtf16(life.control)))
            m_lives.emplace_back(control, &life);
    }
}

void SlipScreen::connectControls()
{
    const auto press = [this](QStringView name, void (SlipScreen::*action)()) {
        connect(findChild<QPushButton *>(name.toString()), &QPushButton::clicked, this, action);
    };
    press(u"Command1", &SlipScreen::search);
    press(u"cmdMasterUpdate", &SlipScreen::saveHeader);
    press(u"cmdNext", &SlipScreen::next);
    press(u"cmdMasterCancel", &SlipScreen::cancelSlip);
    if (auto *newCounterpart = findChild<QPushButton *>(u"Command4"_s))
        connect(newCounterpart, &QPushButton::clicked, this, &SlipScreen::editNewCounterpart);
    connect(&m_found, &db::Recordset::currentRowChanged, this, &SlipScreen::showCounterpart);
    if (!workspace().panel.automaticNumbers)
        connect(new ui::LeaveWatch(m_number), &ui::LeaveWatch::left, this, &SlipScreen::checkNumber);
}

qint64 SlipScreen::counterpart() const { return m_counterpart->text().toLongLong(); }

QDate SlipScreen::date() const { return m_date->date(); }

// --- The header ---

void SlipScreen::search()
{
    if (m_key->text().trimmed().isEmpty()) {
        ui::prompts::inform(this, ui::messages::searchEmpty());
        m_key->setFocus();
        return;
    }
    if (!tell(book::searchCounterparts(m_found, m_description.search, m_key->text())))
        return;
    if (!m_found.isEmpty()) {
        if (m_found.count() == 1) // needs no choosing
            goOnWithHeader();
        else
            m_foundGrid->setFocus();
        return;
    }
    m_key->setFocus();
    if (ui::prompts::ask(this, QString::fromUtf16(m_description.nothingFound)))
        editNewCounterpart();
}

void SlipScreen::editNewCounterpart()
{
    const qint64 saved = m_counterpartEditor ? m_counterpartEditor(this) : 0;
    if (saved > 0 && tell(book::openCounterpart(m_found, m_description.search, saved)))
        goOnWithHeader();
}

void SlipScreen::goOnWithHeader()
{
    if (m_number->isReadOnly())
        m_date->setFocus();
    else
        m_number->setFocus();
}

void SlipScreen::showCounterpart()
{
    const bool chosen = m_found.currentRow() >= 0;
    m_counterpart->setText(chosen ? QString::number(m_found.currentKey()) : QString());
    for (std::size_t field = 0; field < m_fields.size(); ++field) {
        m_fields[field]->setText(m_found.text(QString::fromUtf16(m_description.fields[field].column)));
        m_fields[field]->setCursorPosition(0);
    }
    counterpartShown(chosen);
    if (chosen) {
        say({});
        enter(SlipState::NoHeader);
    }
}

void SlipScreen::checkNumber()
{
    const auto checked =
        book::checkManualNumber(workspace().connection, m_number->text(), m_description.manualLetter);
    if (!checked)
        m_number->setFocus();
    tell(checked);
}

void SlipScreen::saveHeader()
{
    const workspace::Panel &panel = workspace().panel;
    book::NewSlip slip;
    slip.kind = m_description.kind;
    slip.date = m_date->date();
    slip.counterpart = counterpart();
    slip.employee = panel.employeeId;
    slip.taxRate = panel.taxRate;
    slip.infix = panel.numberInfix;
    if (!panel.automaticNumbers)
        slip.manualNumber = m_number->text();
    slip.manualLetter = m_description.manualLetter;
    if (m_description.stampsCounterpart)
        slip.stamp = workspace().today();

    const auto saved = book::saveHeader(workspace().connection, slip);
    if (!saved) {
        if (slip.counterpart == 0 || saved.error().gone)
            m_key->setFocus();
        else if (!book::isSlipDate(slip.date))
            m_date->setFocus();
        else if (slip.manualNumber)
            m_number->setFocus();
        ui::prompts::inform(this, saved.error().text);
        return;
    }
    m_header = *saved;
    m_number->setText(m_header.number);
    beginLines();
    enter(SlipState::HeaderSaved);
    focusLine();
}

void SlipScreen::say(const QString &text) { m_message->setText(text); }

// --- The end of a slip ---

bool SlipScreen::mayPassOverLine()
{
    if (!lineIsTyped() ||
        ui::prompts::askToDrop(this, u"入力途中の明細は、まだ伝票に入っていません。入れずに進みますか。"_s))
        return true;
    focusLine();
    return false;
}

void SlipScreen::next()
{
    if (!mayPassOverLine())
        return;
    const auto closed = closeSlip();
    if (closed)
        leaveSlip(*closed);
    else
        tellOfSlip(closed.error());
}

void SlipScreen::cancelSlip()
{
    if (!ui::prompts::ask(this, ui::messages::deleteQuestion()))
        return;
    db::Connection &connection = workspace().connection;
    const base::Status deleted =
        book::onSlip(connection, m_header, [&] { return book::deleteSlip(connection, m_header.id); });
    if (deleted)
        leaveSlip(u"伝票 %1 を取り消しました。"_s.arg(m_header.number));
    else
        tellOfSlip(deleted.error());
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
    m_key->setFocus();
}

void SlipScreen::clearForNext(const QString &message)
{
    tell(book::openCounterpart(m_found, m_description.search, 0));
    m_header = {};
    clearLines();
    m_key->clear();
    m_number->setText(workspace().panel.automaticNumbers ? QString(QChar(m_description.kind.letter))
                                                         : QString());
    say(message);
}

void SlipScreen::enter(SlipState state)
{
    m_state = state;
    for (const auto &[control, life] : m_lives)
        control->setEnabled(isUsable(*life, state));
}

bool SlipScreen::mayClose()
{
    const bool linesCanBeTyped = m_state == SlipState::HeaderSaved || m_state == SlipState::LinesPresent;
    return !linesCanBeTyped || mayPassOverLine();
}

} // namespace slips
