#pragma once

#include "slips/documents/estimate.h"
#include "ui/screen.h"

#include <memory>

namespace Ui
{
class DialogMitsumori;
}

namespace slips
{

/// What a printed estimate says besides its lines; shows its preview, from which it is printed or saved as
/// PDF. The terms and the font are kept for the next estimate once they are printed; closing keeps nothing.
class DialogMitsumori : public ui::Screen
{
    Q_OBJECT

public:
    DialogMitsumori(workspace::Workspace &workspace, EstimateData estimate, QWidget *parent = nullptr);
    ~DialogMitsumori() override;

    /// Whether the estimate was printed or saved as PDF.
    [[nodiscard]] bool isIssued() const { return m_issued; }

private:
    void showData();
    void showSettings();
    void storeSettings();
    void chooseFont();
    void preview();
    [[nodiscard]] EstimateData entered() const;

    std::unique_ptr<Ui::DialogMitsumori> m_ui;
    EstimateData m_data;
    bool m_issued = false;
};

} // namespace slips
