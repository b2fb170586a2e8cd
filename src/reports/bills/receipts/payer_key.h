#pragma once

#include <QString>

namespace reports
{

/// What two spellings of a payer share: カ）ヤマダ シヨウテン of a bank and 株式会社　山田商店's reading
/// ﾔﾏﾀﾞｼｮｳﾃﾝ. Widths, kana, small kana, blanks, marks and the words for a company's form do not count, nor do
/// figures before a name, which banks let the payer add.
QString payerKey(const QString &name);

/// The figures before the name, where there are any: a customer's code or a bill's number.
QString payerNumber(const QString &name);

} // namespace reports
