#include "slips/issued/DialogIssued.h"

#include "printing/pdf_print.h"
#include "slips/issued/document_check.h"
#include "slips/issued/issued_documents.h"
#include "slips/issued/issued_export.h"
#include "text/numbers.h"
#include "ui/desktop.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_DialogIssued.h"
#include "workspace/document_places.h"
#include "workspace/workspace.h"

#include <QBrush>
#include <QDir>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

using enum base::Format;

const QList<ui::GridColumn> listColumns{
    {u"日付"_s, 11, {}, Date},
    {u"種類"_s, 18},
    {u"番号"_s, 12, u"伝票番号"_s},
    {u"相手先名"_s, 28, u"相手先"_s},
    {u"税込金額"_s, 11, u"金額"_s, Amount},
    {u"発行日時"_s, 20},
    {u"社員名"_s, 14, u"担当者"_s},
    {u"発行ID"_s, 8, u"控え番号"_s, Number},
    {u"訂正元"_s, 8, u"訂正元"_s, Number},
};

// An empty box is no bound. \return whether the box holds an amount or nothing
bool readAmount(const QLineEdit *box, std::optional<double> &amount)
{
    if (box->text().trimmed().isEmpty())
        return true;
    amount = text::parseNumber(box->text());
    return amount.has_value();
}

} // namespace

DialogIssued::DialogIssued(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogIssued>())
    , m_rows(workspace.connection)
{
    m_ui->setupUi(this);
    const QDate today = workspace.today();
    m_ui->DTPicker1->setDate({today.year() - 1, 1, 1});
    m_ui->DTPicker2->setDate({today.year(), 12, 31});
    m_ui->cmbKind->addItem(u"すべて"_s, QString());
    for (const char16_t *kind : {deliveryNoteKind, estimateKind, billKind})
        m_ui->cmbKind->addItem(QString::fromUtf16(kind), QString::fromUtf16(kind));
    setUpGrid();
    connectControls();
    setUp();
    showState();
}

DialogIssued::~DialogIssued() = default;

void DialogIssued::setUpGrid()
{
    m_ui->grdIssued->letSort();
    m_ui->grdIssued->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_ui->grdIssued->setColumns(listColumns);
    m_ui->grdIssued->bind(m_rows, [](const QString &) {});
    m_rows.setDecorator([this](int row, int, int role) { return lookOf(row, role); });
    connect(&m_rows, &db::Recordset::currentRowChanged, this, &DialogIssued::showRow);
    connect(&m_rows, &db::Recordset::extended, this, &DialogIssued::showState);
}

void DialogIssued::connectControls()
{
    connect(m_ui->chkDates, &QCheckBox::toggled, m_ui->DTPicker1, &QWidget::setEnabled);
    connect(m_ui->chkDates, &QCheckBox::toggled, m_ui->DTPicker2, &QWidget::setEnabled);
    connect(m_ui->cmdFind, &QPushButton::clicked, this, &DialogIssued::findAndTell);
    connect(m_ui->cmdOpen, &QPushButton::clicked, this, &DialogIssued::openPdf);
    connect(m_ui->grdIssued, &QTableView::doubleClicked, this, &DialogIssued::openPdf);
    connect(m_ui->cmdPrint, &QPushButton::clicked, this, &DialogIssued::printAgain);
    connect(m_ui->cmdVerify, &QPushButton::clicked, this, [this] { verify(selectedKeys()); });
    connect(m_ui->cmdVerifyAll, &QPushButton::clicked, this, &DialogIssued::verifyAll);
    connect(m_ui->cmdExport, &QPushButton::clicked, this, &DialogIssued::exportChosen);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &DialogIssued::reject);
}

// That nothing was issued yet is no news worth a box.
void DialogIssued::becameActive()
{
    if (!std::exchange(m_hasFound, true) && find() && !m_rows.isEmpty())
        m_ui->grdIssued->setFocus();
}

std::optional<IssuedQuery> DialogIssued::query()
{
    IssuedQuery query{.counterpart = m_ui->txtName->text(),
                      .kind = m_ui->cmbKind->currentData().toString(),
                      .number = m_ui->txtNumber->text()};
    if (m_ui->chkDates->isChecked()) {
        query.from = m_ui->DTPicker1->date();
        query.to = m_ui->DTPicker2->date();
    }
    const std::pair<QLineEdit *, std::optional<double> *> amounts[] = {{m_ui->txtLeast, &query.least},
                                                                       {m_ui->txtMost, &query.most}};
    for (const auto &[box, bound] : amounts) {
        if (!readAmount(box, *bound)) {
            ui::prompts::inform(this, u"金額を数字で入力してください。"_s);
            box->setFocus();
            box->selectAll();
            return std::nullopt;
        }
    }
    return query;
}

bool DialogIssued::find()
{
    const auto wanted = query();
    m_fates.clear();
    if (!wanted || !tell(m_rows.open(findingIssued(*wanted))))
        return false;
    showState();
    return true;
}

void DialogIssued::findAndTell()
{
    if (!find())
        return;
    if (m_rows.isEmpty()) {
        const QString hint =
            m_ui->chkDates->isChecked()
                ? u"期間の外の控えは探していません。「期間」のチェックを外すと、すべての期間から探します。"_s
                : QString();
        ui::prompts::inform(this, ui::messages::nothingFound(), QString::fromUtf16(ui::prompts::information),
                            ui::prompts::Icon::Information, hint);
        m_ui->txtName->setFocus();
    } else {
        m_ui->grdIssued->setFocus();
    }
}

void DialogIssued::showRow()
{
    m_ui->txtHash->setText(m_rows.text(u"ハッシュ"_s));
    m_ui->txtHash->setCursorPosition(0);
    showState();
}

void DialogIssued::showState()
{
    const bool any = !m_rows.isEmpty();
    for (QPushButton *button : {m_ui->cmdOpen, m_ui->cmdPrint, m_ui->cmdVerify, m_ui->cmdExport})
        button->setEnabled(any);
    QString state = m_rows.isOpen() ? u"該当 %1 件"_s.arg(m_rows.count()) : QString();
    if (const QString fate = m_rows.currentRow() >= 0 ? fateInWords(m_rows.currentKey()) : QString();
        !fate.isEmpty())
        state += u"　選択中の控え: %1"_s.arg(fate);
    m_ui->lblState->setText(state);
}

QVariant DialogIssued::lookOf(int row, int role) const
{
    if (role != Qt::ForegroundRole && role != Qt::ToolTipRole)
        return {};
    const qint64 key = m_rows.keyAt(row);
    const auto found = m_faulty.constFind(key);
    if (found != m_faulty.constEnd())
        return role == Qt::ForegroundRole ? QVariant(QBrush(Qt::red)) : QVariant(nameOf(*found));
    const QString fate = fateInWords(key);
    if (fate.isEmpty())
        return {};
    return role == Qt::ForegroundRole ? QVariant(palette().brush(QPalette::Disabled, QPalette::Text))
                                      : QVariant(fate);
}

QString DialogIssued::fateInWords(qint64 key) const
{
    const auto known = m_fates.constFind(key);
    if (known != m_fates.constEnd())
        return *known;
    // One that cannot be read is not asked for again: each try may wait for seconds on another program.
    const auto fate = fateOf(workspace().connection, key);
    QStringList words;
    if (fate && fate->successor)
        words << u"控え番号 %1 で訂正"_s.arg(*fate->successor);
    if (fate && fate->isWithdrawn)
        words << u"印刷は取り消されました"_s;
    return *m_fates.insert(key, words.join(u"、"_s));
}

// --- The documents ---

QStringList DialogIssued::folders() const
{
    return workspace::documentFoldersOf(workspace().connection.fileName(), workspace().applicationFolder());
}

bool DialogIssued::isOneChosen()
{
    const std::size_t count = selectedKeys().size();
    if (count > 1)
        ui::prompts::inform(
            this,
            u"%1 件を選択しています。開く控え、再発行する控えは、一件だけ選択してください。"_s.arg(count));
    return count == 1;
}

std::optional<DialogIssued::Chosen> DialogIssued::chosen()
{
    if (m_rows.currentRow() < 0 || !isOneChosen())
        return std::nullopt;
    const auto rows = readIssued(workspace().connection, {m_rows.currentKey()});
    if (!tell(rows.status()) || rows->empty())
        return std::nullopt;
    Chosen chosen{rows->front(), findDocument(folders(), rows->front().place())};
    if (chosen.document.state == DocumentState::Whole)
        return chosen;
    ui::prompts::inform(
        this, u"%1 の控えを表示できません。%2。"_s.arg(chosen.row.words(), nameOf(chosen.document.state)),
        QString::fromUtf16(ui::prompts::information), ui::prompts::Icon::Exclamation,
        u"控えは次のフォルダにあります。データベースを移した時は、このフォルダも移してください。\n"_s +
            QDir::toNativeSeparators(folders().front()));
    return std::nullopt;
}

std::vector<qint64> DialogIssued::selectedKeys() const
{
    std::vector<qint64> keys;
    const auto selected = m_ui->grdIssued->selectionModel()->selectedRows();
    for (const QModelIndex &index : selected)
        keys.push_back(m_rows.keyAt(index.row()));
    if (keys.empty() && m_rows.currentRow() >= 0)
        keys.push_back(m_rows.currentKey());
    std::sort(keys.begin(), keys.end());
    return keys;
}

void DialogIssued::openPdf()
{
    const auto open = chosen();
    if (open && !ui::desktop::openFile(open->document.fileName))
        ui::prompts::inform(this, u"PDF を開くプログラムが見つかりません。\n"_s +
                                      QDir::toNativeSeparators(open->document.fileName));
}

// The paper says nothing of it: it is the same document once more.
void DialogIssued::printAgain()
{
    if (workspace().panel.employeeName.isEmpty()) {
        ui::prompts::inform(this, u"担当者が選択されていません。"_s);
        return;
    }
    const auto again = chosen();
    if (!again || !printing::printPdf(workspace(), this, again->document.pdf,
                                      again->row.words() + QString::fromUtf16(reissueMark),
                                      printing::Purpose::DeliveryNotesAndBills))
        return;
    const base::Status noted = noteReissue(workspace().connection, again->row.key, workspace().now(),
                                           workspace().panel.employeeName);
    if (!noted)
        ui::prompts::inform(this, u"印刷は済みましたが、再発行したことを記録できませんでした。"_s,
                            QString::fromUtf16(ui::prompts::information), ui::prompts::Icon::Exclamation,
                            noted.error().text);
    m_fates.clear();
    if (noted && tell(m_rows.requery()))
        showState();
}

void DialogIssued::verify(const std::vector<qint64> &keys)
{
    constexpr qsizetype mostLines = 15;
    const auto check =
        ui::runWithProgress(this, u"控えを検査しています。"_s, [&](const base::Progress &progress) {
            return checkDocuments(workspace().connection, keys, folders(), progress);
        });
    if (!tell(check.status()))
        return;
    for (const qint64 key : keys)
        m_faulty.remove(key);
    for (const FaultyDocument &each : check->faulty)
        m_faulty.insert(each.row.key, each.state);
    m_ui->grdIssued->viewport()->update();
    const bool isWhole = check->faulty.empty();
    ui::prompts::inform(this, check->words(mostLines), QString::fromUtf16(ui::prompts::information),
                        isWhole ? ui::prompts::Icon::Information : ui::prompts::Icon::Exclamation,
                        isWhole ? QString() : QDir::toNativeSeparators(folders().front()));
}

void DialogIssued::verifyAll()
{
    const auto keys = allIssued(workspace().connection);
    if (tell(keys.status()))
        verify(*keys);
}

void DialogIssued::exportChosen()
{
    const std::vector<qint64> keys = selectedKeys();
    const QString target =
        ui::file_dialogs::chooseFolder(this, u"%1 件の控えを書き出すフォルダ"_s.arg(keys.size()));
    if (target.isEmpty())
        return;
    const auto exported =
        ui::runWithProgress(this, u"控えを書き出しています。"_s, [&](const base::Progress &progress) {
            return exportDocuments(workspace().connection, keys, folders(), target, workspace().today(),
                                   progress);
        });
    if (!exported) {
        if (!exported.error().cancelled)
            tell(exported.status());
        return;
    }
    QString text = u"%1 件の PDF と索引を書き出しました。"_s.arg(exported->written);
    if (!exported->lacking.empty())
        text += u"\n%1 件は、控えのファイルがないか壊れているため、索引にだけ載せました。"_s.arg(
            exported->lacking.size());
    ui::prompts::inform(this, text, QString::fromUtf16(ui::prompts::information),
                        ui::prompts::Icon::Information, QDir::toNativeSeparators(exported->folder));
}

} // namespace slips
