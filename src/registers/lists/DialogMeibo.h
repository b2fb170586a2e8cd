#pragma once

#include "registers/lists/roster.h"
#include "ui/screen.h"

#include <memory>

class QCheckBox;

namespace printing
{
struct Document;
}

namespace Ui
{
class DialogMeibo;
}

namespace registers
{

/// How the roster of some customers is to look; shows its preview, from which it is printed or saved as PDF.
class DialogMeibo : public ui::Screen
{
    Q_OBJECT

public:
    /// \a customers: their keys (納品先ID), in the order in which they were found.
    DialogMeibo(workspace::Workspace &workspace, std::vector<qint64> customers, QWidget *parent = nullptr);
    ~DialogMeibo() override;

protected:
    bool mayClose() override;

private:
    void addColumns();
    void showSettings();
    void storeSettings();
    void showStates();
    void chooseFont();
    void preview();

    [[nodiscard]] RosterOptions options() const;
    base::Result<printing::Document> document(const base::Progress &progress) const;

    std::unique_ptr<Ui::DialogMeibo> m_ui;
    std::vector<qint64> m_customers;
    std::array<QCheckBox *, rosterColumns> m_columns{};
};

} // namespace registers
