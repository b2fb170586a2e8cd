#include "registers/duplicates/DialogNameless.h"

#include "book/counterpart_search.h"
#include "text/numbers.h"
#include "ui/prompts.h"
#include "ui_DialogNameless.h"
#include "workspace/workspace.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

using enum base::Format;

constexpr int mostRows = 1000; // shown at a time, the newest
constexpr qsizetype keysNamed = 10;

std::vector<base::Column> columns()
{
    return {{u"ID"_s, Number, 8},      {u"コード"_s, Text, 12}, {u"住所"_s, Text, 40, 20, true},
            {u"ＴＥＬ１"_s, Text, 16}, {u"伝票"_s, Number, 8},  {u"更新日"_s, Date, 12}};
}

QString named(const std::vector<qint64> &keys)
{
    QStringList names;
    for (const qint64 key : keys)
        names << QString::number(key);
    if (names.size() > keysNamed)
        names = names.first(keysNamed) << u"…"_s;
    return names.join(u"、"_s);
}

} // namespace

DialogNameless::DialogNameless(workspace::Workspace &workspace, book::Party party, QWidget *parent)
    : ui::Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogNameless>())
    , m_party(party)
{
    m_ui->setupUi(this);
    setWindowTitle(u"名前のない%1"_s.arg(book::tableOf(party)));
    m_ui->gridRows->showColumns(columns());
    m_ui->gridRows->setSelectionMode(QAbstractItemView::ExtendedSelection);
    connect(m_ui->gridRows->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &DialogNameless::showStates);
    connect(m_ui->gridRows, &QTableView::doubleClicked, this, &DialogNameless::fill);
    connect(m_ui->cmdFill, &QPushButton::clicked, this, &DialogNameless::fill);
    connect(m_ui->cmdDelete, &QPushButton::clicked, this, &DialogNameless::remove);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &DialogNameless::reject);
    setUp();
    showRows();
}

DialogNameless::~DialogNameless() = default;

void DialogNameless::showRows()
{
    auto rows = namelessRows(workspace().connection, m_party, mostRows);
    if (!tell(rows.status()))
        return;
    m_rows = std::move(*rows);
    base::Report report{.columns = columns()};
    for (const NamelessRow &row : m_rows)
        report.rows.push_back({{row.id, row.code, row.address, row.phone, row.slips, row.date}, row.id});
    m_ui->gridRows->setReport(std::move(report));
    showStates();
}

void DialogNameless::showStates()
{
    m_ui->labelCount->setText(m_rows.empty()
                                  ? u"名前のない行はありません。"_s
                                  : u"新規登録の途中で閉じるなどして、名前がないまま残っている行です。"
                                    "「埋める」で登録画面に表示します。伝票のない行は削除できます。"_s);
    m_ui->cmdFill->setEnabled(m_ui->gridRows->currentLink().isValid());
    m_ui->cmdDelete->setEnabled(!removable().empty());
}

// Of the rows that are marked.
std::vector<qint64> DialogNameless::removable() const
{
    std::vector<qint64> keys;
    const QModelIndexList marked = m_ui->gridRows->selectionModel()->selectedRows();
    for (const QModelIndex &index : marked) {
        const NamelessRow &row = m_rows.at(static_cast<std::size_t>(index.row()));
        if (row.slips == 0)
            keys.push_back(row.id);
    }
    std::ranges::sort(keys);
    return keys;
}

void DialogNameless::fill()
{
    const QVariant link = m_ui->gridRows->currentLink();
    if (!link.isValid())
        return;
    m_chosen = link.toLongLong();
    accept();
}

void DialogNameless::remove()
{
    const std::vector<qint64> keys = removable();
    if (keys.empty() ||
        !ui::prompts::askCautiously(
            this,
            u"名前のない%1 %2 件を削除します。よろしいですか。"_s.arg(book::tableOf(m_party))
                .arg(keys.size()),
            u"ID %1\nほかのパソコンで新規登録の途中の行があれば、先にそちらを済ませてください。"_s.arg(
                named(keys))))
        return;
    const auto deleted = deleteNameless(workspace().connection, m_party, keys);
    if (tell(deleted.status()) && *deleted < static_cast<int>(keys.size()))
        ui::prompts::inform(this, u"%1 件を削除しました。ほかの行は、名前が入ったか、伝票か発送があるため、"
                                  "削除していません。"_s.arg(*deleted));
    showRows();
    m_ui->gridRows->setFocus();
}

} // namespace registers
