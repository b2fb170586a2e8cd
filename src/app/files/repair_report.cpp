#include "app/files/repair_report.h"

#include "db/care/salvage.h"
#include "text/numbers.h"
#include "text/shown_text.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

constexpr std::size_t linesNamed = 10;
constexpr qsizetype charactersNamed = 30;

QStringList remarksOn(const db::SalvagedTable &table)
{
    QStringList said;
    if (table.isAsNew)
        said << u"「%1」は読めなかったため、新しいファイルの初めの内容にしました。確かめてください。"_s.arg(
            table.table);
    if (!table.emptied.isEmpty())
        said << u"「%1」の項目「%2」はないか読めないため、空です。"_s.arg(table.table,
                                                                          table.emptied.join(u"」「"_s));
    if (table.cut > 0)
        said << u"「%1」で途中までしか読めなかった文字：%2 か所"_s.arg(table.table,
                                                                       QString::number(table.cut));
    return said;
}

// The money is in the file, but nothing tells whose it is.
QStringList orphansIn(const db::Salvage &outcome)
{
    if (outcome.orphanLines == 0)
        return {};
    QStringList said{u"伝票が失われた明細：%1 行（伝票を入力し直してください）"_s.arg(outcome.orphanLines)};
    const std::size_t named = std::min(linesNamed, outcome.orphans.size());
    for (std::size_t i = 0; i < named; ++i) {
        const db::OrphanLine &line = outcome.orphans[i];
        said << u"　伝票ID %1：%2　%3 円"_s.arg(QString::number(line.slip),
                                                text::beginningOf(line.goods, charactersNamed),
                                                text::formatAmount(line.amount));
    }
    if (const qint64 more = outcome.orphanLines - static_cast<qint64>(named); more > 0)
        said << u"　ほか %1 行"_s.arg(more);
    return said;
}

} // namespace

QString repairRemarks(const db::Salvage &outcome)
{
    QStringList said;
    for (const db::SalvagedTable &table : outcome.tables)
        said << remarksOn(table);
    return (said + orphansIn(outcome)).join(u'\n');
}

QString repairReport(const db::Salvage &outcome)
{
    QStringList said{u"%1 行を新しいファイルに移しました。"_s.arg(outcome.carried())};
    for (const db::SalvagedTable &table : outcome.tables) {
        if (table.unread > 0 || table.isOpenEnd)
            said << u"「%1」で読めなかった行：%2"_s.arg(table.table, db::unreadText(table));
    }
    if (const QString remarks = repairRemarks(outcome); !remarks.isEmpty())
        said << remarks;
    return said.join(u'\n');
}

} // namespace app
