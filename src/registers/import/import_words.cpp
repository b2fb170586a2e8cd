#include "registers/import/import_words.h"

#include "text/numbers.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

using State = ImportCandidate::State;

constexpr qsizetype linesNamed = 6;

QString rowCount(std::size_t count) { return text::formatAmount(static_cast<double>(count)) + u" 件"_s; }

} // namespace

QString takenInWords(const ImportModel::TakenRows &rows)
{
    if (rows.added + rows.updated == 0)
        return u"「取込」に印のある行はありません"_s;
    QStringList parts;
    if (rows.added > 0)
        parts << u"新規登録 %1"_s.arg(rowCount(rows.added));
    if (rows.updated > 0)
        parts << u"登録済みの納品先の更新 %1"_s.arg(rowCount(rows.updated));
    return u"印のある行だけを取り込みます（%1）"_s.arg(parts.join(u"、"_s));
}

QString countsInWords(const ImportModel &rows, const ImportAssignment &assignment)
{
    QString counts = u"取り込める行 %1　重複 %2　取り込めない行 %3"_s.arg(
        rowCount(rows.count(State::Ready)), rowCount(rows.count(State::Duplicate)),
        rowCount(rows.count(State::Refused)));
    if (assignment.match != ImportMatch::None)
        counts += u"　更新 %1　変わらない行 %2"_s.arg(rowCount(rows.count(State::Update)),
                                                      rowCount(rows.count(State::Same)));
    if (rows.count(State::Merged) > 0)
        counts += u"　前の行にまとめる行 %1"_s.arg(rowCount(rows.count(State::Merged)));
    return counts;
}

QString importedInWords(const ImportModel::TakenRows &stored, const ImportModel &left)
{
    QStringList said;
    if (stored.added > 0)
        said << u"%1の納品先を登録しました。"_s.arg(rowCount(stored.added));
    if (stored.updated > 0)
        said << u"%1の納品先を更新しました。"_s.arg(rowCount(stored.updated));
    if (const std::size_t waiting = left.count(State::Ready) + left.count(State::Update); waiting > 0)
        said << u"まだ取り込んでいない行が %1残っています。"_s.arg(rowCount(waiting));
    if (const std::size_t out = left.count(State::Duplicate) + left.count(State::Refused); out > 0)
        said << u"取り込まなかった行が %1あります。「確認」の欄で理由を確かめてください。"_s.arg(
            rowCount(out));
    return said.join(u'\n');
}

QString repeatsInWords(const ImportModel &rows)
{
    QList<int> lines;
    for (const ImportCandidate *candidate : rows.shown()) {
        if (candidate->repeats > 0 && !candidate->taken && candidate->state != State::Merged)
            lines << candidate->line;
    }
    return lines.isEmpty()
               ? QString()
               : u"\n前の行と同じコードか納品先IDの行（%1）は取り込みません。"_s.arg(linesInWords(lines));
}

QString linesInWords(const QList<int> &lines)
{
    QStringList named;
    for (const int line : lines.first(std::min(linesNamed, lines.size())))
        named << QString::number(line);
    return u"%1 行目%2"_s.arg(named.join(u"、"_s), lines.size() > linesNamed ? u" など"_s : QString());
}

} // namespace registers
