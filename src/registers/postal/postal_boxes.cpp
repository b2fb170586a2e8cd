#include "registers/postal/postal_boxes.h"

#include "registers/postal/ZipCodeConv.h"
#include "registers/postal/postal_address.h"
#include "registers/postal/postal_lookup.h"
#include "ui/leave_watch.h"
#include "ui/prompts.h"
#include "ui/width_check.h"
#include "workspace/workspace.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QMenu>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

PostalData dataOf(const workspace::Workspace &workspace)
{
    return {workspace.applicationFolder(), workspace.kept<PostalIndex>()};
}

} // namespace

PostalBoxes::PostalBoxes(workspace::Workspace &workspace, const Controls &controls)
    : QObject(controls.zip)
    , m_workspace(workspace)
    , m_zip(controls.zip)
    , m_address(controls.address)
    , m_address2(controls.address2)
    , m_remark(controls.remark)
    , m_zipWatch(new ui::LeaveWatch(controls.zip))
{
    // The remark beside it takes the room that is left, not that of the code.
    m_zip->setMinimumWidth(m_zip->fontMetrics().horizontalAdvance(u"999-99999"_s) + 12);
    m_remark->setMinimumWidth(m_remark->fontMetrics().horizontalAdvance(m_remark->text()) + 4);
    connect(m_zipWatch, &ui::LeaveWatch::left, this, &PostalBoxes::zipLeft);
    connect(m_zip, &QLineEdit::textChanged, m_remark, &QWidget::hide);
    connect(m_remark, &QAbstractButton::clicked, this, &PostalBoxes::searchInWindow);
    for (QLineEdit *box : {m_zip, m_address}) {
        connect(new QShortcut(Qt::Key_F4, box, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated,
                this, &PostalBoxes::searchInWindow);
    }
}

// A row is left by a click into the list: the code must be there before.
void PostalBoxes::fillOnLeavingAddress()
{
    m_addressWatch = new ui::LeaveWatch(m_address);
    connect(m_addressWatch, &ui::LeaveWatch::leaving, this, &PostalBoxes::fillEmptyCode);
    connect(m_addressWatch, &ui::LeaveWatch::left, this, &PostalBoxes::addressLeft);
}

void PostalBoxes::settle()
{
    m_zipWatch->forget();
    const QStringList addresses = addressesOfTypedCode();
    if (addresses.size() == 1)
        setAddress(addresses.first());
    if (!m_addressWatch)
        return;
    m_addressWatch->forget();
    addressLeft();
}

void PostalBoxes::forget()
{
    m_zipWatch->forget();
    if (m_addressWatch)
        m_addressWatch->forget();
    m_remark->hide();
    // Two rows with the same text: nothing was written into the box.
    m_zip->setModified(false);
    m_address->setModified(false);
}

void PostalBoxes::lookUp()
{
    if (m_zip->isReadOnly())
        return;
    const PostalData data = dataOf(m_workspace);
    const QString code = postalCodeOf(data, m_address->text());
    if (code.isEmpty())
        searchInWindow();
    else
        fillCode(data, code);
}

void PostalBoxes::searchInWindow()
{
    if (m_zip->isReadOnly())
        return;
    ZipCodeConv window(m_workspace, m_address->window());
    window.serve(m_address->text());
    window.exec();
    if (!window.code().isEmpty())
        m_zip->setText(window.code());
}

void PostalBoxes::fillCode(const PostalData &data, const QString &code)
{
    m_zip->setText(code);
    m_remark->setVisible(isOfWholeCity(data, code));
}

QString PostalBoxes::codeOfAddress(const PostalData &data) const
{
    // The address that is too wide is mended first.
    if (ui::widthError(m_address->text(), ui::nameWidth))
        return {};
    return postalCodeOf(data, m_address->text());
}

// What was looked up here need not be looked up again when the box has been left.
void PostalBoxes::fillEmptyCode()
{
    if (!m_zip->text().isEmpty())
        return;
    const PostalData data = dataOf(m_workspace);
    if (const QString code = codeOfAddress(data); !code.isEmpty())
        fillCode(data, code);
    m_address->setModified(false);
}

// Passing through with the cursor is no edit.
void PostalBoxes::addressLeft()
{
    if (!m_address->isModified())
        return;
    const PostalData data = dataOf(m_workspace);
    const QString standing = m_zip->text();
    const QString code = codeOfAddress(data);
    if (!code.isEmpty() && (standing.isEmpty() || mayReplace(data, standing, code)))
        fillCode(data, code);
    m_address->setModified(false);
}

bool PostalBoxes::mayReplace(const PostalData &data, const QString &standing, const QString &code) const
{
    const auto complete = completePostalCode(standing);
    if (complete &&
        (*complete == code || shareAnArea(data, *complete, code) || isGeneralFor(data, code, *complete)))
        return false;
    return ui::prompts::askCautiously(
        m_address->window(),
        u"郵便番号は「%1」ですが、この住所１の郵便番号は「%2」のようです。\n「%2」に変更しますか。"_s.arg(
            standing, code));
}

// None when no complete code was typed, or when an address stands there.
QStringList PostalBoxes::addressesOfTypedCode()
{
    const auto code = completePostalCode(m_zip->text());
    if (!code || !m_zip->isModified() || !m_address->text().isEmpty())
        return {};
    m_zip->setModified(false);
    const auto addresses = addressesOf(dataOf(m_workspace), *code);
    if (!addresses || addresses->isEmpty())
        return {};
    m_zip->setText(*code);
    return *addresses;
}

void PostalBoxes::zipLeft()
{
    const QStringList addresses = addressesOfTypedCode();
    if (addresses.size() == 1)
        fillAddress(m_zip->text(), addresses.first());
    else if (!addresses.isEmpty())
        offer(m_zip->text(), addresses);
}

// What stands in 住所2 stays behind the rest that comes there. \return the box in which the address ends
QLineEdit *PostalBoxes::setAddress(const QString &address)
{
    const AddressLines lines = dividedAddress(dataOf(m_workspace), address, ui::nameWidth.bytes);
    m_address->setText(lines.first);
    if (lines.second.isEmpty())
        return m_address;
    m_address2->setText(lines.second + m_address2->text());
    m_address2->setCursorPosition(static_cast<int>(lines.second.size()));
    return m_address2;
}

// The cursor goes behind the address, where the house number is typed.
void PostalBoxes::fillAddress(const QString &code, const QString &address)
{
    m_zip->setText(code);
    QLineEdit *end = setAddress(address);
    const int place = end->cursorPosition();
    end->setFocus();
    end->setCursorPosition(place);
}

void PostalBoxes::offer(const QString &code, const QStringList &addresses)
{
    auto *menu = new QMenu(m_zip);
    menu->setObjectName(u"mnuAddresses"_s);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const QString &address : addresses) {
        QAction *item = menu->addAction(QString(address).replace(u'&', u"&&"_s));
        connect(item, &QAction::triggered, this, [this, code, address] { fillAddress(code, address); });
    }
    menu->setActiveAction(menu->actions().constFirst());
    menu->popup(m_zip->mapToGlobal(m_zip->rect().bottomLeft()));
}

} // namespace registers
