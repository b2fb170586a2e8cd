#include "slips/entry/DialogOriginal.h"

#include "ui_DialogOriginal.h"

using namespace Qt::StringLiterals;

namespace slips
{

DialogOriginal::DialogOriginal(workspace::Workspace &workspace, std::vector<book::OriginalSlip> slips,
                               const QString &product, QWidget *parent)
    : ui::Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogOriginal>())
    , m_slips(std::move(slips))
    , m_rows({{u"日付"_s, base::Format::Date}, {u"伝票番号"_s}, {u"この商品"_s}}, nullptr)
{
    m_ui->setupUi(this);
    showSlips(product);
    connect(m_ui->cmdTake, &QPushButton::clicked, this, &DialogOriginal::take);
    connect(m_ui->cmdNone, &QPushButton::clicked, this, &DialogOriginal::accept);
    connect(m_ui->cmdBack, &QPushButton::clicked, this, &DialogOriginal::reject);
    connect(m_ui->grdSlips, &QTableView::doubleClicked, this, &DialogOriginal::take);
    setUp();
}

DialogOriginal::~DialogOriginal() = default;

void DialogOriginal::showSlips(const QString &product)
{
    m_ui->lblQuestion->setText(u"「%1」は、どの伝票の返品ですか。\n"
                               "選んだ伝票のときの税率で計算し、伝票に元の伝票を残します。"_s.arg(product));
    std::vector<QVariantList> rows;
    for (const book::OriginalSlip &slip : m_slips)
        rows.push_back({slip.date, slip.number, slip.holdsProduct ? u"あり"_s : QString()});
    m_rows.setRows(std::move(rows));
    m_ui->grdSlips->setModel(&m_rows);
    m_ui->cmdTake->setEnabled(!m_slips.empty());
    if (m_slips.empty()) {
        m_ui->lblQuestion->setText(
            u"「%1」の返品ですが、この相手先には、これより前の伝票がありません。"_s.arg(product));
        m_ui->cmdNone->setFocus();
        return;
    }
    m_ui->grdSlips->selectRow(0);
    m_ui->grdSlips->setFocus();
}

void DialogOriginal::take()
{
    const int row = m_ui->grdSlips->currentIndex().row();
    if (row < 0)
        return;
    m_original = m_slips.at(static_cast<std::size_t>(row)).id;
    accept();
}

} // namespace slips
