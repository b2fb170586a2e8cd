#pragma once

#include "registers/lists/customer_search.h"

#include <QObject>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QWidget;

namespace registers
{

/// The boxes of one condition of a search: the column, what is wanted of it, the name instead of a number
/// where the column holds one, and the last day where it holds days.
class CustomerTermBoxes : public QObject
{
    Q_OBJECT

public:
    struct Controls
    {
        QComboBox *item;
        QLineEdit *text;
        QComboBox *names; // writes the number of the chosen name into the text
        QWidget *to;      // stands before the last day
        QLineEdit *until;
        QCheckBox *exact;
    };
    CustomerTermBoxes(const Controls &controls, QObject *parent);

    void setCategories(const std::vector<masters::Entry> &categories);

    [[nodiscard]] CustomerTerm term() const;
    void clear();
    /// Puts the cursor where the condition is corrected.
    void focusCondition();

private:
    void showItem();
    void showName();

    Controls m_controls;
    std::vector<masters::Entry> m_categories;
};

} // namespace registers
