#pragma once

#include "registers/import/customer_import.h"
#include "support/fresh_shop.h"

#include <QFile>

using namespace Qt::StringLiterals;

// A shop that tables of customers are imported into.
struct ImportDesk : FreshShop
{
    ImportDesk() { run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '得意先'), (2, '一般')"_s); }

    QString file(const QString &name, const QByteArray &content)
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("no file");
        return path(name);
    }

    // The candidates of a CSV text; a row that names no category gets the first one.
    std::vector<registers::ImportCandidate> candidates(const QString &csv,
                                                       const registers::ImportSources &sources = {})
    {
        table = *registers::readImportFile(file(u"in.csv"_s, csv.toUtf8()), base::unwatched);
        assignment = wants;
        const registers::ImportAssignment byHeadings =
            registers::assignmentByHeadings(table.firstRow(), table.columns);
        assignment.hasHeadings = byHeadings.hasHeadings;
        assignment.fields = byHeadings.fields;
        assignment.defaultCategory = 1;
        return *registers::importCandidates(connection, table, assignment, base::unwatched, sources);
    }

    // 7 with the code A1, and two with the code B2.
    void addCustomers()
    {
        run(u"INSERT INTO 納品先 (納品先ID, コード, 納品先名1, フリガナ, TEL1, 区分ID, 締め日, 消費税区分, "
            u"版) VALUES "
            "(7, 'A1', '山田商店', 'ﾔﾏﾀﾞ', '03-1', 1, 0, 0, 3), (8, 'B2', '佐藤', NULL, NULL, 1, 0, 0, 1), "
            "(9, 'B2', '鈴木', NULL, NULL, 1, 0, 0, NULL)"_s);
        run(u"UPDATE 版数 SET 最終 = 9"_s);
    }

    base::Result<int> store(const std::vector<registers::ImportCandidate> &candidates,
                            const base::Progress &progress = base::unwatched)
    {
        std::vector<const registers::ImportCandidate *> rows;
        for (const registers::ImportCandidate &candidate : candidates)
            rows.push_back(&candidate);
        return registers::importCustomers(connection, rows, now.date(), progress);
    }

    registers::ImportAssignment wants; // besides the columns
    registers::ImportTable table;
    registers::ImportAssignment assignment;
};

// The fields of the columns, "-" for those left out.
inline QString assigned(const registers::ImportAssignment &assignment)
{
    QStringList columns;
    for (const int field : assignment.fields)
        columns << (field < 0 ? u"-"_s : registers::importFields().at(field).column);
    return columns.join(u' ');
}
