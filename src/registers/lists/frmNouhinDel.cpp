#include "registers/lists/frmNouhinDel.h"

#include "registers/lists/customer_deletion.h"
#include "text/numbers.h"
#include "ui/deletion.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_frmNouhinDel.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace registers
{

frmNouhinDel::frmNouhinDel(workspace::Workspace &workspace, QWidget *parent)
    : ui::Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::frmNouhinDel>())
{
    m_ui->setupUi(this);
    m_ui->panel->bind(workspace, CustomerTicks::Guard::Slips);
    connect(m_ui->panel, &CustomerChoicePanel::choiceChanged, this, &frmNouhinDel::showStates);
    connect(m_ui->chkSlips, &QCheckBox::toggled, this,
            [this](bool allowed) { m_ui->panel->ticks().setSlipsAllowed(allowed); });
    connect(m_ui->cmdDelete, &QPushButton::clicked, this, &frmNouhinDel::removeTicked);
    setUp();
    showStates();
}

frmNouhinDel::~frmNouhinDel() = default;

QString frmNouhinDel::question(int chosen) const
{
    QString text = u"対象の納品先 "_s + text::formatAmount(chosen) + u" 件を削除します。よろしいですか。"_s;
    if (const int withSlips = m_ui->panel->ticks().tickedWithSlips(); withSlips > 0)
        text += u"\nこのうち "_s + text::formatAmount(withSlips) +
                u" 件には伝票があります。伝票は残りますが、納品先の名前は分からなくなります。"_s;
    return text;
}

bool frmNouhinDel::confirmed(const Extent &extent)
{
    const QString what = u"納品先情報：%1 行（全 %2 行のうち）"_s.arg(text::formatAmount(extent.chosen),
                                                                      text::formatAmount(extent.all));
    return extent.isGreatPart() ? ui::askToDeleteMany(this, workspace(), question(extent.chosen), what)
                                : ui::prompts::askCautiously(this, question(extent.chosen), what);
}

void frmNouhinDel::removeTicked()
{
    const std::vector<qint64> ids = m_ui->panel->ticks().ticked();
    const auto extent = extentOf(workspace().connection, ids.size());
    if (!tell(extent.status()) || !confirmed(*extent))
        return;
    const WithSlips withSlips = m_ui->chkSlips->isChecked() ? WithSlips::Delete : WithSlips::Keep;
    const auto deleted =
        ui::runWithProgress(this, u"納品先を削除しています。"_s, [&](const base::Progress &progress) {
            return deleteCustomers(workspace().connection, ids, withSlips, progress);
        });
    if (!tell(deleted.status()))
        return;
    m_ui->panel->searchAgain();
    ui::prompts::inform(this, text::formatAmount(*deleted) + u" 件の納品先を削除しました。"_s);
}

void frmNouhinDel::showStates() { m_ui->cmdDelete->setEnabled(m_ui->panel->ticks().tickedCount() > 0); }

} // namespace registers
