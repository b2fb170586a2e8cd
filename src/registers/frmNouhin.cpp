#include "registers/frmNouhin.h"

#include "registers/category_guard.h"
#include "registers/customer.h"
#include "registers/duplicates/DialogDuplicates.h"
#include "registers/lists/chosen_customers.h"
#include "registers/lists/customer_export.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui/table_export.h"
#include "ui_frmNouhin.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QShortcut>

#include <utility>

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
    {u"フリガナ"_s, 22},
    {u"TEL1"_s, 15, u"ＴＥＬ１"_s},
    {u"住所1"_s, 40, u"住所１"_s},
    {u"更新日"_s, 11, {}, base::Format::Date},
    {u"郵便番号"_s, 10},
    {u"住所2"_s, 30, u"住所２"_s},
    {u"TEL2"_s, 15, u"ＴＥＬ２"_s},
    {u"FAX"_s, 15, u"ＦＡＸ"_s},
    {u"担当者名"_s, 16},
    {u"登録日"_s, 11, {}, base::Format::Date},
    {u"敬称"_s, 6},
};

QString noCategoriesForList()
{
    return u"納品先登録区分が登録されていません。「新規登録」「納品先区分登録」を済ませてください。"_s;
}

// As the settings store has always held it.
enum StoredWindowState { Normal = 0, Minimised = 1, Maximised = 2 };

} // namespace

frmNouhin::frmNouhin(workspace::Workspace &workspace, QWidget *parent)
    : RegisterScreen(workspace, u"入力中の納品先が登録されていません。登録しますか？"_s, parent)
    , m_ui(std::make_unique<Ui::frmNouhin>())
{
    m_ui->setupUi(this);
    m_ui->panel->bind(workspace.connection, rows());
    m_ui->panel->connectPostalCodes(workspace);
    m_ui->importPanel->bind(workspace);
    m_ui->glance->bind(workspace.connection);
    setUpList();
    connectButtons();
    connectGlance();
    if (workspace.settings.integer(workspace::keys::nouhinWindowState) == Maximised)
        setWindowState(Qt::WindowMaximized);
    setUp();
    showStates();
}

frmNouhin::~frmNouhin()
{
    // The box with the cursor loses it now, while the record set that it still edits is there.
    hide();
}

void frmNouhin::setUpList()
{
    m_ui->DataGrid1->letSort();
    m_ui->DataGrid1->letChooseColumns();
    m_ui->DataGrid1->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_ui->DataGrid1->setColumns(listColumns);
    bindList(m_ui->DataGrid1, m_ui->labelCount);
    bindUndo(m_ui->cmdUndo);
    bindNameless(m_ui->cmdNameless, book::Party::Customer);
}

void frmNouhin::connectButtons()
{
    const std::pair<QPushButton *, void (frmNouhin::*)()> actions[] = {
        {m_ui->cmdFind, &frmNouhin::search},          {m_ui->cmdNext, &frmNouhin::nextSearch},
        {m_ui->Command6, &frmNouhin::showAll},        {m_ui->cmdAdd, &frmNouhin::add},
        {m_ui->cmdUpdate, &frmNouhin::saveAndBrowse}, {m_ui->cmdNewDate, &frmNouhin::saveAndBrowse},
        {m_ui->cmdCancel, &frmNouhin::cancelEntry},   {m_ui->cmdDelete, &frmNouhin::removeShown},
        {m_ui->Command7, &frmNouhin::exportAll},      {m_ui->Command1, &frmNouhin::importFile},
        {m_ui->Command2, &frmNouhin::pasteTable},     {m_ui->cmdDuplicates, &frmNouhin::mergeDuplicates},
    };
    for (const auto &[button, action] : actions)
        connect(button, &QPushButton::clicked, this, action);
    connect(m_ui->importPanel, &CustomerImportPanel::finished, this, &frmNouhin::endImport);
    connect(m_ui->importPanel, &CustomerImportPanel::imported, this,
            [this] { openRowsAt(rows().currentKey()); });
    connect(new QShortcut(Qt::Key_F3, this), &QShortcut::activated, this, [this] {
        m_ui->txtKey1->setFocus(Qt::ShortcutFocusReason);
        m_ui->txtKey1->selectAll();
    });
}

// --- What the customer leads to ---

void frmNouhin::setOpeners(const CustomerOpeners &openers) { m_ui->glance->setOpeners(openers); }

void frmNouhin::connectGlance()
{
    connect(&rows(), &db::Recordset::currentRowChanged, m_ui->glance,
            [this](int row) { m_ui->glance->showCustomer(row < 0 ? 0 : rows().currentKey()); });
    const struct
    {
        Qt::Key key;
        void (CustomerGlancePanel::*wanted)();
        void (CustomerGlancePanel::*open)(QWidget *);
    } ways[] = {
        {Qt::Key_F6, &CustomerGlancePanel::slipWanted, &CustomerGlancePanel::openSlip},
        {Qt::Key_F7, &CustomerGlancePanel::ledgerWanted, &CustomerGlancePanel::openLedger},
        {Qt::Key_F8, &CustomerGlancePanel::saleWanted, &CustomerGlancePanel::openSale},
        {Qt::Key_F9, &CustomerGlancePanel::chartsWanted, &CustomerGlancePanel::openCharts},
    };
    for (const auto &way : ways) {
        connect(m_ui->glance, way.wanted, this, [this, way] { leadTo(way.open); });
        connect(new QShortcut(way.key, this), &QShortcut::activated, this, [this, way] { leadTo(way.open); });
    }
}

// What was typed is saved first: the other screen shows the customer too.
void frmNouhin::leadTo(void (CustomerGlancePanel::*way)(QWidget *))
{
    if (!m_ui->glance->isEnabled() || !m_ui->glance->isVisible() || !leaveRow())
        return;
    (m_ui->glance->*way)(this);
    rows().refresh();
}

// --- Opening and closing ---

void frmNouhin::openCustomer(qint64 id)
{
    const base::Status loaded = m_ui->panel->loadCategories();
    opened(loaded ? registers::openCustomer(rows(), id) : loaded);
    m_isPart = true;
}

base::Status frmNouhin::openRows()
{
    const base::Status loaded = m_ui->panel->loadCategories();
    const base::Status opened = loaded ? registers::openEveryCustomer(rows()) : loaded;
    m_isPart = m_isPart && !opened;
    return opened;
}

bool frmNouhin::mayClose()
{
    if (!RegisterScreen::mayClose())
        return false;
    const int state = isMaximized() ? Maximised : isMinimized() ? Minimised : Normal;
    workspace().settings.write(workspace::keys::nouhinWindowState, state);
    return true;
}

// --- The list ---

bool frmNouhin::categoriesReady(const QString &sentence)
{
    return hasCategories(workspace(), this, sentence) && tell(m_ui->panel->loadCategories());
}

void frmNouhin::search()
{
    const QString text = m_ui->txtKey1->text();
    if (text.isEmpty()) {
        ui::prompts::inform(this, ui::messages::searchEmpty());
        m_ui->txtKey1->setFocus();
        return;
    }
    if (!leaveRow() || !categoriesReady(noCategoriesForList()))
        return;
    const auto found = registers::openCustomersLike(rows(), text);
    m_isPart = m_isPart || (found && *found);
    if (!found)
        ui::prompts::inform(this, found.error().text);
    else if (*found)
        showFound();
    else if (ui::prompts::ask(this, u"検索した納品先は見つかりませんでした。\n新規に入力しますか？"_s))
        add();
    else
        m_ui->txtKey1->setFocus();
}

// The only one that was found is the one that was looked for.
void frmNouhin::showFound()
{
    if (rows().isComplete() && rows().count() == 1)
        rememberRow();
    m_ui->DataGrid1->setFocus();
}

void frmNouhin::nextSearch()
{
    m_ui->txtKey1->clear();
    m_ui->txtKey1->setFocus();
}

void frmNouhin::showAll()
{
    if (leaveRow() && categoriesReady(noCategoriesForList()))
        openEvery();
}

void frmNouhin::openEvery()
{
    if (tell(registers::openEveryCustomer(rows())))
        m_isPart = false;
}

// --- The import ---

void frmNouhin::importFile()
{
    if (leaveRow() && categoriesReady(ui::messages::noCategories()) && m_ui->importPanel->openFile())
        showImport(true);
}

void frmNouhin::pasteTable()
{
    if (leaveRow() && categoriesReady(ui::messages::noCategories()) && m_ui->importPanel->paste())
        showImport(true);
}

void frmNouhin::endImport() { showImport(false); }

// The rows to import take the place of all but the two buttons that bring further ones.
void frmNouhin::showImport(bool shown)
{
    // What goes makes room first: with both in it the window would grow, and stay so.
    if (!shown)
        m_ui->importPanel->hide();
    for (const State &state : states()) {
        if (state.control != m_ui->Command1 && state.control != m_ui->Command2)
            state.control->setVisible(!shown);
    }
    if (shown)
        m_ui->importPanel->show();
    m_ui->layoutScreen->setStretchFactor(m_ui->layoutList, shown ? 0 : 1);
    (shown ? static_cast<QWidget *>(m_ui->importPanel) : m_ui->DataGrid1)->setFocus();
}

// --- The customer ---

void frmNouhin::add()
{
    if (!leaveRow() || !categoriesReady(ui::messages::noCategories()))
        return;
    const auto added = registers::addCustomer(workspace().connection, workspace().today());
    if (!added) {
        ui::prompts::inform(this, added.error().text);
        return;
    }
    if (!tell(registers::openForEntry(rows(), *added)))
        return;
    m_isPart = false;
    beginEntry();
    m_ui->panel->beginEntry();
    const QVariantMap known = std::exchange(m_known, {});
    for (auto value = known.cbegin(); value != known.cend(); ++value)
        rows().setValue(value.key(), value.value());
    if (!known.isEmpty())
        showRow();
}

void frmNouhin::startNewWith(const QVariantMap &values)
{
    m_known = values;
    startNew();
}

void frmNouhin::exportAll()
{
    if (!leaveRow())
        return;
    ChosenCustomers chosen{.all = true, .keys = {}};
    const bool hasPart = m_isPart || m_ui->DataGrid1->selectionModel()->selectedRows().size() > 1;
    if (hasPart) {
        const auto asked = askWhichCustomers(this, *m_ui->DataGrid1, rows(), u"書き出し"_s, true);
        if (!asked)
            return;
        chosen = *asked;
    }
    db::Connection &connection = workspace().connection;
    ui::exportTable(this, {[&](const QString &fileName) {
                               return chosen.all ? checkCustomerExport(connection, fileName)
                                                 : checkCustomerExport(chosen.keys.size(), fileName);
                           },
                           [&](const QString &fileName, const base::Progress &progress) {
                               return chosen.all
                                          ? exportCustomers(connection, fileName, progress)
                                          : exportCustomers(connection, chosen.keys, fileName, progress);
                           }});
}

// What stands in the boxes goes, and nothing else that is marked in the list.
void frmNouhin::removeShown()
{
    selectShownRow(*m_ui->DataGrid1, rows());
    removeRow();
}

void frmNouhin::mergeDuplicates()
{
    if (!leaveRow())
        return;
    const qint64 before = rows().currentKey();
    DialogDuplicates dialog(workspace(), this);
    dialog.exec();
    const qint64 now = dialog.standsFor(before);
    if (tell(rows().requery()) && rows().currentKey() != now)
        openRowsAt(now);
    m_ui->glance->showAgain(); // the first one may have got slips
    m_ui->DataGrid1->setFocus();
}

void frmNouhin::settleBoxes() { m_ui->panel->settle(); }

void frmNouhin::forgetBoxes() { m_ui->panel->forget(); }

std::optional<RegisterScreen::Failure> frmNouhin::refusal() const
{
    const auto refused = registers::customerRefusal(rows(), m_ui->panel->categories());
    return refused ? std::optional(Failure{refused->text, u"更新"_s, refused->column}) : std::nullopt;
}

base::Status frmNouhin::store()
{
    const base::Status stored = mode() == Mode::Entry
                                    ? registers::saveNewCustomer(rows(), workspace().today())
                                    : registers::saveCustomer(rows(), workspace().today());
    if (stored)
        m_ui->panel->saved();
    return stored;
}

bool frmNouhin::canTakeBack() const { return m_ui->panel->canTakeBack(); }

void frmNouhin::takeBack() { m_ui->panel->takeBack(); }

void frmNouhin::showRow() { m_ui->panel->showRow(); }

void frmNouhin::focusColumn(const QString &column) { m_ui->panel->focusColumn(column); }

void frmNouhin::entryEnded() { m_ui->cmdAdd->setFocus(); }

std::vector<RegisterScreen::State> frmNouhin::states() const
{
    return {
        {m_ui->Frame2, true, true, false},         {m_ui->DataGrid1, true, true, false},
        {m_ui->panel, false, true, true},          {m_ui->cmdAdd, true, true, false},
        {m_ui->cmdUpdate, false, false, true},     {m_ui->cmdNewDate, false, true, false},
        {m_ui->cmdCancel, false, false, true},     {m_ui->cmdUndo, false, true, false},
        {m_ui->cmdDelete, false, true, false},     {m_ui->Command7, true, true, false},
        {m_ui->Command1, true, true, false},       {m_ui->Command2, true, true, false},
        {m_ui->cmdDuplicates, false, true, false}, {m_ui->glance, false, true, false},
    };
}

} // namespace registers
