#include "slips/entry/money_slip_screen.h"

#include "book/tax.h"
#include "slips/entry/amount_entry.h"
#include "slips/entry/new_counterpart.h"
#include "text/numbers.h"
#include "ui/prompts.h"
#include "ui_MoneySlipForm.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

std::vector<base::Column> lineColumns(const MoneySlipDescription &description)
{
    return {{u"適用"_s}, {QString::fromUtf16(description.meansLabel)}, {u"金額"_s, base::Format::Quantity}};
}

} // namespace

MoneySlipScreen::MoneySlipScreen(workspace::Workspace &workspace, QWidget *parent,
                                 const MoneySlipDescription &description)
    : SlipScreen(workspace, parent, description.slip)
    , m_ui(std::make_unique<Ui::MoneySlipForm>())
    , m_lines(lineColumns(description), nullptr)
{
    m_ui->setupUi(this);
    setCaptions(description);
    const bool isCustomer = description.slip.kind.party == book::Party::Customer;
    SlipControls controls = slipControls(*m_ui);
    controls.fields = {{m_ui->txtNouhinsaki1, isCustomer ? u"納品先名1" : u"仕入先名1"},
                       {m_ui->txtNouhinsaki2, isCustomer ? u"納品先名2" : u"仕入先名2"}};
    if (description.showsTaxClass)
        controls.fields.push_back({m_ui->txtTaxK, u"消費税区分"});
    setUpSlip(std::move(controls));
    const auto editor = isCustomer ? enterNewCustomer : enterNewSupplier;
    setCounterpartEditor([&workspace, editor](QWidget *window) { return editor(workspace, window); });
}

MoneySlipScreen::~MoneySlipScreen() = default;

void MoneySlipScreen::setCaptions(const MoneySlipDescription &description)
{
    setObjectName(QString::fromUtf16(description.screen));
    setWindowTitle(QString::fromUtf16(description.title));
    const QString party = QString::fromUtf16(description.party);
    m_ui->Frame2->setTitle(party);
    m_ui->lblKey1->setText(party + u"名キー(&K)"_s);
    m_ui->lblFound->setText(party + u"リスト"_s);
    m_ui->lblName1->setText(party + u"名1"_s);
    m_ui->lblName2->setText(party + u"名2"_s);
    m_ui->Text1->setAccessibleName(party + u"ID"_s);
    m_ui->lblMeans->setText(QString::fromUtf16(description.meansLabel));
    m_ui->cmbShohin->addItems(description.items);
    m_ui->cmbKikaku->addItems(description.means);
    m_ui->lblMeans->setHidden(description.means.isEmpty());
    m_ui->cmbKikaku->setHidden(description.means.isEmpty());
    if (description.means.isEmpty())
        m_ui->layoutEntry->setColumnStretch(1, 0);
    for (QWidget *part : {static_cast<QWidget *>(m_ui->lblTaxK), static_cast<QWidget *>(m_ui->txtTaxK),
                          static_cast<QWidget *>(m_ui->lblTaxClass)})
        part->setVisible(description.showsTaxClass);
}

void MoneySlipScreen::setUpLines()
{
    m_ui->dgdSub->setModel(&m_lines);
    setWidths(m_ui->dgdSub, {260, m_ui->cmbKikaku->count() == 0 ? 0 : 220, 160});
    connect(m_ui->cmdSubAdd, &QPushButton::clicked, this, &MoneySlipScreen::addLine);
    connect(m_ui->cmdSubCancel, &QPushButton::clicked, this, &MoneySlipScreen::removeLine);
}

void MoneySlipScreen::counterpartShown(bool chosen)
{
    m_ui->lblTaxClass->setText(chosen ? nameOf(book::taxClassFrom(m_ui->txtTaxK->text())) : QString());
}

void MoneySlipScreen::beginLines()
{
    if (m_ui->txtTaxK->text().isEmpty())
        m_ui->txtTaxK->setText(u"0"_s);
}

void MoneySlipScreen::focusLine()
{
    if (m_ui->cmbShohin->count() > 1)
        m_ui->cmbShohin->setFocus();
    else // there is nothing to choose
        m_ui->txtKingaku->setFocus();
}

bool MoneySlipScreen::lineIsTyped() const
{
    const bool itemIsPicked = m_ui->cmbShohin->count() > 1 && m_ui->cmbShohin->currentIndex() >= 0;
    return itemIsPicked || m_ui->cmbKikaku->currentIndex() >= 0 ||
           !m_ui->txtKingaku->text().trimmed().isEmpty();
}

// --- The lines ---

std::optional<book::MoneyLine> MoneySlipScreen::readLine()
{
    if (m_ui->cmbShohin->currentText().isEmpty()) {
        ui::prompts::inform(this, u"適用が選択されていません。"_s);
        m_ui->cmbShohin->setFocus();
        return std::nullopt;
    }
    const auto amount = readAmount(this, m_ui->txtKingaku, u"金額が入力されていません。"_s);
    if (!amount)
        return std::nullopt;
    return book::MoneyLine{m_ui->cmbShohin->currentText(), m_ui->cmbKikaku->currentText(), *amount};
}

void MoneySlipScreen::addLine()
{
    const auto line = readLine();
    if (!line)
        return;
    if (!storeLine([&](db::Connection &file) { return book::addLine(file, header().id, kind(), *line); }))
        return;
    m_ui->dgdSub->showAppended([&] { m_lines.append({line->item, line->means, line->amount}); });
    clearEntry();
    enter(SlipState::LinesPresent);
    focusLine();
}

void MoneySlipScreen::removeLine()
{
    const auto removed = takeLineBack();
    if (!removed)
        return;
    if (*removed)
        m_lines.removeLast();
    focusLine();
}

void MoneySlipScreen::clearEntry()
{
    m_ui->cmbShohin->setCurrentIndex(m_ui->cmbShohin->count() == 1 ? 0 : -1);
    m_ui->cmbKikaku->setCurrentIndex(-1);
    m_ui->txtKingaku->clear();
}

void MoneySlipScreen::clearLines()
{
    m_lines.setRows({});
    clearEntry();
}

base::Result<QString> MoneySlipScreen::closeSlip()
{
    db::Connection &connection = workspace().connection;
    const auto closed =
        book::onSlip(connection, header(), [&] { return book::closeUntaxedSlip(connection, header().id); });
    if (!closed)
        return closed.error();
    return u"伝票 %1 を保存しました。　合計 %2 円"_s.arg(header().number,
                                                         text::formatQuantity(closed->total));
}

} // namespace slips
