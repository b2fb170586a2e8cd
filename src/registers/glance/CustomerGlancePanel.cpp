#include "registers/glance/CustomerGlancePanel.h"

#include "base/report.h"
#include "db/connection.h"
#include "db/no_waiting.h"
#include "text/numbers.h"
#include "ui_CustomerGlancePanel.h"

#include <QApplication>
#include <QEvent>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

using enum base::Format;

// What the row of a parcel leads to; that of a slip leads to its ID.
struct ShipmentLink
{
    qint64 id = 0; // 発送ID
};

constexpr int afterTyping = 150; // milliseconds without a key
constexpr int afterFailure = 1000;

std::vector<base::Column> glanceColumns()
{
    return {{u"日付"_s, Date, 10}, {u"内容"_s, Text, 16, 20, true}, {u"金額・単価"_s, Quantity, 10}};
}

void addGroup(base::Report &report, const QString &name, const std::vector<base::ReportRow> &rows)
{
    if (rows.empty())
        return;
    base::beginGroup(report, name);
    report.rows.insert(report.rows.end(), rows.begin(), rows.end());
}

base::Report reportOf(const CustomerGlance &glance)
{
    base::Report report{.columns = glanceColumns()};
    std::vector<base::ReportRow> slips;
    for (const book::RecentSlip &slip : glance.slips)
        slips.push_back({{slip.date, book::nameOf(slip.kind) + u'　' + slip.number, slip.amount}, slip.id});
    std::vector<base::ReportRow> goods;
    for (const book::UsualGoods &each : glance.goods)
        goods.push_back(
            {{each.lastDate,
              u"%1 %2（%3回）"_s.arg(each.product, each.specification).arg(each.times).simplified(),
              each.price ? QVariant(*each.price) : QVariant()}});
    std::vector<base::ReportRow> shipments;
    for (const GlanceShipment &shipment : glance.shipments)
        shipments.push_back({{shipment.date, shipment.consignee + u'　' + shipment.goods, QVariant()},
                             QVariant::fromValue(ShipmentLink{shipment.id})});
    addGroup(report, u"最近の伝票"_s, slips);
    addGroup(report, u"よく買う商品"_s, goods);
    addGroup(report, u"最近の発送"_s, shipments);
    return report;
}

} // namespace

CustomerGlancePanel::CustomerGlancePanel(QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::CustomerGlancePanel>())
{
    m_ui->setupUi(this);
    // Stands for its list in the screen's tab order.
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(m_ui->gridGlance);
    m_ui->gridGlance->showColumns(glanceColumns());
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &CustomerGlancePanel::readOn);
    connect(m_ui->cmdSlip, &QPushButton::clicked, this, &CustomerGlancePanel::slipWanted);
    connect(m_ui->cmdLedger, &QPushButton::clicked, this, &CustomerGlancePanel::ledgerWanted);
    connect(m_ui->cmdSale, &QPushButton::clicked, this, &CustomerGlancePanel::saleWanted);
    connect(m_ui->cmdCharts, &QPushButton::clicked, this, &CustomerGlancePanel::chartsWanted);
    // Goods and headings lead to nothing.
    connect(m_ui->gridGlance, &QTableView::doubleClicked, this, [this] {
        if (m_ui->gridGlance->currentLink().isValid())
            emit slipWanted();
    });
    setOpeners({});
}

CustomerGlancePanel::~CustomerGlancePanel() = default;

void CustomerGlancePanel::bind(db::Connection &connection) { m_connection = &connection; }

void CustomerGlancePanel::setOpeners(const CustomerOpeners &openers)
{
    m_openers = openers;
    m_ui->cmdSlip->setVisible(bool(openers.slip));
    m_ui->cmdLedger->setVisible(bool(openers.ledger));
    m_ui->cmdSale->setVisible(bool(openers.sale));
    m_ui->cmdCharts->setVisible(bool(openers.charts));
}

// --- Reading ---

void CustomerGlancePanel::showCustomer(qint64 customer)
{
    if (customer == m_customer)
        return;
    m_customer = customer;
    showAgain();
}

void CustomerGlancePanel::showAgain()
{
    m_reader.reset();
    m_timer.stop();
    m_ui->labelBalance->clear();
    if (m_ui->gridGlance->rowCount() > 0)
        m_ui->gridGlance->clear();
    begin();
}

void CustomerGlancePanel::begin()
{
    if (m_customer == 0 || !isVisible() || !m_connection)
        return;
    m_reader.emplace(*m_connection, m_customer);
    qApp->installEventFilter(this);
    m_timer.start(afterTyping);
}

void CustomerGlancePanel::readOn()
{
    if (!m_reader || !m_connection->isOpen())
        return;
    base::Status read;
    {
        const db::NoWaiting noWaiting(*m_connection);
        read = m_reader->readOn();
    }
    if (!m_reader->isComplete())
        m_timer.start(read ? 0 : afterFailure);
    else
        qApp->removeEventFilter(this);
    showGlance();
}

void CustomerGlancePanel::showGlance()
{
    const CustomerGlance &glance = m_reader->glance();
    if (m_reader->isComplete())
        m_ui->labelBalance->setText(u"売掛金残高　%1 円"_s.arg(text::formatAmount(glance.balance.value())));
    else
        m_ui->labelBalance->setText(u"売掛金残高　…"_s);
    base::Report report = reportOf(glance);
    if (static_cast<int>(report.rows.size()) != m_ui->gridGlance->rowCount())
        m_ui->gridGlance->setReport(std::move(report));
}

// A key while there is something left to read puts that off.
bool CustomerGlancePanel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && m_timer.isActive())
        m_timer.start(afterTyping);
    return QWidget::eventFilter(watched, event);
}

void CustomerGlancePanel::hideEvent(QHideEvent *event)
{
    m_timer.stop();
    m_reader.reset();
    qApp->removeEventFilter(this);
    QWidget::hideEvent(event);
}

void CustomerGlancePanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!m_reader)
        begin();
}

// --- What it leads to ---

qint64 CustomerGlancePanel::currentShipment() const
{
    return m_ui->gridGlance->currentLink().value<ShipmentLink>().id;
}

void CustomerGlancePanel::openSlip(QWidget *parent)
{
    if (const qint64 shipment = currentShipment(); shipment > 0 && m_openers.shipments) {
        m_openers.shipments(parent, m_customer, shipment);
        showAgain();
        return;
    }
    if (!m_openers.slip || !m_reader || m_reader->glance().slips.empty())
        return;
    const std::vector<book::RecentSlip> &slips = m_reader->glance().slips;
    const qint64 wanted = m_ui->gridGlance->currentLink().toLongLong();
    const auto found = std::find_if(slips.begin(), slips.end(),
                                    [wanted](const book::RecentSlip &slip) { return slip.id == wanted; });
    const book::RecentSlip slip = found == slips.end() ? slips.front() : *found;
    m_openers.slip(parent, slip.kind, slip.id);
    showAgain();
}

void CustomerGlancePanel::openLedger(QWidget *parent)
{
    if (!m_openers.ledger || m_customer == 0)
        return;
    m_openers.ledger(parent, m_customer);
    showAgain();
}

void CustomerGlancePanel::openSale(QWidget *parent)
{
    if (!m_openers.sale || m_customer == 0)
        return;
    m_openers.sale(parent, m_customer);
    showAgain();
}

void CustomerGlancePanel::openCharts(QWidget *parent)
{
    if (m_openers.charts && m_customer != 0)
        m_openers.charts(parent, m_customer);
}

} // namespace registers
