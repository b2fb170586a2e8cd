// What of the main window shows and is kept: place, picture, calendar, printers, header.
#include "app/main_window/frmAMain.h"

#include "app/files/recent_files.h"
#include "app/main_window/appearance.h"
#include "app/main_window/command_panel.h"
#include "app/main_window/frmAbout.h"
#include "app/main_window/panel_controls.h"
#include "printing/font_names.h"
#include "printing/print_frame.h"
#include "registers/postal/postal_index.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "ui/twips.h"
#include "ui_frmAMain.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QAction>
#include <QActionGroup>
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTextCharFormat>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

const QString sizeLayout = u"frmAMain/size"_s;
const QString coloursLayout = u"frmAMain/colours"_s;

// Stored as red + 256 green + 65536 blue.
QColor colourFrom(int stored) { return QColor(stored & 0xff, (stored >> 8) & 0xff, (stored >> 16) & 0xff); }

int storedColour(const QColor &colour)
{
    return colour.red() + (colour.green() << 8) + (colour.blue() << 16);
}

QString inOneLine(QStringList parts)
{
    parts.removeAll(QString());
    return parts.join(u'　');
}

// Near the main window, so that its title stays in sight.
constexpr QPoint screensBeside(32, 48); // pixels

} // namespace

// Check6 to Check8.
std::array<QCheckBox *, 3> frmAMain::buildOptionBoxes()
{
    std::array<QCheckBox *, 3> made{};
    const struct
    {
        const char16_t *name;
        const char16_t *caption;
        Page page;
        const char16_t *group;
    } boxes[] = {
        {u"Check6", u"ゆうパックのお届け通知が必要", Page::MailOrder, u"通信販売"},
        {u"Check7", u"ゆうパックのお届け通知が必要", Page::Shipping, u"贈答品承り票"},
        {u"Check8", u"", Page::Customers, u"納品先"},
    };
    for (std::size_t i = 0; i < made.size(); ++i) {
        const auto &box = boxes[i];
        auto *check = new QCheckBox(QString::fromUtf16(box.caption), m_ui->SSTab1);
        check->setObjectName(QString::fromUtf16(box.name));
        m_commands->addToGroup(box.page, QString::fromUtf16(box.group), check, PanelSide::Below);
        // Kept for the customer screens; nothing to choose as long as none of them reads it.
        check->setVisible(*box.caption != 0);
        made[i] = check;
    }
    m_platform = new QLabel(this);
    m_platform->setObjectName(u"Label13"_s);
    m_ui->StatusBar1->addPermanentWidget(m_platform);
    return made;
}

void frmAMain::buildColoursMenu()
{
    const QStringList captions = {u"自動(&A)"_s, u"明るい(&L)"_s, u"暗い(&D)"_s};
    const QStringList names = {u"mnuColoursAutomatic"_s, u"mnuColoursLight"_s, u"mnuColoursDark"_s};
    QMenu *menu = menuBar()->findChild<QMenu *>(u"mnuPic"_s)->addMenu(u"配色(&H)"_s);
    auto *choice = new QActionGroup(menu);
    const int stored = m_workspace.settings.layout(coloursLayout).toInt();
    for (int i = 0; i < captions.size(); ++i) {
        QAction *item = menu->addAction(captions.at(i));
        item->setObjectName(names.at(i));
        item->setCheckable(true);
        item->setChecked(i == stored);
        choice->addAction(item);
        connect(item, &QAction::triggered, this, [this, i] { colour(i); });
    }
    if (stored > 0 && stored < captions.size())
        colour(stored);
}

void frmAMain::buildRecentMenu()
{
    auto *menu = menuBar()->findChild<QMenu *>(u"mnuFileOpen"_s);
    m_recentFiles = new QMenu(u"最近使ったファイル(&F)"_s, menu);
    m_recentFiles->setObjectName(u"mnuRecent"_s);
    menu->insertMenu(m_commands->menuItem(Action::SaveFileAs), m_recentFiles);
}

void frmAMain::showRecentFiles()
{
    m_recentFiles->clear();
    const QStringList files = recentFiles(m_workspace.settings);
    for (const QString &file : files) {
        QString shown = QDir::toNativeSeparators(file);
        QAction *item = m_recentFiles->addAction(shown.replace(u'&', u"&&"_s));
        // Once the menu is closed: opening the file fills it anew.
        connect(
            item, &QAction::triggered, this, [this, file] { m_session.openRecent(file); },
            Qt::QueuedConnection);
    }
    m_recentFiles->setEnabled(!files.isEmpty());
}

// Stands as long as a backup is worked in.
void frmAMain::buildBackupNotice()
{
    m_backupNotice = new QFrame(this);
    m_backupNotice->setObjectName(u"fraBackup"_s);
    auto *row = new QHBoxLayout(m_backupNotice);
    m_backupText = new QLabel(m_backupNotice);
    m_backupText->setObjectName(u"lblBackup"_s);
    m_backupText->setTextFormat(Qt::PlainText);
    m_backupText->setWordWrap(true);
    auto *save = new QPushButton(u"名前を付けて保存"_s, m_backupNotice);
    save->setObjectName(u"cmdSaveBackup"_s);
    connect(save, &QPushButton::clicked, this, &frmAMain::saveFileAs);
    row->addWidget(m_backupText, 1);
    row->addWidget(save);
    m_ui->centralLayout->insertWidget(1, m_backupNotice);
    m_backupNotice->hide();
}

void frmAMain::colour(int colours)
{
    m_workspace.settings.writeLayout(coloursLayout, QString::number(colours));
    applyColours(static_cast<Colours>(colours));
    m_ui->centralWidget->setStyleSheet(mainWindowStyle());
}

void frmAMain::loadFixedLists()
{
#ifdef Q_OS_WIN
    m_platform->setText(u"PLATFORM WIN32 NT"_s);
#endif
}

void frmAMain::loadPlace()
{
    const workspace::Settings &settings = m_workspace.settings;
    const QStringList size = settings.layout(sizeLayout).split(u' ');
    if (size.size() == 3 && size.at(0).toInt() > 0 && size.at(1).toInt() > 0)
        resize(size.at(0).toInt(), size.at(1).toInt());
    ui::moveOnto(this, QPoint(ui::pixelsFromTwips(settings.number(workspace::keys::mainLeft)),
                              ui::pixelsFromTwips(settings.number(workspace::keys::mainTop))));
    if (size.size() == 3 && size.at(2) == "max"_L1)
        setWindowState(windowState() | Qt::WindowMaximized);
    m_calendarColour = colourFrom(settings.integer(workspace::keys::monthViewColor));
    colourCalendar();
    showCalendar(settings.checked(workspace::keys::monthView));
    m_pictureFile = settings.text(workspace::keys::pictureFile);
}

void frmAMain::loadPostalIndex()
{
    auto index = registers::loadPostalIndex(m_workspace.inApplicationFolder(u"ZIPID1.txt"_s));
    if (tell(index.status()))
        m_workspace.keep(std::move(*index));
}

void frmAMain::loadPicture()
{
    if (m_pictureFile.isEmpty())
        return;
    m_pictureProblem = m_ui->Picture1->load(m_pictureFile);
    showFile();
}

bool frmAMain::saveSettings()
{
    workspace::Settings &settings = m_workspace.settings;
    const QRect place = isMaximized() ? normalGeometry() : geometry();
    const QPoint corner = isMaximized() ? place.topLeft() : pos();
    settings.write(workspace::keys::mainLeft, ui::twipsFromPixels(corner.x()));
    settings.write(workspace::keys::mainTop, ui::twipsFromPixels(corner.y()));
    settings.write(workspace::keys::frmLeft, ui::twipsFromPixels(corner.x() + screensBeside.x()));
    settings.write(workspace::keys::frmTop, ui::twipsFromPixels(corner.y() + screensBeside.y()));
    settings.writeLayout(
        sizeLayout,
        u"%1 %2 %3"_s.arg(place.width()).arg(place.height()).arg(isMaximized() ? u"max"_s : u"normal"_s));
    m_controls->save();
    settings.write(workspace::keys::monthView, !m_ui->MonthView1->isHidden());
    settings.write(workspace::keys::monthViewColor, storedColour(m_calendarColour));
    settings.write(workspace::keys::pictureFile, m_pictureFile);
    if (m_session.isOpen())
        settings.write(workspace::keys::employee, m_ui->txtShainID->text());
    return settings.flush();
}

void frmAMain::showPrinters()
{
    const workspace::Settings &settings = m_workspace.settings;
    const auto shown = [](const QString &printer) {
        return printer.isEmpty() ? u"通常使うプリンタ"_s : printer;
    };
    m_ui->LblPrinterName->setText(shown(settings.text(workspace::keys::printerName)));
    m_ui->Label19->setText(shown(settings.text(workspace::keys::kuroPrinterName)));
    const auto face = [&settings](printing::Purpose purpose) {
        return printing::withoutVerticalMark(settings.text(printing::fontKey(purpose)));
    };
    m_ui->txtFontName->setText(face(printing::Purpose::DeliveryNotesAndBills));
    m_ui->txtFontName2->setText(face(printing::Purpose::ShippingSlips));
}

void frmAMain::showFile()
{
    const workspace::Panel &panel = m_workspace.panel;
    const QString company = (panel.companyName1 + u'　' + panel.companyName2).trimmed();
    m_ui->lblCompany->setText(company.isEmpty() ? u"Kanbalore Database"_s : company);
    const QString file = m_session.fileName();
    const QString reason = m_session.reason();
    // The reason stands here too: the warning about the date takes its place in the status bar.
    m_ui->lblFile->setText(inOneLine({QFileInfo(file).fileName(), reason}));
    m_ui->lblFile->setToolTip(inOneLine({file, reason}));
    warn(inOneLine({file, reason, m_pictureProblem}));
}

void frmAMain::choosePicture()
{
    const QString chosen = ui::file_dialogs::openFile(this, u"開く"_s, u"すべてのﾌｧｲﾙ(*.*)"_s);
    if (chosen.isEmpty())
        return;
    if (const QString problem = m_ui->Picture1->load(chosen); !problem.isEmpty())
        ui::prompts::inform(this, problem);
    else
        keepPicture(chosen);
}

void frmAMain::keepPicture(const QString &fileName)
{
    m_pictureFile = fileName;
    m_pictureProblem.clear();
    showFile();
}

void frmAMain::resetPicture()
{
    keepPicture({});
    ui::prompts::inform(this, u"設定を有効にするには、ｱﾌﾟﾘｹｰｼｮﾝを終了してください。"_s, u"入力事項の確認"_s);
}

// The shortcut names both ledgers.
void frmAMain::chooseLedger()
{
    if (installedCompanion(Action::Ledgers)) {
        start(Companion::Ledger);
        return;
    }
    auto *menu = findChild<QMenu *>(u"mnuLedgers"_s);
    if (!menu) {
        menu = new QMenu(this);
        menu->setObjectName(u"mnuLedgers"_s);
        menu->addAction(m_commands->menuItem(Action::ReceivableLedger));
        menu->addAction(m_commands->menuItem(Action::PayableLedger));
    }
    menu->popup(m_commands->below(Action::Ledgers));
    menu->setActiveAction(menu->actions().constFirst());
}

void frmAMain::toggleCalendar() { showCalendar(m_ui->MonthView1->isHidden()); }

void frmAMain::showCalendar(bool visible)
{
    m_ui->MonthView1->setVisible(visible);
    m_commands->menuItem(Action::ShowCalendar)->setChecked(visible);
}

void frmAMain::chooseCalendarColour()
{
    if (const auto colour = ui::file_dialogs::chooseColor(this, m_calendarColour, u"カレンダーの色"_s)) {
        m_calendarColour = *colour;
        colourCalendar();
    }
}

void frmAMain::colourCalendar()
{
    const QColor text = m_calendarColour.lightness() > 140 ? QColor(0x22282b) : QColor(Qt::white);
    QCalendarWidget *calendar = m_ui->MonthView1;
    calendar->setLocale(QLocale(QLocale::Japanese, QLocale::Japan));
    calendar->setFirstDayOfWeek(Qt::Sunday);
    calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    calendar->setSelectedDate(m_workspace.today());
    calendar->setStyleSheet(
        u"#qt_calendar_navigationbar { background: %1; } QToolButton { color: %2; background: transparent; }"_s
            .arg(m_calendarColour.name(), text.name()));
    const std::pair<const char16_t *, Qt::ArrowType> arrows[] = {{u"qt_calendar_prevmonth", Qt::LeftArrow},
                                                                 {u"qt_calendar_nextmonth", Qt::RightArrow}};
    for (const auto &[name, arrow] : arrows) {
        if (auto *button = calendar->findChild<QToolButton *>(QString::fromUtf16(name))) {
            button->setIcon({});
            button->setArrowType(arrow);
        }
    }
    // Qt sets the month before the year in every language; Japanese reads the year first.
    auto *month = calendar->findChild<QToolButton *>(u"qt_calendar_monthbutton"_s);
    auto *year = calendar->findChild<QToolButton *>(u"qt_calendar_yearbutton"_s);
    auto *bar = month && year ? qobject_cast<QBoxLayout *>(month->parentWidget()->layout()) : nullptr;
    if (bar && bar->indexOf(month) < bar->indexOf(year))
        bar->insertWidget(bar->indexOf(month), year);
    QTextCharFormat sunday;
    sunday.setForeground(QColor(0xd24a43));
    calendar->setWeekdayTextFormat(Qt::Sunday, sunday);
    QTextCharFormat saturday;
    saturday.setForeground(QColor(0x4a86c5));
    calendar->setWeekdayTextFormat(Qt::Saturday, saturday);
    QTextCharFormat header;
    header.setBackground(m_calendarColour);
    header.setForeground(text);
    calendar->setHeaderTextFormat(header);
}

void frmAMain::chooseSlipFont()
{
    workspace::Settings &settings = m_workspace.settings;
    const QFont shown(printing::fontFace(settings, printing::Purpose::ShippingSlips));
    if (const auto font = ui::file_dialogs::chooseFont(this, shown, u"フォント（書体）の設定"_s)) {
        settings.write(workspace::keys::kuroPrinterFont, printing::withoutVerticalMark(font->family()));
        showPrinters();
    }
}

void frmAMain::showAbout()
{
    frmAbout about(this);
    about.exec();
}

} // namespace app
