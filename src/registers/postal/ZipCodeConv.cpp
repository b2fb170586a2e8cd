#include "registers/postal/ZipCodeConv.h"

#include "registers/postal/postal_csv.h"
#include "registers/postal/postal_data.h"
#include "ui/file_dialogs.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui/twips.h"
#include "ui_ZipCodeConv.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QClipboard>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr int codeLength = 8;    // a list line begins with the code, "NNN-NNNN"
constexpr int lookInterval = 30; // milliseconds between two looks at the stop button

// Whatever file it is: so the sentences have always been.
const QString areasMissing = u"全国版の郵便番号表 ZIPCODE1.TXT が見つかりません。確認してください。"_s;
const QString officesMissing = u"事業所の個別郵便番号表 ZIPCODE1.TXT が見つかりません。確認してください。"_s;

} // namespace

ZipCodeConv::ZipCodeConv(workspace::Workspace &workspace, QWidget *parent)
    : ui::Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::ZipCodeConv>())
{
    m_ui->setupUi(this);
    connect(m_ui->Command4, &QPushButton::clicked, this, &ZipCodeConv::search);
    connect(m_ui->Command1, &QPushButton::clicked, this, &ZipCodeConv::next);
    connect(m_ui->Command5, &QPushButton::clicked, this, &ZipCodeConv::stop);
    connect(m_ui->cmdTake, &QPushButton::clicked, this, &ZipCodeConv::take);
    connect(m_ui->cmdUpdate, &QPushButton::clicked, this, &ZipCodeConv::updateData);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &ZipCodeConv::reject);
    connect(m_ui->Check1, &QCheckBox::toggled, this, &ZipCodeConv::showHint);
    connect(m_ui->List2, &QListWidget::itemSelectionChanged, this, &ZipCodeConv::lineChosen);
    connect(m_ui->List2, &QListWidget::itemClicked, this, &ZipCodeConv::lineChosen);
    connect(m_ui->List2, &QListWidget::itemDoubleClicked, this, &ZipCodeConv::take);
    connect(m_ui->Text1, &QLineEdit::textChanged, this, [this](const QString &code) { m_code = code; });
    setUp();
}

ZipCodeConv::~ZipCodeConv() = default;

void ZipCodeConv::serve(const QString &address)
{
    m_serves = true;
    m_ui->Text2->setText(address);
    m_ui->cmdTake->setText(u"決定(&O)"_s);
}

void ZipCodeConv::showEvent(QShowEvent *event)
{
    ui::Screen::showEvent(event);
    if (std::exchange(m_shown, true))
        return;
    const workspace::Settings &settings = workspace().settings;
    ui::moveOnto(this, QPoint(ui::pixelsFromTwips(settings.number(workspace::keys::mainLeft)),
                              ui::pixelsFromTwips(settings.number(workspace::keys::mainTop))));
    // Once the window stands, so that a message has it behind it.
    QMetaObject::invokeMethod(this, &ZipCodeConv::firstSearch, Qt::QueuedConnection);
}

void ZipCodeConv::firstSearch()
{
    const auto index = workspace().kept<PostalIndex>();
    const bool empty = !index || index->groups().empty() || index->groups().front().name.isEmpty();
    if (empty)
        ui::prompts::inform(this, u"ZIPCODE.TXT が見つかりません。確認してください。"_s, u"Error Check"_s);
    if (m_serves || empty)
        search();
}

void ZipCodeConv::search()
{
    if (m_searching)
        return;
    m_ui->Text1->clear();
    m_ui->List2->clear();
    const QString text = postalSearchText(m_ui->Text2->text());
    if (text.isEmpty()) {
        refuse(u"　検索する住所1を入力して下さい。"_s);
        return;
    }
    m_searching = true;
    m_stop = false;
    m_ui->Command5->setEnabled(true);
    const auto finds = find(text);
    m_ui->Command5->setEnabled(false);
    m_searching = false;
    if (finds) {
        show(text, *finds);
    } else {
        m_ui->StatusBar1->clearMessage();
        ui::prompts::inform(this, m_ui->Check1->isChecked() ? officesMissing : areasMissing);
    }
    if (m_closing)
        reject();
}

base::Result<PostalFinds> ZipCodeConv::find(const QString &text)
{
    const PostalData postal{workspace().applicationFolder(), workspace().kept<PostalIndex>()};
    const base::Progress progress = [this](qint64, qint64) { return goOn(); };
    m_sinceLook.invalidate();
    if (m_ui->Check1->isChecked()) {
        m_ui->StatusBar1->showMessage(u"　検索中です。"_s);
        return searchOffices(postal, text, progress);
    }
    m_ui->StatusBar1->showMessage(u"　検索中です。しばらくお待ちください。"_s);
    return searchAreas(postal, text, progress);
}

// Between two records: the window stays alive, and the stop button works.
bool ZipCodeConv::goOn()
{
    if (!m_sinceLook.isValid() || m_sinceLook.elapsed() >= lookInterval) {
        QCoreApplication::processEvents();
        m_sinceLook.start();
    }
    return !m_stop;
}

void ZipCodeConv::show(const QString &text, const PostalFinds &finds)
{
    m_ui->List2->addItems(finds.lines);
    if (finds.lines.isEmpty() && !finds.stopped) {
        refuse(text + (m_ui->Check1->isChecked()
                           ? u" は、見つかりませんでした。事業所名を変えて再度検索してください。"_s
                           : u" は、見つかりませんでした。都市名を入力して再度検索してください。"_s));
        return;
    }
    const QString count = QString::number(finds.lines.size()) + u"件　見つかりました。"_s;
    m_ui->StatusBar1->showMessage(finds.stopped ? u"中止しました。"_s + count : count);
    m_ui->List2->setFocus();
    // The line of the area that the text names, the last one as it is the one that counts.
    for (int row = m_ui->List2->count() - 1; row >= 0 && !finds.code.isEmpty(); --row) {
        if (m_ui->List2->item(row)->text().startsWith(finds.code)) {
            m_ui->List2->setCurrentRow(row);
            break;
        }
    }
    m_ui->Text1->setText(finds.code);
}

void ZipCodeConv::refuse(const QString &message)
{
    m_ui->StatusBar1->showMessage(message);
    QApplication::beep();
    m_ui->Text2->setFocus();
    m_ui->Text2->selectAll();
}

void ZipCodeConv::next()
{
    m_stop = true;
    m_ui->Text1->clear();
    m_ui->List2->clear();
    m_ui->StatusBar1->clearMessage();
    m_ui->Text2->setFocus();
    m_ui->Text2->selectAll();
}

void ZipCodeConv::lineChosen()
{
    const QList<QListWidgetItem *> chosen = m_ui->List2->selectedItems();
    if (!chosen.isEmpty())
        m_ui->Text1->setText(chosen.first()->text().left(codeLength));
}

void ZipCodeConv::take()
{
    if (m_searching)
        return;
    // The line under the cursor counts even where it is not marked yet.
    if (m_ui->List2->hasFocus() && m_ui->List2->currentItem())
        m_ui->List2->currentItem()->setSelected(true);
    if (m_code.isEmpty())
        return;
    if (m_serves) {
        reject();
        return;
    }
    QGuiApplication::clipboard()->setText(m_code);
    m_ui->StatusBar1->showMessage(m_code + u" をクリップボードへコピーしました。"_s);
}

void ZipCodeConv::updateData()
{
    if (m_searching)
        return;
    const QString fileName = ui::file_dialogs::openFile(
        this, u"ダウンロードした郵便番号データを選択"_s,
        u"郵便番号データ (utf_ken_all*.csv KEN_ALL*.CSV JIGYOSYO*.CSV *.csv *.CSV);;すべてのファイル (*)"_s);
    if (fileName.isEmpty())
        return;
    const auto source = ui::runWithProgress(
        this, u"郵便番号データを読み込んでいます。"_s,
        [&](const base::Progress &progress) { return readPostalCsv(fileName, progress); });
    const QString doubt = source ? postalDoubt(*source) : QString();
    if (!doubt.isEmpty() && !ui::prompts::ask(this, doubt))
        return;
    const base::Status written = source ? writeData(*source) : source.status();
    if (!written && !written.error().cancelled)
        ui::prompts::inform(this, written.error().text);
}

base::Status ZipCodeConv::writeData(const PostalSource &source)
{
    const QString folder = workspace().applicationFolder();
    const auto report =
        ui::runWithProgress(this, u"郵便番号データを作成しています。"_s, [&](const base::Progress &progress) {
            return writePostalData(source, folder, progress);
        });
    if (!report)
        return report.error();
    auto index = loadPostalIndex(workspace().inApplicationFolder(u"ZIPID1.txt"_s));
    if (!index)
        return index.error();
    workspace().keep(std::move(*index));
    next();
    ui::prompts::inform(this, postalSummary(source, *report));
    return {};
}

bool ZipCodeConv::mayClose()
{
    // A search that is under way still needs the window; it ends at the next record.
    m_closing = m_searching;
    m_stop = true;
    return !m_searching;
}

void ZipCodeConv::showHint(bool offices)
{
    const QString hint = u"事業所名を入力します。"_s;
    m_ui->Text2->setPlaceholderText(offices ? hint : QString());
    m_ui->Text2->setToolTip(offices ? hint : QString());
    m_ui->lblHint->setText(offices ? hint : u"入力する住所・地名は、丁目・番地は省いてください。"_s);
}

} // namespace registers
