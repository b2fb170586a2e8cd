#pragma once

#include "shipping/gifts/gift_pages.h"
#include "ui/screen.h"

#include <functional>
#include <memory>

class QCheckBox;

namespace Ui
{
class AppListForm;
}

namespace printing
{
class OffsetBox;
}

namespace shipping
{

/// What one of the dialogs prints.
struct AppListDescription
{
    const char16_t *screen; // object name
    const char16_t *title;
    bool isBySender; // with a page for each sender, and print offsets
};

/// How a gift list is to look on paper; shows its preview, from which it is printed or saved as PDF. What was
/// chosen is kept when it closes.
class AppListDialog : public ui::Screen
{
    Q_OBJECT

public:
    AppListDialog(workspace::Workspace &workspace, const AppListDescription &description,
                  std::vector<Shipment> shipments, const GiftListQuery &query, QWidget *parent);
    ~AppListDialog() override;

protected:
    bool mayClose() override;

private:
    void addColumns();
    void showSettings();
    void showColumns(const QString &stored);
    [[nodiscard]] QString storedColumns() const;
    void fillPrinters();
    bool storeSettings();
    void chooseFont();
    void preview();
    [[nodiscard]] GiftListLook look() const;

    const std::unique_ptr<Ui::AppListForm> m_ui;
    const AppListDescription m_description;
    const std::vector<Shipment> m_shipments;
    const GiftListQuery m_query;
    std::vector<QCheckBox *> m_columns; // those that are printed, in the list's order
    printing::OffsetBox *m_right = nullptr;
    printing::OffsetBox *m_down = nullptr;
};

} // namespace shipping
