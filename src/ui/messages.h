#pragma once

#include <QFileInfo>
#include <QString>

// Sentences that several screens say. A sentence of one screen alone stands in that screen.
namespace ui::messages
{

inline QString deleteQuestion() { return QStringLiteral("表示中のレコードを削除します。よろしいですか。"); }

inline QString searchEmpty() { return QStringLiteral("検索する条件を入力してください。"); }

/// A search that came back empty handed.
inline QString nothingFound() { return QStringLiteral("該当するデータは見つかりませんでした。"); }

/// A screen whose tables cannot be read.
inline QString databaseNotUsable()
{
    return QStringLiteral(
        "データベースの接続に失敗しました。データベースが使用可能になってから再度実行してください。");
}

/// What becomes of a file that another one replaces; \a name is that under which it stays.
inline QString keptUnder(const QString &name)
{
    return QStringLiteral("今のファイルは「%1」という名前で残します。").arg(QFileInfo(name).fileName());
}

/// A target of papers and lists that nothing but a database may replace.
inline QString databaseTarget()
{
    return QStringLiteral(
        "データベースやバックアップのファイルには書き込めません。別の名前を指定してください。");
}

inline QString noOwnCompany()
{
    return QStringLiteral("自社情報が登録されていません。「環境設定」「自社情報登録」を済ませてください。");
}

/// New customers need a category to be put into.
inline QString noCategories()
{
    return QStringLiteral(
        "納品先の登録区分が登録されていません。「新規登録」「納品先区分登録」を済ませてください。");
}

/// A code given twice. The supplier register says it in these words too; that is wanted.
inline QString sharedCode() { return QStringLiteral("納品先コードが重複しています。"); }

/// A name or address wider than its printed line.
inline QString widthLimit()
{
    return QStringLiteral("このテキストは全角で２２文字、半角で４４文字以内の制限があります。");
}

/// A note wider than its room.
inline QString memoLimit() { return QStringLiteral("このテキストは全角で５０文字以内の制限があります。"); }

} // namespace ui::messages
