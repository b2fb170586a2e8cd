#include "reports/bills/receipts/DialogPaymentColumns.h"

#include "ui/prompts.h"
#include "ui_DialogPaymentColumns.h"

#include <QSignalBlocker>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

constexpr std::size_t sampleRows = 8;
constexpr qsizetype longestSample = 30; // characters

} // namespace

DialogPaymentColumns::DialogPaymentColumns(workspace::Workspace &workspace, const PaymentTable &table,
                                           const PaymentColumns &columns, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogPaymentColumns>())
    , m_table(table)

{
    m_ui->setupUi(this);
    m_fields = {m_ui->cboDate, m_ui->cboAmount, m_ui->cboPayer, m_ui->cboText, m_ui->cboAccount};
    m_ui->spnFirst->setRange(1, int(std::min<std::size_t>(table.rows.size(), 1000)));
    m_ui->spnFirst->setValue(int(columns.firstRow) + 1);
    m_ui->spnFirst->setEnabled(!table.isCashBook);
    fillColumns();
    for (std::size_t field = 0; field < m_fields.size(); ++field)
        m_fields[field]->setCurrentIndex(int(columns.columns[field]) + 1);
    showSamples();
    connect(m_ui->spnFirst, &QSpinBox::valueChanged, this, &DialogPaymentColumns::fillColumns);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &DialogPaymentColumns::confirm);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &DialogPaymentColumns::reject);
    setUp();
    m_fields.front()->setFocus();
}

DialogPaymentColumns::~DialogPaymentColumns() = default;

// By their headings, those of the row before the first payment.
void DialogPaymentColumns::fillColumns()
{
    const std::size_t first = std::size_t(m_ui->spnFirst->value()) - 1;
    const QStringList headings = m_table.isCashBook ? m_table.columns
                                 : first > 0        ? m_table.rows[first - 1].cells
                                                    : QStringList();
    for (QComboBox *field : m_fields) {
        const QSignalBlocker quiet(field);
        const int chosen = field->currentIndex();
        field->clear();
        field->addItem(u"（使わない）"_s);
        for (qsizetype column = 0; column < m_table.width; ++column)
            field->addItem(u"%1 列目　%2"_s.arg(column + 1)
                               .arg(headings.value(column).simplified().left(longestSample)));
        field->setCurrentIndex(std::max(0, chosen));
    }
}

void DialogPaymentColumns::showSamples()
{
    const int rows = int(std::min(sampleRows, m_table.rows.size()));
    m_ui->tblSamples->setRowCount(rows);
    m_ui->tblSamples->setColumnCount(int(m_table.width));
    for (int column = 0; column < m_table.width; ++column)
        m_ui->tblSamples->setHorizontalHeaderItem(column, new QTableWidgetItem(u"%1 列目"_s.arg(column + 1)));
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < m_table.width; ++column)
            m_ui->tblSamples->setItem(
                row, column,
                new QTableWidgetItem(
                    m_table.rows[std::size_t(row)].cells.value(column).simplified().left(longestSample)));
    }
}

PaymentColumns DialogPaymentColumns::columns() const
{
    PaymentColumns columns;
    columns.firstRow = m_table.isCashBook ? 0 : std::size_t(m_ui->spnFirst->value()) - 1;
    for (std::size_t field = 0; field < m_fields.size(); ++field)
        columns.columns[field] = m_fields[field]->currentIndex() - 1;
    return columns;
}

void DialogPaymentColumns::confirm()
{
    const QString lack = columns().lack();
    if (lack.isEmpty()) {
        accept();
        return;
    }
    ui::prompts::inform(this, lack);
    m_fields.front()->setFocus();
}

} // namespace reports
