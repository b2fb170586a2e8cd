#include "masters/DialogTaxRates.h"

#include "text/dates.h"
#include "text/numbers.h"
#include "ui/prompts.h"
#include "ui_DialogTaxRates.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;
using book::TaxTerm;

namespace masters
{

namespace
{

constexpr book::GoodsTax taxedClasses[] = {book::GoodsTax::Standard, book::GoodsTax::Food,
                                           book::GoodsTax::Newspapers};

std::vector<base::Column> columns()
{
    using enum base::Format;
    return {{u"区分"_s, Text, 18, 18, true},
            {u"開始日"_s, Date, 12},
            {u"終了日"_s, Date, 12},
            {u"税率（％）"_s, Number, 10},
            {u"有効"_s, Text, 8}};
}

base::ReportRow rowOf(const TaxTerm &term)
{
    const QVariant to = term.to.isValid() ? QVariant(text::stored(term.to)) : QVariant();
    return {{nameOf(term.taxClass), text::stored(term.from), to, term.percent,
             term.inForce ? u"有効"_s : u"無効"_s},
            term.id};
}

// No number is no rate; an empty box is none either.
double percentIn(const QString &typed)
{
    const auto percent = typed.trimmed().isEmpty() ? std::nullopt : text::parseNumber(typed);
    return percent.value_or(std::numeric_limits<double>::quiet_NaN());
}

// "軽減（飲食料品）　2019/10/01 から　8％"
QString inWords(const TaxTerm &term)
{
    const QString days =
        term.to.isValid() ? u"%1 から %2 まで"_s.arg(text::formatDate(term.from), text::formatDate(term.to))
                          : u"%1 から"_s.arg(text::formatDate(term.from));
    return u"%1　%2　%3％"_s.arg(nameOf(term.taxClass), days, text::formatPlain(term.percent));
}

QString inWords(const std::vector<TaxTerm> &terms)
{
    QStringList lines;
    for (const TaxTerm &term : terms)
        lines << inWords(term);
    return lines.join(u'\n');
}

} // namespace

DialogTaxRates::DialogTaxRates(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogTaxRates>())
{
    m_ui->setupUi(this);
    m_ui->gridRates->showColumns(columns());
    for (const book::GoodsTax taxClass : taxedClasses)
        m_ui->cboClass->addItem(nameOf(taxClass), static_cast<int>(taxClass));
    connectControls();
    setUp();
    read(0);
    showCurrent();
}

DialogTaxRates::~DialogTaxRates() = default;

void DialogTaxRates::connectControls()
{
    connect(m_ui->gridRates->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &DialogTaxRates::rowChosen);
    connect(m_ui->chkNoEnd, &QCheckBox::toggled, m_ui->dtTo, &QWidget::setDisabled);
    connect(m_ui->chkInForce, &QCheckBox::toggled, this, &DialogTaxRates::showStates);
    m_ui->chkIncludedOnBill->setChecked(workspace().settings.checked(workspace::keys::includedOnBill));
    connect(m_ui->chkIncludedOnBill, &QCheckBox::clicked, this,
            [this](bool onBill) { workspace().settings.write(workspace::keys::includedOnBill, onBill); });
    connect(m_ui->cmdNew, &QPushButton::clicked, this, &DialogTaxRates::begin);
    connect(m_ui->cmdStore, &QPushButton::clicked, this, &DialogTaxRates::store);
    connect(m_ui->cmdDelete, &QPushButton::clicked, this, &DialogTaxRates::remove);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &DialogTaxRates::reject);
}

bool DialogTaxRates::read(qint64 id)
{
    const auto terms = book::taxTerms(workspace().connection);
    if (!tell(terms.status()))
        return false;
    m_terms = *terms;
    base::Report report{.columns = columns()};
    for (const TaxTerm &term : m_terms)
        report.rows.push_back(rowOf(term));
    const QScopedValueRollback filling(m_filling, true);
    m_ui->gridRates->setReport(std::move(report));
    const auto found = std::ranges::find(m_terms, id, &TaxTerm::id);
    if (found != m_terms.end())
        m_ui->gridRates->setCurrentIndex(m_ui->gridRates->model()->index(int(found - m_terms.begin()), 0));
    return true;
}

void DialogTaxRates::showCurrent()
{
    const qint64 current = m_ui->gridRates->currentLink().toLongLong();
    const auto shown = std::ranges::find(m_terms, current, &TaxTerm::id);
    show(shown == m_terms.end() ? TaxTerm{.from = workspace().today()} : *shown);
}

TaxTerm DialogTaxRates::typed() const
{
    TaxTerm term = m_shown;
    term.taxClass = static_cast<book::GoodsTax>(m_ui->cboClass->currentData().toInt());
    term.from = m_ui->dtFrom->date();
    term.to = m_ui->chkNoEnd->isChecked() ? QDate() : m_ui->dtTo->date();
    term.percent = percentIn(m_ui->txtPercent->text());
    term.inForce = m_ui->chkInForce->isChecked();
    return term;
}

void DialogTaxRates::show(const TaxTerm &term)
{
    m_shown = term;
    m_ui->cboClass->setCurrentIndex(m_ui->cboClass->findData(static_cast<int>(term.taxClass)));
    m_ui->dtFrom->setDate(term.from);
    m_ui->chkNoEnd->setChecked(!term.to.isValid());
    m_ui->dtTo->setDate(term.to.isValid() ? term.to : term.from);
    m_ui->txtPercent->setText(text::formatPlain(term.percent));
    m_ui->chkInForce->setChecked(term.inForce);
    // What the boxes cannot show is no edit of the clerk's.
    m_shown = typed();
    showStates();
}

void DialogTaxRates::showStates()
{
    const bool isStored = m_shown.id != 0;
    m_ui->cmdDelete->setEnabled(isStored);
    const QDate gap = book::firstGap(m_terms, workspace().today());
    m_ui->lblMessage->setText(
        !isStored && !gap.isValid() ? u"新しい行です。入力して「登録」を押してください。"_s
        : isStored && !m_shown.inForce && !m_ui->chkInForce->isChecked()
            ? u"この税率は使われていません。法律が成立したことを確かめてから、「有効」にして登録してください。"_s
        : gap.isValid() ? u"標準の税率が %1 からありません。"_s.arg(text::formatDate(gap))
                        : QString());
}

void DialogTaxRates::rowChosen()
{
    if (m_filling)
        return;
    const qint64 chosen = m_ui->gridRates->currentLink().toLongLong();
    if (settle()) {
        if (read(chosen))
            showCurrent();
        return;
    }
    const QScopedValueRollback filling(m_filling, true);
    const auto back = std::ranges::find(m_terms, m_shown.id, &TaxTerm::id);
    m_ui->gridRates->setCurrentIndex(back == m_terms.end()
                                         ? QModelIndex()
                                         : m_ui->gridRates->model()->index(int(back - m_terms.begin()), 0));
}

void DialogTaxRates::begin()
{
    if (!settle())
        return;
    {
        const QScopedValueRollback filling(m_filling, true);
        m_ui->gridRates->setCurrentIndex({});
    }
    show({.from = workspace().today()});
    m_ui->cboClass->setFocus();
}

bool DialogTaxRates::store()
{
    const TaxTerm term = typed();
    if (const base::Status good = book::checkTerm(term); !good) {
        const bool isDate = term.to.isValid() && term.to < term.from;
        (isDate ? static_cast<QWidget *>(m_ui->dtTo) : m_ui->txtPercent)->setFocus();
        return tell(good);
    }
    if (!mayMakeRoom(book::overlapping(m_terms, term))) {
        m_ui->dtFrom->setFocus();
        return false;
    }
    const auto after = book::withRoomFor(m_terms, term);
    if (!mayLeaveGap(after)) {
        m_ui->dtFrom->setFocus();
        return false;
    }
    const base::Status stored = book::storeTaxTerms(workspace().connection, m_terms, after);
    if (!tell(stored)) {
        read(term.id); // what another program made of the table; the boxes stay
        return false;
    }
    const auto now = book::taxTerms(workspace().connection);
    qint64 id = term.id;
    if (now && id == 0)
        id = std::ranges::max(*now, {}, &TaxTerm::id).id;
    if (read(id))
        showCurrent();
    m_ui->gridRates->setFocus();
    return true;
}

bool DialogTaxRates::mayMakeRoom(const std::vector<TaxTerm> &others)
{
    return others.empty() ||
           ui::prompts::askCautiously(
               this,
               u"同じ区分の期間が重なっています。重なる税率の期間を、この税率の前と後に分けて登録しますか。"_s,
               u"重なる税率：\n"_s + inWords(others));
}

// Slips of a day that no rate has cannot be entered.
bool DialogTaxRates::mayLeaveGap(const std::vector<TaxTerm> &after)
{
    const QDate before = book::firstGap(m_terms, workspace().today());
    const QDate gap = book::firstGap(after, workspace().today());
    return !gap.isValid() || gap == before ||
           ui::prompts::askCautiously(
               this, u"標準の税率が %1 からなくなります。登録しますか。"_s.arg(text::formatDate(gap)),
               u"その日付の伝票は、税率表に従うときは入力できなくなります。\n"
               "これからの税率は、今の行を変えずに「新規」で登録します。"_s);
}

void DialogTaxRates::remove()
{
    if (m_shown.id == 0 || !settle() ||
        !ui::prompts::askCautiously(this, u"税率表から次の税率を削除します。よろしいですか。"_s,
                                    inWords(m_shown) + u"\n登録済みの伝票の税率は変わりません。"_s))
        return;
    auto after = m_terms;
    std::erase_if(after, [this](const TaxTerm &term) { return term.id == m_shown.id; });
    if (!mayLeaveGap(after))
        return;
    tell(book::storeTaxTerms(workspace().connection, m_terms, after));
    if (read(0))
        showCurrent();
}

bool DialogTaxRates::settle()
{
    // A row of which a box holds no number differs from every other, itself too.
    if (typed() == m_shown)
        return true;
    switch (ui::prompts::askHowToLeave(this, u"入力した税率が登録されていません。登録しますか。"_s,
                                       {u"登録する(&S)"_s, u"登録しない(&D)"_s})) {
    case ui::prompts::Choice::Save:
        return store();
    case ui::prompts::Choice::Discard:
        show(m_shown);
        return true;
    case ui::prompts::Choice::Cancel:
        break;
    }
    return false;
}

bool DialogTaxRates::mayClose() { return settle(); }

} // namespace masters
