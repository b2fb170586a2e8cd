#include "reports/ledgers/ledger_screen.h"

#include "registers/last_counterparts.h"
#include "reports/charts/DialogCharts.h"
#include "reports/report_actions.h"
#include "slips/entry/slip_screen.h"
#include "text/format_value.h"
#include "ui/messages.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_LedgerForm.h"
#include "workspace/workspace.h"

#include <QLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

// Nothing when the link is to something else.
template <class Target>
const Target *targetIn(const QVariant &link)
{
    const bool isOne = link.metaType() == QMetaType::fromType<Target>();
    return isOne ? static_cast<const Target *>(link.constData()) : nullptr;
}

// The month before is looked at as long as this one is young.
QDate startOfPeriod(const QDate &end) { return QDate(end.year(), end.month(), 1).addMonths(-1); }

} // namespace

LedgerScreen::LedgerScreen(workspace::Workspace &workspace, QWidget *parent,
                           const LedgerDescription &description)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::LedgerForm>())
    , m_description(description)
    , m_found(workspace.connection)
{
    m_ui->setupUi(this);
    m_sums = {{m_ui->lblSum1, m_ui->txtSum1},
              {m_ui->lblSum2, m_ui->txtSum2},
              {m_ui->lblSum3, m_ui->txtSum3},
              {m_ui->lblSum4, m_ui->txtSum4},
              {m_ui->lblSum5, m_ui->txtSum5}};
    fitForm();
    clear({});
    connectControls();
    setUp();
}

LedgerScreen::~LedgerScreen() = default;

void LedgerScreen::fitForm()
{
    setObjectName(QString::fromUtf16(m_description.screen));
    setWindowTitle(QString::fromUtf16(m_description.title));
    const bool isOfGoods = m_description.view == LedgerView::Goods;
    m_ui->Frame2->setVisible(m_description.search || isOfGoods);
    if (m_description.search)
        fitSearch();
    if (isOfGoods)
        fitGoods();
    fitPeriod();
    fitGrid();
    const QString zeros = QString::fromUtf16(m_description.zeros);
    m_ui->Check1->setText(zeros);
    m_ui->Check1->setHidden(zeros.isEmpty());
    m_ui->Check1->setChecked(!zeros.isEmpty());
    const QString opens = QString::fromUtf16(m_description.opens);
    m_ui->Command4->setText(opens);
    m_ui->Command4->setHidden(opens.isEmpty());
    m_ui->cmdCharts->setVisible(m_description.charts.has_value());
}

void LedgerScreen::fitSearch()
{
    const QString party = m_description.search->party == book::Party::Customer ? u"納品先"_s : u"仕入先"_s;
    m_ui->Frame2->setTitle(party);
    m_ui->lblKey1->setText(party + u"名キー(&K)"_s);
    m_ui->lblName1->setText(party + u"名"_s);
    tell(book::openCounterpart(m_found, *m_description.search, 0));
    m_ui->DataGrid1->bind(m_found, [this](const QString &refusal) { ui::prompts::inform(this, refusal); });
    slips::setWidths(m_ui->DataGrid1, m_description.foundWidths);
}

// The goods are chosen where this screen is opened from.
void LedgerScreen::fitGoods()
{
    m_ui->Frame2->setTitle(u"商品"_s);
    m_ui->lblName1->setText(u"商品名"_s);
    for (QWidget *searching :
         {static_cast<QWidget *>(m_ui->lblKey1), static_cast<QWidget *>(m_ui->txtKey1),
          static_cast<QWidget *>(m_ui->Command1), static_cast<QWidget *>(m_ui->DataGrid1)})
        searching->hide();
}

void LedgerScreen::fitPeriod()
{
    m_ui->DTPicker1->setDate(startOfPeriod(workspace().today()));
    m_ui->DTPicker2->setDate(workspace().today());
    if (m_description.hasStart)
        return;
    m_ui->DTPicker1->hide();
    m_ui->lblTo->hide();
    m_ui->lblPeriod->setText(u"日付(&D)"_s);
    m_ui->lblPeriod->setBuddy(m_ui->DTPicker2);
}

void LedgerScreen::fitGrid()
{
    m_ui->MSFlexGrid1->setAccessibleName(windowTitle());
    m_ui->MSFlexGrid1->showColumns(columnsOf(m_description.view));
    if (m_description.sorts)
        m_ui->MSFlexGrid1->letSortRows();
    // No wider than the columns: on its way along a wider row the eye gets lost.
    const QMargins margins = layout()->contentsMargins();
    resize(std::min(width(), margins.left() + margins.right() + m_ui->MSFlexGrid1->fullWidth()), height());
}

void LedgerScreen::connectControls()
{
    const std::pair<QPushButton *, void (LedgerScreen::*)()> actions[] = {
        {m_ui->Command1, &LedgerScreen::search},
        {m_ui->cmdMasterUpdate, &LedgerScreen::count},
        {m_ui->Command4, &LedgerScreen::openRow},
        {m_ui->cmdCharts, &LedgerScreen::openCharts},
    };
    for (const auto &[button, action] : actions)
        connect(button, &QPushButton::clicked, this, action);
    connect(m_ui->Command2, &QPushButton::clicked, this,
            [this] { printReport(workspace(), this, m_ui->MSFlexGrid1->report()); });
    connect(m_ui->Command3, &QPushButton::clicked, this,
            [this] { exportReport(this, m_ui->MSFlexGrid1->report()); });
    connect(m_ui->Check1, &QCheckBox::clicked, this, &LedgerScreen::refresh);
    for (const ui::DateBox *box : {m_ui->DTPicker1, m_ui->DTPicker2})
        connect(box, &QDateEdit::dateChanged, this, &LedgerScreen::markAsOutdated);
    connect(m_ui->MSFlexGrid1, &QTableView::doubleClicked, m_ui->Command4, &QPushButton::click);
    connect(m_ui->MSFlexGrid1->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &LedgerScreen::enableOpening);
    connect(&m_found, &db::Recordset::currentRowChanged, this, &LedgerScreen::chooseFound);
}

// A list that nobody has to be chosen for is read as soon as it can be seen, progress over it.
void LedgerScreen::becameActive()
{
    if (!m_hasRead && !m_description.search)
        count();
}

// --- Whose ledger ---

void LedgerScreen::search()
{
    if (m_ui->txtKey1->text().trimmed().isEmpty()) {
        ui::prompts::inform(this, ui::messages::searchEmpty());
        m_ui->txtKey1->setFocus();
        return;
    }
    if (!tell(book::searchCounterparts(m_found, *m_description.search, m_ui->txtKey1->text())))
        return;
    if (m_found.isEmpty()) {
        m_ui->txtKey1->setFocus();
        ui::prompts::inform(this, u"検索した%1は見つかりませんでした。"_s.arg(m_ui->Frame2->title()));
    } else if (m_found.count() == 1) { // needs no choosing
        m_ui->MSFlexGrid1->setFocus();
    } else {
        m_ui->DataGrid1->setFocus();
    }
}

void LedgerScreen::chooseFound()
{
    if (m_found.currentRow() >= 0)
        choose(LedgerTarget{m_found.currentKey()});
    else
        choose({});
}

void LedgerScreen::choose(const std::optional<LedgerTarget> &whose)
{
    m_whose = whose;
    m_ui->txtNouhinsaki1->clear();
    m_ui->MSFlexGrid1->setCurrentIndex({}); // another ledger is read from its top
    if (!whose) {
        clear({});
        return;
    }
    const auto name =
        book::nameOfCounterpart(workspace().connection, m_description.search->party, whose->counterpart);
    if (name)
        m_ui->txtNouhinsaki1->setText(*name);
    registers::rememberCounterpart(workspace(), m_description.search->party, whose->counterpart.value_or(0));
    m_ui->txtNouhinsaki1->setCursorPosition(0);
    refresh();
}

void LedgerScreen::openLedger(const LedgerTarget &whose, const QDate &to)
{
    m_ui->DTPicker1->setDate(startOfPeriod(to));
    m_ui->DTPicker2->setDate(to);
    tell(book::openCounterpart(m_found, *m_description.search, whose.counterpart.value_or(0)));
    if (m_whose != whose) // nobody is found by the key of a deleted one
        choose(whose);
    m_ui->MSFlexGrid1->setFocus();
}

void LedgerScreen::openGoods(const book::Goods &goods, const QDate &to)
{
    m_ui->DTPicker1->setDate(startOfPeriod(to));
    m_ui->DTPicker2->setDate(to);
    m_goods = goods;
    m_ui->txtNouhinsaki1->setText(nameOf(goods));
    m_ui->txtNouhinsaki1->setCursorPosition(0);
    count();
}

// --- The rows ---

LedgerQuery LedgerScreen::query() const
{
    const QDate to = m_ui->DTPicker2->date();
    return {m_whose,
            m_goods,
            {m_description.hasStart ? m_ui->DTPicker1->date() : to, to},
            m_ui->Check1->isChecked()};
}

// Goes on in the rows.
void LedgerScreen::count()
{
    refresh();
    if (m_ui->MSFlexGrid1->rowCount() > 0)
        m_ui->MSFlexGrid1->setFocus();
}

void LedgerScreen::refresh()
{
    m_hasRead = true;
    const LedgerQuery asked = query();
    auto read = ui::runWithProgress(this, u"集計しています。"_s, [&](const base::Progress &progress) {
        return readView(workspace().connection, m_description.view, asked, progress);
    });
    if (read) {
        m_shownTo = asked.period.to;
        m_ui->MSFlexGrid1->setReport(std::move(*read));
        showRows();
        return;
    }
    // What was shown no longer stands for what the boxes above it say.
    clear(read.error().cancelled ? read.error().text : QString());
    if (!read.error().cancelled)
        tell(read.error());
    if (m_description.search && !m_whose)
        m_ui->txtKey1->setFocus();
}

void LedgerScreen::clear(const QString &message)
{
    m_ui->MSFlexGrid1->clear();
    showRows();
    m_ui->lblMessage->setText(message);
}

// What follows from the rows.
void LedgerScreen::showRows()
{
    const int count = m_ui->MSFlexGrid1->rowCount();
    m_ui->Command2->setEnabled(count > 0);
    m_ui->Command3->setEnabled(count > 0);
    enableOpening();
    m_ui->lblMessage->setText(count > 0 ? u"%1 行"_s.arg(count)
                                        : u"該当するデータが見つかりませんでした。"_s);
    showSums();
}

void LedgerScreen::showSums()
{
    const std::vector<base::NamedSum> &sums = m_ui->MSFlexGrid1->report().sums;
    for (std::size_t i = 0; i < m_sums.size(); ++i) {
        const auto &[label, box] = m_sums[i];
        const bool used = i < sums.size();
        label->setVisible(used);
        box->setVisible(used);
        if (used) {
            label->setText(sums[i].name);
            box->setText(text::formatValue(sums[i].format, sums[i].value));
        }
    }
}

// The table stays, with its own days, until it is asked for anew: all balances take their time.
void LedgerScreen::markAsOutdated()
{
    if (m_ui->MSFlexGrid1->rowCount() > 0)
        m_ui->lblMessage->setText(u"日付が変わりました。「再集計」を押すと集計し直します。"_s);
}

// --- What the rows lead to ---

void LedgerScreen::enableOpening() { m_ui->Command4->setEnabled(m_ui->MSFlexGrid1->currentLink().isValid()); }

void LedgerScreen::openRow()
{
    const QVariant link = m_ui->MSFlexGrid1->currentLink();
    if (const auto *ledger = targetIn<LedgerTarget>(link))
        openLedgerOf(*ledger);
    else if (const auto *goods = targetIn<GoodsTarget>(link))
        openLedgerOf(*goods);
    else if (!openSlipOf(workspace(), this, link))
        return;
    refresh();
}

// Of whose ledger it is; of a list all, and the one of the row at the clerk's wish.
void LedgerScreen::openCharts()
{
    const QVariant link = m_ui->MSFlexGrid1->currentLink();
    const auto *row = targetIn<LedgerTarget>(link);
    const std::optional<LedgerTarget> whose = m_whose || !row ? m_whose : std::optional(*row);
    DialogCharts charts(workspace(), this);
    charts.openCharts(*m_description.charts, m_ui->DTPicker2->date(),
                      whose ? std::optional(whose->counterpart) : std::nullopt, m_whose.has_value());
    charts.exec();
}

void LedgerScreen::openLedgerOf(const LedgerTarget &whose)
{
    LedgerScreen ledger(workspace(), this,
                        descriptionOf(m_description.view == LedgerView::ReceivableBalances
                                          ? LedgerView::Receivable
                                          : LedgerView::Payable));
    ledger.openLedger(whose, m_shownTo);
    ledger.exec();
}

void LedgerScreen::openLedgerOf(const GoodsTarget &whose)
{
    LedgerScreen ledger(workspace(), this, descriptionOf(LedgerView::Goods));
    ledger.openGoods(whose.goods, m_shownTo);
    ledger.exec();
}

} // namespace reports
