#include "shipping/slips/ShipmentPanel.h"

#include "masters/name_lists.h"
#include "printing/font_names.h"
#include "printing/print_frame.h"
#include "shipping/slips/party_boxes.h"
#include "shipping/slips/shipment_entry.h"
#include "shipping/slips/slip_document.h"
#include "shipping/slips/tracking_number.h"
#include "slips/entry/picker.h"
#include "text/numbers.h"
#include "text/width.h"
#include "ui/file_dialogs.h"
#include "ui/width_check.h"
#include "ui_ShipmentPanel.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr printing::Purpose purpose = printing::Purpose::ShippingSlips;
const QString formWithNotice = u"ゆうパック"_s;

void offer(QComboBox *box, const QStringList &names)
{
    box->addItems(names);
    box->setCurrentIndex(-1);
    box->clearEditText();
}

// A value of another program's stands in the list, too.
void choose(QComboBox *box, const QString &value)
{
    if (box->findData(value) < 0)
        box->addItem(value, value);
    box->setCurrentIndex(box->findData(value));
}

// From its beginning on.
void showText(QLineEdit *box, const QString &text)
{
    box->setText(text);
    box->setCursorPosition(0);
}

QString shownYen(const std::optional<double> &yen) { return yen ? text::formatAmount(*yen) : QString(); }

} // namespace

ShipmentPanel::ShipmentPanel(QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::ShipmentPanel>())
{
    m_ui->setupUi(this);
    // Stands for its boxes in the screen's tab order.
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(m_ui->txtNName1);
    m_to = new PartyBoxes({.boxes = {m_ui->txtNName1, m_ui->txtNName2, m_ui->txtNZip, m_ui->txtNAddress1,
                                     m_ui->txtNAddress2, m_ui->txtNTel1},
                           .link = m_ui->lblConsignee,
                           .lookUp = m_ui->cmdNZip,
                           .remark = m_ui->cmdNZipSearch},
                          this);
    m_from = new PartyBoxes({.boxes = {m_ui->txtName1, m_ui->txtName2, m_ui->txtZip, m_ui->txtAddress1,
                                       m_ui->txtAddress2, m_ui->txtTel1},
                             .link = m_ui->lblSender,
                             .lookUp = m_ui->cmdZip,
                             .remark = m_ui->cmdZipSearch},
                            this);
    fillChoices();
    connectForms();
    m_ui->LblPrinterName->setEnabled(false);
}

ShipmentPanel::~ShipmentPanel() = default;

void ShipmentPanel::fillChoices()
{
    m_ui->Combo5->addItems(shippingForms());
    for (const QString &slot : timeSlots())
        m_ui->cmbTimeSlot->addItem(slot.isEmpty() ? u"指定なし"_s : slot, slot);
    for (const QString &cooling : coolings())
        m_ui->cmbCooling->addItem(cooling.isEmpty() ? u"なし"_s : cooling, cooling);
    new slips::Picker(m_ui->dbcKubun);
    new slips::Picker(m_ui->dbcShohin);
    for (QLineEdit *box : {m_ui->txtHinmei, m_ui->txtMemo1, m_ui->txtMemo2})
        ui::WidthCheck::guardTyping(box, ui::nameWidth);
}

void ShipmentPanel::connectForms()
{
    for (QLineEdit *box : {m_ui->txtCode1, m_ui->txtCode2})
        bringIntoForm(box, [](const QString &typed) { return text::toHalfWidthAscii(typed).trimmed(); });
    for (QLineEdit *box : {m_ui->Text1, m_ui->Text2}) {
        bringIntoForm(box, [](const QString &typed) {
            const auto yen = typedYen(typed, {});
            return yen ? shownYen(*yen) : typed;
        });
    }
    bringIntoForm(m_ui->txtKDenNo, storedTracking);
    connect(m_ui->dbcShohin, &QComboBox::activated, this, &ShipmentPanel::takeProduct);
    connect(m_ui->dbcShohin->lineEdit(), &QLineEdit::editingFinished, this, &ShipmentPanel::takeProduct);
    connect(m_ui->Combo5, &QComboBox::currentTextChanged, this, &ShipmentPanel::showForm);
    for (QComboBox *box : {m_ui->Combo5, m_ui->cmbTimeSlot, m_ui->cmbCooling})
        connect(box, &QComboBox::currentTextChanged, this, &ShipmentPanel::showHandwriting);
    connect(m_ui->spnParcels, &QSpinBox::valueChanged, this, &ShipmentPanel::showHandwriting);
    connect(m_ui->LblPrinterName, &QPushButton::clicked, this, &ShipmentPanel::openPrinter);
    connect(m_ui->cmdFont, &QPushButton::clicked, this, &ShipmentPanel::chooseFont);
}

base::Status ShipmentPanel::bind(workspace::Workspace &workspace)
{
    m_workspace = &workspace;
    for (PartyBoxes *party : {m_to, m_from})
        party->connectPostalCodes(workspace);
    followToday();
    const base::Status offered = offerMasters(workspace);
    clear();
    showPrinter();
    return offered;
}

base::Status ShipmentPanel::offerMasters(workspace::Workspace &workspace)
{
    const auto categories = masters::shippingCategoryNames(workspace.connection);
    if (!categories)
        return categories.error();
    offer(m_ui->dbcKubun, *categories);
    const auto products = masters::salesProducts(workspace.connection);
    if (!products)
        return products.error();
    QStringList names;
    for (const masters::Product &product : *products)
        names << product.name;
    offer(m_ui->dbcShohin, names);
    return {};
}

// --- How it looks on the screens ---

void ShipmentPanel::setReadOnly(Typing typing)
{
    m_isReadOnly = true;
    const auto boxes = findChildren<QLineEdit *>();
    for (QLineEdit *box : boxes)
        box->setReadOnly(true);
    for (QLineEdit *box : {m_ui->txtCode1, m_ui->txtCode2, m_ui->txtMemo1, m_ui->txtMemo2})
        box->setReadOnly(typing == Typing::None);
    for (QWidget *control :
         std::initializer_list<QWidget *>{m_ui->dbcKubun, m_ui->Combo5, m_ui->dbcShohin, m_ui->cmbTimeSlot,
                                          m_ui->cmbCooling, m_ui->spnParcels, m_ui->cmdNZip, m_ui->cmdZip})
        control->setEnabled(false);
}

void ShipmentPanel::showGiftWords()
{
    m_ui->lblMemo1->setText(u"のし上書き"_s);
    m_ui->lblMemo2->setText(u"名入れ"_s);
}

void ShipmentPanel::tellNotice(bool wanted)
{
    m_ui->lblNotice->setText(wanted ? u"お届け通知：必要"_s : u"お届け通知：不要"_s);
}

void ShipmentPanel::showForm()
{
    m_ui->lblNotice->setVisible(form() == formWithNotice);
    emit formChanged(form());
}

QString ShipmentPanel::handwriting() const
{
    const QStringList wishes = wishesNotPrinted(*m_workspace, read().shipment);
    return wishes.isEmpty()
               ? QString()
               : u"この用紙には%1は印刷されません。送り状に書き込んでください。"_s.arg(wishes.join(u'・'));
}

void ShipmentPanel::showHandwriting()
{
    m_ui->groupCarrier->setTitle((u"配送　"_s + handwriting()).trimmed());
}

void ShipmentPanel::setPrinterSettings(std::function<void(QWidget *)> open)
{
    m_openPrinter = std::move(open);
    m_ui->LblPrinterName->setEnabled(bool(m_openPrinter));
}

void ShipmentPanel::openPrinter()
{
    m_openPrinter(window());
    showPrinter();
}

void ShipmentPanel::showPrinter()
{
    const workspace::Settings &settings = m_workspace->settings;
    const QString printer = settings.text(printing::printerKey(purpose));
    m_ui->LblPrinterName->setText(printer.isEmpty() ? u"通常使うプリンタ"_s : printer);
    m_ui->txtFontName2->setText(printing::withoutVerticalMark(settings.text(printing::fontKey(purpose))));
}

void ShipmentPanel::chooseFont()
{
    const QFont shown(printing::fontFace(m_workspace->settings, purpose));
    if (const auto font = ui::file_dialogs::chooseFont(window(), shown, u"フォント（書体）の設定"_s))
        m_workspace->settings.write(printing::fontKey(purpose),
                                    printing::withoutVerticalMark(font->family()));
    showPrinter();
}

void ShipmentPanel::readKept(const KeptKeys &keys)
{
    const workspace::Settings &settings = m_workspace->settings;
    m_ui->txtCode1->setText(settings.text(keys.code[0]));
    m_ui->txtCode2->setText(settings.text(keys.code[1]));
    m_ui->txtMemo1->setText(settings.text(keys.memo[0]));
    m_ui->txtMemo2->setText(settings.text(keys.memo[1]));
    m_keepsRemarks = true;
    markUnchanged();
}

void ShipmentPanel::writeKeptCodes(const KeptKeys &keys) const
{
    m_workspace->settings.write(keys.code[0], m_ui->txtCode1->text());
    m_workspace->settings.write(keys.code[1], m_ui->txtCode2->text());
}

void ShipmentPanel::writeKept(const KeptKeys &keys) const
{
    writeKeptCodes(keys);
    m_workspace->settings.write(keys.memo[0], m_ui->txtMemo1->text());
    m_workspace->settings.write(keys.memo[1], m_ui->txtMemo2->text());
}

// --- The shipment ---

void ShipmentPanel::followToday()
{
    const QDate today = m_workspace->today();
    const QDate before = std::exchange(m_today, today);
    if (before == today)
        return;
    for (DayLine *box : {m_ui->txtDate1, m_ui->txtDate2})
        box->setToday(today);
    m_ui->txtDate1->markAllBut(today);
    if (!before.isValid() || m_ui->txtDate1->day() != std::optional(before))
        return;
    const bool wasChanged = isChanged();
    m_ui->txtDate1->setDay(today);
    if (!wasChanged)
        markUnchanged();
}

void ShipmentPanel::clear()
{
    Shipment empty;
    empty.accepted = m_workspace->today();
    empty.method = m_workspace->panel.carrier;
    if (m_ui->dbcKubun->count() == 1) // needs no choosing
        empty.category = m_ui->dbcKubun->itemText(0);
    setShipment(empty);
}

void ShipmentPanel::setShipment(const Shipment &shipment)
{
    m_base = shipment;
    m_to->fill(shipment.consignee, shipment.consigneeId);
    m_from->fill(shipment.sender, shipment.senderId);
    m_ui->txtDate1->setDay(shipment.accepted);
    m_ui->txtDate2->setDay(shipment.delivery);
    m_ui->dbcKubun->setCurrentIndex(m_ui->dbcKubun->findText(shipment.category));
    m_ui->dbcKubun->setEditText(shipment.category);
    m_ui->Combo5->setCurrentIndex(m_ui->Combo5->findText(shipment.method));
    m_ui->Combo5->setPlaceholderText(shipment.method);
    showGoods(shipment);
    const std::pair<QLineEdit *, QString> texts[] = {{m_ui->Text1, shownYen(shipment.price)},
                                                     {m_ui->Text2, shownYen(shipment.carriage)},
                                                     {m_ui->txtCode1, shipment.customerCode},
                                                     {m_ui->txtCode2, shipment.officeCode},
                                                     {m_ui->txtKDenNo, shipment.trackingNumber}};
    for (const auto &[box, text] : texts)
        showText(box, text);
    choose(m_ui->cmbTimeSlot, shipment.timeSlot);
    choose(m_ui->cmbCooling, shipment.cooling);
    m_ui->spnParcels->setValue(shipment.parcels);
    showForm();
    markUnchanged();
}

void ShipmentPanel::showGoods(const Shipment &shipment)
{
    m_ui->dbcShohin->setCurrentIndex(-1);
    m_ui->dbcShohin->clearEditText();
    m_takenProduct.clear();
    showText(m_ui->txtHinmei, shipment.goods);
    showText(m_ui->txtMemo1, shipment.memo1);
    showText(m_ui->txtMemo2, shipment.memo2);
    m_keepsRemarks = false;
}

void ShipmentPanel::fillFrom(const Shipment &earlier)
{
    m_to->fill(earlier.consignee, earlier.consigneeId);
    showGoods(earlier);
}

void ShipmentPanel::beginNext()
{
    setShipment(nextOf(read().shipment));
    m_keepsRemarks = true;
}

QStringList ShipmentPanel::remainingRemarks() const
{
    QStringList remarks;
    for (const auto &[label, box] :
         {std::pair(m_ui->lblMemo1, m_ui->txtMemo1), std::pair(m_ui->lblMemo2, m_ui->txtMemo2)}) {
        if (m_keepsRemarks && !box->isModified() && !box->text().trimmed().isEmpty())
            remarks << u"%1「%2」"_s.arg(label->text(), box->text().trimmed());
    }
    return remarks;
}

void ShipmentPanel::settle()
{
    for (PartyBoxes *party : {m_to, m_from})
        party->settle();
    takeProduct();
}

QStringList ShipmentPanel::state(bool isKept) const
{
    QList<const QLineEdit *> apart{m_ui->txtFontName2};
    if (isKept)
        apart << m_ui->txtMemo1 << m_ui->txtMemo2 << m_ui->txtCode1 << m_ui->txtCode2;
    QStringList state;
    const auto boxes = findChildren<QLineEdit *>(); // those of drop-downs and of the number of parcels, too
    for (const QLineEdit *box : boxes) {
        if (!apart.contains(box))
            state << box->text();
    }
    for (const QComboBox *choice : {m_ui->Combo5, m_ui->cmbTimeSlot, m_ui->cmbCooling})
        state << choice->currentText();
    return state;
}

bool ShipmentPanel::isChanged(bool isKept) const { return state(isKept) != m_unchanged[isKept]; }

void ShipmentPanel::markUnchanged()
{
    for (const bool isKept : {false, true})
        m_unchanged[isKept] = state(isKept);
}

// What is on the slip may say more than the product's name; only another product takes its place.
void ShipmentPanel::takeProduct()
{
    const QString product = m_ui->dbcShohin->currentText().trimmed();
    if (std::exchange(m_takenProduct, product) == product || product.isEmpty())
        return;
    if (m_ui->dbcShohin->findText(product) >= 0 || m_ui->txtHinmei->text().isEmpty())
        m_ui->txtHinmei->setText(product);
}

// --- The parties ---

Party ShipmentPanel::consignee() const { return m_to->party(); }
Party ShipmentPanel::sender() const { return m_from->party(); }
void ShipmentPanel::setConsignee(const Party &consignee, qint64 id) { m_to->fill(consignee, id); }
void ShipmentPanel::setSender(const Party &sender, qint64 id) { m_from->fill(sender, id); }
qint64 ShipmentPanel::consigneeId() const { return m_to->id(); }
qint64 ShipmentPanel::senderId() const { return m_from->id(); }
bool ShipmentPanel::isConsigneeTyped() const { return m_to->isTyped(); }
bool ShipmentPanel::isSenderTyped() const { return m_from->isTyped(); }

QString ShipmentPanel::category() const { return m_ui->dbcKubun->currentText().trimmed(); }
QString ShipmentPanel::form() const { return m_ui->Combo5->currentText(); }
int ShipmentPanel::categoryCount() const { return m_ui->dbcKubun->count(); }

void ShipmentPanel::focusConsignee() { m_ui->txtNName1->setFocus(); }
void ShipmentPanel::focusConsigneeZip() { m_ui->txtNZip->setFocus(); }
void ShipmentPanel::focusSender() { m_ui->txtName1->setFocus(); }
void ShipmentPanel::focusCategory() { m_ui->dbcKubun->setFocus(); }

void ShipmentPanel::focusSlip()
{
    m_ui->txtDate2->setFocus();
    m_ui->txtDate2->selectAll();
}

} // namespace shipping
