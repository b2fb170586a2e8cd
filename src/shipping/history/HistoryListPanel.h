#pragma once

#include "shipping/history/history.h"

#include <QWidget>

#include <memory>

namespace db
{
class Recordset;
}

namespace Ui
{
class HistoryListPanel;
}

namespace workspace
{
class Workspace;
}

namespace shipping
{

/// The search boxes of the history, and the list of what they find.
class HistoryListPanel : public QWidget
{
    Q_OBJECT

public:
    explicit HistoryListPanel(QWidget *parent = nullptr);
    ~HistoryListPanel() override;

    /// Shows \a rows, which the searches open. To be called once, before the screen's setUp(). \a refused
    /// gets the reason why a row cannot be left.
    base::Status bind(workspace::Workspace &workspace, db::Recordset &rows,
                      std::function<void(const QString &)> refused);

    /// Opens what the boxes say; that there is none is told. To be called when the current row may be left.
    void search();
    /// Empties the boxes and opens every shipment.
    void showAll();
    /// Opens the shipments of a customer or a slip, whom \a whose names, until the next search; the boxes are
    /// emptied.
    void showOnly(const HistoryQuery &query, const QString &whose);
    /// The same search anew, as after another window changed the history.
    void searchAgain();

    /// The rows that an action on many is for: those selected, where they are several, else the whole list.
    [[nodiscard]] base::Result<std::vector<qint64>> chosenKeys() const;
    /// Those selected, in the order of the list; the current one where there is no other.
    [[nodiscard]] std::vector<qint64> selectedKeys() const;
    /// What the list holds, in words: "受付日 2026/04/01 以降　お届け先「山田」".
    [[nodiscard]] QString inWords() const;

    void focusList();
    /// Puts \a widget to the right of the list, whose height is room enough for a sheet of labels.
    void putBesideList(QWidget *widget);

signals:
    void searchWanted();
    void allWanted();

private:
    [[nodiscard]] HistoryQuery typedQuery() const;
    void clearBoxes();
    bool open(const HistoryQuery &query);
    base::Status offerCategories();
    void showCount();

    std::unique_ptr<Ui::HistoryListPanel> m_ui;
    workspace::Workspace *m_workspace = nullptr;
    db::Recordset *m_rows = nullptr;
    HistoryQuery m_shown;
    QString m_whose;
};

} // namespace shipping
