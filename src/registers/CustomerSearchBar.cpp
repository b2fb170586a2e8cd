#include "registers/CustomerSearchBar.h"

#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui_CustomerSearchBar.h"

using namespace Qt::StringLiterals;

namespace registers
{

CustomerSearchBar::CustomerSearchBar(QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::CustomerSearchBar>())
{
    m_ui->setupUi(this);
    // Stands for its boxes in the screen's tab order.
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(m_ui->Combo1);
    m_ui->Combo1->addItems(customerSearchItems());
    m_ui->Combo1->setCurrentIndex(-1);
    m_ui->Combo2->addItems(customerSearchOrders());
    m_ui->Combo2->setCurrentIndex(m_ui->Combo2->count() - 1);
    connect(m_ui->Combo1, &QComboBox::activated, this, &CustomerSearchBar::itemChosen);
    connect(m_ui->Combo1, &QComboBox::currentIndexChanged, this, &CustomerSearchBar::showHint);
    connect(m_ui->Command2, &QPushButton::clicked, this, &CustomerSearchBar::search);
}

CustomerSearchBar::~CustomerSearchBar() = default;

void CustomerSearchBar::setCategories(const std::vector<masters::Entry> &categories)
{
    QStringList names;
    for (const masters::Entry &category : categories)
        names << QString::number(category.id) + u' ' + category.name;
    m_categoryHint = names.join(u'　');
    showHint();
}

CustomerQuery CustomerSearchBar::query() const
{
    return {m_ui->Combo1->currentIndex(), m_ui->txtKey->text(), m_ui->Check1->isChecked(),
            m_ui->Combo2->currentIndex()};
}

void CustomerSearchBar::focusCondition()
{
    const bool isTyped = m_ui->Combo1->currentIndex() > everyCustomerItem;
    if (isTyped) {
        m_ui->txtKey->setFocus();
        m_ui->txtKey->selectAll();
    } else {
        m_ui->Combo1->setFocus();
    }
}

void CustomerSearchBar::itemChosen(int item)
{
    if (item != everyCustomerItem)
        return;
    m_ui->txtKey->clear();
    search();
}

void CustomerSearchBar::showHint()
{
    const int item = m_ui->Combo1->currentIndex();
    const bool namesCategories = item == categoryItem && !m_categoryHint.isEmpty();
    const QString hint = namesCategories ? m_categoryHint : customerSearchHint(item);
    m_ui->txtKey->setPlaceholderText(hint);
    m_ui->txtKey->setToolTip(hint);
    m_ui->txtKey->setEnabled(item != everyCustomerItem);
}

void CustomerSearchBar::search()
{
    const auto lack = lackOf(query());
    if (!lack) {
        emit searchStarted();
        return;
    }
    ui::prompts::inform(window(), *lack == QueryLack::Item ? u"検索する項目を選んでください。"_s
                                                           : ui::messages::searchEmpty());
    focusCondition();
}

} // namespace registers
