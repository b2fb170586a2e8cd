#include "shipping/history/frmKuroneko8.h"

#include "shipping/slips/kept_window.h"
#include "text/dates.h"
#include "text/numbers.h"
#include "ui/deletion.h"
#include "ui/prompts.h"
#include "ui_frmKuroneko8.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

const workspace::SettingKey &stateKey = workspace::keys::kuroWindowState[7];

QString count(qint64 shipments) { return text::formatAmount(double(shipments)); }

} // namespace

frmKuroneko8::frmKuroneko8(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::frmKuroneko8>())
{
    m_ui->setupUi(this);
    connect(m_ui->cmbKubun, &QComboBox::currentIndexChanged, this, &frmKuroneko8::showExtent);
    connect(m_ui->cmdDelete, &QPushButton::clicked, this, &frmKuroneko8::remove);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &frmKuroneko8::reject);
    restoreWindow(*this, workspace.settings, stateKey);
    setUp();
    offerParts();
}

frmKuroneko8::~frmKuroneko8() = default;

// Nothing is chosen before the clerk has chosen it.
void frmKuroneko8::offerParts()
{
    m_ui->cmbKubun->clear();
    const auto categories = categoriesInHistory(workspace().connection);
    if (!tell(categories.status()))
        return;
    qint64 all = 0;
    for (const CategoryCount &each : *categories) {
        const QString name = each.category.isEmpty() ? u"（発送区分なし）"_s : each.category;
        m_ui->cmbKubun->addItem(u"%1　%2 件"_s.arg(name, count(each.shipments)), each.category);
        all += each.shipments;
    }
    if (all > 0)
        m_ui->cmbKubun->addItem(u"すべての発送　%1 件"_s.arg(count(all)));
    m_ui->cmbKubun->setPlaceholderText(all > 0 ? u"選択してください"_s : u"発送履歴はありません"_s);
    m_ui->cmbKubun->setCurrentIndex(-1);
    showExtent();
}

HistoryPart frmKuroneko8::part() const
{
    const QVariant category = m_ui->cmbKubun->currentData();
    return {category.isValid() ? std::optional(category.toString()) : std::nullopt};
}

void frmKuroneko8::showExtent()
{
    m_extent = {};
    if (m_ui->cmbKubun->currentIndex() >= 0) {
        const auto extent = extentOf(workspace().connection, part());
        if (tell(extent.status()))
            m_extent = *extent;
    }
    m_ui->lblWhat->setText(m_extent.shipments > 0 ? extentInWords() : QString());
    m_ui->cmdDelete->setEnabled(m_extent.shipments > 0);
}

QString frmKuroneko8::extentInWords() const
{
    QString words = u"発送履歴：%1 行"_s.arg(count(m_extent.shipments));
    if (!m_extent.first.isEmpty())
        words += u"　受付日 %1 ～ %2"_s.arg(text::shownDay(m_extent.first), text::shownDay(m_extent.last));
    if (m_extent.without > 0)
        words += u"\nこのうち %1 件は、送り状番号がまだ入力されていません。"_s.arg(count(m_extent.without));
    return words;
}

void frmKuroneko8::remove()
{
    const HistoryPart chosen = part();
    const QString question = chosen.category
                                 ? u"発送区分「%1」の発送履歴を削除します。よろしいですか。"_s.arg(
                                       chosen.category->isEmpty() ? u"なし"_s : chosen.category->left(40))
                                 : u"発送履歴をすべて削除します。よろしいですか。"_s;
    if (!ui::askToDeleteMany(this, workspace(), question, extentInWords()))
        return;
    const auto deleted = deleteHistory(workspace().connection, chosen, m_extent);
    if (tell(deleted.status()))
        ui::prompts::inform(this, u"発送マスターを削除しました。"_s,
                            QString::fromUtf16(ui::prompts::information), ui::prompts::Icon::Information,
                            extentInWords());
    offerParts();
}

bool frmKuroneko8::mayClose()
{
    keepWindow(*this, workspace().settings, stateKey);
    return true;
}

} // namespace shipping
