#include "slips/correction/slip_recalculation.h"

#include "book/printed_slip.h"
#include "book/slip_store.h"
#include "book/tax.h"
#include "db/keys.h"
#include "slips/correction/correction_remarks.h"
#include "slips/correction/slip_correction.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

base::Status setAmounts(std::vector<KeyedLine> &lines, const std::optional<qint64> &only)
{
    for (auto &[key, line] : lines) {
        if ((only && key != *only) || !isCounted(line))
            continue;
        const auto amount = book::lineAmount(*line.quantity, *line.price);
        if (!amount)
            return amount.error();
        line.amount = *amount;
    }
    return {};
}

bool isTaxLine(const KeyedLine &line) { return line.line.isTax(); }

// The tax lines that the slip should have.
base::Result<std::vector<book::SlipLine>> wantedTaxes(const std::vector<KeyedLine> &lines,
                                                      const TaxTerms &terms)
{
    if (!book::taxIsAdded(terms.taxClass, terms.inclusive.value_or(false)))
        return std::vector<book::SlipLine>();
    return book::taxLinesFor(withoutKeys(lines), terms.rate, terms.rate);
}

// Whether \a line can hold the tax \a wanted by another amount alone.
bool isOfTheRate(const book::SlipLine &line, const book::SlipLine &wanted)
{
    return line.taxClass == wanted.taxClass && line.taxRate == wanted.taxRate;
}

base::Status setTax(std::vector<KeyedLine> &lines, const TaxTerms &terms)
{
    const auto taxes = std::ranges::count_if(lines, isTaxLine);
    const bool isMissed = taxes == 0 && terms.isClosed && terms.inclusive;
    if (taxes == std::ssize(lines) || (taxes == 0 && !isMissed))
        return {};
    const auto wanted = wantedTaxes(lines, terms);
    if (!wanted)
        return wanted.error();
    std::vector<KeyedLine *> present;
    for (KeyedLine &line : lines) {
        if (isTaxLine(line))
            present.push_back(&line);
    }
    if (std::ranges::equal(present, *wanted, [](const KeyedLine *line, const book::SlipLine &tax) {
            return isOfTheRate(line->line, tax);
        })) {
        for (std::size_t i = 0; i < present.size(); ++i)
            present[i]->line.amount = (*wanted)[i].amount;
        return {};
    }
    std::erase_if(lines, isTaxLine);
    for (const book::SlipLine &tax : *wanted)
        lines.push_back({0, tax});
    return {};
}

// --- Into the file ---

base::Status writeAmount(db::Connection &connection, qint64 key, double amount)
{
    const auto version = db::nextVersion(connection);
    if (!version)
        return version.error();
    return connection
        .execute(u"UPDATE 入出庫サブ SET 金額 = ?, 版 = ? WHERE 明細ID = ?"_s, {amount, *version, key})
        .status();
}

// The edits of the current line are written by its record set, and go where the line itself goes.
base::Status writeLine(db::Connection &connection, db::Recordset &lines, const KeyedLine &line,
                       const KeyedLine *planned)
{
    const bool isEdited = lines.isDirty() && lines.currentKey() == line.key;
    if (!planned) {
        if (isEdited)
            lines.revert();
        return db::deleteRows(connection, u"DELETE FROM 入出庫サブ WHERE 明細ID = ?"_s, {line.key}).status();
    }
    if (planned->line == line.line)
        return {};
    if (!isEdited)
        return writeAmount(connection, line.key, planned->line.amount);
    lines.setValue(u"金額"_s, planned->line.amount);
    return {};
}

base::Status writeLines(db::Connection &connection, db::Recordset &lines, qint64 id,
                        const Recalculation &what)
{
    const auto stored = linesInFile(connection, lines, id);
    if (!stored)
        return stored.error();
    const auto planned = recalculated(*stored, what);
    if (!planned)
        return planned.error();
    for (const KeyedLine &line : *stored) {
        const auto plan = std::ranges::find(*planned, line.key, &KeyedLine::key);
        const base::Status written =
            writeLine(connection, lines, line, plan == planned->end() ? nullptr : &*plan);
        if (!written)
            return written;
    }
    for (const KeyedLine &line : *planned) {
        const base::Status added =
            line.key == 0 ? book::addTaxLine(connection, id, line.line) : base::Status();
        if (!added)
            return added;
    }
    return {};
}

// What is typed into the current line, and its 金額 in any case.
QVariantMap editsOf(const db::Recordset &lines)
{
    QVariantMap edits;
    const QStringList columns = lines.columns();
    for (const QString &column : columns) {
        if (column == u"金額" || lines.isEdited(column))
            edits.insert(column, lines.value(column));
    }
    return edits;
}

} // namespace

std::vector<KeyedLine> keyedLinesIn(const db::Recordset &lines)
{
    std::vector<KeyedLine> read;
    for (int row = 0; row < lines.count(); ++row)
        read.push_back({lines.keyAt(row), lineIn(lines, row)});
    return read;
}

base::Result<std::vector<KeyedLine>> linesInFile(db::Connection &connection, const db::Recordset &lines,
                                                 qint64 id)
{
    db::Recordset stored(connection);
    if (const base::Status opened = openLines(stored, id); !opened)
        return opened.error();
    if (const base::Status read = stored.readAll(); !read)
        return read.error();
    std::vector<KeyedLine> all = keyedLinesIn(stored);
    if (!lines.isDirty())
        return all;
    const KeyedLine current{lines.currentKey(), lineIn(lines, lines.currentRow())};
    const auto place = std::ranges::find(all, current.key, &KeyedLine::key);
    if (place != all.end())
        *place = current;
    else if (lines.isNewRow())
        all.push_back(current);
    return all;
}

bool hasTaxLine(const std::vector<KeyedLine> &lines) { return std::ranges::any_of(lines, isTaxLine); }

std::vector<book::SlipLine> withoutKeys(const std::vector<KeyedLine> &lines)
{
    std::vector<book::SlipLine> plain;
    for (const KeyedLine &line : lines)
        plain.push_back(line.line);
    return plain;
}

base::Result<std::vector<KeyedLine>> recalculated(std::vector<KeyedLine> lines, const Recalculation &what)
{
    if (const base::Status set = setAmounts(lines, what.line); !set)
        return set.error();
    if (const base::Status set = what.tax ? setTax(lines, *what.tax) : base::Status(); !set)
        return set.error();
    return lines;
}

base::Status saveLineRecalculated(db::Recordset &lines, const db::Recordset::Step &check)
{
    const QVariant typed = lines.value(u"金額"_s);
    const base::Status saved = lines.update([&]() -> base::Status {
        if (const base::Status same = check(); !same)
            return same;
        const auto mended = recalculated({{0, lineIn(lines, lines.currentRow())}}, {});
        if (mended)
            lines.setValue(u"金額"_s, mended->front().line.amount);
        return mended.status();
    });
    if (!saved)
        lines.setValue(u"金額"_s, typed);
    return saved;
}

base::Status saveRecalculated(db::Recordset &headers, db::Recordset &lines, db::Connection &connection,
                              const book::SlipKind &kind, const Recalculation &what,
                              const db::Recordset::Step &check)
{
    const QVariantMap typed = editsOf(lines);
    const qint64 line = lines.currentKey();
    const base::Status saved = headers.updateWith(lines, [&]() -> base::Status {
        if (const base::Status same = check(); !same)
            return same;
        if (const base::Status free = checkNumber(headers, connection, kind); !free)
            return free;
        return writeLines(connection, lines, headers.currentKey(), what);
    });
    // The amount that was computed is not the clerk's.
    const bool isThere = !saved && lines.currentKey() == line;
    for (auto edit = typed.cbegin(); isThere && edit != typed.cend(); ++edit)
        lines.setValue(edit.key(), edit.value());
    return saved;
}

} // namespace slips
