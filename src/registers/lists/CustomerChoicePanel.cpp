#include "registers/lists/CustomerChoicePanel.h"

#include "masters/name_lists.h"
#include "registers/category_guard.h"
#include "text/numbers.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui_CustomerChoicePanel.h"
#include "workspace/workspace.h"

#include <QHeaderView>
#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace registers
{

CustomerChoicePanel::CustomerChoicePanel(QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::CustomerChoicePanel>())
{
    m_ui->setupUi(this);
    // Stands for its boxes in the screen's tab order.
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(m_ui->searchBar);
    m_ui->DataGrid1->installEventFilter(this);
}

CustomerChoicePanel::~CustomerChoicePanel() = default;

void CustomerChoicePanel::bind(workspace::Workspace &workspace, CustomerTicks::Guard guard)
{
    m_workspace = &workspace;
    m_ticks = std::make_unique<CustomerTicks>(workspace.connection, guard);
    m_ui->DataGrid1->setModel(m_ticks.get());
    setUpColumns();
    m_ui->DataGrid1->letSort();
    m_ui->DataGrid1->letChooseColumns(CustomerTicks::firstChoosable);
    connect(m_ui->DataGrid1, &ui::Grid::sortWanted, this, &CustomerChoicePanel::sortBy);
    connect(m_ticks.get(), &CustomerTicks::choiceChanged, this, &CustomerChoicePanel::showCount);
    connect(m_ui->searchBar, &CustomerSearchBar::searchStarted, this, &CustomerChoicePanel::search);
    connect(m_ui->cmdTickAll, &QPushButton::clicked, m_ticks.get(), [this] { m_ticks->tickAll(true); });
    connect(m_ui->cmdTickNone, &QPushButton::clicked, m_ticks.get(), [this] { m_ticks->tickAll(false); });
    showCount();
}

void CustomerChoicePanel::setUpColumns()
{
    for (int column = 0; column < m_ticks->columnCount(); ++column) {
        const int characters = m_ticks->width(column);
        m_ui->DataGrid1->setColumnHidden(column, characters == 0);
        m_ui->DataGrid1->setColumnWidth(column, (characters + 2) * fontMetrics().horizontalAdvance(u'0'));
    }
}

void CustomerChoicePanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_shown)
        return;
    m_shown = true;
    loadCategories();
}

// By their names, as the search asks for them; without them their numbers do.
void CustomerChoicePanel::loadCategories()
{
    if (const auto categories = masters::customerCategories(m_workspace->connection))
        m_ui->searchBar->setCategories(*categories);
}

void CustomerChoicePanel::search()
{
    if (!hasCategories(*m_workspace, window(), ui::messages::noCategories()))
        return;
    loadCategories();
    m_query = m_ui->searchBar->query();
    if (!find())
        return;
    if (m_ticks->count() > 0) {
        m_ui->DataGrid1->setFocus();
        if (m_ticks->index(0, 0).flags() & Qt::ItemIsEnabled)
            m_ui->DataGrid1->selectRow(0);
        return;
    }
    ui::prompts::inform(window(), ui::messages::nothingFound());
    m_ui->searchBar->focusCondition();
}

void CustomerChoicePanel::searchAgain() { find(); }

bool CustomerChoicePanel::find()
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const base::Status found = m_ticks->find(m_query);
    QGuiApplication::restoreOverrideCursor();
    if (!found)
        ui::prompts::inform(window(), found.error().text);
    if (found)
        m_sortedBy = -1;
    showSorting();
    return bool(found);
}

// Up, down, and as they were found.
void CustomerChoicePanel::sortBy(int column)
{
    if (!m_ticks->isSortable(column))
        return;
    const bool again = column == m_sortedBy;
    const bool isLast = again && m_direction == Qt::DescendingOrder;
    const auto direction = again ? Qt::DescendingOrder : Qt::AscendingOrder;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const base::Status sorted = m_ticks->sortBy(isLast ? -1 : column, direction);
    QGuiApplication::restoreOverrideCursor();
    if (!sorted)
        ui::prompts::inform(window(), sorted.error().text);
    if (sorted) {
        m_sortedBy = isLast ? -1 : column;
        m_direction = direction;
    }
    showSorting();
}

void CustomerChoicePanel::showSorting()
{
    QHeaderView *header = m_ui->DataGrid1->horizontalHeader();
    header->setSortIndicatorShown(m_sortedBy >= 0);
    if (m_sortedBy >= 0)
        header->setSortIndicator(m_sortedBy, m_direction);
}

void CustomerChoicePanel::showCount()
{
    QString sentence = u"該当データ　"_s + text::formatAmount(m_ticks->count()) + u"件　対象　"_s +
                       text::formatAmount(m_ticks->tickedCount()) + u"件"_s;
    if (const int withSlips = m_ticks->withSlips(); withSlips > 0)
        sentence += u"　伝票のある納品先　"_s + text::formatAmount(withSlips) + u"件"_s;
    m_ui->labelCount->setText(sentence);
    m_ui->cmdTickAll->setEnabled(m_ticks->count() > 0);
    m_ui->cmdTickNone->setEnabled(m_ticks->count() > 0);
    emit choiceChanged();
}

// The blank bar ticks the customer whichever of its fields the cursor is in.
bool CustomerChoicePanel::eventFilter(QObject *watched, QEvent *event)
{
    const bool isBlankBar = watched == m_ui->DataGrid1 && event->type() == QEvent::KeyPress &&
                            static_cast<QKeyEvent *>(event)->key() == Qt::Key_Space;
    if (isBlankBar)
        m_ticks->toggle(m_ui->DataGrid1->currentIndex().row());
    return isBlankBar || QWidget::eventFilter(watched, event);
}

} // namespace registers
