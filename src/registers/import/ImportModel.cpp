#include "registers/import/ImportModel.h"

#include <QColor>

#include <algorithm>
#include <unordered_set>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

// A cell of a damaged file may hold a megabyte; nobody reads on beyond this in a grid.
constexpr qsizetype shownCharacters = 300;

} // namespace

void ImportModel::set(const ImportTable &table, const ImportAssignment &assignment,
                      std::vector<ImportCandidate> candidates)
{
    beginResetModel();
    m_candidates = std::move(candidates);
    m_lines.clear();
    m_lines.reserve(table.rows.size());
    for (const ImportTable::Row &row : table.rows)
        m_lines.push_back(row.line);
    m_fields.clear();
    std::copy_if(assignment.fields.begin(), assignment.fields.end(), std::back_inserter(m_fields),
                 [](int field) { return field >= 0; });
    arrange();
    endResetModel();
}

void ImportModel::arrange()
{
    m_counts = {};
    m_shown.clear();
    for (std::size_t i = 0; i < m_candidates.size(); ++i) {
        ++m_counts[static_cast<std::size_t>(m_candidates[i].state)];
        if (isShown(m_candidates[i]))
            m_shown.push_back(i);
    }
}

void ImportModel::show(Filter filter)
{
    beginResetModel();
    m_filter = filter;
    arrange();
    endResetModel();
}

bool ImportModel::isShown(const ImportCandidate &candidate) const
{
    switch (m_filter) {
    case Ready:
        return candidate.state == State::Ready;
    case Duplicates:
        return candidate.state == State::Duplicate;
    case Refused:
        return candidate.state == State::Refused;
    case All:
        break;
    }
    return true;
}

void ImportModel::removeTaken(const std::vector<const ImportCandidate *> &stored)
{
    beginResetModel();
    std::unordered_set<std::size_t> rows;
    for (const ImportCandidate *candidate : stored) {
        if (candidate->taken)
            rows.insert(candidate->row);
    }
    std::erase_if(m_candidates,
                  [&](const ImportCandidate &candidate) { return rows.contains(candidate.row); });
    arrange();
    endResetModel();
}

void ImportModel::toggle(const QModelIndexList &rows)
{
    const bool taken = std::any_of(rows.begin(), rows.end(), [this](const QModelIndex &index) {
        return !candidate(index.row()).taken && candidate(index.row()).state != State::Refused;
    });
    for (const QModelIndex &index : rows)
        setData(index.siblingAtColumn(Taken), taken ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
}

std::vector<const ImportCandidate *> ImportModel::shown() const
{
    std::vector<const ImportCandidate *> rows;
    for (const std::size_t i : m_shown)
        rows.push_back(&m_candidates[i]);
    return rows;
}

const ImportCandidate &ImportModel::candidate(int row) const
{
    return m_candidates[m_shown[static_cast<std::size_t>(row)]];
}

int ImportModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int ImportModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : FirstField + static_cast<int>(m_fields.size());
}

QString ImportModel::text(const ImportCandidate &candidate, int column) const
{
    switch (column) {
    case Taken:
        return {};
    case Line:
        return QString::number(m_lines[candidate.row]);
    case Remark:
        return candidate.remark;
    default:
        return candidate.values.at(m_fields.at(column - FirstField)).left(shownCharacters);
    }
}

QVariant ImportModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const ImportCandidate &row = candidate(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return text(row, index.column());
    case Qt::ToolTipRole:
        return row.remark.isEmpty() ? QVariant() : row.remark.toHtmlEscaped();
    case Qt::CheckStateRole:
        if (index.column() == Taken && row.state != State::Refused)
            return row.taken ? Qt::Checked : Qt::Unchecked;
        return {};
    case Qt::ForegroundRole:
        if (index.column() == Remark && row.state != State::Ready)
            return QColor(row.state == State::Refused ? 0xb00020 : 0x8a5a00);
        return {};
    default:
        return {};
    }
}

QVariant ImportModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section >= columnCount())
        return {};
    static const QStringList own{u"取込"_s, u"行"_s, u"確認"_s};
    return section < FirstField ? own.at(section)
                                : importFields().at(m_fields.at(section - FirstField)).column;
}

Qt::ItemFlags ImportModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (index.isValid() && index.column() == Taken && candidate(index.row()).state != State::Refused)
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

bool ImportModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || !index.isValid() || !(flags(index) & Qt::ItemIsUserCheckable))
        return false;
    m_candidates[m_shown[static_cast<std::size_t>(index.row())]].taken = value.toInt() == Qt::Checked;
    emit dataChanged(index, index, {Qt::CheckStateRole});
    return true;
}

} // namespace registers
