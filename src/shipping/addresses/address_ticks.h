#pragma once

#include "shipping/addresses/addressee.h"

#include <QAbstractTableModel>
#include <QDate>
#include <QHash>

namespace shipping
{

/// Addressees in a list, each with a tick that has it printed. One without name or address cannot be ticked.
class AddressTicks : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit AddressTicks(QObject *parent = nullptr);

    /// Lists the customers of \a rows and ticks all that can be. \a printed: the last day of each.
    void setRows(std::vector<AddressRow> rows, const QHash<qint64, QDate> &printed);
    /// Whether firms without a person are addressed to their 担当者名.
    void setWithContact(bool withContact);
    /// Leaves out who was printed on \a day or later; an invalid day leaves out nobody. What is left out is
    /// not printed; its tick is kept.
    void leaveOutSince(const QDate &day);

    void tickAll(bool ticked);
    void toggle(int row);
    /// The first \a count of the ticked ones were printed \a today: they lose their ticks, and those of the
    /// register say so.
    void setPrinted(std::size_t count, const QDate &today);

    /// In the list's order.
    [[nodiscard]] std::vector<Addressee> ticked() const;
    /// Who cannot be printed, with the reason.
    [[nodiscard]] QStringList lacking() const;
    /// What is to be told of the ticked ones, a line each.
    [[nodiscard]] QStringList remarks() const;
    [[nodiscard]] int leftOut() const { return int(m_entries.size() - m_shown.size()); }
    [[nodiscard]] const Addressee &at(int row) const { return entry(row).addressee; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// The width of a column in half-width characters.
    static int width(int column);

signals:
    /// Others are ticked, or listed, than before.
    void choiceChanged();

private:
    struct Entry
    {
        AddressRow row;
        Addressee addressee;
        QString lack;
        QDate printed;
        bool ticked = false;
    };

    [[nodiscard]] const Entry &entry(int row) const { return m_entries[m_shown[std::size_t(row)]]; }
    [[nodiscard]] Entry &entry(int row) { return m_entries[m_shown[std::size_t(row)]]; }
    [[nodiscard]] static QString remark(const Entry &entry);
    [[nodiscard]] QString shown(const Entry &entry, int column) const;
    void address(Entry &entry) const;
    void show();
    void changed();

    std::vector<Entry> m_entries;
    std::vector<std::size_t> m_shown; // of them
    bool m_withContact = false;
    QDate m_since;
};

} // namespace shipping
