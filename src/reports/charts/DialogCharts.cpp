#include "reports/charts/DialogCharts.h"

#include "base/replacement.h"
#include "printing/frmPreview.h"
#include "reports/charts/chart_sheet.h"
#include "reports/charts/chart_view.h"
#include "reports/report_actions.h"
#include "text/dates.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_DialogCharts.h"
#include "workspace/workspace.h"
#include "workspace/workspace_targets.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

base::Status writePicture(const QImage &picture, const QString &fileName)
{
    base::Replacement file(fileName);
    if (const base::Status begun = file.begin(); !begun)
        return begun;
    if (!picture.save(file.name(), "PNG"))
        return base::Error{u"画像を保存できませんでした。保存先の空きと権限を確認してください。"_s};
    return file.finish();
}

} // namespace

DialogCharts::DialogCharts(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogCharts>())
    , m_chart(new ChartView(this))
{
    m_ui->setupUi(this);
    m_chart->setObjectName(u"chart"_s);
    m_chart->setMinimumSize(560, 260);
    m_ui->layoutChart->addWidget(m_chart);
    m_ui->dgdSub->showColumns(tableOf({.series = {{}, {}}}).columns);
    openCharts(book::Party::Customer, workspace.today(), {}, false);
    connectControls();
    setUp();
    showData({});
}

DialogCharts::~DialogCharts() = default;

void DialogCharts::openCharts(book::Party party, const QDate &until,
                              const std::optional<book::CounterpartKey> &counterpart, bool alone)
{
    m_party = party;
    m_counterpart = counterpart;
    fillKinds();
    m_ui->DTPicker1->setDate(until);
    m_ui->Check1->setVisible(counterpart.has_value());
    m_ui->Check1->setChecked(counterpart && alone);
    if (!counterpart)
        return;
    const auto name = book::nameOfCounterpart(workspace().connection, party, *counterpart);
    if (name)
        m_ui->Check1->setText(QString(*name).replace(u'&', u"&&"_s) + u" だけ(&C)"_s);
}

void DialogCharts::fillKinds()
{
    const QSignalBlocker quiet(m_ui->Combo1);
    m_ui->Combo1->clear();
    for (int kind = 0; kind < chartKinds; ++kind)
        m_ui->Combo1->addItem(nameOf(static_cast<ChartKind>(kind), m_party));
}

void DialogCharts::connectControls()
{
    connect(m_ui->Combo1, &QComboBox::currentIndexChanged, this, &DialogCharts::refresh);
    connect(m_ui->Check1, &QCheckBox::clicked, this, &DialogCharts::refresh);
    connect(m_ui->Command5, &QPushButton::clicked, this, &DialogCharts::refresh);
    connect(m_ui->cmdYearBefore, &QPushButton::clicked, this, [this] { goBy(-1); });
    connect(m_ui->cmdYearAfter, &QPushButton::clicked, this, [this] { goBy(1); });
    connect(m_ui->Command2, &QPushButton::clicked, this, &DialogCharts::print);
    connect(m_ui->cmdPicture, &QPushButton::clicked, this, &DialogCharts::savePicture);
    connect(m_ui->Command3, &QPushButton::clicked, this, [this] { exportReport(this, tableOf(m_data)); });
}

void DialogCharts::becameActive()
{
    if (!m_hasRead)
        refresh();
}

ChartQuery DialogCharts::query() const
{
    ChartQuery asked{.kind = static_cast<ChartKind>(m_ui->Combo1->currentIndex()),
                     .party = m_party,
                     .until = m_ui->DTPicker1->date()};
    if (m_ui->Check1->isChecked())
        asked.counterpart = m_counterpart;
    return asked;
}

void DialogCharts::goBy(int years)
{
    m_ui->DTPicker1->setDate(m_ui->DTPicker1->date().addYears(years));
    refresh();
}

void DialogCharts::refresh()
{
    m_hasRead = true;
    const ChartQuery asked = query();
    auto figures = ui::runWithProgress(this, u"集計しています。"_s, [&](const base::Progress &progress) {
        return readChart(workspace().connection, asked, progress);
    });
    // After a failure the bars no longer stand for what the boxes above them say.
    showData(figures ? std::move(*figures) : ChartData());
    if (!figures && figures.error().cancelled)
        m_ui->lblMessage->setText(figures.error().text);
    else
        tell(figures.status());
}

void DialogCharts::showData(ChartData figures)
{
    m_data = std::move(figures);
    m_chart->showData(m_data);
    m_chart->setAccessibleName(m_data.title + u' ' + m_data.remark);
    base::Report table = tableOf(m_data);
    m_ui->dgdSub->showColumns(table.columns);
    m_ui->dgdSub->setReport(std::move(table));
    const bool any = !m_data.isEmpty();
    for (QPushButton *button : {m_ui->Command2, m_ui->Command3, m_ui->cmdPicture})
        button->setEnabled(any);
    m_ui->lblMessage->setText(any || !m_hasRead ? m_data.remark : u"該当するデータがありません。"_s);
}

void DialogCharts::print()
{
    printing::Document document;
    document.title = tableOf(m_data).documentName;
    document.purpose = printing::Purpose::Rosters;
    document.sheets.push_back(chartSheet(m_data, text::formatDate(workspace().today())));
    printing::showPreview(workspace(), this, std::move(document));
}

void DialogCharts::savePicture()
{
    const QString fileName =
        ui::file_dialogs::saveFile(this, u"画像を保存"_s, u"PNG 画像 (*.png)"_s, u"png"_s,
                                   ui::file_dialogs::proposedFile(tableOf(m_data).documentName, u"png"_s));
    if (fileName.isEmpty())
        return;
    if (workspace::isDatabase(workspace(), fileName)) {
        ui::prompts::inform(this, ui::messages::databaseTarget());
        return;
    }
    if (!ui::prompts::askToOverwrite(this, fileName))
        return;
    if (tell(writePicture(m_chart->picture(), fileName)))
        m_ui->lblMessage->setText(u"画像を保存しました："_s + QFileInfo(fileName).fileName());
}

} // namespace reports
