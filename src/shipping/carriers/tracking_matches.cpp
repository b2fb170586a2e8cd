#include "shipping/carriers/tracking_matches.h"

#include "base/same_file.h"
#include "db/file_header.h"
#include "db/transaction.h"
#include "shipping/carriers/carrier_values.h"
#include "shipping/carriers/management_number.h"
#include "shipping/slips/shipment_store.h"
#include "shipping/slips/tracking_number.h"
#include "text/width.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr qsizetype longestText = 100; // characters

QString textAt(const QStringList &cells, qsizetype column)
{
    return column >= 0 ? cells.value(column).simplified().left(longestText) : QString();
}

// \a written as it is kept; empty for what is no number of a parcel, from letters to what a spreadsheet has
// made of one (3.12E+11).
QString trackingNumberFrom(const QString &written)
{
    constexpr qsizetype shortest = 10;
    constexpr qsizetype longest = 14;
    const QString number = storedTracking(written);
    const bool isNumber =
        number.size() >= shortest && number.size() <= longest &&
        std::all_of(number.begin(), number.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    return isNumber ? number : QString();
}

// What two spellings of one name have in common.
QString folded(const QString &name)
{
    QString plain = text::toHalfWidth(name).toCaseFolded();
    plain.removeIf([](QChar c) { return c.isSpace(); });
    return plain;
}

// Carriers give back a company, a department or a name, cut to their fields.
bool isCalled(const Party &party, const QString &name)
{
    const QString written = folded(name);
    if (written.isEmpty())
        return true;
    const QStringList lines = values::nameParts(party).lines;
    return std::any_of(lines.begin(), lines.end(), [&](const QString &line) {
        const QString own = folded(line);
        return own.contains(written) || written.contains(own);
    });
}

base::Status match(db::Connection &connection, TrackingMatch &row, const QStringList &prefixes)
{
    const auto key = shipmentOfNumber(row.management, prefixes);
    auto shipment =
        key ? readShipment(connection, *key) : base::Result<Shipment>(base::Error{.text = {}, .gone = true});
    if (!shipment && !shipment.error().gone)
        return shipment.error();
    if (!shipment) {
        row.state = TrackingState::Unknown;
        return {};
    }
    const QString held = shipment->trackingNumber.trimmed();
    row.state = held.isEmpty()                                                 ? TrackingState::New
                : held == row.number || trackingNumberFrom(held) == row.number ? TrackingState::Same
                                                                               : TrackingState::Differs;
    row.shipment = std::move(*shipment);
    return {};
}

base::Result<bool> isOfAnother(db::Connection &connection, const TrackingMatch &row)
{
    const auto others = connection.integers(
        u"SELECT 発送ID FROM 発送マスター WHERE 送り状番号 = ? AND 発送ID <> ? ORDER BY 発送ID LIMIT 1"_s,
        {row.number, row.shipment->id});
    return others ? base::Result<bool>(!others->empty()) : others.error();
}

// What within the file speaks against a row.
struct Repeats
{
    QHash<qint64, QSet<QString>> numbers;   // by shipment
    QHash<QString, QSet<qint64>> shipments; // by number

    explicit Repeats(const std::vector<TrackingMatch> &rows)
    {
        for (const TrackingMatch &row : rows) {
            if (row.shipment) {
                numbers[row.shipment->id].insert(row.number);
                shipments[row.number].insert(row.shipment->id);
            }
        }
    }
};

// Those of ゆうパック have eleven digits or twelve.
QString lostDigits(const Shipment &shipment, const QString &number)
{
    constexpr qsizetype usual = 12;
    const bool isKnown = formsOf(CarrierProgram::B2Cloud).contains(shipment.method) ||
                         formsOf(CarrierProgram::Hiden3).contains(shipment.method);
    return isKnown && number.size() != usual
               ? u"%1の送り状番号は %2 けたですが、%3 けたです"_s.arg(shipment.method)
                     .arg(usual)
                     .arg(number.size())
               : QString();
}

base::Result<QString> remarkOn(db::Connection &connection, const TrackingMatch &row, const Repeats &repeats)
{
    if (row.state == TrackingState::Differs)
        return u"今の番号は %1 です"_s.arg(row.shipment->trackingNumber);
    if (const QString lost = lostDigits(*row.shipment, row.number); !lost.isEmpty())
        return lost;
    if (repeats.numbers.value(row.shipment->id).size() > 1)
        return u"同じ管理番号に、ちがう送り状番号の行があります"_s;
    if (repeats.shipments.value(row.number).size() > 1)
        return u"同じ送り状番号が、ちがう管理番号の行にもあります"_s;
    if (!isCalled(row.shipment->consignee, row.consignee))
        return u"お届け先の名前がちがいます（%1）"_s.arg(row.consignee);
    if (!row.shipment->exported.isValid())
        return u"運送会社へ書き出していない発送です"_s;
    const auto other = isOfAnother(connection, row);
    if (!other)
        return other.error();
    return *other ? u"ほかの発送に、この送り状番号があります"_s : QString();
}

base::Status judge(db::Connection &connection, std::vector<TrackingMatch> &rows)
{
    const Repeats repeats(rows);
    QSet<qint64> seen;
    for (TrackingMatch &row : rows) {
        if (!row.canBeTaken())
            continue;
        if (seen.contains(row.shipment->id) && repeats.numbers.value(row.shipment->id).size() == 1) {
            row.state = TrackingState::Same; // the same line once more
            continue;
        }
        const auto remark = remarkOn(connection, row, repeats);
        if (!remark)
            return remark.error();
        row.remark = *remark;
        row.ticked = row.state == TrackingState::New && row.remark.isEmpty();
        if (row.remark.isEmpty())
            row.remark = trackingDoubt(row.number);
        seen.insert(row.shipment->id);
    }
    return {};
}

base::Error inRow(const TrackingMatch &row, const base::Error &error)
{
    base::Error told = error;
    told.text = u"%1 行目（%2）：%3\n送り状番号は一件も書き込んでいません。"_s.arg(row.line).arg(
        row.management, error.text);
    return told;
}

} // namespace

QString nameOf(TrackingState state)
{
    static const QString names[] = {u"新しい番号"_s, u"記録済み"_s, u"番号がちがう"_s, u"該当なし"_s,
                                    u"使えません"_s};
    return names[std::size_t(state)];
}

base::Result<registers::ImportTable> readTrackingFile(const QString &fileName, const QString &own,
                                                      const base::Progress &progress)
{
    if (base::isSameFile(fileName, own))
        return base::Error{u"いま開いているデータベースは選べません。運送会社のプログラムが書き出した CSV "
                           "ファイルを選んでください。"_s};
    if (const QString kind = db::foreignKindOf(fileName); !kind.isEmpty())
        return base::Error{
            u"このファイルは「%1」のため、読み込めませんでした。運送会社のプログラムが書き出した "
            "CSV ファイルを選んでください。"_s.arg(kind)};
    return registers::readImportFile(fileName, progress);
}

base::Result<std::vector<TrackingMatch>>
matchTracking(db::Connection &connection, const registers::ImportTable &table, const TrackingColumns &columns,
              const QStringList &prefixes, const base::Progress &progress)
{
    std::vector<TrackingMatch> rows;
    for (std::size_t at = columns.firstRow; at < table.rows.size(); ++at) {
        if (!progress(qint64(at), qint64(table.rows.size())))
            return base::cancelled();
        const auto &[line, cells] = table.rows[at];
        const QString written = textAt(cells, columns.of(TrackingField::Number));
        TrackingMatch row{.line = line,
                          .management = textAt(cells, columns.of(TrackingField::Management)),
                          .number = trackingNumberFrom(written),
                          .consignee = textAt(cells, columns.of(TrackingField::Consignee))};
        if (row.number.isEmpty()) {
            row.number = written;
            row.remark = written.isEmpty() ? u"送り状番号がありません"_s : u"送り状番号の形ではありません"_s;
        } else if (const base::Status matched = match(connection, row, prefixes); !matched) {
            return matched.error();
        }
        rows.push_back(std::move(row));
    }
    const base::Status judged = judge(connection, rows);
    return judged ? base::Result<std::vector<TrackingMatch>>(std::move(rows)) : judged.error();
}

base::Result<int> storeTracking(db::Connection &connection, const std::vector<TrackingMatch> &matches,
                                const base::Progress &progress)
{
    return db::atomically(connection, [&]() -> base::Result<int> {
        int stored = 0;
        qint64 done = 0;
        for (const TrackingMatch &row : matches) {
            if (!progress(done++, qint64(matches.size())))
                return base::cancelled();
            if (!row.ticked || !row.canBeTaken())
                continue;
            Shipment shipment = *row.shipment;
            shipment.trackingNumber = row.number;
            if (const base::Status changed = changeShipment(connection, shipment); !changed)
                return inRow(row, changed.error());
            ++stored;
        }
        return stored;
    });
}

} // namespace shipping
