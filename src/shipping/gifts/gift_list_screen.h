#pragma once

#include "shipping/gifts/gift_lists.h"
#include "ui/screen.h"

#include <memory>

class QLabel;
class QLineEdit;

namespace Ui
{
class GiftListForm;
}

namespace workspace
{
struct SettingKey;
}

namespace shipping
{

/// What one of the gift lists is.
struct GiftListDescription
{
    const char16_t *screen; // object name
    const char16_t *title;
    const workspace::SettingKey &windowState;
    base::Report (*report)(const std::vector<Shipment> &, const GiftListQuery &, bool hidesAmounts);
    bool isBySender; // with a gift order sheet for each
};

/// A gift list: choose category, days and sender, and see, print or export what was sent.
class GiftListScreen : public ui::Screen
{
    Q_OBJECT

public:
    GiftListScreen(workspace::Workspace &workspace, const GiftListDescription &description, QWidget *parent);
    ~GiftListScreen() override;

protected:
    bool mayClose() override;
    /// Opens the dialog in which the list is printed.
    virtual void print(const std::vector<Shipment> &shipments, const GiftListQuery &query) = 0;

private:
    void fillCategories();
    void connectControls();
    [[nodiscard]] GiftListQuery query() const;
    void list();
    void show(base::Report report);
    void showState();
    [[nodiscard]] std::vector<Shipment> asShown() const;
    void exportList();
    void showSheet();

    const std::unique_ptr<Ui::GiftListForm> m_ui;
    const GiftListDescription m_description;
    const std::vector<std::pair<QLabel *, QLineEdit *>> m_sums;
    std::vector<Shipment> m_shipments;
    GiftListQuery m_listed; // what the rows are of
};

} // namespace shipping
