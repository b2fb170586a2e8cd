#pragma once

#include "masters/name_lists.h"
#include "registers/lists/customer_search.h"

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

    /// The categories whose numbers can be searched, to be offered as a hint.
    void setCategories(const std::vector<masters::Entry> &categories);

    [[nodiscard]] CustomerQuery query() const;

    /// Puts the cursor where the search is corrected.
    void focusCondition();

signals:
    /// The clerk starts a search, which lacks nothing.
    void searchStarted();

private:
    void itemChosen(int item);
    void showHint();
    void search();

    std::unique_ptr<Ui::CustomerSearchBar> m_ui;
    QString m_categoryHint;
};

} // namespace registers
