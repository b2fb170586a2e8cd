#include "shipping/addresses/DialogHagakiB.h"

#include "db/recordset.h"
#include "masters/name_lists.h"
#include "registers/category_guard.h"
#include "registers/lists/customer_search.h"
#include "shipping/addresses/address_marks.h"
#include "shipping/addresses/address_print.h"
#include "text/numbers.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_DialogHagakiB.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QHeaderView>
#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr qsizetype mostNamed = 10; // in one message

base::Result<std::vector<AddressRow>> rowsFound(db::Connection &connection,
                                                const registers::CustomerQuery &query)
{
    db::Recordset found(connection);
    base::Status read = registers::openCustomersFound(found, query);
    if (read)
        read = found.readAll();
    if (!read)
        return read.error();
    std::vector<qint64> ids;
    for (int row = 0; row < found.count(); ++row)
        ids.push_back(found.keyAt(row));
    return readAddressRows(connection, ids);
}

QString counted(std::size_t count) { return text::formatAmount(double(count)) + u"件"_s; }

// The first of \a lines, and how many there are besides.
QString firstOf(const QStringList &lines)
{
    return lines.mid(0, mostNamed).join(u'\n') +
           (lines.size() > mostNamed ? u"\nほか "_s + counted(std::size_t(lines.size() - mostNamed))
                                     : QString());
}

} // namespace

DialogHagakiB::DialogHagakiB(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogHagakiB>())
{
    m_ui->setupUi(this);
    m_ui->panel->bind(workspace, printing::Purpose::AddressRange);
    m_ui->Check2->setChecked(addressChoice(workspace.settings).withContact);
    m_addresses.setWithContact(m_ui->Check2->isChecked());
    m_ui->DTPicker1->setDate(workspace.today().addMonths(-1));
    setUpGrid();
    connectControls();
    setUp();
    showState();
}

DialogHagakiB::~DialogHagakiB() = default;

void DialogHagakiB::setUpGrid()
{
    const int digit = fontMetrics().horizontalAdvance(u'0');
    m_ui->grdAddresses->setModel(&m_addresses);
    for (int column = 0; column < m_addresses.columnCount(); ++column)
        m_ui->grdAddresses->setColumnWidth(column, (AddressTicks::width(column) + 2) * digit);
    m_ui->grdAddresses->horizontalHeader()->setStretchLastSection(true);
    m_ui->grdAddresses->installEventFilter(this);
}

void DialogHagakiB::connectControls()
{
    connect(&m_addresses, &AddressTicks::choiceChanged, this, &DialogHagakiB::showState);
    connect(m_ui->searchBar, &registers::CustomerSearchBar::searchStarted, this, &DialogHagakiB::search);
    connect(m_ui->cmdRoster, &QPushButton::clicked, this, &DialogHagakiB::openRoster);
    connect(m_ui->cmdTickAll, &QPushButton::clicked, this, [this] { m_addresses.tickAll(true); });
    connect(m_ui->cmdTickNone, &QPushButton::clicked, this, [this] { m_addresses.tickAll(false); });
    connect(m_ui->Check1, &QCheckBox::toggled, this, &DialogHagakiB::leaveOut);
    connect(m_ui->DTPicker1, &QDateEdit::dateChanged, this, &DialogHagakiB::leaveOut);
    connect(m_ui->Check2, &QCheckBox::toggled, &m_addresses, &AddressTicks::setWithContact);
    connect(m_ui->cmdPreview, &QPushButton::clicked, this, &DialogHagakiB::preview);
    connect(m_ui->cmdPrint, &QPushButton::clicked, this, &DialogHagakiB::print);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &DialogHagakiB::reject);
}

// By their names, as the search asks for them; without them their numbers do.
void DialogHagakiB::showEvent(QShowEvent *event)
{
    Screen::showEvent(event);
    if (const auto categories = masters::customerCategories(workspace().connection))
        m_ui->searchBar->setCategories(*categories);
}

// The blank bar ticks the address whichever of its fields the cursor is in.
bool DialogHagakiB::eventFilter(QObject *watched, QEvent *event)
{
    const bool isBlankBar = watched == m_ui->grdAddresses && event->type() == QEvent::KeyPress &&
                            static_cast<QKeyEvent *>(event)->key() == Qt::Key_Space;
    if (isBlankBar)
        m_addresses.toggle(m_ui->grdAddresses->currentIndex().row());
    return isBlankBar || Screen::eventFilter(watched, event);
}

// --- The list ---

void DialogHagakiB::search()
{
    if (!registers::hasCategories(workspace(), this, ui::messages::noCategories()))
        return;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const registers::CustomerQuery query = m_ui->searchBar->query();
    auto rows = rowsFound(workspace().connection, query);
    QGuiApplication::restoreOverrideCursor();
    if (!list(std::move(rows)))
        m_ui->searchBar->focusCondition();
    else if (query.item != registers::everyCustomerItem)
        m_ui->grdAddresses->setFocus(); // else the arrow keys may be on their way to another item
}

void DialogHagakiB::openRoster()
{
    const QString fileName = ui::file_dialogs::openFile(this, u"補助名簿のファイル"_s,
                                                        u"cdb ﾌｧｲﾙ (*.cdb);;すべてのファイル (*.*)"_s);
    if (!fileName.isEmpty() && list(readRosterRows(workspace().connection, fileName)))
        m_ui->grdAddresses->setFocus();
}

// After a failure the list is as it was.
bool DialogHagakiB::list(base::Result<std::vector<AddressRow>> rows)
{
    const auto printed = lastAddressed(workspace().connection);
    if (!tell(rows.status()) || !tell(printed.status()))
        return false;
    if (rows->empty()) {
        ui::prompts::inform(this, ui::messages::nothingFound());
        return false;
    }
    m_addresses.setRows(std::move(*rows), *printed);
    m_ui->grdAddresses->selectRow(0);
    return true;
}

void DialogHagakiB::leaveOut()
{
    m_addresses.leaveOutSince(m_ui->Check1->isChecked() ? m_ui->DTPicker1->date() : QDate());
}

void DialogHagakiB::showState()
{
    const std::size_t ticked = m_addresses.ticked().size();
    QString words = u"%1のうち %2"_s.arg(counted(std::size_t(m_addresses.rowCount())), counted(ticked));
    if (const int leftOut = m_addresses.leftOut(); leftOut > 0)
        words += u"　印刷済のため出していない宛名 "_s + counted(std::size_t(leftOut));
    m_ui->lblCount->setText(words);
    for (QPushButton *button : {m_ui->cmdTickAll, m_ui->cmdTickNone})
        button->setEnabled(m_addresses.rowCount() > 0);
    for (QPushButton *button : {m_ui->cmdPreview, m_ui->cmdPrint})
        button->setEnabled(ticked > 0);
}

// --- The papers ---

std::optional<AddressJob> DialogHagakiB::job()
{
    if (!m_ui->panel->store())
        return std::nullopt;
    auto setup = m_ui->panel->setup();
    if (!tell(setup.status()))
        return std::nullopt;
    return AddressJob{m_addresses.ticked(), std::move(*setup), printing::Purpose::AddressRange};
}

void DialogHagakiB::preview()
{
    if (const auto chosen = job())
        previewAddresses(workspace(), this, *chosen);
}

void DialogHagakiB::print()
{
    const auto chosen = job();
    if (!chosen)
        return;
    const auto settings = askAddressPrinter(workspace(), this, *chosen, m_ui->panel->printer());
    if (!settings)
        return;
    QStringList told;
    if (const QStringList lacking = m_addresses.lacking(); !lacking.isEmpty())
        told << u"次の納品先は印刷していません。\n"_s + firstOf(lacking);
    if (const QStringList remarks = m_addresses.remarks(); !remarks.isEmpty())
        told << u"次の宛名を確かめてください。\n"_s + firstOf(remarks);
    const AddressRunOutcome outcome = runAddresses(workspace(), this, *chosen, *settings);
    m_addresses.setPrinted(outcome.printed, workspace().today());
    m_ui->panel->reloadPlaces();
    tellOutcome(outcome, *chosen, told);
}

void DialogHagakiB::tellOutcome(const AddressRunOutcome &outcome, const AddressJob &job,
                                const QStringList &told)
{
    const std::size_t total = job.addressees.size();
    QString text = u"すべてのデータを排出しました。"_s;
    if (outcome.failure)
        text = u"「%1」から印刷していません。\n"_s.arg(addresseeInWords(job.addressees[outcome.printed])) +
               outcome.failure->text;
    else if (outcome.stopped)
        text = u"中止しました。"_s;
    QStringList remarks{
        u"%1のうち %2 の宛名を印刷しました。"_s.arg(counted(total), counted(outcome.printed))};
    if (outcome.printed < total)
        remarks << u"残りには印が付いています。もう一度押すと、続きから印刷します。"_s;
    remarks += told;
    ui::prompts::inform(this, text, QString::fromUtf16(ui::prompts::information),
                        outcome.failure ? ui::prompts::Icon::Exclamation : ui::prompts::Icon::Information,
                        remarks.join(u'\n'));
}

bool DialogHagakiB::mayClose()
{
    if (!m_ui->panel->store())
        return false;
    AddressChoice chosen = m_ui->panel->choice();
    chosen.withContact = m_ui->Check2->isChecked();
    storeAddressChoice(workspace().settings, chosen);
    return true;
}

} // namespace shipping
