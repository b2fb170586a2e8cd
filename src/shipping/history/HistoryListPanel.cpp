#include "shipping/history/HistoryListPanel.h"

#include "db/recordset.h"
#include "shipping/history/history_deletion.h"
#include "shipping/history/history_grid.h"
#include "text/dates.h"
#include "text/numbers.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui_HistoryListPanel.h"
#include "workspace/workspace.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

HistoryListPanel::HistoryListPanel(QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::HistoryListPanel>())
{
    m_ui->setupUi(this);
    // Stands for its boxes in the screen's tab order.
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(m_ui->txtKey1);
    m_ui->DTPicker1->setEnabled(false);
    connect(m_ui->chkDate, &QCheckBox::toggled, m_ui->DTPicker1, &QWidget::setEnabled);
    connect(m_ui->Command1, &QPushButton::clicked, this, &HistoryListPanel::searchWanted);
    connect(m_ui->cmdAll, &QPushButton::clicked, this, &HistoryListPanel::allWanted);
}

HistoryListPanel::~HistoryListPanel() = default;

base::Status HistoryListPanel::bind(workspace::Workspace &workspace, db::Recordset &rows,
                                    std::function<void(const QString &)> refused)
{
    m_workspace = &workspace;
    m_rows = &rows;
    const QDate today = workspace.today();
    m_ui->DTPicker1->setDate({today.year(), today.month(), 1});
    m_ui->DataGrid1->letSort();
    m_ui->DataGrid1->letChooseColumns();
    m_ui->DataGrid1->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_ui->DataGrid1->setColumns(historyColumns());
    m_ui->DataGrid1->bind(rows, std::move(refused));
    connect(&rows, &db::Recordset::currentRowChanged, this, &HistoryListPanel::showCount);
    connect(&rows, &db::Recordset::extended, this, &HistoryListPanel::showCount);
    connect(m_ui->DataGrid1->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &HistoryListPanel::showCount);
    return offerCategories();
}

// Those of the shipments, registered today or not: no other one finds any.
base::Status HistoryListPanel::offerCategories()
{
    const auto categories = categoriesInHistory(m_workspace->connection);
    const QString chosen = m_ui->cmbKubun->currentData().toString();
    m_ui->cmbKubun->clear();
    m_ui->cmbKubun->addItem(u"すべて"_s, QString());
    if (!categories)
        return categories.error();
    for (const CategoryCount &each : *categories) {
        if (!each.category.isEmpty())
            m_ui->cmbKubun->addItem(each.category, each.category);
    }
    m_ui->cmbKubun->setCurrentIndex(std::max(0, m_ui->cmbKubun->findData(chosen)));
    return {};
}

HistoryQuery HistoryListPanel::typedQuery() const
{
    HistoryQuery query;
    if (m_ui->chkDate->isChecked())
        query.from = m_ui->DTPicker1->date();
    query.sender = m_ui->txtKey1->text().trimmed();
    query.consignee = m_ui->txtKey2->text().trimmed();
    query.category = m_ui->cmbKubun->currentData().toString();
    query.tracking = m_ui->txtFindNo->text().trimmed();
    query.withoutTracking = m_ui->chkOpen->isChecked();
    return query;
}

void HistoryListPanel::clearBoxes()
{
    for (QLineEdit *box : {m_ui->txtKey1, m_ui->txtKey2, m_ui->txtFindNo})
        box->clear();
    m_ui->chkDate->setChecked(false);
    m_ui->chkOpen->setChecked(false);
    m_ui->cmbKubun->setCurrentIndex(0);
}

// \return whether it is open; what went wrong is told, and the list is as it was
bool HistoryListPanel::open(const HistoryQuery &query)
{
    if (const base::Status opened = openHistory(*m_rows, query); !opened) {
        ui::prompts::inform(window(), opened.error().text);
        return false;
    }
    m_shown = query;
    showCount();
    return true;
}

void HistoryListPanel::search()
{
    m_whose.clear();
    if (!open(typedQuery()))
        return;
    if (!m_rows->isEmpty()) {
        focusList();
        return;
    }
    const QString hint =
        m_shown.from.isValid()
            ? u"%1 より前の発送は探していません。「受付日」のチェックを外すと、すべての日から探します。"_s
                  .arg(text::formatDate(m_shown.from))
            : QString();
    ui::prompts::inform(window(), ui::messages::nothingFound(), QString::fromUtf16(ui::prompts::information),
                        ui::prompts::Icon::Information, hint);
    m_ui->txtKey1->setFocus();
}

void HistoryListPanel::showAll()
{
    clearBoxes();
    m_whose.clear();
    if (open({}))
        focusList();
}

void HistoryListPanel::showOnly(const HistoryQuery &query, const QString &whose)
{
    clearBoxes();
    m_whose = whose;
    if (open(query))
        focusList();
}

void HistoryListPanel::searchAgain()
{
    const base::Status offered = offerCategories();
    if (const base::Status read = offered ? m_rows->requery() : offered; !read)
        ui::prompts::inform(window(), read.error().text);
    showCount();
}

void HistoryListPanel::focusList() { m_ui->DataGrid1->setFocus(); }

void HistoryListPanel::putBesideList(QWidget *widget) { m_ui->layoutList->addWidget(widget); }

std::vector<qint64> HistoryListPanel::selectedKeys() const
{
    std::vector<int> rows;
    const auto selected = m_ui->DataGrid1->selectionModel()->selectedRows();
    for (const QModelIndex &index : selected)
        rows.push_back(index.row());
    if (rows.empty() && m_rows->currentRow() >= 0)
        rows.push_back(m_rows->currentRow());
    std::sort(rows.begin(), rows.end());
    std::vector<qint64> keys;
    for (const int row : rows)
        keys.push_back(m_rows->keyAt(row));
    return keys;
}

base::Result<std::vector<qint64>> HistoryListPanel::chosenKeys() const
{
    if (std::vector<qint64> selected = selectedKeys(); selected.size() > 1)
        return selected;
    if (const base::Status read = m_rows->readAll(); !read)
        return read.error();
    std::vector<qint64> keys;
    for (int row = 0; row < m_rows->count(); ++row)
        keys.push_back(m_rows->keyAt(row));
    return keys;
}

QString HistoryListPanel::inWords() const
{
    QStringList words;
    const auto add = [&words](const QString &what, const QString &text) {
        if (!text.isEmpty())
            words << u"%1「%2」"_s.arg(what, text.left(40));
    };
    if (!m_whose.isEmpty())
        words << m_whose;
    if (m_shown.from.isValid())
        words << u"受付日 %1 以降"_s.arg(text::formatDate(m_shown.from));
    add(u"発送区分"_s, m_shown.category);
    add(u"ご依頼主"_s, m_shown.sender);
    add(u"お届け先"_s, m_shown.consignee);
    add(u"送り状番号"_s, m_shown.tracking);
    if (m_shown.withoutTracking)
        words << u"番号が未入力の発送"_s;
    return words.join(u'　');
}

void HistoryListPanel::showCount()
{
    const QString count = text::formatAmount(m_rows->count());
    QString words = m_rows->isEmpty()      ? u"該当する発送はありません。"_s
                    : m_rows->isComplete() ? u"%1 件"_s.arg(count)
                                           : u"%1 件以上"_s.arg(count);
    const auto selected = m_ui->DataGrid1->selectionModel()->selectedRows().size();
    if (selected > 1)
        words = u"%1 件を選択 / "_s.arg(text::formatAmount(double(selected))) + words;
    m_ui->lblCount->setText(m_whose.isEmpty() ? words : m_whose + u"　"_s + words);
}

} // namespace shipping
