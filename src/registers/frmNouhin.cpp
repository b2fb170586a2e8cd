#include "registers/frmNouhin.h"

#include "app/settings.h"
#include "app/workspace.h"
#include "registers/customer.h"
#include "text/numbers.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui/width_check.h"
#include "ui_frmNouhin.h"

#include <QShortcut>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

const QList<ui::GridColumn> listColumns = {
    {u"納品先ID"_s, 7}, {u"コード"_s, 10}, {u"納品先名1"_s, 32}, {u"納品先名2"_s, 22}, {u"フリガナ"_s, 22},
    {u"TEL1"_s, 15},    {u"住所1"_s, 40},  {u"更新日"_s, 11},    {u"郵便番号"_s, 10},  {u"住所2"_s, 30},
    {u"TEL2"_s, 15},    {u"FAX"_s, 15},    {u"担当者名"_s, 16},  {u"登録日"_s, 11},
};

QString noCategoriesForList()
{
    return u"納品先登録区分が登録されていません。「新規登録」「納品先区分登録」を済ませてください。"_s;
}

// As the settings store has always held it.
enum StoredWindowState { Normal = 0, Minimised = 1, Maximised = 2 };

} // namespace

frmNouhin::frmNouhin(app::Workspace &workspace, QWidget *parent)
    : ui::Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::frmNouhin>())
    , m_customers(workspace.connection)
{
    m_ui->setupUi(this);
    m_ui->panel->bind(workspace.connection, m_customers);
    bindList();
    connectButtons();
    if (workspace.settings.integer(app::keys::nouhinWindowState) == Maximised)
        setWindowState(Qt::WindowMaximized);
    setUp();
    showStates();
}

frmNouhin::~frmNouhin()
{
    // The box with the cursor loses it now, while the record set that it still edits is there.
    hide();
}

void frmNouhin::bindList()
{
    m_customers.setCaption(u"納品先ID"_s, u"ID"_s);
    m_customers.setCaption(u"納品先名1"_s, u"納品先名１"_s);
    m_customers.setCaption(u"納品先名2"_s, u"納品先名２"_s);
    m_customers.setCaption(u"住所1"_s, u"住所１"_s);
    m_customers.setCaption(u"住所2"_s, u"住所２"_s);
    m_customers.setCaption(u"TEL1"_s, u"ＴＥＬ１"_s);
    m_customers.setCaption(u"TEL2"_s, u"ＴＥＬ２"_s);
    m_customers.setCaption(u"FAX"_s, u"ＦＡＸ"_s);
    m_customers.setSaver([this] {
        const auto failure = trySave();
        return failure ? db::Status(db::Error{failure->text}) : db::Status();
    });
    m_ui->DataGrid1->setColumns(listColumns);
    m_ui->DataGrid1->bind(m_customers, [this](const QString &) { tellFailure(); });
    connect(&m_customers, &db::Recordset::currentRowChanged, this, &frmNouhin::showStates);
}

void frmNouhin::connectButtons()
{
    const std::pair<QPushButton *, void (frmNouhin::*)()> actions[] = {
        {m_ui->cmdFind, &frmNouhin::search},          {m_ui->cmdNext, &frmNouhin::nextSearch},
        {m_ui->Command6, &frmNouhin::showAll},        {m_ui->cmdAdd, &frmNouhin::add},
        {m_ui->cmdUpdate, &frmNouhin::saveAndBrowse}, {m_ui->cmdNewDate, &frmNouhin::saveAndBrowse},
        {m_ui->cmdCancel, &frmNouhin::cancelEntry},   {m_ui->cmdDelete, &frmNouhin::removeCustomer},
    };
    for (const auto &[button, action] : actions)
        connect(button, &QPushButton::clicked, this, action);
    connect(new QShortcut(Qt::Key_F3, this), &QShortcut::activated, this, [this] {
        m_ui->txtKey1->setFocus(Qt::ShortcutFocusReason);
        m_ui->txtKey1->selectAll();
    });
}

// --- Opening and closing ---

void frmNouhin::openCustomer(qint64 id)
{
    m_opened = true;
    if (tell(m_ui->panel->loadCategories()))
        tell(registers::openCustomer(m_customers, id));
}

void frmNouhin::open()
{
    m_opened = true;
    if (tell(m_ui->panel->loadCategories()))
        tell(registers::openEveryCustomer(m_customers));
}

void frmNouhin::showEvent(QShowEvent *event)
{
    if (!m_opened)
        open();
    ui::Screen::showEvent(event);
    // Once the screen stands, so that a message has a window behind it.
    if (m_startsNew)
        QMetaObject::invokeMethod(this, &frmNouhin::add, Qt::QueuedConnection);
    m_startsNew = false;
}

bool frmNouhin::mayClose()
{
    if (m_customers.isDirty() && !(m_mode == Mode::Entry ? leaveEntry() : leaveBrowsing()))
        return false;
    const int state = isMaximized() ? Maximised : isMinimized() ? Minimised : Normal;
    workspace().settings.write(app::keys::nouhinWindowState, state);
    return true;
}

// A new customer is stored from the start, so giving up what was typed leaves it with its key and dates only;
// the clerk finds it in the list and fills it in later.
bool frmNouhin::leaveEntry()
{
    switch (ui::prompts::askToSave(this, u"入力中の納品先が登録されていません。登録しますか？"_s)) {
    case ui::prompts::Choice::Save:
        return save();
    case ui::prompts::Choice::Discard:
        m_customers.revert();
        return true;
    case ui::prompts::Choice::Cancel:
        break;
    }
    return false;
}

bool frmNouhin::leaveBrowsing()
{
    const auto failure = trySave();
    if (!failure)
        return true;
    if (!ui::prompts::ask(this, failure->text.trimmed() + u"\n変更を保存せずに閉じますか？"_s)) {
        m_ui->panel->focusColumn(failure->column);
        return false;
    }
    m_customers.revert();
    return true;
}

// --- The list ---

bool frmNouhin::categoriesReady(const QString &sentence)
{
    if (!tell(m_ui->panel->loadCategories()))
        return false;
    const bool any = !m_ui->panel->categories().empty();
    if (!any)
        ui::prompts::inform(this, sentence);
    return any;
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
    const auto found = registers::openCustomersLike(m_customers, text);
    if (!found)
        ui::prompts::inform(this, found.error().text);
    else if (*found)
        m_ui->DataGrid1->setFocus();
    else if (ui::prompts::ask(this, u"検索した納品先は見つかりませんでした。\n新規に入力しますか？"_s))
        add();
    else
        m_ui->txtKey1->setFocus();
}

void frmNouhin::nextSearch()
{
    m_ui->txtKey1->clear();
    m_ui->txtKey1->setFocus();
}

void frmNouhin::showAll()
{
    if (leaveRow() && categoriesReady(noCategoriesForList()))
        tell(registers::openEveryCustomer(m_customers));
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
    if (!tell(registers::openForEntry(m_customers, *added)))
        return;
    setMode(Mode::Entry);
    m_ui->panel->beginEntry();
}

void frmNouhin::saveAndBrowse()
{
    if (!save())
        return;
    const bool wasEntry = m_mode == Mode::Entry;
    setMode(Mode::Browsing);
    if (wasEntry)
        m_ui->cmdAdd->setFocus();
}

void frmNouhin::cancelEntry()
{
    if (!tell(m_customers.remove()))
        return;
    setMode(Mode::Browsing);
    m_ui->cmdAdd->setFocus();
}

void frmNouhin::removeCustomer()
{
    if (m_customers.isEmpty() || !ui::prompts::ask(this, ui::messages::deleteQuestion()))
        return;
    if (tell(m_customers.remove()))
        setMode(Mode::Browsing);
}

std::optional<frmNouhin::Failure> frmNouhin::trySave()
{
    m_failure.reset();
    const QString title = u"更新"_s;
    if (const auto refusal = registers::customerRefusal(m_customers, m_ui->panel->categories())) {
        m_failure = Failure{refusal->text, title, refusal->column};
    } else if (const auto tooWide = ui::WidthCheck::refusal(this)) {
        m_failure = Failure{*tooWide, QString::fromUtf16(ui::prompts::errorCheck), {}};
    } else {
        const qint64 id = m_customers.currentKey();
        const db::Status saved = registers::saveCustomer(m_customers, workspace().today());
        if (saved)
            m_savedCustomer = id;
        else
            m_failure = Failure{saved.error().text, title, {}};
        m_ui->panel->showRow();
    }
    return m_failure;
}

bool frmNouhin::save()
{
    const bool saved = !trySave();
    if (!saved)
        tellFailure();
    return saved;
}

bool frmNouhin::leaveRow() { return !m_customers.isDirty() || save(); }

void frmNouhin::tellFailure()
{
    if (!m_failure)
        return;
    ui::prompts::inform(this, m_failure->text, m_failure->title);
    m_ui->panel->focusColumn(m_failure->column);
}

// --- States ---

void frmNouhin::setMode(Mode mode)
{
    m_mode = mode;
    showStates();
}

void frmNouhin::showStates()
{
    struct State
    {
        QWidget *control;
        bool withoutRow, browsing, entry;
    };
    const State states[] = {
        {m_ui->Frame2, true, true, false},     {m_ui->DataGrid1, true, true, false},
        {m_ui->panel, false, true, true},      {m_ui->cmdAdd, true, true, false},
        {m_ui->cmdUpdate, false, false, true}, {m_ui->cmdNewDate, false, true, false},
        {m_ui->cmdCancel, false, false, true}, {m_ui->cmdDelete, false, true, false},
    };
    for (const State &state : states) {
        const bool whileBrowsing = m_customers.isEmpty() ? state.withoutRow : state.browsing;
        state.control->setEnabled(m_mode == Mode::Entry ? state.entry : whileBrowsing);
    }
    m_ui->labelCount->setText(text::formatAmount(m_customers.count()) + u" 件"_s);
}

} // namespace registers
