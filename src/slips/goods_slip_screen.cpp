#include "slips/goods_slip_screen.h"

#include "app/workspace.h"
#include "slips/numbering.h"
#include "text/numbers.h"
#include "ui/grid.h"
#include "ui/leave_watch.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

using Column = SlipGridModel::Column;
constexpr auto plain = db::Format::Plain;
constexpr auto quantity = db::Format::Quantity;
constexpr auto amount = db::Format::Amount;

std::vector<Column> lineColumns()
{
    return {{u"商品名"_s, plain}, {u"規格"_s, plain},          {u"数量"_s, quantity, true},
            {u"単位"_s, plain},   {u"単価"_s, quantity, true}, {u"金額"_s, amount, true}};
}

std::vector<Column> previousColumns()
{
    return {{u"伝票番号"_s, plain},      {u"日付"_s, plain},          {u"商品名"_s, plain},
            {u"規格"_s, plain},          {u"数量"_s, quantity, true}, {QString(), plain},
            {u"単価"_s, quantity, true}, {u"金額"_s, amount, true}};
}

void setWidths(ui::Grid *grid, const std::vector<int> &pixels)
{
    int column = 0;
    for (const int width : pixels) {
        grid->setColumnHidden(column, width == 0);
        grid->setColumnWidth(column++, width);
    }
}

} // namespace

GoodsSlipScreen::GoodsSlipScreen(app::Workspace &workspace, QWidget *parent, GoodsSlipDescription description)
    : Screen(workspace, parent)
    , m_description(std::move(description))
    , m_found(workspace.connection)
    , m_lines(lineColumns(), nullptr)
    , m_previous(previousColumns(), nullptr)
{}

void GoodsSlipScreen::setUpSlip()
{
    findControls();
    setUpGrids();
    m_entry = new LineEntry(this, m_description.emptyPrice);
    m_date->setDate(workspace().today());
    if (workspace().panel.automaticNumbers) {
        m_number->setReadOnly(true);
        m_number->setFocusPolicy(Qt::NoFocus);
    }
    connectControls();
    tell(m_entry->offer(workspace().connection, m_description.products));
    clearForNext({});
    enter(SlipState::NoHeader);
    setUp();
}

void GoodsSlipScreen::findControls()
{
    const auto line = [this](QStringView name) { return findChild<QLineEdit *>(name.toString()); };
    const auto grid = [this](QStringView name) { return findChild<ui::Grid *>(name.toString()); };
    m_key = line(u"txtKey1");
    m_counterpart = line(u"Text1");
    m_taxClass = line(u"txtTaxK");
    m_taxClassName = findChild<QLabel *>(u"lblTaxClass"_s);
    m_number = line(u"txtDenNo");
    m_date = findChild<QDateEdit *>(u"DTPicker1"_s);
    m_totalBox = line(u"txtTotal");
    m_tax = line(u"Text2");
    m_taxFlag = line(u"Text3");
    m_memo = line(u"txtMemo");
    m_inclusive = findChild<QCheckBox *>(u"Check1"_s);
    m_message = findChild<QLabel *>(u"lblMessage"_s);
    m_foundGrid = grid(u"DataGrid1");
    m_lineGrid = grid(u"dgdSub");
    m_previousGrid = grid(u"MSFlexGrid1");
    for (const HeaderField &field : m_description.fields)
        m_fields.push_back(line(field.control));
    for (const ControlLife &life : controlLives) {
        if (auto *control = findChild<QWidget *>(QString::fromUtf16(life.control)))
            m_lives.emplace_back(control, &life);
    }
    for (const QString &hidden : {u"Text1"_s, u"Text3"_s, u"Text5"_s})
        findChild<QLineEdit *>(hidden)->hide();
}

void GoodsSlipScreen::setUpGrids()
{
    tell(openCounterpart(m_found, m_description.search, 0));
    m_foundGrid->bind(m_found, [this](const QString &refusal) { ui::prompts::inform(this, refusal); });
    setWidths(m_foundGrid, m_description.foundWidths);
    m_lineGrid->setModel(&m_lines);
    setWidths(m_lineGrid, {260, 180, 80, 60, 100, 110});
    m_previousGrid->setModel(&m_previous);
    setWidths(m_previousGrid, {120, 100, 260, 180, 80, 60, 100, 110});
}

void GoodsSlipScreen::connectControls()
{
    const auto press = [this](QStringView name, void (GoodsSlipScreen::*action)()) {
        connect(findChild<QPushButton *>(name.toString()), &QPushButton::clicked, this, action);
    };
    press(u"Command1", &GoodsSlipScreen::search);
    press(u"cmdMasterUpdate", &GoodsSlipScreen::saveHeader);
    press(u"cmdSubAdd", &GoodsSlipScreen::addLine);
    press(u"cmdSubCancel", &GoodsSlipScreen::removeLine);
    press(u"cmdNext", &GoodsSlipScreen::next);
    press(u"cmdMasterCancel", &GoodsSlipScreen::cancelSlip);
    if (auto *newCounterpart = findChild<QPushButton *>(u"Command4"_s))
        connect(newCounterpart, &QPushButton::clicked, this, &GoodsSlipScreen::editNewCounterpart);
    connect(&m_found, &db::Recordset::currentRowChanged, this, &GoodsSlipScreen::showCounterpart);
    connect(m_inclusive, &QCheckBox::toggled, this, &GoodsSlipScreen::showTax);
    if (!workspace().panel.automaticNumbers)
        connect(new ui::LeaveWatch(m_number), &ui::LeaveWatch::left, this, &GoodsSlipScreen::checkNumber);
}

TaxClass GoodsSlipScreen::taxClass() const { return taxClassFrom(m_taxClass->text()); }

bool GoodsSlipScreen::inclusive() const { return m_inclusive->isChecked(); }

qint64 GoodsSlipScreen::counterpart() const { return m_counterpart->text().toLongLong(); }

// --- The header ---

void GoodsSlipScreen::search()
{
    if (m_key->text().trimmed().isEmpty()) {
        ui::prompts::inform(this, ui::messages::searchEmpty());
        m_key->setFocus();
        return;
    }
    if (!tell(searchCounterparts(m_found, m_description.search, m_key->text())))
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

void GoodsSlipScreen::editNewCounterpart()
{
    const qint64 saved = m_counterpartEditor ? m_counterpartEditor(this) : 0;
    if (saved > 0 && tell(openCounterpart(m_found, m_description.search, saved)))
        goOnWithHeader();
}

void GoodsSlipScreen::goOnWithHeader()
{
    if (m_number->isReadOnly())
        m_date->setFocus();
    else
        m_number->setFocus();
}

void GoodsSlipScreen::showCounterpart()
{
    const bool chosen = m_found.currentRow() >= 0;
    m_counterpart->setText(chosen ? QString::number(m_found.currentKey()) : QString());
    for (std::size_t field = 0; field < m_fields.size(); ++field) {
        m_fields[field]->setText(m_found.text(QString::fromUtf16(m_description.fields[field].column)));
        m_fields[field]->setCursorPosition(0);
    }
    m_taxClassName->setText(chosen ? nameOf(taxClass()) : QString());
    if (chosen) {
        m_message->clear();
        enter(SlipState::NoHeader);
    }
}

void GoodsSlipScreen::checkNumber()
{
    const auto checked =
        checkManualNumber(workspace().connection, m_number->text(), m_description.manualLetter);
    if (!checked)
        m_number->setFocus();
    tell(checked);
}

void GoodsSlipScreen::saveHeader()
{
    const app::Panel &panel = workspace().panel;
    NewSlip slip;
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

    const auto saved = slips::saveHeader(workspace().connection, slip);
    if (!saved) {
        if (slip.counterpart == 0)
            m_key->setFocus();
        else if (slip.manualNumber)
            m_number->setFocus();
        ui::prompts::inform(this, saved.error().text);
        return;
    }
    m_header = *saved;
    beginLines();
}

void GoodsSlipScreen::beginLines()
{
    m_number->setText(m_header.number);
    if (m_taxClass->text().isEmpty())
        m_taxClass->setText(u"0"_s);
    m_inclusive->setChecked(taxClass() == TaxClass::Included);
    showPreviousLines();
    enter(SlipState::HeaderSaved);
    m_entry->begin();
}

void GoodsSlipScreen::showPreviousLines()
{
    const auto found = previousLines(workspace().connection, m_description.kind, counterpart());
    if (!found) {
        ui::prompts::inform(this, found.error().text);
        return;
    }
    std::vector<QVariantList> rows;
    rows.reserve(found->rows.size());
    for (const QVariantList &row : found->rows) {
        const QString date = row.at(1).toString().replace(u'-', u'/');
        rows.push_back(QVariantList{row.at(2), date} + row.mid(3));
    }
    m_previous.setRows(std::move(rows));
}

// --- The lines ---

void GoodsSlipScreen::addLine()
{
    const auto line = m_entry->read();
    if (!line)
        return;
    if (const db::Status added = slips::addLine(workspace().connection, m_header.id, *line); !added) {
        tellOfSlip(added.error());
        return;
    }
    m_lines.append(
        {line->product, line->specification, line->quantity, line->unit, line->price, line->amount});
    m_lineGrid->scrollToBottom();
    m_entry->clear();
    m_taxFlag->setText(u"OFF"_s);
    enter(SlipState::LinesPresent);
    showTotals();
    m_entry->begin();
}

void GoodsSlipScreen::removeLine()
{
    const auto removed = removeLastLine(workspace().connection, m_header.id);
    if (!removed) {
        tellOfSlip(removed.error());
        return;
    }
    if (*removed)
        m_lines.removeLast();
    showTotals();
    m_entry->begin();
}

void GoodsSlipScreen::showTotals()
{
    const auto total = slipTotal(workspace().connection, m_header.id);
    if (!total) {
        ui::prompts::inform(this, total.error().text);
        return;
    }
    m_total = *total;
    m_totalBox->setText(text::formatAmount(m_total));
    showTax();
}

void GoodsSlipScreen::showTax()
{
    if (m_state != SlipState::LinesPresent)
        return;
    const auto shown =
        shownTax(m_total, workspace().panel.taxRate, taxClass(), inclusive(), m_description.showsIncludedTax);
    m_tax->setText(shown ? *shown : QString());
    if (!shown)
        ui::prompts::inform(this, shown.error().text);
}

// --- The end of a slip ---

db::Result<ClosedSlip> GoodsSlipScreen::closeSlip()
{
    auto closed = slips::closeSlip(workspace().connection, m_header.id, workspace().panel.taxRate, taxClass(),
                                   inclusive());
    if (closed)
        m_taxFlag->setText(u"ON"_s);
    else
        tellOfSlip(closed.error());
    return closed;
}

void GoodsSlipScreen::next()
{
    const auto closed = closeSlip();
    if (!closed)
        return;
    QString message =
        u"伝票 %1 を保存しました。　合計 %2 円"_s.arg(m_header.number, text::formatAmount(closed->total));
    if (taxIsAdded(taxClass(), inclusive()))
        message += u"　消費税 %1 円"_s.arg(text::formatAmount(closed->tax));
    leaveSlip(message);
}

void GoodsSlipScreen::cancelSlip()
{
    if (!ui::prompts::ask(this, ui::messages::deleteQuestion()) ||
        !tell(deleteSlip(workspace().connection, m_header.id)))
        return;
    leaveSlip(u"伝票 %1 を取り消しました。"_s.arg(m_header.number));
}

// Nothing more can be done to a slip that another program has deleted; the screen goes on with the next one.
void GoodsSlipScreen::tellOfSlip(const db::Error &error)
{
    ui::prompts::inform(this, error.text);
    const auto there = slipExists(workspace().connection, m_header.id);
    if (there && !*there)
        leaveSlip(u"伝票 %1 は削除されています。"_s.arg(m_header.number));
}

void GoodsSlipScreen::leaveSlip(const QString &message)
{
    clearForNext(message);
    enter(SlipState::Closed);
    m_key->setFocus();
}

void GoodsSlipScreen::clearForNext(const QString &message)
{
    tell(openCounterpart(m_found, m_description.search, 0));
    m_header = {};
    m_total = 0;
    m_lines.setRows({});
    m_previous.setRows({});
    m_entry->clear();
    m_inclusive->setChecked(false);
    for (QLineEdit *box : {m_key, m_totalBox, m_tax, m_number, m_memo})
        box->clear();
    if (workspace().panel.automaticNumbers)
        m_number->setText(QString(QChar(m_description.kind.letter)));
    m_taxFlag->setText(u"ON"_s);
    m_message->setText(message);
}

void GoodsSlipScreen::enter(SlipState state)
{
    m_state = state;
    for (const auto &[control, life] : m_lives)
        control->setEnabled(isUsable(*life, state));
}

bool GoodsSlipScreen::mayClose()
{
    // A slip left open has lines but not the tax on them.
    if (m_state != SlipState::LinesPresent || !taxIsAdded(taxClass(), inclusive()) ||
        !ui::prompts::ask(
            this, u"表示中の伝票はまだ閉じていません。次の伝票（消費税の計上）を行ってから終了しますか。"_s))
        return true;
    return bool(closeSlip());
}

} // namespace slips
