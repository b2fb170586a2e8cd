#include "printing/DialogPrinters.h"

#include "printing/font_names.h"
#include "printing/queue/print_system.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "ui_DialogPrinters.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QFontDatabase>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace printing
{

DialogPrinters::DialogPrinters(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogPrinters>())
{
    m_ui->setupUi(this);
    buildRows();
    buildOffsets();
    const bool isTurned = workspace.settings.checked(workspace::keys::oderOption1);
    (isTurned ? m_ui->optTurned : m_ui->optUpright)->setChecked(true);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &DialogPrinters::reject);
    connect(m_ui->cmdStore, &QPushButton::clicked, this, [this] {
        if (storeSettings())
            reject();
    });
    setUp();
    m_ui->cmdFont1->setFocus(); // what lies under the arrow keys first is no printer
}

DialogPrinters::~DialogPrinters() = default;

void DialogPrinters::buildRows()
{
    using enum Purpose;
    m_rows = {{{Rosters, m_ui->lblPurpose1, m_ui->cboPrinter1, m_ui->txtFont1, m_ui->cmdFont1},
               {Addresses, m_ui->lblPurpose2, m_ui->cboPrinter2, m_ui->txtFont2, m_ui->cmdFont2},
               {AddressRange, m_ui->lblPurpose3, m_ui->cboPrinter3, m_ui->txtFont3, m_ui->cmdFont3},
               {TransferForms, m_ui->lblPurpose4, m_ui->cboPrinter4, m_ui->txtFont4, m_ui->cmdFont4},
               {GiftSheets, m_ui->lblPurpose5, m_ui->cboPrinter5, m_ui->txtFont5, m_ui->cmdFont5}}};
    const auto installed = printSystem(workspace()).queues();
    m_ui->lblRemark->setText(installed ? QString() : installed.error().text);
    m_ui->lblRemark->setVisible(!installed);
    for (const Row &row : m_rows) {
        fill(row, installed ? installed->names : QStringList());
        connect(row.chooseFont, &QPushButton::clicked, this, [this, &row] { chooseFont(row); });
    }
}

// A printer that is gone stays in the list, and so stays chosen until another one is.
void DialogPrinters::fill(const Row &row, const QStringList &installed)
{
    row.caption->setText(QString::fromUtf16(purposeCaption(row.purpose)));
    row.printer->setAccessibleName(row.caption->text());
    row.printer->addItem(u"通常使うプリンタ"_s, QString());
    for (const QString &printer : installed)
        row.printer->addItem(printer, printer);
    const QString stored = workspace().settings.text(printerKey(row.purpose));
    if (row.printer->findData(stored) < 0)
        row.printer->addItem(stored + u"（見つかりません）"_s, stored);
    row.printer->setCurrentIndex(row.printer->findData(stored));
    row.font->setText(storedFont(row));
}

void DialogPrinters::buildOffsets()
{
    const auto add = [this](const OffsetRule &rule, QLineEdit *box, ui::UpDown *arrows) {
        auto *offset = new OffsetBox(rule, *box, *arrows);
        offset->setSteps(offsetFrom(workspace().settings.text(rule.key), rule));
        m_offsets.emplace_back(&rule, offset);
    };
    add(letterRight, m_ui->txtLetterX, m_ui->upLetterX);
    add(letterDown, m_ui->txtLetterY, m_ui->upLetterY);
    add(giftRight, m_ui->txtGiftX, m_ui->upGiftX);
    add(giftDown, m_ui->txtGiftY, m_ui->upGiftY);
    add(transferRight, m_ui->txtTransferX, m_ui->upTransferX);
    add(transferDown, m_ui->txtTransferY, m_ui->upTransferY);
}

void DialogPrinters::chooseFont(const Row &row)
{
    const QFont shown(installedFace(row.font->text(), QFontDatabase::families()));
    if (const auto chosen = ui::file_dialogs::chooseFont(this, shown, u"フォント"_s))
        row.font->setText(withoutVerticalMark(chosen->family()));
}

QString DialogPrinters::printerOf(const Row &row) const { return row.printer->currentData().toString(); }

QString DialogPrinters::storedFont(const Row &row) const
{
    return withoutVerticalMark(workspace().settings.text(fontKey(row.purpose)));
}

bool DialogPrinters::isChanged() const
{
    const workspace::Settings &settings = workspace().settings;
    const bool otherPrinters = std::ranges::any_of(m_rows, [&](const Row &row) {
        return printerOf(row) != settings.text(printerKey(row.purpose)) ||
               row.font->text() != storedFont(row);
    });
    const bool otherPlaces = std::ranges::any_of(m_offsets, [&](const auto &offset) {
        const auto &[rule, box] = offset;
        return box->steps() != offsetFrom(settings.text(rule->key), *rule);
    });
    return otherPrinters || otherPlaces ||
           m_ui->optTurned->isChecked() != settings.checked(workspace::keys::oderOption1);
}

bool DialogPrinters::confirmFarOffsets()
{
    return std::ranges::all_of(m_offsets,
                               [this](const auto &offset) { return offset.second->confirm(this); });
}

bool DialogPrinters::storeSettings()
{
    if (!confirmFarOffsets())
        return false;
    workspace::Settings &settings = workspace().settings;
    for (const Row &row : m_rows) {
        settings.write(printerKey(row.purpose), printerOf(row));
        settings.write(fontKey(row.purpose), row.font->text());
    }
    for (const auto &[rule, box] : m_offsets)
        settings.write(rule->key, box->steps());
    settings.write(workspace::keys::oderOption1, m_ui->optTurned->isChecked());
    settings.write(workspace::keys::oderOption2, m_ui->optUpright->isChecked());
    return tell(flushed(settings));
}

bool DialogPrinters::mayClose()
{
    if (!isChanged())
        return true;
    const auto choice = ui::prompts::askHowToLeave(this, u"変更した内容は、まだ登録されていません。"_s,
                                                   {u"登録して閉じる"_s, u"登録しないで閉じる"_s});
    return choice == ui::prompts::Choice::Discard || (choice == ui::prompts::Choice::Save && storeSettings());
}

} // namespace printing
