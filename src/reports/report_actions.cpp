#include "reports/report_actions.h"

#include "printing/frmPreview.h"
#include "printing/list_sheet.h"
#include "reports/ledgers/ledger_report.h"
#include "slips/correction/correction_screens.h"
#include "tables/report_file.h"
#include "text/dates.h"
#include "ui/table_export.h"
#include "workspace/workspace.h"

namespace reports
{

void printReport(workspace::Workspace &workspace, QWidget *parent, const base::Report &report)
{
    printing::Document document;
    document.title = report.documentName;
    document.purpose = printing::Purpose::Rosters;
    document.sheets =
        printing::listSheets(report, text::formatDate(workspace.today()), printing::paperFor(report));
    printing::showPreview(workspace, parent, std::move(document));
}

void exportReport(QWidget *parent, const base::Report &report)
{
    ui::exportTable(parent,
                    {[&report](const QString &fileName) { return tables::checkReport(fileName, report); },
                     [&report](const QString &fileName, const base::Progress &progress) {
                         return tables::writeReport(fileName, report, progress);
                     },
                     report.documentName});
}

bool openSlipOf(workspace::Workspace &workspace, QWidget *parent, const QVariant &link)
{
    if (link.metaType() != QMetaType::fromType<SlipTarget>())
        return false;
    const auto target = link.value<SlipTarget>();
    slips::openCorrection(workspace, parent, target.kind, target.slip);
    return true;
}

} // namespace reports
