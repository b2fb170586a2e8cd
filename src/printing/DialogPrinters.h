#pragma once

#include "printing/offset_box.h"
#include "printing/print_frame.h"
#include "ui/screen.h"

#include <array>
#include <memory>
#include <vector>

class QComboBox;
class QLabel;
class QPushButton;

namespace Ui
{
class DialogPrinters;
}

namespace printing
{

/// Printers, fonts and print positions of all purposes that have no dialog of their own in the main window.
class DialogPrinters : public ui::Screen
{
    Q_OBJECT

public:
    explicit DialogPrinters(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~DialogPrinters() override;

protected:
    bool mayClose() override;

private:
    struct Row
    {
        Purpose purpose;
        QLabel *caption;
        QComboBox *printer; // its data is what is stored
        QLineEdit *font;
        QPushButton *chooseFont;
    };

    void buildRows();
    void buildOffsets();
    void fill(const Row &row, const QStringList &installed);
    void chooseFont(const Row &row);
    [[nodiscard]] QString printerOf(const Row &row) const;
    [[nodiscard]] QString storedFont(const Row &row) const;
    [[nodiscard]] bool isChanged() const;
    bool confirmFarOffsets();
    /// \return false when the clerk rather looks at them once more, or they could not be stored
    bool storeSettings();

    const std::unique_ptr<Ui::DialogPrinters> m_ui;
    std::array<Row, 5> m_rows;
    std::vector<std::pair<const OffsetRule *, OffsetBox *>> m_offsets;
};

} // namespace printing
