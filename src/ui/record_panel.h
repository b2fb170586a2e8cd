#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace db
{
class Recordset;
}

namespace ui
{

/// The boxes of a screen bound to the columns of a record set's current row: moving to a row shows it in the
/// boxes, and every keystroke edits the row, so that nothing depends on a box losing the focus.
class RecordPanel : public QObject
{
    Q_OBJECT

public:
    RecordPanel(db::Recordset &recordset, QObject *parent);

    /// Binds \a box to the text of \a column.
    void bind(QLineEdit *box, const QString &column);
    /// The same for a column of days, which are shown as yyyy/MM/dd and stored from any form they are typed
    /// in.
    void bindDay(QLineEdit *box, const QString &column);
    /// Binds \a box to a column that holds 0 or 1.
    void bind(QCheckBox *box, const QString &column);
    /// Binds \a box to a column that holds the number of one of its items; nothing in it shows as the first.
    void bind(QComboBox *box, const QString &column);

    /// Shows the current row in all boxes; without a row they are empty.
    void show();

    /// Whether \a box shows only the beginning of its value, which must not be edited then.
    [[nodiscard]] bool isLocked(QLineEdit *box) const { return m_locked.contains(box); }

private:
    struct Field
    {
        QLineEdit *line;
        QCheckBox *check;
        QString column;
        bool isDay = false;
        QComboBox *choice = nullptr;
    };

    [[nodiscard]] QString shown(const Field &field) const;
    void lockIfCut(QLineEdit &box, bool isCut);

    db::Recordset &m_recordset;
    QList<Field> m_fields;
    QHash<QLineEdit *, bool> m_locked; // with what they were before: for reading only, or not
    bool m_showing = false;
};

} // namespace ui
