#include "shipping/carriers/DialogCarrierExport.h"

#include "shipping/carriers/DialogCarrierSettings.h"
#include "shipping/carriers/DialogTrackingImport.h"
#include "shipping/slips/shipment_store.h"
#include "slips/tax_rates_of.h"
#include "ui/messages.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_DialogCarrierExport.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

enum FindingColumn { KeyColumn, ConsigneeColumn, FieldColumn, FaultColumn, ValueColumn };

std::optional<CarrierProgram> programOf(const std::vector<Shipment> &shipments)
{
    for (const Shipment &shipment : shipments) {
        for (const CarrierProgram program : carrierPrograms) {
            if (formsOf(program).contains(shipment.method))
                return program;
        }
    }
    return std::nullopt;
}

} // namespace

DialogCarrierExport::DialogCarrierExport(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogCarrierExport>())
{
    m_ui->setupUi(this);
    for (const CarrierProgram program : carrierPrograms)
        m_ui->Combo1->addItem(u"%1（%2）"_s.arg(programName(program), carrierName(program)));
    for (QDateEdit *box :
         {static_cast<QDateEdit *>(m_ui->DTPicker1), static_cast<QDateEdit *>(m_ui->DTPicker2),
          static_cast<QDateEdit *>(m_ui->DTPicker3)})
        box->setDate(workspace.today());
    setUpGrids();
    connectControls();
    connectActions();
    setUp();
    showState();
}

DialogCarrierExport::~DialogCarrierExport() = default;

void DialogCarrierExport::setUpGrids()
{
    m_ui->DataGrid1->setModel(&m_model);
    const int widths[] = {44, 64, 84, 84, 190, 150, 110, 76, 64, 52, 44, 84, 64};
    for (int column = 0; column < ExportModel::ColumnCount; ++column)
        m_ui->DataGrid1->setColumnWidth(column, widths[column]);
    m_ui->DataGrid1->letGiveWay(
        {{ExportModel::Goods, 80}, {ExportModel::Consignee, 110}, {ExportModel::Form, 70}});
    m_ui->DataGrid1->installEventFilter(this);
    m_ui->DataGrid2->setColumnCount(5);
    m_ui->DataGrid2->setHorizontalHeaderLabels(
        {u"発送ID"_s, u"お届け先"_s, u"項目"_s, u"内容"_s, u"今の値"_s});
    const int findingWidths[] = {64, 150, 160, 300, 160};
    for (int column = KeyColumn; column <= ValueColumn; ++column)
        m_ui->DataGrid2->setColumnWidth(column, findingWidths[column]);
    m_ui->DataGrid2->horizontalHeader()->setStretchLastSection(true);
    m_ui->DataGrid2->verticalHeader()->hide();
}

void DialogCarrierExport::connectControls()
{
    connect(m_ui->Combo1, &QComboBox::currentIndexChanged, this, &DialogCarrierExport::programChosen);
    connect(m_ui->DTPicker3, &QDateEdit::dateChanged, this, &DialogCarrierExport::renew);
    connect(&m_model, &ExportModel::choiceChanged, this, &DialogCarrierExport::showState);
    connect(m_ui->DataGrid2, &QTableWidget::currentCellChanged, this, &DialogCarrierExport::findingChosen);
    connect(m_ui->DataGrid1, &QTableView::clicked, this, [this](const QModelIndex &cell) {
        if (cell.column() == ExportModel::Ticked)
            m_model.toggle(cell.row());
    });
}

void DialogCarrierExport::connectActions()
{
    const std::pair<QPushButton *, void (DialogCarrierExport::*)()> actions[] = {
        {m_ui->cmdList, &DialogCarrierExport::list},
        {m_ui->cmdMend, &DialogCarrierExport::mend},
        {m_ui->cmdSettings, &DialogCarrierExport::openSettings},
        {m_ui->cmdImport, &DialogCarrierExport::importNumbers},
        {m_ui->cmdExport, &DialogCarrierExport::exportTicked},
        {m_ui->cmdClose, &DialogCarrierExport::reject},
    };
    for (const auto &[button, action] : actions)
        connect(button, &QPushButton::clicked, this, action);
    connect(m_ui->cmdTickAll, &QPushButton::clicked, this, [this] { m_model.tickAll(true); });
    connect(m_ui->cmdTickNone, &QPushButton::clicked, this, [this] { m_model.tickAll(false); });
    connect(m_ui->cmdCollected, &QPushButton::clicked, this,
            [this] { m_model.toggleCollected(m_ui->DataGrid1->currentIndex().row()); });
}

// The blank bar ticks the shipment whichever of its fields the cursor is in.
bool DialogCarrierExport::eventFilter(QObject *watched, QEvent *event)
{
    const bool isBlankBar = watched == m_ui->DataGrid1 && event->type() == QEvent::KeyPress &&
                            static_cast<QKeyEvent *>(event)->key() == Qt::Key_Space;
    if (isBlankBar)
        m_model.toggle(m_ui->DataGrid1->currentIndex().row());
    return isBlankBar || Screen::eventFilter(watched, event);
}

// --- The shipments ---

CarrierProgram DialogCarrierExport::program() const { return CarrierProgram(m_ui->Combo1->currentIndex()); }

CarrierSettings DialogCarrierExport::settings() const
{
    return CarrierSettings::read(workspace().settings, program());
}

void DialogCarrierExport::listShipments(const std::vector<qint64> &ids)
{
    const auto shipments = shipmentsOf(workspace().connection, ids);
    if (const auto carrier = shipments ? programOf(*shipments) : std::nullopt) {
        const QSignalBlocker quiet(m_ui->Combo1);
        m_ui->Combo1->setCurrentIndex(int(*carrier));
    }
    if (shipments && !shipments->empty()) {
        const auto [first, last] = std::ranges::minmax(*shipments, {}, &Shipment::accepted);
        m_ui->DTPicker1->setDate(first.accepted);
        m_ui->DTPicker2->setDate(last.accepted);
    }
    show(shipments);
}

void DialogCarrierExport::list()
{
    if (!mayLeaveMending())
        return;
    const CarrierQuery query{.program = program(),
                             .from = m_ui->DTPicker1->date(),
                             .to = m_ui->DTPicker2->date(),
                             .withExported = m_ui->Check1->isChecked(),
                             .withOtherForms = m_ui->Check2->isChecked()};
    if (!show(shipmentsFor(workspace().connection, query)))
        return;
    if (m_model.rowCount() == 0) {
        ui::prompts::inform(this, ui::messages::nothingFound());
        m_ui->DTPicker1->setFocus();
        return;
    }
    m_ui->DataGrid1->selectRow(0);
    m_ui->DataGrid1->setFocus();
}

// What is listed is of another carrier now: each row is judged by that one's rules.
void DialogCarrierExport::programChosen() { renew(); }

bool DialogCarrierExport::show(const base::Result<std::vector<Shipment>> &shipments)
{
    const auto rates = shipments ? slips::taxRatesOf(workspace()) : shipments.error();
    if (!rates) {
        tell(rates.status());
        return false;
    }
    const TaxSource taxes{*rates, workspace().panel.followsTaxTable};
    std::vector<CarrierParcel> parcels;
    for (const Shipment &shipment : *shipments) {
        auto parcel = parcelOf(workspace().connection, shipment, m_ui->DTPicker3->date(), taxes);
        if (!parcel) {
            tell(parcel.status());
            return false;
        }
        parcels.push_back(std::move(*parcel));
    }
    m_model.set(std::move(parcels), program(), settings());
    return true;
}

// The listed shipments as the history has them now; those that are gone go.
void DialogCarrierExport::renew()
{
    std::vector<qint64> ids;
    for (int row = 0; row < m_model.rowCount(); ++row)
        ids.push_back(m_model.at(row).shipment.id);
    const int row = m_ui->DataGrid1->currentIndex().row();
    show(shipmentsOf(workspace().connection, ids));
    m_ui->DataGrid1->selectRow(std::max(0, row));
}

void DialogCarrierExport::showState()
{
    const std::vector<CarrierParcel> ticked = m_model.ticked();
    showFindings();
    m_ui->lblCount->setText(
        u"%1 件のうち %2 件を書き出します。"_s.arg(m_model.rowCount()).arg(ticked.size()) +
        (m_findings.empty() ? QString() : u"　直すところが %1 か所あります。"_s.arg(m_findings.size())));
    for (QPushButton *button : {m_ui->cmdTickAll, m_ui->cmdTickNone, m_ui->cmdCollected})
        button->setEnabled(m_model.rowCount() > 0);
    m_ui->cmdExport->setEnabled(!ticked.empty());
}

// --- What does not fit ---

void DialogCarrierExport::showFindings()
{
    const int before = m_ui->DataGrid2->currentRow();
    m_findings = m_model.findings();
    const QSignalBlocker quiet(m_ui->DataGrid2);
    m_ui->DataGrid2->setRowCount(int(m_findings.size()));
    for (int row = 0; row < int(m_findings.size()); ++row) {
        const CarrierFinding &finding = m_findings[std::size_t(row)];
        const Party &to = m_model.at(m_model.rowOf(finding.shipment)).shipment.consignee;
        const QString cells[] = {QString::number(finding.shipment), to.name1 + to.name2, finding.heading,
                                 finding.what, finding.value};
        for (int column = KeyColumn; column <= ValueColumn; ++column)
            m_ui->DataGrid2->setItem(row, column, new QTableWidgetItem(cells[column].left(200)));
    }
    const int row = std::clamp(before, 0, std::max(0, int(m_findings.size()) - 1));
    m_ui->DataGrid2->setCurrentCell(m_findings.empty() ? -1 : row, KeyColumn);
    // What is being typed stays as long as its shipment is listed.
    if (!isMending() || m_model.rowOf(m_finding->shipment) < 0) {
        m_finding = m_findings.empty() ? std::nullopt : std::optional(m_findings[std::size_t(row)]);
        showField();
    }
}

void DialogCarrierExport::findingChosen(int row)
{
    if (row < 0 || std::size_t(row) >= m_findings.size() || m_finding == m_findings[std::size_t(row)])
        return;
    if (!mayLeaveMending()) {
        const auto found = std::find(m_findings.begin(), m_findings.end(), *m_finding);
        const QSignalBlocker quiet(m_ui->DataGrid2);
        m_ui->DataGrid2->setCurrentCell(int(found - m_findings.begin()), KeyColumn);
        return;
    }
    m_finding = m_findings[std::size_t(row)];
    showField();
}

void DialogCarrierExport::showField()
{
    const int row = m_finding ? m_model.rowOf(m_finding->shipment) : -1;
    m_field = row >= 0 ? mendable(m_model.at(row).shipment, m_finding->source) : MendableField();
    m_ui->frameMend->setEnabled(!m_field.lines.isEmpty());
    m_ui->lblField->setText(m_field.lines.isEmpty()
                                ? QString()
                                : u"発送ID %1　%2"_s.arg(m_finding->shipment).arg(m_field.caption));
    m_ui->cboChoice->setVisible(!m_field.choices.isEmpty());
    m_ui->txtFirst->setVisible(m_field.choices.isEmpty());
    m_ui->txtSecond->setVisible(m_field.lines.size() > 1);
    m_ui->txtFirst->setText(m_field.lines.value(0));
    m_ui->txtSecond->setText(m_field.lines.value(1));
    m_ui->cboChoice->clear();
    m_ui->cboChoice->addItems(m_field.choices);
    m_ui->cboChoice->setCurrentIndex(int(m_field.choices.indexOf(m_field.lines.value(0))));
}

QStringList DialogCarrierExport::enteredLines() const
{
    if (!m_field.choices.isEmpty())
        return {m_ui->cboChoice->currentIndex() < 0 ? m_field.lines.value(0)
                                                    : m_ui->cboChoice->currentText()};
    return m_field.lines.size() > 1 ? QStringList{m_ui->txtFirst->text(), m_ui->txtSecond->text()}
                                    : QStringList{m_ui->txtFirst->text()};
}

bool DialogCarrierExport::isMending() const
{
    return m_finding && !m_field.lines.isEmpty() && enteredLines() != m_field.lines;
}

bool DialogCarrierExport::mayLeaveMending()
{
    if (!isMending())
        return true;
    if (!ui::prompts::askCautiously(
            this,
            u"入力した「%1」は、まだ発送履歴に書いていません。捨てて続けますか。"_s.arg(m_field.caption)))
        return false;
    showField();
    return true;
}

// What is wrong with a sender stands in each of his shipments.
std::vector<Shipment> DialogCarrierExport::alsoToMend(const Shipment &shipment) const
{
    std::vector<Shipment> others;
    const ShipmentField field = m_finding->source;
    if (field < ShipmentField::SenderName || field > ShipmentField::SenderTel)
        return others;
    for (const CarrierParcel &parcel : m_model.ticked()) {
        const Shipment &other = parcel.shipment;
        if (other.id != shipment.id && other.sender.name1 == shipment.sender.name1 &&
            other.sender.name2 == shipment.sender.name2 &&
            mendable(other, field).lines == mendable(shipment, field).lines)
            others.push_back(other);
    }
    return others;
}

void DialogCarrierExport::mend()
{
    const int row = m_finding ? m_model.rowOf(m_finding->shipment) : -1;
    if (row < 0)
        return;
    const auto now = mended(m_model.at(row).shipment, m_finding->source, enteredLines());
    if (!now) {
        tell(now.status());
        m_ui->txtFirst->setFocus();
        return;
    }
    std::vector<Shipment> all{*now};
    const std::vector<Shipment> others = alsoToMend(m_model.at(row).shipment);
    if (!others.empty() &&
        ui::prompts::askCautiously(this, u"同じご依頼主の、「%1」が同じ発送がほかに %2 件あります。同じように"
                                         "直しますか。"_s.arg(m_field.caption)
                                             .arg(others.size()))) {
        for (const Shipment &other : others)
            all.push_back(*mended(other, m_finding->source, enteredLines()));
    }
    const base::Status stored = changeShipments(workspace().connection, all);
    if (!tell(stored) && !stored.error().changed && !stored.error().gone)
        return; // what was typed stays
    m_finding.reset();
    renew();
    if (m_findings.empty())
        m_ui->cmdExport->setFocus();
    else
        (m_field.choices.isEmpty() ? static_cast<QWidget *>(m_ui->txtFirst) : m_ui->cboChoice)->setFocus();
}

bool DialogCarrierExport::mayClose() { return mayLeaveMending(); }

} // namespace shipping
