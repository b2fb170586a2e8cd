#include "slips/entry/line_entry.h"

#include "book/tax.h"
#include "slips/entry/picker.h"
#include "text/like.h"
#include "text/numbers.h"
#include "ui/prompts.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

constexpr int listMargin = 8; // pixels

void fill(QComboBox *picker, const QStringList &names)
{
    picker->clear();
    picker->addItems(names);
    picker->setCurrentIndex(-1);
}

base::Status fill(QComboBox *picker, const base::Result<QStringList> &names)
{
    if (!names)
        return names.error();
    fill(picker, *names);
    return {};
}

// A name typed in another width is still that product's.
QString nameKey(const QString &name) { return QString::fromStdU16String(text::folded(name.trimmed())); }

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
    offerTaxes({}, 0);
    connect(m_boxes.product, &QComboBox::currentTextChanged, this, &LineEntry::followProduct);
    connect(m_boxes.tax, &QComboBox::activated, this, [this] { m_taxIsChosen = true; });
}

base::Status LineEntry::offer(db::Connection &connection, Products products)
{
    const auto goods = products(connection);
    if (!goods)
        return goods.error();
    QStringList names;
    m_products.clear();
    for (const masters::Product &product : *goods) {
        names << product.name;
        if (product.taxClass != book::GoodsTax::Standard)
            m_products.insert(nameKey(product.name), product.taxClass);
    }
    fill(m_boxes.product, names);
    if (const auto filled = fill(m_boxes.specification, masters::specificationNames(connection)); !filled)
        return filled;
    return fill(m_boxes.unit, masters::unitNames(connection));
}

void LineEntry::offerTaxes(std::vector<book::TaxChoice> choices, double slipRate)
{
    m_choices = std::move(choices);
    m_slipRate = slipRate;
    m_boxes.tax->clear();
    for (const book::TaxChoice &choice : m_choices)
        m_boxes.tax->addItem(choice.caption);
    // The box is no wider than the button below it.
    m_boxes.tax->view()->setMinimumWidth(m_boxes.tax->view()->sizeHintForColumn(0) + 2 * listMargin);
    m_boxes.tax->setVisible(!m_choices.empty());
    m_boxes.taxName->setVisible(!m_choices.empty());
    m_taxIsChosen = false;
    followProduct();
}

book::GoodsTax LineEntry::productsTax() const
{
    return m_products.value(nameKey(m_boxes.product->currentText()), book::GoodsTax::Standard);
}

// What the clerk has chosen stays until the line is done, whichever box comes first.
void LineEntry::followProduct()
{
    if (!m_taxIsChosen && !m_choices.empty())
        m_boxes.tax->setCurrentIndex(int(choiceOf(m_choices, productsTax())));
}

bool LineEntry::taxIsSettled() const { return m_taxIsChosen || productsTax() != book::GoodsTax::Standard; }

std::optional<book::LineTax> LineEntry::chosenTax() const
{
    const int chosen = m_boxes.tax->currentIndex();
    if (chosen < 0 || chosen >= std::ssize(m_choices))
        return std::nullopt;
    return book::besideSlips(m_choices.at(static_cast<std::size_t>(chosen)).tax, m_slipRate);
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
                           *amount,
                           chosenTax()};
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
    m_taxIsChosen = false;
    followProduct();
}

void LineEntry::begin() { m_boxes.product->setFocus(); }

void LineEntry::beginQuantity()
{
    m_boxes.quantity->setFocus();
    m_boxes.quantity->selectAll();
}

} // namespace slips
