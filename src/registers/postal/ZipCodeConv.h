#pragma once

#include "registers/postal/postal_lookup.h"
#include "registers/postal/postal_source.h"
#include "ui/screen.h"

#include <QElapsedTimer>

#include <memory>

namespace Ui
{
class ZipCodeConv;
}

namespace registers
{

/// The postal codes of a place that is typed, from a list to choose from: for a register that needs a code,
/// or, opened by itself, for the clerk to look one up.
class ZipCodeConv : public ui::Screen
{
    Q_OBJECT

public:
    explicit ZipCodeConv(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~ZipCodeConv() override;

    /// Searches \a address as soon as the window is shown, and closes once a line is chosen. To be called
    /// before it is shown.
    void serve(const QString &address);

    /// The chosen code, "NNN-NNNN"; empty when none is.
    [[nodiscard]] QString code() const { return m_code; }

protected:
    bool mayClose() override;
    void showEvent(QShowEvent *event) override;

private:
    void firstSearch();
    void search();
    void next();
    void stop() { m_stop = true; }
    void take();
    void lineChosen();
    void updateData();

    base::Status writeData(const PostalSource &source);
    base::Result<PostalFinds> find(const QString &text);
    bool goOn();
    void show(const QString &text, const PostalFinds &finds);
    void refuse(const QString &message);
    void showHint(bool offices);

    std::unique_ptr<Ui::ZipCodeConv> m_ui;
    QString m_code;
    bool m_serves = false;
    bool m_shown = false;
    bool m_searching = false;
    bool m_stop = false;
    bool m_closing = false; // asked for during a search
    QElapsedTimer m_sinceLook;
};

} // namespace registers
