#include "slips/entry/goods_slip_screen.h"

#include "book/discount.h"
#include "book/tax_terms.h"
#include "masters/name_lists.h"
#include "slips/tax_rates_of.h"
#include "text/numbers.h"
#include "ui/grid.h"
#include "ui/prompts.h"
#include "workspace/workspace.h"

#include <QHeaderView>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

using enum base::Format;

std::vector<base::Column> lineColumns()
{
    return {{u"商品名"_s},       {u"規格"_s}, {u"数量"_s, Quantity}, {u"単位"_s}, {u"単価"_s, Quantity},
            {u"金額"_s, Amount}, {u"税"_s}};
}

constexpr int taxColumn = 6; // of these

std::vector<base::Column> previousColumns()
{
    return {{u"伝票番号"_s},       {u"日付"_s, Date}, {u"商品名"_s},         {u"規格"_s},
            {u"数量"_s, Quantity}, {QString()},       {u"単価"_s, Quantity}, {u"金額"_s, Amount}};
}

} // namespace

GoodsSlipDescription goodsForCustomer(const book::SlipKind &kind)
{
    return {
        .slip =
            {.kind = kind,
             // Numbers typed by hand begin with I on all goods screens; the users' books are kept that way.
             .manualLetter = book::purchase.letter,
             .search = book::customerSearch,
             .nothingFound = u"検索した納品先は見つかりませんでした。\n新規に入力しますか？",
             .foundWidths = {0, 190, 130, 76, 210, 120, 110, 60, 90, 76, 0},
             .stampsCounterpart = true},
        .products = masters::salesProducts,
        .emptyPrice = {u"単価が入力されていません。よろしいですか。", true},
        .showsIncludedTax = true,
        .takesReturns = kind == book::sale,
    };
}

GoodsSlipScreen::GoodsSlipScreen(workspace::Workspace &workspace, QWidget *parent,
                                 GoodsSlipDescription description)
    : SlipScreen(workspace, parent, description.slip)
    , m_description(std::move(description))
    , m_lines(lineColumns(), nullptr)
    , m_previous(previousColumns(), nullptr)
{}

void GoodsSlipScreen::setUpGoods(const GoodsControls &controls)
{
    m_goods = controls;
    m_goods.taxFlag->hide();
    setUpSlip(controls.slip);
}

void GoodsSlipScreen::setUpLines()
{
    m_goods.lines->setModel(&m_lines);
    setWidths(m_goods.lines, {290, 180, 80, 60, 100, 110, 70});
    // Beside the name, as on paper: there it is seen however wide the others are.
    m_goods.lines->horizontalHeader()->moveSection(taxColumn, 1);
    m_goods.lines->setColumnHidden(taxColumn, !workspace().panel.followsTaxTable);
    m_goods.lines->letGiveWay({{0, 160}, {1, 90}}); // name and 規格: the amounts stay in sight
    m_goods.previous->setModel(&m_previous);
    setWidths(m_goods.previous, {120, 100, 320, 260, 90, 60, 110, 130});
    m_goods.previous->letGiveWay({{2, 160}, {3, 100}});
    m_entry = new LineEntry(this, m_description.emptyPrice, m_goods.entry);
    tell(m_entry->offer(workspace().connection, m_description.products));

    connect(m_goods.slip.addLine, &QPushButton::clicked, this, &GoodsSlipScreen::addLine);
    connect(m_goods.slip.removeLine, &QPushButton::clicked, this, &GoodsSlipScreen::removeLine);
    connect(m_goods.inclusive, &QCheckBox::toggled, this, &GoodsSlipScreen::showTax);
    connect(m_goods.inclusive, &QCheckBox::clicked, this, &GoodsSlipScreen::keepInclusive);
    // Not kept in 備考, which these slips have always left empty.
    connect(m_goods.memo, &QLineEdit::editingFinished, this, &GoodsSlipScreen::storeRemark);
}

book::TaxClass GoodsSlipScreen::taxClass() const { return book::taxClassFrom(m_goods.taxClass->text()); }

bool GoodsSlipScreen::inclusive() const { return m_goods.inclusive->isChecked(); }

bool GoodsSlipScreen::addsTax() const
{
    return m_description.isTaxed && book::taxIsAdded(taxClass(), inclusive());
}

void GoodsSlipScreen::counterpartShown(bool chosen)
{
    m_goods.taxClassName->setText(chosen ? nameOf(taxClass()) : QString());
}

// --- The lines ---

std::optional<bool> GoodsSlipScreen::pricesIncludeTax() const
{
    if (!m_description.isTaxed)
        return std::nullopt;
    return taxClass() == book::TaxClass::Included;
}

void GoodsSlipScreen::beginLines()
{
    if (m_goods.taxClass->text().isEmpty())
        m_goods.taxClass->setText(u"0"_s);
    m_goods.inclusive->setChecked(pricesIncludeTax().value_or(false));
    offerTaxes();
    showPreviousLines();
}

// Where one rate is kept by hand every line is taxed as its slip.
void GoodsSlipScreen::offerTaxes()
{
    std::vector<book::TaxChoice> choices;
    const auto rate = slipRateOf(workspace(), date());
    if (m_description.isTaxed && workspace().panel.followsTaxTable && tell(rate.status())) {
        const auto terms = book::taxTerms(workspace().connection);
        if (tell(terms.status()))
            choices = book::taxChoices(*terms, date());
    }
    m_slipRate = rate ? *rate : 0;
    m_goods.lines->setColumnHidden(taxColumn, choices.empty());
    m_goods.lines->keepInSight();
    m_entry->offerTaxes(std::move(choices), m_slipRate);
}

void GoodsSlipScreen::focusLine() { m_entry->begin(); }

bool GoodsSlipScreen::lineIsTyped() const { return m_entry->isTyped(); }

void GoodsSlipScreen::showPreviousLines()
{
    const auto found = book::previousLines(workspace().connection, kind(), counterpart());
    if (!found) {
        ui::prompts::inform(this, found.error().text);
        return;
    }
    std::vector<QVariantList> rows;
    rows.reserve(found->rows.size());
    for (const QVariantList &row : found->rows)
        rows.push_back(QVariantList{row.at(2), row.at(1)} + row.mid(3));
    m_previous.setRows(std::move(rows));
}

void GoodsSlipScreen::addLine()
{
    const auto typed = m_entry->read();
    const auto line = typed ? asReturned(*typed) : std::nullopt;
    if (!line)
        return;
    base::Result<book::SlipSums> sums = book::SlipSums();
    std::vector<book::GoodsLine> added;
    const bool isStored = storeLine([&](db::Connection &file) {
        const base::Status stored = addTo(file, *line, added);
        // While the file is in our hands anyway; the line stays where they cannot be worked out.
        if (stored)
            sums = readSums();
        return stored;
    });
    if (!isStored)
        return;
    showAdded(added);
    m_hasReturned = m_hasReturned || line->quantity < 0;
    m_entered.push_back(int(added.size()));
    m_entry->clear();
    m_goods.taxFlag->setText(u"OFF"_s);
    enter(SlipState::LinesPresent);
    showTotals(std::move(sums));
    m_entry->begin();
}

base::Status GoodsSlipScreen::addTo(db::Connection &file, const book::GoodsLine &line,
                                    std::vector<book::GoodsLine> &added)
{
    // Less for goods of several rates: no one rate would be the discount's.
    const bool isDiscount = line.amount < 0 && line.quantity > 0;
    if (isDiscount && m_entry->hasChoice() && !m_entry->taxIsSettled()) {
        const auto parts = book::addDiscount(file, header().id, line, m_slipRate);
        if (parts)
            added = *parts;
        return parts.status();
    }
    added = {line};
    return book::addLine(file, header().id, line);
}

void GoodsSlipScreen::showAdded(const std::vector<book::GoodsLine> &lines)
{
    m_goods.lines->showAppended([&] {
        for (const book::GoodsLine &line : lines)
            m_lines.append({line.product, line.specification, line.quantity, line.unit, line.price,
                            line.amount, book::taxMark(line.tax)});
    });
}

void GoodsSlipScreen::removeLine()
{
    // A divided discount was one line to the clerk.
    const int lines = m_entered.empty() ? 1 : m_entered.back();
    const auto removed = takeLineBack(lines);
    if (!removed)
        return;
    for (int line = 0; *removed && line < lines; ++line)
        m_lines.removeLast();
    if (!m_entered.empty())
        m_entered.pop_back();
    showTotals(readSums());
    m_entry->begin();
}

base::Result<book::SlipSums> GoodsSlipScreen::readSums()
{
    // The rate of a day stays; one kept by hand may be another by now.
    const auto rate =
        m_entry->hasChoice() ? base::Result<double>(m_slipRate) : slipRateOf(workspace(), date());
    return rate ? book::slipSums(workspace().connection, header().id, *rate) : rate.error();
}

void GoodsSlipScreen::showTotals(base::Result<book::SlipSums> sums)
{
    if (!sums) {
        ui::prompts::inform(this, sums.error().text);
        return;
    }
    m_taxable = std::move(sums->goods);
    m_total = sums->total;
    m_goods.total->setText(text::formatAmount(m_total));
    showTax();
}

void GoodsSlipScreen::showTax()
{
    if (state() != SlipState::LinesPresent || !m_description.isTaxed)
        return;
    const auto shown = book::shownTax(m_taxable, taxClass(), inclusive(), m_description.showsIncludedTax);
    const auto totals =
        book::shownTotals(m_total, m_taxable, taxClass(), inclusive(), m_description.showsIncludedTax);
    m_goods.tax->setText(shown ? *shown : QString());
    showWithTax(totals ? *totals : book::ShownTotals());
    if (!shown || !totals) {
        ui::prompts::inform(this, (shown ? totals.error() : shown.error()).text);
        return;
    }
    foretellTax();
}

// The large figure is of the lines alone; the paper says what is to be paid.
void GoodsSlipScreen::showWithTax(const book::ShownTotals &shown)
{
    m_goods.totalName->setText(shown.caption.isEmpty() ? u"合計"_s : shown.caption);
    m_goods.taxWords->setText(shown.tax);
    m_goods.withTax->setText(shown.withTax);
}

// The box of the tax is for customers and suppliers who are always charged it. Where the clerk has made the
// prices of another one exclusive, the tax that closing adds must not come as a surprise.
void GoodsSlipScreen::foretellTax()
{
    const bool isUnseen = m_goods.tax->text().isEmpty() && addsTax();
    const auto tax = book::taxOf(m_taxable, book::Basis::Net);
    say(isUnseen && tax && *tax != 0
            ? u"この伝票を閉じるときに、消費税 %1 円が計上されます。"_s.arg(text::formatAmount(*tax))
            : QString());
}

// A slip that is left open, or corrected, is taxed by what the clerk has ticked.
void GoodsSlipScreen::keepInclusive()
{
    db::Connection &connection = workspace().connection;
    const base::Status kept = book::onSlip(
        connection, header(), [&] { return book::keepInclusive(connection, header().id, inclusive()); });
    if (kept)
        return;
    m_goods.inclusive->setChecked(!inclusive());
    tellOfSlip(kept.error());
}

// --- The end of a slip ---

bool GoodsSlipScreen::storeRemark()
{
    const bool isOpen = state() == SlipState::HeaderSaved || state() == SlipState::LinesPresent;
    const QString typed = m_goods.memo->text();
    if (!isOpen || typed == m_storedRemark)
        return true;
    db::Connection &connection = workspace().connection;
    const base::Status kept =
        book::onSlip(connection, header(), [&] { return book::keepRemark(connection, header().id, typed); });
    if (!kept) {
        tellOfSlip(kept.error());
        return false;
    }
    m_storedRemark = typed;
    return true;
}

// --- Its counterpart's class of tax ---

// Nobody knows the class of a counterpart that was deleted meanwhile: it stays as it was shown.
base::Status GoodsSlipScreen::checkTaxClass()
{
    const auto now = book::taxClassOf(workspace().connection, kind().party, header().counterpart);
    if (!now)
        return now.error();
    if (now->value_or(taxClass()) == taxClass())
        return {};
    return base::Error{.text = u"消費税区分が、ほかのプログラムで「%1」から「%2」に変更されました。"
                               "表示を直しましたので、消費税を確かめてから、もう一度実行してください。"_s.arg(
                                   nameOf(taxClass()), nameOf(**now)),
                       .changed = true};
}

// The slip goes on as one of the new class begins, unless the clerk has ticked otherwise.
void GoodsSlipScreen::showTaxClassAnew()
{
    const auto now = book::taxClassOf(workspace().connection, kind().party, header().counterpart);
    if (!now || !*now)
        return;
    const bool isAsItBegan = inclusive() == pricesIncludeTax().value_or(false);
    m_goods.taxClass->setText(QString::number(static_cast<int>(**now)));
    counterpartShown(true);
    if (isAsItBegan && inclusive() != pricesIncludeTax().value_or(false)) {
        m_goods.inclusive->setChecked(!inclusive());
        keepInclusive();
    }
    showTax();
}

// --- Its paper ---

QString GoodsSlipScreen::paperRemarks() const { return m_goods.memo->text(); }

base::Result<PaperState> GoodsSlipScreen::paperNow()
{
    const auto rates = taxRatesOf(workspace());
    return rates ? paperState(workspace().connection, header().id, {inclusive(), *rates}, paperRemarks())
                 : rates.error();
}

void GoodsSlipScreen::print()
{
    if (!mayPassOverLine() || !storeRemark())
        return;
    const base::Status same = m_description.isTaxed ? checkTaxClass() : base::Status();
    if (!same && same.error().changed)
        showTaxClassAnew();
    if (tell(same))
        showAndRemember();
}

void GoodsSlipScreen::showAndRemember()
{
    const auto state = paperNow();
    if (tell(state.status()) && showPaper())
        m_printed = *state;
}

// Lines may have been added or taken out since then.
void GoodsSlipScreen::slipEnds()
{
    if (!m_printed)
        return;
    const auto now = paperNow();
    if (tell(now.status()) && *now != *m_printed &&
        ui::prompts::ask(
            this, u"伝票 %1 は、印刷した後で変わりました。もう一度印刷しますか。"_s.arg(header().number)))
        showAndRemember();
}

QString GoodsSlipScreen::cancelRemark() const
{
    return m_printed ? u"この伝票は印刷されています。印刷した紙は使わないでください。"_s : QString();
}

int GoodsSlipScreen::lineCount() const { return m_lines.rowCount(); }

bool GoodsSlipScreen::taxIsDue() const
{
    const auto tax = book::taxOf(m_taxable, book::Basis::Net);
    return addsTax() && !(tax && *tax == 0);
}

base::Result<QString> GoodsSlipScreen::closeSlip()
{
    db::Connection &connection = workspace().connection;
    const auto rate = slipRateOf(workspace(), date());
    if (!rate)
        return rate.error();
    const auto closed = book::onSlip(connection, header(), [&]() -> base::Result<book::ClosedSlip> {
        if (!m_description.isTaxed)
            return book::closeUntaxedSlip(connection, header().id);
        if (const base::Status same = checkTaxClass(); !same)
            return same.error();
        return book::closeSlip(connection, header().id, *rate, taxClass(), inclusive());
    });
    if (!closed) {
        if (closed.error().changed)
            showTaxClassAnew();
        return closed.error();
    }
    m_goods.taxFlag->setText(u"ON"_s);
    QString message =
        u"伝票 %1 を保存しました。　合計 %2 円"_s.arg(header().number, text::formatAmount(closed->total));
    if (addsTax())
        message += u"　消費税 %1 円"_s.arg(text::formatAmount(closed->tax));
    return message;
}

void GoodsSlipScreen::clearLines()
{
    m_taxable.clear();
    m_lines.setRows({});
    m_previous.setRows({});
    m_entry->clear();
    m_goods.inclusive->setChecked(false);
    for (QLineEdit *box : {m_goods.total, m_goods.tax, m_goods.memo})
        box->clear();
    m_total = 0;
    showWithTax({});
    m_goods.taxFlag->setText(u"ON"_s);
    m_storedRemark.clear();
    m_printed.reset();
    m_originalIsKnown = false;
    m_original = 0;
    m_hasReturned = false;
    m_entered.clear();
}

} // namespace slips
