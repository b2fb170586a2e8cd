#pragma once

#include "book/slip_store.h"

#include <QObject>

class QComboBox;
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
    using Names = base::Result<QStringList> (*)(db::Connection &);

    struct Boxes
    {
        QComboBox *product;
        QComboBox *specification;
        QLineEdit *quantity;
        QComboBox *unit;
        QLineEdit *price;
        QLineEdit *amount = nullptr; // hidden, takes the line's amount before it is truncated; may be absent
    };

    LineEntry(QWidget *screen, const EmptyPriceRule &emptyPrice, const Boxes &boxes);

    /// Offers the masters' names in the pickers; other texts may be typed as well.
    base::Status offer(db::Connection &connection, Names products);

    /// The line as typed. Nothing when the clerk has to correct it: told, and the cursor in the box
    /// concerned.
    std::optional<book::GoodsLine> read();

    /// Whether anything stands in the boxes.
    [[nodiscard]] bool isTyped() const;

    /// Empties the boxes for the next line.
    void clear();

    /// Puts the cursor where a line begins.
    void begin();

private:
    bool checkPresent();
    std::optional<double> number(QLineEdit *box, const QString &name);
    bool refuse(QWidget *box, const QString &text);

    QWidget *m_screen;
    EmptyPriceRule m_emptyPrice;
    Boxes m_boxes;
};

} // namespace slips
