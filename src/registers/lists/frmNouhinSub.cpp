#include "registers/lists/frmNouhinSub.h"

#include "base/dated_name.h"
#include "db/connection.h"
#include "registers/lists/supplementary_file.h"
#include "text/numbers.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_frmNouhinSub.h"
#include "workspace/workspace.h"
#include "workspace/workspace_targets.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace registers
{

frmNouhinSub::frmNouhinSub(workspace::Workspace &workspace, QWidget *parent)
    : ui::Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::frmNouhinSub>())
{
    m_ui->setupUi(this);
    m_ui->panel->bind(workspace, CustomerTicks::Guard::None);
    connect(m_ui->panel, &CustomerChoicePanel::choiceChanged, this, &frmNouhinSub::showStates);
    connect(m_ui->cmdMake, &QPushButton::clicked, this, &frmNouhinSub::make);
    setUp();
    showStates();
}

frmNouhinSub::~frmNouhinSub() = default;

QString frmNouhinSub::chosenFile()
{
    const QString name = ui::file_dialogs::saveFile(this, u"新しいファイル名"_s,
                                                    u"すべてのファイル (*.*);;cdb ﾌｧｲﾙ (*.cdb)"_s, u"cdb"_s);
    if (name.isEmpty())
        return {};
    if (!workspace::isPossibleTarget(workspace(), name, workspace().connection.fileName())) {
        ui::prompts::inform(this, u"ファイル名が不正です。"_s);
        return {};
    }
    return ui::prompts::askToOverwrite(this, name, keptNameOf(name)) ? name : QString();
}

QString frmNouhinSub::keptNameOf(const QString &fileName) const
{
    return base::datedName(fileName, u"上書き前"_s, workspace().today());
}

void frmNouhinSub::make()
{
    const QString fileName = chosenFile();
    if (fileName.isEmpty())
        return;
    const auto written =
        ui::runWithProgress(this, u"補助名簿を作成しています。"_s, [&](const base::Progress &progress) {
            return writeSupplementaryFile(workspace().connection, m_ui->panel->ticks().ticked(), fileName,
                                          progress, keptNameOf(fileName));
        });
    if (tell(written.status()))
        ui::prompts::inform(this, text::formatAmount(*written) + u" 件の納品先を「"_s +
                                      QFileInfo(fileName).fileName() + u"」に書き出しました。"_s);
}

void frmNouhinSub::showStates() { m_ui->cmdMake->setEnabled(m_ui->panel->ticks().tickedCount() > 0); }

} // namespace registers
