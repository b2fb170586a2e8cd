#pragma once

#include <QString>

// What a slip and its lines are, in SQL. For the statements of book/ alone.
namespace book::columns
{

/// The letter of a slip's kind: the first one of its number, in half width and upper case.
inline const QString kind = QStringLiteral("種別");
/// The key of a line: lines of a slip count up in the order of entry.
inline const QString lineKey = QStringLiteral("入出庫サブ.明細ID");
/// Percent and class of a line's tax; NULL where it is taxed as its slip.
inline const QString ownTaxRate = QStringLiteral("入出庫サブ.税率");
inline const QString taxClass = QStringLiteral("入出庫サブ.税区分");
/// Percent, of the line or else of its slip.
inline const QString taxRate = QStringLiteral("COALESCE(入出庫サブ.税率, 入出庫マスター.消費税率)");
inline const QString inclusive = QStringLiteral("入出庫マスター.内税");

/// A condition: the slip has a day of the calendar as its date.
inline const QString hasDay = QStringLiteral("(valid_day(日付) = 1)");
/// That day; an empty text, older than every day, without one.
inline const QString day = QStringLiteral("CASE WHEN valid_day(日付) = 1 THEN 日付 ELSE '' END");

/// The day that decides on the tax of a line: of what is given back that of the slip that it came with, where
/// its own slip names that.
inline const QString suppliedDay =
    QStringLiteral("COALESCE(CASE WHEN 金額 < 0 THEN (SELECT 元.日付 FROM 入出庫マスター AS 元 WHERE 元.ID = "
                   "入出庫マスター.元伝票 AND valid_day(元.日付) = 1) END, CASE WHEN valid_day(日付) = 1 "
                   "THEN 日付 ELSE '' END)");

inline const QString taxName = QStringLiteral("'消費税'");
/// A condition: the line is a slip's tax.
inline const QString isTax = QStringLiteral("商品名 = '消費税'");

/// What a line's 金額 adds to a sum, in ten-thousandths. A text, or a number beyond all amounts, gives one
/// that no ExactSum holds, so that the sum is none rather than a wrong one. It has to be signed after it was
/// summed up, lest two of these cancel out.
inline const QString amountCount = QStringLiteral(
    "CASE WHEN 金額 BETWEEN -9e11 AND 9e11 THEN ROUND(金額 * 10000) WHEN 金額 IS NOT NULL THEN 1e300 END");

/// Slips with their lines.
inline const QString slipsWithLines =
    QStringLiteral("入出庫マスター INNER JOIN 入出庫サブ ON 入出庫サブ.ID = 入出庫マスター.ID");
/// The same, and slips without lines.
inline const QString slipsAndLines =
    QStringLiteral("入出庫マスター LEFT JOIN 入出庫サブ ON 入出庫サブ.ID = 入出庫マスター.ID");

} // namespace book::columns
