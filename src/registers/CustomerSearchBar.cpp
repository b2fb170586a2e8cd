#include "registers/CustomerSearchBar.h"

#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui_CustomerSearchBar.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

QString sentenceOf(QueryLack lack)
{
    switch (lack) {
    case QueryLack::Item:
        return u"検索する項目を選んでください。"_s;
    case QueryLack::Day:
        return u"条件が日付として読み取れません。\n"
               "2026/4/1、2026/04、R8.4.1、令和8年4月1日のように入力してください。"_s;
    case QueryLack::Condition:
        break;
    }
    return ui::messages::searchEmpty();
}

} // namespace

CustomerSearchBar::CustomerSearchBar(QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::CustomerSearchBar>())
{
    m_ui->setupUi(this);
    // Stands for its boxes in the screen's tab order.
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(m_ui->Combo1);
    m_terms = {
        new CustomerTermBoxes(
            {m_ui->Combo1, m_ui->txtKey, m_ui->comboNames, m_ui->labelTo, m_ui->txtUntil, m_ui->Check1},
            this),
        new CustomerTermBoxes({m_ui->comboItem2, m_ui->txtKey2, m_ui->comboNames2, m_ui->labelTo2,
                               m_ui->txtUntil2, m_ui->checkExact2},
                              this),
        new CustomerTermBoxes({m_ui->comboItem3, m_ui->txtKey3, m_ui->comboNames3, m_ui->labelTo3,
                               m_ui->txtUntil3, m_ui->checkExact3},
                              this),
    };
    m_ui->Combo2->addItems(customerSearchOrders());
    m_ui->Combo2->setCurrentIndex(m_ui->Combo2->count() - 1);
    m_ui->further->hide();
    connect(m_ui->Combo1, &QComboBox::activated, this, &CustomerSearchBar::itemChosen);
    connect(m_ui->cmdMore, &QPushButton::toggled, this, &CustomerSearchBar::showFurther);
    connect(m_ui->Command2, &QPushButton::clicked, this, &CustomerSearchBar::search);
}

CustomerSearchBar::~CustomerSearchBar() = default;

void CustomerSearchBar::setCategories(const std::vector<masters::Entry> &categories)
{
    for (CustomerTermBoxes *term : m_terms)
        term->setCategories(categories);
}

CustomerQuery CustomerSearchBar::query() const
{
    const CustomerTerm first = m_terms.front()->term();
    CustomerQuery query{first.item, first.condition, first.exact, m_ui->Combo2->currentIndex(), first.until};
    if (m_ui->cmdMore->isChecked()) {
        for (std::size_t i = 1; i < m_terms.size(); ++i)
            query.further.push_back(m_terms[i]->term());
    }
    return query;
}

void CustomerSearchBar::focusCondition() { m_terms.front()->focusCondition(); }

// What is not seen must not narrow a search.
void CustomerSearchBar::showFurther(bool shown)
{
    for (std::size_t i = 1; i < m_terms.size() && !shown; ++i)
        m_terms[i]->clear();
    m_ui->further->setVisible(shown);
    if (shown)
        m_ui->comboItem2->setFocus();
}

void CustomerSearchBar::itemChosen(int item)
{
    if (item != everyCustomerItem)
        return;
    m_ui->txtKey->clear();
    search();
}

CustomerTermBoxes *CustomerSearchBar::lacking() const
{
    CustomerQuery first = query();
    first.further.clear();
    const auto further = std::find_if(m_terms.begin() + 1, m_terms.end(), [](const CustomerTermBoxes *boxes) {
        return lackOfFurther(boxes->term()).has_value();
    });
    return lackOf(first) || further == m_terms.end() ? m_terms.front() : *further;
}

void CustomerSearchBar::search()
{
    const auto lack = lackOf(query());
    if (!lack) {
        emit searchStarted();
        return;
    }
    ui::prompts::inform(window(), sentenceOf(*lack));
    lacking()->focusCondition();
}

} // namespace registers
