#include "shipping/gifts/gift_list_screen.h"

#include "masters/name_lists.h"
#include "shipping/gifts/gift_sheet_print.h"
#include "shipping/slips/kept_window.h"
#include "tables/report_file.h"
#include "text/format_value.h"
#include "ui/messages.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui/table_export.h"
#include "ui_GiftListForm.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QHash>
#include <QHeaderView>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr int usualMonths = 3; // that a list goes back: one gift season

std::vector<std::pair<QLabel *, QLineEdit *>> sumBoxes(const Ui::GiftListForm &form)
{
    return {{form.lblSum1, form.txtSum1}, {form.lblSum2, form.txtSum2}, {form.lblSum3, form.txtSum3}};
}

// A member initialiser needs the boxes before the constructor's body.
std::unique_ptr<Ui::GiftListForm> formOn(QDialog *screen)
{
    auto form = std::make_unique<Ui::GiftListForm>();
    form->setupUi(screen);
    return form;
}

} // namespace

GiftListScreen::GiftListScreen(workspace::Workspace &workspace, const GiftListDescription &description,
                               QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(formOn(this))
    , m_description(description)
    , m_sums(sumBoxes(*m_ui))
{
    setObjectName(QString::fromUtf16(description.screen));
    setWindowTitle(QString::fromUtf16(description.title));
    m_ui->DTPicker1->setDate(workspace.today().addMonths(-usualMonths));
    m_ui->DTPicker2->setDate(workspace.today());
    m_ui->Command4->setVisible(description.isBySender);
    m_ui->MSFlexGrid1->setAccessibleName(QString::fromUtf16(description.title));
    m_listed = query();
    m_ui->MSFlexGrid1->showColumns(description.report({}, m_listed, false).columns);
    // There are more columns than a window has room for: names keep theirs, and the rest scrolls.
    m_ui->MSFlexGrid1->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    if (!description.isBySender)
        m_ui->MSFlexGrid1->letSortRows();
    fillCategories();
    connectControls();
    restoreWindow(*this, workspace.settings, description.windowState);
    setUp();
    show(description.report({}, m_listed, false));
    m_ui->lblMessage->clear();
}

GiftListScreen::~GiftListScreen() = default;

void GiftListScreen::fillCategories()
{
    m_ui->dbcKubun->addItem(u"すべて"_s);
    if (const auto names = masters::shippingCategoryNames(workspace().connection))
        m_ui->dbcKubun->addItems(*names);
}

void GiftListScreen::connectControls()
{
    const std::pair<QPushButton *, void (GiftListScreen::*)()> actions[] = {
        {m_ui->cmdList, &GiftListScreen::list},
        {m_ui->Command3, &GiftListScreen::exportList},
        {m_ui->Command4, &GiftListScreen::showSheet},
    };
    for (const auto &[button, action] : actions)
        connect(button, &QPushButton::clicked, this, action);
    connect(m_ui->Command2, &QPushButton::clicked, this, [this] { print(asShown(), m_listed); });
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &GiftListScreen::reject);
    connect(m_ui->dbcKubun, &QComboBox::currentIndexChanged, this, &GiftListScreen::showState);
    connect(m_ui->txtKey1, &QLineEdit::textChanged, this, &GiftListScreen::showState);
    for (const ui::DateBox *box : {m_ui->DTPicker1, m_ui->DTPicker2})
        connect(box, &QDateEdit::dateChanged, this, &GiftListScreen::showState);
    connect(m_ui->MSFlexGrid1, &QTableView::doubleClicked, this, [this] {
        if (m_description.isBySender)
            m_ui->Command4->click();
    });
}

GiftListQuery GiftListScreen::query() const
{
    return {m_ui->DTPicker1->date(), m_ui->DTPicker2->date(),
            m_ui->dbcKubun->currentIndex() > 0 ? m_ui->dbcKubun->currentText() : QString(),
            m_ui->txtKey1->text().trimmed()};
}

void GiftListScreen::list()
{
    m_listed = query();
    auto found = listedShipments(workspace().connection, m_listed);
    m_shipments = found ? std::move(*found) : std::vector<Shipment>();
    show(m_description.report(m_shipments, m_listed, false));
    if (!tell(found.status()))
        return;
    if (m_shipments.empty()) {
        ui::prompts::inform(this, ui::messages::nothingFound());
        m_ui->dbcKubun->setFocus();
        return;
    }
    m_ui->MSFlexGrid1->setFocus();
}

void GiftListScreen::show(base::Report report)
{
    const std::vector<base::NamedSum> sums = report.sums;
    m_ui->MSFlexGrid1->setReport(std::move(report));
    for (std::size_t i = 0; i < m_sums.size() && i < sums.size(); ++i) {
        m_sums[i].first->setText(sums[i].name);
        m_sums[i].second->setText(text::formatValue(sums[i].format, sums[i].value));
    }
    showState();
}

// Rows of one period under the boxes of another would be taken for what they are not.
void GiftListScreen::showState()
{
    const GiftListQuery asked = query();
    const bool isShown = asked.from == m_listed.from && asked.to == m_listed.to &&
                         asked.category == m_listed.category && asked.sender == m_listed.sender;
    for (QPushButton *button : {m_ui->Command2, m_ui->Command3, m_ui->Command4})
        button->setEnabled(isShown && !m_shipments.empty());
    m_ui->lblMessage->setText(isShown ? queryInWords(m_listed)
                                      : u"条件が変わりました。「一覧を作る」を押してください。"_s);
}

// In the order into which the clerk sorted the rows.
std::vector<Shipment> GiftListScreen::asShown() const
{
    if (m_description.isBySender)
        return m_shipments;
    QHash<qint64, std::size_t> places;
    for (std::size_t i = 0; i < m_shipments.size(); ++i)
        places.insert(m_shipments[i].id, i);
    std::vector<Shipment> shown;
    for (const base::ReportRow &row : m_ui->MSFlexGrid1->report().rows)
        shown.push_back(m_shipments[places.value(row.link.toLongLong())]);
    return shown;
}

void GiftListScreen::exportList()
{
    const base::Report &report = m_ui->MSFlexGrid1->report();
    ui::exportTable(this,
                    {[&report](const QString &fileName) { return tables::checkReport(fileName, report); },
                     [&report](const QString &fileName, const base::Progress &progress) {
                         return tables::writeReport(fileName, report, progress);
                     },
                     report.documentName});
}

// The one whose row the cursor is in; below the last of his rows too.
void GiftListScreen::showSheet()
{
    int row = m_ui->MSFlexGrid1->currentIndex().row();
    const std::vector<base::ReportRow> &rows = m_ui->MSFlexGrid1->report().rows;
    while (row > 0 && rows[std::size_t(row)].link.isNull())
        --row;
    if (row < 0 || row >= int(rows.size()))
        return;
    const qint64 id = rows[std::size_t(row)].link.toLongLong();
    const std::vector<SenderGifts> senders = bySender(m_shipments);
    const auto his = std::ranges::find_if(senders, [id](const SenderGifts &sender) {
        return std::ranges::any_of(sender.shipments,
                                   [id](const Shipment &shipment) { return shipment.id == id; });
    });
    if (his != senders.end())
        showGiftSheet(workspace(), this, his->shipments);
}

bool GiftListScreen::mayClose()
{
    keepWindow(*this, workspace().settings, m_description.windowState);
    return true;
}

} // namespace shipping
