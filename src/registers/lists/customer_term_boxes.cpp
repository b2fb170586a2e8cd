#include "registers/lists/customer_term_boxes.h"

#include "text/numbers.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace registers
{

CustomerTermBoxes::CustomerTermBoxes(const Controls &controls, QObject *parent)
    : QObject(parent)
    , m_controls(controls)
{
    m_controls.item->addItems(customerSearchItems());
    m_controls.item->setCurrentIndex(-1);
    // The longest way of writing a day, and the frame of the box.
    m_controls.until->setMinimumWidth(
        m_controls.until->fontMetrics().horizontalAdvance(u"令和２年１２月３１日　"_s));
    connect(m_controls.item, &QComboBox::currentIndexChanged, this, &CustomerTermBoxes::showItem);
    connect(m_controls.text, &QLineEdit::textChanged, this, &CustomerTermBoxes::showName);
    connect(m_controls.names, &QComboBox::activated, this, [this](int place) {
        m_controls.text->setText(QString::number(m_controls.names->itemData(place).toLongLong()));
    });
    showItem();
}

void CustomerTermBoxes::setCategories(const std::vector<masters::Entry> &categories)
{
    m_categories = categories;
    showItem();
}

CustomerTerm CustomerTermBoxes::term() const
{
    const int item = m_controls.item->currentIndex();
    return {item, m_controls.text->text(), m_controls.exact->isChecked(),
            isSearchedByDays(item) ? m_controls.until->text() : QString()};
}

void CustomerTermBoxes::clear()
{
    m_controls.item->setCurrentIndex(-1);
    m_controls.text->clear();
    m_controls.until->clear();
    m_controls.exact->setChecked(false);
}

void CustomerTermBoxes::focusCondition()
{
    const bool isTyped = m_controls.item->currentIndex() > everyCustomerItem;
    if (isTyped) {
        m_controls.text->setFocus();
        m_controls.text->selectAll();
    } else {
        m_controls.item->setFocus();
    }
}

void CustomerTermBoxes::showItem()
{
    const int item = m_controls.item->currentIndex();
    const auto names = customerSearchNames(item, m_categories);
    const QString hint = customerSearchHint(item);
    m_controls.text->setPlaceholderText(hint);
    m_controls.text->setToolTip(hint);
    m_controls.text->setEnabled(item != everyCustomerItem);
    m_controls.until->setVisible(isSearchedByDays(item));
    m_controls.to->setVisible(isSearchedByDays(item));
    m_controls.names->clear();
    for (const masters::Entry &entry : names)
        m_controls.names->addItem(entry.name, entry.id);
    m_controls.names->setVisible(!names.empty());
    showName();
}

void CustomerTermBoxes::showName()
{
    const auto number = text::parseInteger(m_controls.text->text());
    m_controls.names->setCurrentIndex(number ? m_controls.names->findData(*number) : -1);
}

} // namespace registers
