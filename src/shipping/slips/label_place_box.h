#pragma once

#include <QWidget>

class QComboBox;
class QLabel;

namespace workspace
{
class Workspace;
} // namespace workspace

namespace shipping
{

class PlaceGrid;

/// Which label sheet lies in the printer, and which place of it is free next: chosen from the list, by a
/// click on the place or with the arrow keys. What is chosen is kept in the settings at once, for whatever is
/// printed on such a sheet next.
class LabelPlaceBox : public QWidget
{
    Q_OBJECT

public:
    explicit LabelPlaceBox(workspace::Workspace &workspace, QWidget *parent = nullptr);

    /// Stands at the sheet of \a form; hidden for a form that takes a sheet each.
    void setForm(const QString &form);
    /// Shows what the settings keep now: after a print, and when another window may have printed.
    void reload();

    [[nodiscard]] int place() const; // counted from 1, row by row

signals:
    void placeChanged(int place);

private:
    void chooseSheet(int index);
    void choosePlace(int place);

    workspace::Workspace &m_workspace;
    QString m_form;
    QLabel *m_caption;
    QComboBox *m_sheets;
    PlaceGrid *m_grid;
    QLabel *m_words;
};

} // namespace shipping
