#include "slips/entry/line_entry.h"

#include "book/tax.h"
#include "masters/name_lists.h"
#include "slips/entry/picker.h"
#include "text/numbers.h"
#include "ui/prompts.h"

#include <QComboBox>
#include <QLineEdit>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

base::Status fill(QComboBox *picker, const base::Result<QStringList> &names)
{
    if (!names)
        return names.error();
    picker->clear();
    picker->addItems(*names);
    picker->setCurrentIndex(-1);
    return {};
}

} // namespace

LineEntry::LineEntry(QWidget *screen, const EmptyPriceRule &emptyPrice, const Boxes &boxes)
    : QObject(screen)
    , m_screen(screen)
    , m_emptyPrice(emptyPrice)
    , m_boxes(boxes)
{
    if (m_boxes.amount)
        m_boxes.amount->hide();
    for (QComboBox *picker : {m_boxes.product, m_boxes.specification, m_boxes.unit})
        new Picker(picker);
}

base::Status LineEntry::offer(db::Connection &connection, Names products)
{
    if (const auto filled = fill(m_boxes.product, products(connection)); !filled)
        return filled;
    if (const auto filled = fill(m_boxes.specification, masters::specificationNames(connection)); !filled)
        return filled;
    return fill(m_boxes.unit, masters::unitNames(connection));
}

bool LineEntry::refuse(QWidget *box, const QString &text)
{
    ui::prompts::inform(m_screen, text);
    box->setFocus();
    return false;
}

bool LineEntry::checkPresent()
{
    if (m_boxes.product->currentText().trimmed().isEmpty())
        return refuse(m_boxes.product, u"商品が選択されていません。"_s);
    if (m_boxes.quantity->text().trimmed().isEmpty())
        return refuse(m_boxes.quantity, u"数量が入力されていません。"_s);
    if (!m_boxes.price->text().trimmed().isEmpty())
        return true;
    const QString text = QString::fromUtf16(m_emptyPrice.text);
    if (!m_emptyPrice.mayContinue)
        return refuse(m_boxes.price, text);
    if (!ui::prompts::askCautiously(m_screen, text)) {
        m_boxes.price->setFocus();
        return false;
    }
    m_boxes.price->setText(u"0"_s);
    return true;
}

std::optional<double> LineEntry::number(QLineEdit *box, const QString &name)
{
    const auto number = text::parseNumber(box->text());
    if (!number) {
        refuse(box, name + u"には数字を入力してください。"_s);
        box->selectAll();
    }
    return number;
}

std::optional<book::GoodsLine> LineEntry::read()
{
    if (!checkPresent())
        return std::nullopt;
    const auto quantity = number(m_boxes.quantity, u"数量"_s);
    const auto price = quantity ? number(m_boxes.price, u"単価"_s) : std::nullopt;
    if (!price)
        return std::nullopt;
    const auto product = book::lineProduct(*quantity, *price);
    const auto amount = book::lineAmount(*quantity, *price);
    if (!product || !amount) {
        refuse(m_boxes.quantity, amount.error().text);
        return std::nullopt;
    }
    if (m_boxes.amount)
        m_boxes.amount->setText(text::formatPlain(*product));
    return book::GoodsLine{m_boxes.product->currentText().trimmed(),
                           m_boxes.specification->currentText().trimmed(),
                           *quantity,
                           m_boxes.unit->currentText().trimmed(),
                           *price,
                           *amount};
}

bool LineEntry::isTyped() const
{
    return std::ranges::any_of(std::array{m_boxes.product, m_boxes.specification, m_boxes.unit},
                               [](const QComboBox *picker) { return !picker->currentText().isEmpty(); }) ||
           std::ranges::any_of(std::array{m_boxes.quantity, m_boxes.price},
                               [](const QLineEdit *box) { return !box->text().isEmpty(); });
}

void LineEntry::clear()
{
    for (QComboBox *picker : {m_boxes.product, m_boxes.specification, m_boxes.unit}) {
        if (picker->currentIndex() >= 0)
            picker->setCurrentIndex(-1);
        picker->clearEditText();
    }
    for (QLineEdit *box : {m_boxes.quantity, m_boxes.price})
        box->clear();
    if (m_boxes.amount)
        m_boxes.amount->clear();
}

void LineEntry::begin() { m_boxes.product->setFocus(); }

} // namespace slips
