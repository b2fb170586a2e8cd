#include "shipping/carriers/DialogTrackingColumns.h"

#include "ui/prompts.h"
#include "ui_DialogTrackingColumns.h"

#include <QSignalBlocker>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr std::size_t sampleRows = 8;
constexpr std::size_t mostFirstRow = 1000;
constexpr qsizetype longestSample = 30; // characters

} // namespace

DialogTrackingColumns::DialogTrackingColumns(workspace::Workspace &workspace,
                                             const registers::ImportTable &table,
                                             const TrackingColumns &columns, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogTrackingColumns>())
    , m_table(table)
{
    m_ui->setupUi(this);
    m_fields = {m_ui->cboManagement, m_ui->cboNumber, m_ui->cboConsignee};
    m_ui->spnFirst->setRange(1, int(std::min(table.rows.size(), mostFirstRow)));
    m_ui->spnFirst->setValue(int(columns.firstRow) + 1);
    fillColumns();
    for (std::size_t field = 0; field < m_fields.size(); ++field)
        m_fields[field]->setCurrentIndex(int(columns.columns[field]) + 1);
    showSamples();
    connect(m_ui->spnFirst, &QSpinBox::valueChanged, this, &DialogTrackingColumns::fillColumns);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &DialogTrackingColumns::confirm);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &DialogTrackingColumns::reject);
    setUp();
    m_fields.front()->setFocus();
}

DialogTrackingColumns::~DialogTrackingColumns() = default;

// By their headings, those of the row before the first parcel.
void DialogTrackingColumns::fillColumns()
{
    const auto first = std::size_t(m_ui->spnFirst->value()) - 1;
    const QStringList headings = first > 0 ? m_table.rows[first - 1].cells : QStringList();
    for (QComboBox *field : m_fields) {
        const QSignalBlocker quiet(field);
        const int chosen = field->currentIndex();
        field->clear();
        field->addItem(u"（使わない）"_s);
        for (qsizetype column = 0; column < m_table.columns; ++column)
            field->addItem(u"%1 列目　%2"_s.arg(column + 1)
                               .arg(headings.value(column).simplified().left(longestSample)));
        field->setCurrentIndex(std::max(0, chosen));
    }
}

void DialogTrackingColumns::showSamples()
{
    const int rows = int(std::min(sampleRows, m_table.rows.size()));
    m_ui->tblSamples->setRowCount(rows);
    m_ui->tblSamples->setColumnCount(int(m_table.columns));
    for (int column = 0; column < m_table.columns; ++column) {
        m_ui->tblSamples->setHorizontalHeaderItem(column, new QTableWidgetItem(u"%1 列目"_s.arg(column + 1)));
        for (int row = 0; row < rows; ++row) {
            const QString cell = m_table.rows[std::size_t(row)].cells.value(column);
            m_ui->tblSamples->setItem(row, column,
                                      new QTableWidgetItem(cell.simplified().left(longestSample)));
        }
    }
}

TrackingColumns DialogTrackingColumns::columns() const
{
    TrackingColumns columns;
    columns.firstRow = std::size_t(m_ui->spnFirst->value()) - 1;
    for (std::size_t field = 0; field < m_fields.size(); ++field)
        columns.columns[field] = m_fields[field]->currentIndex() - 1;
    return columns;
}

void DialogTrackingColumns::confirm()
{
    const QString lack = columns().lack();
    if (lack.isEmpty()) {
        accept();
        return;
    }
    ui::prompts::inform(this, lack);
    m_fields.front()->setFocus();
}

} // namespace shipping
