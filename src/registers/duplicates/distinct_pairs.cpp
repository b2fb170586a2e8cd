#include "registers/duplicates/distinct_pairs.h"

#include "registers/duplicates/person_folding.h"

#include <QCryptographicHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr qsizetype mostMarks = 5000;
constexpr qsizetype markLength = 16; // characters

QString saidOf(const ProbableDuplicate &customer)
{
    return QStringList{QString::number(customer.id), foldedPerson(customer.name),
                       foldedAddress(customer.address), foldedPhone(customer.phone)}
        .join(u'\n');
}

QString markOf(const ProbableDuplicate &one, const ProbableDuplicate &other)
{
    QStringList both{saidOf(one), saidOf(other)};
    both.sort();
    const QByteArray hash = QCryptographicHash::hash(both.join(u'\f').toUtf8(), QCryptographicHash::Sha256);
    return QString::fromLatin1(hash.toHex().first(markLength));
}

} // namespace

DistinctPairs::DistinctPairs(const QString &stored)
    : m_marks(stored.split(u' ', Qt::SkipEmptyParts))
{}

bool DistinctPairs::has(const ProbableDuplicate &one, const ProbableDuplicate &other) const
{
    return m_marks.contains(markOf(one, other));
}

void DistinctPairs::mark(const ProbableDuplicate &one, const ProbableDuplicate &other, bool isDistinct)
{
    const QString mark = markOf(one, other);
    m_marks.removeAll(mark);
    if (isDistinct)
        m_marks << mark;
}

QString DistinctPairs::stored() const
{
    return m_marks.sliced(std::max<qsizetype>(m_marks.size() - mostMarks, 0)).join(u' ');
}

std::vector<DuplicateGroup> withoutDistinct(const std::vector<DuplicateGroup> &groups,
                                            const DistinctPairs &distinct)
{
    std::vector<DuplicateGroup> left;
    for (const DuplicateGroup &group : groups) {
        DuplicateGroup kept = group;
        std::erase_if(kept.customers, [&](const ProbableDuplicate &one) {
            return std::ranges::all_of(group.customers, [&](const ProbableDuplicate &other) {
                return other.id == one.id || distinct.has(one, other);
            });
        });
        if (kept.customers.size() > 1)
            left.push_back(std::move(kept));
    }
    return left;
}

} // namespace registers
