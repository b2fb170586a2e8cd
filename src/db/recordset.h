#pragma once

#include "db/connection.h"
#include "db/key_set.h"
#include "db/row_cache.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QTimer>
#include <QVariantMap>

#include <functional>
#include <limits>

namespace db
{

/// The rows of a query, as a screen works with them: a keyset. A register of a million rows opens on its
/// first page; the keys of the others are read from the event loop, a few thousand at a go, and the rows are
/// numbered from the first one known until all are. Contents are read in blocks when they are looked at. One
/// row is the current one; edits of it are held back until update() and are seen in the grid meanwhile.
class Recordset : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// A part of an action.
    using Step = std::function<base::Status()>;
    /// Inside the transaction that adds a row: its key, given the next free one.
    using KeyChoice = std::function<base::Result<qint64>(qint64 next)>;
    using CellReader = std::function<base::Result<QVariant>(const QString &column, const QString &typed)>;
    using Decorator = std::function<QVariant(int row, int column, int role)>;

    explicit Recordset(Connection &connection, QObject *parent = nullptr, Pace pace = {});
    ~Recordset() override;

    /// Reads the rows at \a end of \a query; the outermost one becomes the current one. A query of one row or
    /// none is known to be one when it is open. After a failure the record set holds what it held before.
    base::Status open(const Query &query, KeySet::End end = KeySet::End::First);

    /// As open(), but a query without a row leaves the record set as it was. \return whether it has rows
    base::Result<bool> openIfAny(const Query &query);

    /// Forgets the rows; unsaved edits are dropped.
    void close();

    /// Reads the rows anew; the current row stays the current one where it is still there. Unsaved edits
    /// are dropped.
    base::Status requery();

    /// Reads the rows anew by \a column, and among rows that are alike there in the order of the query;
    /// without a column in that alone. The first one becomes the current one, after the edits of the present
    /// one were settled.
    base::Status sortBy(const QString &column, Qt::SortOrder direction = Qt::AscendingOrder);

    [[nodiscard]] bool isOpen() const { return !m_key.isEmpty(); }
    /// How many rows are known by now.
    [[nodiscard]] int count() const { return m_keys.count(); }
    [[nodiscard]] bool isEmpty() const { return m_keys.count() == 0; }
    /// Whether all rows are known, so that their count and their numbers are right.
    [[nodiscard]] bool isComplete() const { return m_keys.isComplete(); }
    /// Waits until all rows are known.
    base::Status readAll();
    /// Waits until there is a row \a row, counted from the present first one, or none to come on that side.
    void reach(int row);
    [[nodiscard]] QString table() const { return m_query.table; }

    /// -1 when there is none.
    [[nodiscard]] int currentRow() const { return m_current; }
    [[nodiscard]] qint64 currentKey() const;
    [[nodiscard]] qint64 keyAt(int row) const { return m_keys.at(row); }

    /// Makes \a row the current one, after the edits of the present one were saved by the saver.
    /// Fails, and stays, when they could not be.
    base::Status moveTo(int row);
    /// Stays where it is when \a key is not among the rows.
    base::Status moveToKey(qint64 key);
    base::Status moveFirst() { return moveToEnd(KeySet::End::First); }
    base::Status moveLast() { return moveToEnd(KeySet::End::Last); }

    /// What saves the edits of the current row before another one becomes current; update() by default.
    void setSaver(Step saver) { m_saver = std::move(saver); }
    /// What must be settled before another row becomes current, edits of this one or not: the edits of its
    /// details, which another record set holds.
    void setLeaving(Step leaving) { m_leaving = std::move(leaving); }

    /// The current row's value, as edited; invalid for NULL, an unknown column or without a row.
    [[nodiscard]] QVariant value(const QString &column) const;
    /// Whether only the beginning of the current row's value is there, since it is too long for a screen. It
    /// cannot be edited.
    [[nodiscard]] bool isCut(const QString &column) const;
    [[nodiscard]] QString text(const QString &column) const { return value(column).toString(); }

    /// Edits the current row. Text becomes a number where the column holds numbers (NULL when it is none).
    void setValue(const QString &column, const QVariant &value);
    [[nodiscard]] bool isDirty() const { return !m_edits.isEmpty(); }
    [[nodiscard]] bool isEdited(const QString &column) const { return m_edits.contains(columnOf(column)); }

    /// Saves the edits of the current row in one transaction, after \a before, which is done within it. After
    /// a failure they are still there. Fails for a row that could not be read, since edits may have been made
    /// out of its empty fields.
    base::Status update(const Step &before = {});

    /// Saves the edits of this record set's current row and those of \a other's in one transaction, after
    /// \a before. Without edits this one must be in the file as it was read all the same.
    base::Status updateWith(Recordset &other, const Step &before = {});

    /// Whether the current row is still in the file as it was read. A row is changed or deleted only then:
    /// its 版 is the same, and since companion programs do not raise that, so are the values; a new stamp of
    /// 更新日 alone is no change. After a failure of that kind the error says `changed`.
    [[nodiscard]] base::Status checkAsRead() const;

    /// A column in which the file and the row here are not alike.
    struct Difference
    {
        QString column;
        bool isEdited; // here; otherwise only another program changed it
        QVariant mine; // as edited, or as it was read
        QVariant theirs;
    };
    /// The columns of the current row in which the file is not as this record set would have it.
    [[nodiscard]] base::Result<std::vector<Difference>> differences() const;

    /// Drops the edits of the current row.
    void revert() override;

    /// Appends a row with the next free key and \a values, saved at once; it becomes the current one. One
    /// that is not in the file yet goes. \a choice may put a higher key in the place of that one. \return the
    /// row's key. Only for a table whose keys the program gives out.
    base::Result<qint64> add(const QVariantMap &values = {}, const KeyChoice &choice = {});

    /// Shows one more row at the end, with \a values, that is not in the file: it becomes the current one,
    /// after the edits of the present one were settled. update() stores it once something was typed into it;
    /// without that it goes when it is left, as it does with revert() and remove(). For a table whose keys
    /// the database gives out.
    base::Status beginRow(const QVariantMap &values);
    /// Whether the current row is not in the file yet.
    [[nodiscard]] bool isNewRow() const;

    /// Deletes the current row from the table, after \a before, which is done in the same transaction. The
    /// next row becomes the current one, or the last one.
    base::Status remove(const Step &before = {});

    /// Reads the current row anew from the file, where it can be read; unsaved edits stay.
    void refresh();

    /// Lets a grid edit \a columns; \a reader turns what was typed into the value to keep, or says why it
    /// cannot be one.
    void setEditable(const QStringList &columns, CellReader reader);
    /// Asked for what a cell's look has beyond its text: colours, tool tips.
    void setDecorator(Decorator decorator) { m_decorator = std::move(decorator); }
    [[nodiscard]] int columnOf(const QString &column) const
    {
        return static_cast<int>(m_columns.indexOf(column));
    }
    [[nodiscard]] QStringList columns() const { return m_columns; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// Edits a cell as setValue() does; its row becomes the current one first.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

signals:
    /// Another row, or none (-1), is the current one, or its contents were replaced.
    void currentRowChanged(int row);
    /// A value of the current row was edited or reverted.
    void edited();
    /// What was typed into a cell is not taken.
    void refused(const QString &reason);
    /// More rows are known than before.
    void extended();

private:
    struct Columns
    {
        QStringList names;
        QList<QMetaType::Type> types;
    };

    // Of the row that is not in the file yet. No row that is has it: SQLite counts up from 1.
    static constexpr qint64 newRowKey = std::numeric_limits<qint64>::min();

    // "?, ?, ?"
    static QString placeholders(qsizetype count);

    base::Status adopt(KeySet keys, const Query &query, KeySet::End current);
    void show(KeySet keys, int current);
    void extend(KeySet::End end, const KeySet::Found &found);
    void goOnReading(int afterMilliseconds);
    void readSlice();
    base::Status readEnd(KeySet::End end);
    base::Status settle();
    base::Status moveToEnd(KeySet::End end);
    base::Result<Columns> readColumns(const Query &query);
    [[nodiscard]] QVariant stored(int row, int column) const;
    [[nodiscard]] bool isCut(int row, int column) const { return rowAt(row).cut.contains(column); }
    [[nodiscard]] const RowCache::Row &rowAt(int row) const;
    [[nodiscard]] QVariant coerced(int column, const QVariant &value) const;
    [[nodiscard]] base::Result<QVariantList> readCurrent() const;
    [[nodiscard]] QString versionAsRead(QVariantList &values) const;
    base::Status insert(const QVariantMap &values);
    base::Status insertNewRow();
    base::Status write();
    void dropLeftRow();
    void written();
    void setCurrent(int row);
    void rowChanged(int row);
    void inserted(qint64 key);
    void removed();

    Connection &m_connection;
    Query m_query;
    QStringList m_ownOrder; // of the query as it was opened
    QString m_key;          // its key column; empty: nothing is open
    QStringList m_columns;
    QList<QMetaType::Type> m_types;
    KeySet m_keys;
    Pace m_pace;
    QTimer m_reading; // until all keys are known
    int m_current = -1;
    QHash<int, QVariant> m_edits; // by column
    QVariantMap m_newValues;      // of the row that is not in the file yet
    RowCache::Row m_newRow;       // the same as a row, read where there is one
    qint64 m_newKey = 0;          // under which it was stored
    Step m_saver;
    Step m_leaving;
    QStringList m_editable;
    CellReader m_reader;
    Decorator m_decorator;
    mutable RowCache m_rows;
};

} // namespace db
