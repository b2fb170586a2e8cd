#include "db/errors.h"

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace db
{

base::Error errorFromCode(int code, const QString &detail)
{
    if (code == SQLITE_READONLY_DBMOVED)
        return {
            u"データベースファイルが移動または削除されたため、保存できませんでした。元の場所に戻すか、バックアップを開いてから、もう一度実行してください。"_s};
    switch (code & 0xff) {
    case SQLITE_FULL:
        return {
            u"ディスクの空き容量が足りないため、保存できませんでした。不要なファイルを削除してから、もう一度実行してください。"_s};
    case SQLITE_READONLY:
        return {
            u"データベースが読み取り専用のため、保存できませんでした。ファイルの属性とフォルダの権限を確認してください。"_s};
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return {
            u"ほかのプログラムがデータベースを使用中のため、実行できませんでした。しばらく待ってから、もう一度実行してください。"_s};
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return {
            u"データベースが壊れているため、実行できませんでした。「環境設定」の「データベースの修復/最適化」で修復するか、バックアップファイルを開いてください。"_s};
    case SQLITE_CANTOPEN:
        return {
            u"データベースを開けないため、実行できませんでした。ファイルとフォルダを確認してください。"_s};
    case SQLITE_IOERR:
        return {
            u"ディスクの読み書きに失敗したため、実行できませんでした。ディスクを確認してから、もう一度実行してください。"_s};
    case SQLITE_NOMEM:
        return {
            u"メモリが足りないため、実行できませんでした。ほかのプログラムを終了してから、もう一度実行してください。"_s};
    default:
        return {u"データベースの処理に失敗したため、実行できませんでした。("_s + detail + u")"_s};
    }
}

base::Error errorFrom(const QSqlError &error)
{
    return errorFromCode(error.nativeErrorCode().toInt(), error.databaseText());
}

base::Error errorFrom(sqlite3 *handle)
{
    return errorFromCode(sqlite3_extended_errcode(handle), QString::fromUtf8(sqlite3_errmsg(handle)));
}

} // namespace db
