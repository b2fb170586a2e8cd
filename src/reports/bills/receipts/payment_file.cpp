#include "reports/bills/receipts/payment_file.h"

#include "base/same_file.h"
#include "db/file_header.h"
#include "db/foreign_table.h"
#include "registers/import/import_table.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

const QString cashBook = u"現金出納帳"_s;

base::Result<PaymentTable> cashBookIn(const QString &fileName, const base::Progress &progress)
{
    auto read = db::readForeignTable(fileName, cashBook, progress);
    if (!read)
        return read.error();
    PaymentTable table{read->columns, {}, read->columns.size(), true};
    table.rows.reserve(read->rows.size());
    for (QStringList &cells : read->rows)
        table.rows.push_back({int(table.rows.size()) + 1, std::move(cells)});
    return table;
}

base::Result<PaymentTable> listIn(const QString &fileName, const base::Progress &progress)
{
    if (const QString kind = db::foreignKindOf(fileName); !kind.isEmpty())
        return base::Error{
            u"このファイルは「%1」のため、読み込めませんでした。現金出納帳のデータベース（.cdb）か、"
            "銀行の入金明細の CSV ファイルを選んでください。"_s.arg(kind)};
    auto read = registers::readImportFile(fileName, progress);
    if (!read)
        return read.error();
    PaymentTable table{{}, {}, read->columns, false};
    table.rows.reserve(read->rows.size());
    for (registers::ImportTable::Row &row : read->rows)
        table.rows.push_back({row.line, std::move(row.cells)});
    return table;
}

} // namespace

base::Result<PaymentFile> readPaymentFile(const QString &fileName, const QString &own,
                                          const base::Progress &progress)
{
    if (base::isSameFile(fileName, own))
        return base::Error{
            u"いま開いているデータベースは選べません。現金出納帳のデータベースか、銀行の CSV ファイルを"
            "選んでください。"_s};
    const QFileInfo info(fileName);
    if (!info.isFile() || !info.isReadable())
        return base::Error{u"ファイルを読み取れないため、読み込めませんでした。（%1）"_s.arg(fileName)};
    PaymentFile file{fileName, info.size(), info.lastModified(), {}};
    auto table =
        db::isForeignDatabase(fileName) ? cashBookIn(fileName, progress) : listIn(fileName, progress);
    if (!table)
        return table.error();
    file.table = std::move(*table);
    return file;
}

base::Status checkUnchanged(const PaymentFile &file)
{
    const QFileInfo now(file.fileName);
    if (!now.isFile())
        return base::Error{
            u"読み込んだファイルが見つからなくなったため、入金伝票を作りませんでした。ファイルを元の場所に"
            "戻して、もう一度実行してください。（%1）"_s.arg(file.fileName)};
    if (now.size() != file.size || now.lastModified() != file.changed)
        return base::Error{.text =
                               u"ファイルが、読み込んだ後で書き換えられたため、入金伝票を作りませんでした。"
                               "もう一度読み込んでください。（%1）"_s.arg(file.fileName),
                           .changed = true};
    return {};
}

} // namespace reports
