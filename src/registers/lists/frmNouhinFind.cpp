#include "registers/lists/frmNouhinFind.h"

#include "registers/category_guard.h"
#include "registers/counterpart.h"
#include "registers/customer.h"
#include "registers/lists/DialogMeibo.h"
#include "registers/lists/chosen_customers.h"
#include "registers/lists/customer_export.h"
#include "registers/lists/customer_search.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui/table_export.h"
#include "ui_frmNouhinFind.h"
#include "workspace/workspace.h"

#include <QShortcut>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

const QList<ui::GridColumn> listColumns = {
    {u"納品先ID"_s, 7, u"ID"_s},
    {u"コード"_s, 10},
    {u"納品先名1"_s, 32, u"納品先名１"_s},
    {u"納品先名2"_s, 22, u"納品先名２"_s},
    {u"フリガナ"_s, 20},
    {u"区分ID"_s, 12, u"区分"_s},
    {u"郵便番号"_s, 10},
    {u"住所1"_s, 40, u"住所１"_s},
    {u"住所2"_s, 30, u"住所２"_s},
    {u"TEL1"_s, 15, u"ＴＥＬ１"_s},
    {u"TEL2"_s, 15, u"ＴＥＬ２"_s},
    {u"FAX"_s, 15, u"ＦＡＸ"_s},
    {u"メール"_s, 24},
    {u"締め日"_s, 7},
    {u"消費税区分"_s, 16},
    {u"元帳出力"_s, 9},
    {u"登録日"_s, 11, {}, base::Format::Date},
    {u"更新日"_s, 11, {}, base::Format::Date},
    {u"誕生日"_s, 11, {}, base::Format::Date},
    {u"メモ"_s, 40},
    {u"敬称"_s, 6},
};

// By their place, as they are stored.
ui::NameOf numbered(const QStringList &names)
{
    QHash<qint64, QString> byNumber;
    for (const QString &name : names)
        byNumber.insert(byNumber.size(), name);
    return ui::namesFrom(byNumber);
}

} // namespace

frmNouhinFind::frmNouhinFind(workspace::Workspace &workspace, QWidget *parent)
    : RegisterScreen(workspace, {}, parent)
    , m_ui(std::make_unique<Ui::frmNouhinFind>())
{
    m_ui->setupUi(this);
    m_ui->panel->bind(workspace.connection, rows());
    m_ui->panel->connectPostalCodes(workspace);
    setUpList();
    connect(m_ui->searchBar, &CustomerSearchBar::searchStarted, this, &frmNouhinFind::search);
    connect(m_ui->Command3, &QPushButton::clicked, this, &frmNouhinFind::save);
    connect(m_ui->cmdDelete, &QPushButton::clicked, this, [this] {
        selectShownRow(*m_ui->DataGrid1, rows());
        removeRow();
    });
    connect(m_ui->cmdExport, &QPushButton::clicked, this, &frmNouhinFind::exportFound);
    connect(m_ui->Command1, &QPushButton::clicked, this, &frmNouhinFind::printRoster);
    connect(new QShortcut(Qt::Key_F3, this), &QShortcut::activated, m_ui->searchBar,
            &CustomerSearchBar::focusCondition);
    setUp();
    // For the hint; without categories the search tells it.
    if (m_ui->panel->loadCategories())
        m_ui->searchBar->setCategories(m_ui->panel->categories());
    showStates();
}

frmNouhinFind::~frmNouhinFind()
{
    // The box with the cursor loses it now, while the record set that it still edits is there.
    hide();
}

void frmNouhinFind::setUpList()
{
    m_ui->DataGrid1->letSort();
    m_ui->DataGrid1->letChooseColumns();
    m_ui->DataGrid1->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_ui->DataGrid1->setColumns(listColumns);
    m_ui->DataGrid1->setNames(u"締め日"_s, numbered(closingDayNames()));
    m_ui->DataGrid1->setNames(u"消費税区分"_s, numbered(taxClassNames()));
    m_ui->DataGrid1->setNames(u"元帳出力"_s, numbered({u"しない"_s, u"する"_s}));
    bindList(m_ui->DataGrid1, m_ui->labelCount);
    bindUndo(m_ui->cmdUndo);
}

bool frmNouhinFind::categoriesReady()
{
    if (!hasCategories(workspace(), this, ui::messages::noCategories()) ||
        !tell(m_ui->panel->loadCategories()))
        return false;
    const std::vector<masters::Entry> &categories = m_ui->panel->categories();
    QHash<qint64, QString> names;
    for (const masters::Entry &category : categories)
        names.insert(category.id, category.name);
    m_ui->DataGrid1->setNames(u"区分ID"_s, ui::namesFrom(names));
    m_ui->searchBar->setCategories(categories);
    return true;
}

void frmNouhinFind::search()
{
    if (!leaveRow() || !categoriesReady())
        return;
    const CustomerQuery query = m_ui->searchBar->query();
    if (!tell(openCustomersFound(rows(), query)))
        return;
    showStates();
    if (rows().isEmpty()) {
        ui::prompts::inform(this, ui::messages::nothingFound());
        m_ui->searchBar->focusCondition();
    } else if (query.item != everyCustomerItem) {
        // "すべて選択" searches while the arrow keys may still be on their way to another item.
        m_ui->DataGrid1->setFocus();
    }
}

void frmNouhinFind::printRoster()
{
    // What is typed is to be on paper.
    if (!leaveRow())
        return;
    auto chosen = askWhichCustomers(this, *m_ui->DataGrid1, rows(), u"印刷し"_s, false);
    if (chosen)
        DialogMeibo(workspace(), std::move(chosen->keys), this).exec();
}

void frmNouhinFind::exportFound()
{
    if (!leaveRow())
        return;
    const auto chosen = askWhichCustomers(this, *m_ui->DataGrid1, rows(), u"書き出し"_s, false);
    if (!chosen)
        return;
    ui::exportTable(
        this, {[&](const QString &fileName) { return checkCustomerExport(chosen->keys.size(), fileName); },
               [&](const QString &fileName, const base::Progress &progress) {
                   return exportCustomers(workspace().connection, chosen->keys, fileName, progress);
               }});
}

// --- The customer ---

void frmNouhinFind::settleBoxes() { m_ui->panel->settle(); }

void frmNouhinFind::forgetBoxes() { m_ui->panel->forget(); }

std::optional<RegisterScreen::Failure> frmNouhinFind::refusal() const
{
    const auto refused = rosterRefusal(rows(), m_ui->panel->categories());
    return refused ? std::optional(Failure{refused->text, u"更新"_s, refused->column}) : std::nullopt;
}

base::Status frmNouhinFind::store()
{
    const base::Status stored = saveCustomer(rows(), workspace().today());
    if (stored)
        m_ui->panel->saved();
    return stored;
}

bool frmNouhinFind::canTakeBack() const { return m_ui->panel->canTakeBack(); }

void frmNouhinFind::takeBack() { m_ui->panel->takeBack(); }

void frmNouhinFind::showRow() { m_ui->panel->showRow(); }

void frmNouhinFind::focusColumn(const QString &column) { m_ui->panel->focusColumn(column); }

std::vector<RegisterScreen::State> frmNouhinFind::states() const
{
    std::vector<State> states;
    for (QWidget *control : std::initializer_list<QWidget *>{m_ui->panel, m_ui->Command3, m_ui->cmdDelete,
                                                             m_ui->Command1, m_ui->cmdExport})
        states.push_back({control, false, true, true});
    return states;
}

QString frmNouhinFind::countText() const
{
    return rows().isOpen() ? u"該当データ　"_s + QString::number(rows().count()) + u"件"_s : QString();
}

} // namespace registers
