#pragma once

#include "masters/name_lists.h"
#include "registers/lists/customer_term_boxes.h"

#include <QWidget>

#include <memory>

namespace Ui
{
class CustomerSearchBar;
}

namespace registers
{

/// The boxes in which a clerk says which customers a screen is to work on.
class CustomerSearchBar : public QWidget
{
    Q_OBJECT

public:
    explicit CustomerSearchBar(QWidget *parent = nullptr);
    ~CustomerSearchBar() override;

    /// The categories that can be searched, by number or name.
    void setCategories(const std::vector<masters::Entry> &categories);

    [[nodiscard]] CustomerQuery query() const;

    /// Puts the cursor where the search is corrected.
    void focusCondition();

signals:
    /// The clerk starts a search, which lacks nothing.
    void searchStarted();

private:
    void itemChosen(int item);
    void showFurther(bool shown);
    void search();
    /// The first condition that lacks something.
    [[nodiscard]] CustomerTermBoxes *lacking() const;

    std::unique_ptr<Ui::CustomerSearchBar> m_ui;
    std::vector<CustomerTermBoxes *> m_terms; // the first one, and those that must be met as well
};

} // namespace registers
