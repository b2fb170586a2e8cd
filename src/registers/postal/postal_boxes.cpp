#include "registers/postal/postal_boxes.h"

#include "registers/postal/ZipCodeConv.h"
#include "registers/postal/postal_lookup.h"
#include "ui/leave_watch.h"
#include "ui/width_check.h"
#include "workspace/workspace.h"

#include <QLineEdit>
#include <QMenu>

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

PostalBoxes::PostalBoxes(workspace::Workspace &workspace, QLineEdit *zip, QLineEdit *address)
    : QObject(zip)
    , m_workspace(workspace)
    , m_zip(zip)
    , m_address(address)
{
    connect(new ui::LeaveWatch(zip), &ui::LeaveWatch::left, this, &PostalBoxes::zipLeft);
}

void PostalBoxes::fillOnLeavingAddress()
{
    connect(new ui::LeaveWatch(m_address), &ui::LeaveWatch::left, this, &PostalBoxes::addressLeft);
}

void PostalBoxes::lookUp()
{
    const QString code = postalCodeOf(dataOf(m_workspace), m_address->text());
    if (!code.isEmpty()) {
        m_zip->setText(code);
        return;
    }
    ZipCodeConv window(m_workspace, m_address->window());
    window.serve(m_address->text());
    window.exec();
    if (!window.code().isEmpty())
        m_zip->setText(window.code());
}

void PostalBoxes::addressLeft()
{
    // Passing through with the cursor is no edit; and the address that is too wide is mended first.
    const bool mayReplace = m_address->isModified() || m_zip->text().isEmpty();
    if (!mayReplace || ui::widthError(m_address->text(), ui::nameWidth))
        return;
    m_address->setModified(false);
    const PostalData data = dataOf(m_workspace);
    const QString code = postalCodeOf(data, m_address->text());
    const auto standing = completePostalCode(m_zip->text());
    if (!code.isEmpty() && !(standing && shareAnArea(data, *standing, code)))
        m_zip->setText(code);
}

void PostalBoxes::zipLeft()
{
    const auto code = completePostalCode(m_zip->text());
    if (!code || !m_zip->isModified() || !m_address->text().isEmpty())
        return;
    m_zip->setModified(false);
    const auto addresses = addressesOf(dataOf(m_workspace), *code);
    if (!addresses || addresses->isEmpty())
        return;
    if (addresses->size() == 1)
        fillAddress(*code, addresses->first());
    else
        offer(*code, *addresses);
}

// The cursor goes behind the address, where the house number is typed.
void PostalBoxes::fillAddress(const QString &code, const QString &address)
{
    m_zip->setText(code);
    m_address->setFocus();
    m_address->setText(address);
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
