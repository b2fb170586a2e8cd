#include "registers/duplicates/DialogDuplicates.h"

#include "base/dated_name.h"
#include "db/care/backup.h"
#include "db/connection.h"
#include "masters/name_lists.h"
#include "registers/counterpart.h"
#include "registers/customer.h"
#include "registers/last_counterparts.h"
#include "text/numbers.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_DialogDuplicates.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

using enum base::Format;

std::vector<base::Column> groupColumns()
{
    return {{u"ID"_s, Number, 7},   {u"コード"_s, Text, 10},   {u"納品先名"_s, Text, 34, 20, true},
            {u"住所"_s, Text, 40},  {u"ＴＥＬ１"_s, Text, 15}, {u"伝票"_s, Number, 7},
            {u"更新日"_s, Date, 11}};
}

std::vector<base::Column> planColumns()
{
    return {{u"項目"_s, Text, 14},
            {u"残す納品先"_s, Text, 30, 20, true},
            {u"統合して消える納品先"_s, Text, 30, 20, true},
            {u"統合した後"_s, Text, 30, 20, true},
            {u""_s, Text, 14}};
}

QString nameOf(const DuplicateGroup &group)
{
    QStringList reasons;
    if (group.samePhone)
        reasons << u"電話番号が同じ"_s;
    if (group.sameName)
        reasons << u"名前と住所が同じ"_s;
    return reasons.join(u"、"_s);
}

// Who walks over the list does not wait for what stands beside each row; milliseconds.
constexpr int afterMoving = 120;

QString counted(qint64 count) { return text::formatAmount(static_cast<double>(count)); }

} // namespace

DialogDuplicates::DialogDuplicates(workspace::Workspace &workspace, QWidget *parent)
    : ui::Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogDuplicates>())
    , m_distinct(workspace.settings.text(workspace::keys::distinctCustomers))
{
    m_ui->setupUi(this);
    m_ui->gridGroups->showColumns(groupColumns());
    m_ui->gridPlan->showColumns(planColumns());
    connect(m_ui->gridGroups->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &DialogDuplicates::choosePair);
    m_planTimer.setSingleShot(true);
    connect(&m_planTimer, &QTimer::timeout, this, &DialogDuplicates::showPlan);
    connect(m_ui->cmdDistinct, &QPushButton::clicked, this, &DialogDuplicates::markPair);
    connect(m_ui->chkDistinct, &QCheckBox::clicked, this, &DialogDuplicates::showGroups);
    connect(m_ui->cmdSwap, &QPushButton::clicked, this, &DialogDuplicates::swapPair);
    connect(m_ui->cmdMerge, &QPushButton::clicked, this, &DialogDuplicates::merge);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &DialogDuplicates::reject);
    setUp();
    showStates();
}

DialogDuplicates::~DialogDuplicates() = default;

void DialogDuplicates::showEvent(QShowEvent *event)
{
    ui::Screen::showEvent(event);
    // Once the screen stands, so that what is going on has a window behind it.
    if (!std::exchange(m_searched, true))
        QMetaObject::invokeMethod(this, &DialogDuplicates::find, Qt::QueuedConnection);
}

// --- The list ---

bool DialogDuplicates::find()
{
    const auto categories = masters::customerCategories(workspace().connection);
    if (!tell(categories.status()))
        return false;
    m_categories.clear();
    for (const masters::Entry &entry : *categories)
        m_categories.emplace_back(entry.id, entry.name);
    auto found = ui::runWithProgress(this, u"重複を調べています。"_s, [&](const base::Progress &progress) {
        return duplicateCustomers(workspace().connection, progress);
    });
    if (!tell(found.status()))
        return false;
    m_found = std::move(*found);
    showGroups();
    return true;
}

void DialogDuplicates::showGroups()
{
    m_groups = m_ui->chkDistinct->isChecked() ? m_found : withoutDistinct(m_found, m_distinct);
    base::Report report{.columns = groupColumns()};
    for (const DuplicateGroup &group : m_groups) {
        base::beginGroup(report, nameOf(group));
        for (const ProbableDuplicate &customer : group.customers) {
            report.rows.push_back({{customer.id, customer.code, customer.name, customer.address,
                                    customer.phone, customer.slips, customer.changed},
                                   customer.id});
        }
    }
    m_ui->gridGroups->setReport(std::move(report));
    m_ui->labelCount->setText(m_groups.empty() ? u"重複していると思われる納品先はありません。"_s
                                               : u"重複していると思われる納品先　%1 組"_s.arg(
                                                     counted(static_cast<qint64>(m_groups.size()))));
    if (m_groups.empty()) // where there is a row, its becoming the current one tells
        choosePair();
}

// --- The two ---

// The first of the group stays, as it has most slips; the row with the cursor goes, or the second where the
// cursor is in the first.
void DialogDuplicates::choosePair()
{
    m_pair.reset();
    const qint64 current = m_ui->gridGroups->currentLink().toLongLong();
    for (const DuplicateGroup &group : m_groups) {
        const auto &customers = group.customers;
        const bool holdsCurrent = std::any_of(customers.begin(), customers.end(),
                                              [current](const auto &each) { return each.id == current; });
        if (!holdsCurrent || customers.size() < 2)
            continue;
        const qint64 first = customers.front().id;
        m_pair = Pair{first, current == first ? customers[1].id : current};
        break;
    }
    m_plan.reset();
    m_planTimer.start(afterMoving);
    showStates();
}

void DialogDuplicates::swapPair()
{
    if (m_pair)
        std::swap(m_pair->kept, m_pair->gone);
    showPlan();
}

QString DialogDuplicates::shownValue(const QString &column, const QVariant &value) const
{
    if (MergedField::isEmpty(value))
        return {};
    if (column == u"締め日"_s)
        return closingDayNames().value(value.toInt(), value.toString());
    if (column == u"消費税区分"_s)
        return taxClassNames().value(value.toInt(), value.toString());
    if (column == u"元帳出力"_s)
        return value.toInt() == 0 ? u"しない"_s : u"する"_s;
    const auto category = std::find_if(m_categories.begin(), m_categories.end(),
                                       [&](const auto &entry) { return entry.first == value.toLongLong(); });
    return column == u"区分ID"_s && category != m_categories.end() ? category->second : value.toString();
}

void DialogDuplicates::showPlan()
{
    m_planTimer.stop();
    m_plan.reset();
    base::Report report{.columns = planColumns()};
    if (m_pair) {
        const auto plan = planMerge(workspace().connection, m_pair->kept, m_pair->gone);
        if (tell(plan.status()))
            m_plan = *plan;
    }
    if (m_plan) {
        report.rows.push_back({{u"納品先ID"_s, m_plan->kept, m_plan->gone, m_plan->kept, QString()}});
        report.rows.push_back({{u"伝票（件）"_s, m_plan->keptSlips, m_plan->slips,
                                m_plan->keptSlips + m_plan->slips, QString()}});
        for (const MergedField &field : m_plan->fields) {
            if (MergedField::isEmpty(field.kept) && MergedField::isEmpty(field.gone))
                continue;
            const QString mark = field.isFilled()     ? u"補います"_s
                                 : field.isReplaced() ? u"置き換えます"_s
                                 : field.isLost()     ? u"残りません"_s
                                                      : QString();
            report.rows.push_back(
                {{field.column, shownValue(field.column, field.kept), shownValue(field.column, field.gone),
                  shownValue(field.column, field.after()), mark}});
        }
    }
    m_ui->gridPlan->setReport(std::move(report));
    showStates();
}

QString DialogDuplicates::planInWords() const
{
    if (!m_plan && m_planTimer.isActive())
        return u"…"_s;
    if (!m_plan)
        return m_groups.empty() ? QString() : u"統合する納品先を一覧で選んでください。"_s;
    if (!m_plan->refusal.isEmpty())
        return m_plan->refusal;
    const QString follow = u"納品先ID %1 の伝票 %2 件と発送 %3 件は、納品先ID %4 のものになります。"_s.arg(
        QString::number(m_plan->gone), counted(m_plan->slips), counted(m_plan->shipments),
        QString::number(m_plan->kept));
    return m_plan->isTaxedTogether() ? follow + u"\n消費税は請求時に合わせた額から計算されるため、"
                                                "別々に請求したときと端数が変わることがあります。"_s
                                     : follow;
}

void DialogDuplicates::showStates()
{
    m_ui->labelPlan->setText(planInWords());
    m_ui->cmdSwap->setEnabled(m_plan.has_value());
    m_ui->cmdMerge->setEnabled(m_plan && m_plan->refusal.isEmpty());
    m_ui->cmdDistinct->setEnabled(m_pair.has_value());
    m_ui->cmdDistinct->setText(isMarked() ? u"「重複ではない」をやめる(&N)"_s : u"重複ではない(&N)"_s);
}

// --- Two that are two ---

const ProbableDuplicate *DialogDuplicates::customerWith(qint64 id) const
{
    for (const DuplicateGroup &group : m_groups) {
        for (const ProbableDuplicate &customer : group.customers) {
            if (customer.id == id)
                return &customer;
        }
    }
    return nullptr;
}

bool DialogDuplicates::isMarked() const
{
    const ProbableDuplicate *kept = m_pair ? customerWith(m_pair->kept) : nullptr;
    const ProbableDuplicate *gone = m_pair ? customerWith(m_pair->gone) : nullptr;
    return kept && gone && m_distinct.has(*kept, *gone);
}

void DialogDuplicates::markPair()
{
    const ProbableDuplicate *kept = m_pair ? customerWith(m_pair->kept) : nullptr;
    const ProbableDuplicate *gone = m_pair ? customerWith(m_pair->gone) : nullptr;
    if (!kept || !gone)
        return;
    m_distinct.mark(*kept, *gone, !isMarked());
    workspace().settings.write(workspace::keys::distinctCustomers, m_distinct.stored());
    showGroups();
    showStates();
    m_ui->gridGroups->setFocus();
}

// --- Merging ---

// One copy for all that is merged at a sitting: what it is good for is the state before.
bool DialogDuplicates::keepCopy()
{
    if (m_copied)
        return true;
    const QString kept = base::datedName(workspace().connection.fileName(), u"統合前"_s, workspace().today());
    const base::Status copied = ui::runWithProgress(
        this, u"統合する前の内容をコピーしています。"_s, [&](const base::Progress &progress) {
            return db::copyDatabase(workspace().connection, kept, progress);
        });
    if (!copied)
        ui::prompts::inform(this, copied.error().text + u"\n統合していません。"_s);
    m_copied = bool(copied);
    return m_copied;
}

bool DialogDuplicates::readBalances(MergePlan &plan)
{
    const auto balances =
        ui::runWithProgress(this, u"売掛金残高を計算しています。"_s, [&](const base::Progress &progress) {
            return mergeBalances(workspace().connection, plan, progress);
        });
    if (balances)
        plan.balances = *balances;
    return tell(balances.status());
}

// The one that was kept may have gone into a third one since.
qint64 DialogDuplicates::standsFor(qint64 id) const
{
    while (m_mergedInto.contains(id))
        id = m_mergedInto.value(id);
    return id;
}

void DialogDuplicates::merge()
{
    if (!m_plan || !readBalances(*m_plan))
        return;
    const MergeBalances &owed = *m_plan->balances;
    const QString question = u"納品先ID %1 を納品先ID %2 に統合します。よろしいですか。"_s.arg(
        QString::number(m_plan->gone), QString::number(m_plan->kept));
    QString remark =
        planInWords() + u"\n売掛金残高は、%1 円と %2 円を合わせて %3 円になります。"_s.arg(
                            text::formatAmount(owed.kept.value()), text::formatAmount(owed.gone.value()),
                            text::formatAmount(owed.after()));
    remark += u"\n納品先ID %1 は名簿からなくなります。"_s.arg(m_plan->gone);
    if (!m_copied)
        remark += u"\n統合する前の内容は「%1」に残します。"_s.arg(
            QFileInfo(base::datedName(workspace().connection.fileName(), u"統合前"_s, workspace().today()))
                .fileName());
    if (!ui::prompts::askCautiously(this, question, remark) || !keepCopy())
        return;
    const MergePlan plan = *m_plan;
    const base::Status merged = mergeCustomers(workspace().connection, plan, workspace().today());
    if (tell(merged)) {
        m_mergedInto.insert(plan.gone, plan.kept);
        if (lastCounterparts(workspace()).customer == plan.gone)
            rememberCounterpart(workspace(), book::Party::Customer, plan.kept);
        ui::prompts::inform(this, u"納品先ID %1 に統合しました。"_s.arg(plan.kept));
    }
    // After a failure too: what it was about has changed.
    find();
    m_ui->gridGroups->setFocus();
}

} // namespace registers
