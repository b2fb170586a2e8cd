#pragma once

#include "book/slip_store.h"
#include "book/tax_choices.h"
#include "masters/name_lists.h"

#include <QHash>
#include <QObject>

class QComboBox;
class QLabel;
class QLineEdit;

namespace db
{
class Connection;
}

namespace slips
{

/// What happens to a line without a unit price.
struct EmptyPriceRule
{
    const char16_t *text;
    bool mayContinue; // the text is a question; Yes stores the price 0
};

/// The boxes of a goods-slip screen in which one line is typed.
class LineEntry : public QObject
{
    Q_OBJECT

public:
    using Products = base::Result<std::vector<masters::Product>> (*)(db::Connection &);

    struct Boxes
    {
        QComboBox *product;
        QComboBox *specification;
        QLineEdit *quantity;
        QComboBox *unit;
        QLineEdit *price;
        QLabel *taxName; // shown with the box below it, where there is a choice
        QComboBox *tax;
        QLineEdit *amount = nullptr; // hidden, takes the line's amount before it is truncated; may be absent
    };

    LineEntry(QWidget *screen, const EmptyPriceRule &emptyPrice, const Boxes &boxes);

    /// Offers the masters' names in the pickers; other texts may be typed as well.
    base::Status offer(db::Connection &connection, Products products);

    /// From now on a line is taxed as one of \a choices: as its product is, unless the clerk chooses
    /// otherwise for the one line. \a slipRate: percent. Without choices it is taxed as its slip, and nothing
    /// of it shows.
    void offerTaxes(std::vector<book::TaxChoice> choices, double slipRate);

    /// Whether a line can be taxed otherwise than its slip.
    [[nodiscard]] bool hasChoice() const { return !m_choices.empty(); }
    /// Whether the clerk has chosen by hand what the line is taxed as.
    [[nodiscard]] bool taxIsChosen() const { return m_taxIsChosen; }
    /// The same, or its product says so.
    [[nodiscard]] bool taxIsSettled() const;

    /// The line as typed. Nothing when the clerk has to correct it: told, and the cursor in the box
    /// concerned.
    std::optional<book::GoodsLine> read();

    /// Whether anything stands in the boxes.
    [[nodiscard]] bool isTyped() const;

    /// Empties the boxes for the next line.
    void clear();

    /// Puts the cursor where a line begins.
    void begin();
    /// Puts it where how many are typed.
    void beginQuantity();

private:
    bool checkPresent();
    std::optional<double> number(QLineEdit *box, const QString &name);
    bool refuse(QWidget *box, const QString &text);
    void followProduct();
    [[nodiscard]] book::GoodsTax productsTax() const;
    [[nodiscard]] std::optional<book::LineTax> chosenTax() const;

    QWidget *m_screen;
    EmptyPriceRule m_emptyPrice;
    Boxes m_boxes;
    std::vector<book::TaxChoice> m_choices;
    QHash<QString, book::GoodsTax> m_products; // by folded name, those that are not taxed as everything
    double m_slipRate = 0;
    bool m_taxIsChosen = false; // by hand, for this line
};

} // namespace slips
