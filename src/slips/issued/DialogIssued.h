#pragma once

#include "db/recordset.h"
#include "slips/issued/issued_search.h"
#include "ui/screen.h"

#include <QHash>

#include <memory>

namespace Ui
{
class DialogIssued;
}

namespace slips
{

/// The copies of what the shop issued: finds them, opens them, prints them once more, checks their files and
/// hands them out. Nothing here changes or deletes one.
class DialogIssued : public ui::Screen
{
    Q_OBJECT

public:
    explicit DialogIssued(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~DialogIssued() override;

protected:
    void becameActive() override;

private:
    void setUpGrid();
    void connectControls();
    /// What the boxes say; tells what cannot be read.
    std::optional<IssuedQuery> query();
    bool find();
    void findAndTell();
    void showRow();
    void showState();
    QVariant lookOf(int row, int role) const;
    /// What became of the document \a key; empty of one that stands.
    QString fateInWords(qint64 key) const;
    bool isOneChosen();

    [[nodiscard]] QStringList folders() const;
    /// The current document, read with its row; tells where there is none to work with.
    struct Chosen
    {
        IssuedRow row;
        FoundDocument document;
    };
    std::optional<Chosen> chosen();
    [[nodiscard]] std::vector<qint64> selectedKeys() const;

    void openPdf();
    void printAgain();
    void verify(const std::vector<qint64> &keys);
    void verifyAll();
    void exportChosen();

    const std::unique_ptr<Ui::DialogIssued> m_ui;
    db::Recordset m_rows;
    QHash<qint64, DocumentState> m_faulty;  // as far as they were checked
    mutable QHash<qint64, QString> m_fates; // of rows that were shown: what became of them, in words
    bool m_hasFound = false;
};

} // namespace slips
