#pragma once

#include "shipping/addresses/addressee.h"
#include "ui/screen.h"

#include <memory>

namespace Ui
{
class DialogHagakiA;
}

namespace shipping
{

struct AddressJob;

/// Prints one address: paper, how it is written, where it stands, printer. What is chosen is kept when it
/// closes.
class DialogHagakiA : public ui::Screen
{
    Q_OBJECT

public:
    DialogHagakiA(workspace::Workspace &workspace, Addressee addressee, QWidget *parent = nullptr);
    ~DialogHagakiA() override;

    /// Whether a queue took it.
    [[nodiscard]] bool isPrinted() const { return m_printed; }

protected:
    bool mayClose() override;

private:
    [[nodiscard]] std::optional<AddressJob> job();
    void preview();
    void print();

    std::unique_ptr<Ui::DialogHagakiA> m_ui;
    const Addressee m_addressee;
    bool m_printed = false;
};

} // namespace shipping
