#include "registers/import/ImportModel.h"

#include "text/dates.h"

#include <QColor>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

// A cell of a damaged file may hold a megabyte; nobody reads on beyond this in a grid.
constexpr qsizetype shownCharacters = 300;

// To be read on a light ground as well as on a dark one.
QColor remarkColour(ImportCandidate::State state)
{
    const QPalette palette = QGuiApplication::palette();
    const bool isDark = palette.color(QPalette::Base).lightness() < palette.color(QPalette::Text).lightness();
    if (state == ImportCandidate::State::Refused)
        return QColor(isDark ? 0xffb0a8 : 0xb00020);
    return QColor(isDark ? 0xffcf87 : 0x8a5a00);
}

// What the clerk looked at when it was ticked, or left out.
bool isAsBefore(const ImportCandidate &now, const ImportCandidate &before)
{
    return now.state == before.state && now.customer == before.customer && now.version == before.version;
}

} // namespace

void ImportModel::set(const ImportAssignment &assignment, std::vector<ImportCandidate> candidates)
{
    beginResetModel();
    m_candidates = std::move(candidates);
    m_fields.clear();
    const int key = importFieldOf(u"納品先ID"_s);
    std::copy_if(
        assignment.fields.begin(), assignment.fields.end(), std::back_inserter(m_fields),
        [&](int field) { return field >= 0 && (field != key || assignment.match == ImportMatch::Key); });
    for (const QString &filled : {u"コード"_s, u"フリガナ"_s, u"郵便番号"_s}) {
        const int field = importFieldOf(filled);
        const bool isFilled = std::any_of(m_candidates.begin(), m_candidates.end(), [field](const auto &row) {
            return !row.values.at(field).isEmpty();
        });
        if (isFilled && !m_fields.contains(field))
            m_fields << field;
    }
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
        return candidate.state == State::Duplicate || candidate.state == State::Merged;
    case Refused:
        return candidate.state == State::Refused;
    case Updates:
        return candidate.state == State::Update;
    case Same:
        return candidate.state == State::Same;
    case All:
        break;
    }
    return true;
}

void ImportModel::removeTaken(const std::vector<const ImportCandidate *> &stored)
{
    beginResetModel();
    std::unordered_set<int> lines;
    for (const ImportCandidate *candidate : stored) {
        if (candidate->taken)
            lines.insert(candidate->line);
    }
    std::erase_if(m_candidates, [&](const ImportCandidate &candidate) {
        return lines.contains(candidate.line) ||
               (candidate.state == State::Merged && lines.contains(candidate.repeats));
    });
    arrange();
    endResetModel();
}

void ImportModel::toggle(const QModelIndexList &rows)
{
    const bool taken = std::any_of(rows.begin(), rows.end(), [this](const QModelIndex &index) {
        return !candidate(index.row()).taken && candidate(index.row()).canBeTaken();
    });
    for (const QModelIndex &index : rows)
        setData(index.siblingAtColumn(Taken), taken ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
}

void ImportModel::take(std::size_t candidate, bool taken)
{
    m_candidates[candidate].taken = taken && m_candidates[candidate].canBeTaken();
}

void ImportModel::takeOnly(const QModelIndexList &rows)
{
    for (const std::size_t i : m_shown)
        take(i, false);
    for (const QModelIndex &index : rows)
        take(m_shown[static_cast<std::size_t>(index.row())], true);
    if (rowCount() > 0)
        emit dataChanged(index(0, Taken), index(rowCount() - 1, Taken), {Qt::CheckStateRole});
}

ImportModel::TakenRows ImportModel::taken() const
{
    TakenRows count;
    for (const std::size_t i : m_shown) {
        if (m_candidates[i].taken && m_candidates[i].canBeTaken())
            ++(m_candidates[i].state == State::Update ? count.updated : count.added);
    }
    return count;
}

void ImportModel::takeAsIn(const std::vector<ImportCandidate> &before)
{
    std::unordered_map<std::size_t, const ImportCandidate *> byRow;
    for (const ImportCandidate &candidate : before)
        byRow.emplace(candidate.row, &candidate);
    for (std::size_t i = 0; i < m_candidates.size(); ++i) {
        const auto found = byRow.find(m_candidates[i].row);
        if (found != byRow.end() && isAsBefore(m_candidates[i], *found->second))
            take(i, found->second->taken);
    }
}

QList<int> ImportModel::repeatingLines() const
{
    QList<int> lines;
    for (const ImportCandidate &candidate : m_candidates) {
        if (candidate.repeats > 0)
            lines << candidate.line;
    }
    return lines;
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
        return QString::number(candidate.line);
    case Remark:
        return candidate.remark;
    default:
        break;
    }
    const int field = m_fields.at(column - FirstField);
    const bool makesCategory =
        importFields().at(field).rule == ImportRule::Category && !candidate.newCategory.isEmpty();
    if (makesCategory)
        return candidate.newCategory;
    const QString value = candidate.values.at(field).left(shownCharacters);
    const ImportRule rule = importFields().at(field).rule;
    return rule == ImportRule::Date || rule == ImportRule::Birthday ? text::shownDay(value) : value;
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
        if (index.column() == Taken && row.canBeTaken())
            return row.taken ? Qt::Checked : Qt::Unchecked;
        return {};
    case Qt::ForegroundRole:
        if (index.column() == Remark && (row.state == State::Refused || row.state == State::Duplicate))
            return remarkColour(row.state);
        return {};
    default:
        return {};
    }
}

QVariant ImportModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical && role == Qt::DisplayRole && section < rowCount())
        return candidate(section).values.at(importFieldOf(u"納品先名1"_s)).left(shownCharacters);
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section >= columnCount())
        return {};
    static const QStringList own{u"取込"_s, u"行"_s, u"確認"_s};
    return section < FirstField ? own.at(section)
                                : importFields().at(m_fields.at(section - FirstField)).column;
}

Qt::ItemFlags ImportModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (index.isValid() && index.column() == Taken && candidate(index.row()).canBeTaken())
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
