#include "shipping/addresses/DialogHagakiA.h"

#include "shipping/addresses/address_print.h"
#include "ui_DialogHagakiA.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace shipping
{

DialogHagakiA::DialogHagakiA(workspace::Workspace &workspace, Addressee addressee, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogHagakiA>())
    , m_addressee(std::move(addressee))
{
    m_ui->setupUi(this);
    m_ui->lblAddress->setTextFormat(Qt::PlainText);
    m_ui->lblRemark->setTextFormat(Qt::PlainText);
    m_ui->lblAddress->setText(m_addressee.address1 + u'　' + m_addressee.address2 + u'\n' +
                              addresseeInWords(m_addressee));
    m_ui->lblRemark->setText(addressDoubt(m_addressee));
    m_ui->lblRemark->setVisible(!m_ui->lblRemark->text().isEmpty());
    m_ui->panel->bind(workspace, printing::Purpose::Addresses);
    connect(m_ui->cmdPreview, &QPushButton::clicked, this, &DialogHagakiA::preview);
    connect(m_ui->cmdPrint, &QPushButton::clicked, this, &DialogHagakiA::print);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &DialogHagakiA::reject);
    setUp();
    m_ui->cmdPrint->setFocus();
}

DialogHagakiA::~DialogHagakiA() = default;

std::optional<AddressJob> DialogHagakiA::job()
{
    if (!m_ui->panel->store())
        return std::nullopt;
    auto setup = m_ui->panel->setup();
    if (!tell(setup.status()))
        return std::nullopt;
    return AddressJob{{m_addressee}, std::move(*setup), printing::Purpose::Addresses};
}

void DialogHagakiA::preview()
{
    if (const auto chosen = job())
        previewAddresses(workspace(), this, *chosen);
}

void DialogHagakiA::print()
{
    const auto chosen = job();
    if (!chosen)
        return;
    const auto settings = askAddressPrinter(workspace(), this, *chosen, m_ui->panel->printer());
    if (!settings)
        return;
    const AddressRunOutcome outcome = runAddresses(workspace(), this, *chosen, *settings);
    m_ui->panel->reloadPlaces();
    if (outcome.failure) {
        tell(*outcome.failure);
        return;
    }
    m_printed = outcome.printed > 0;
    if (m_printed)
        accept();
}

bool DialogHagakiA::mayClose() { return m_ui->panel->store(); }

} // namespace shipping
