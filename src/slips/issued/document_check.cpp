#include "slips/issued/document_check.h"

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

DocumentState stateOf(const DocumentPlace &place, const QStringList &folders, int &mended)
{
    const DocumentState own = findDocument({folders.front()}, place).state;
    if (own == DocumentState::Whole || folders.size() == 1)
        return own;
    const FoundDocument elsewhere = findDocument(folders.sliced(1), place);
    if (elsewhere.state != DocumentState::Whole || !storeDocument(folders.front(), place, elsewhere.pdf))
        return own;
    ++mended;
    return DocumentState::Whole;
}

} // namespace

QString nameOf(DocumentState state)
{
    switch (state) {
    case DocumentState::Whole:
        return u"正常"_s;
    case DocumentState::Damaged:
        return u"ファイルが壊れているか、書き換えられています"_s;
    case DocumentState::Missing:
        return u"ファイルがありません"_s;
    }
    return {};
}

base::Result<DocumentCheck> checkDocuments(db::Connection &connection, const std::vector<qint64> &keys,
                                           const QStringList &folders, const base::Progress &progress)
{
    DocumentCheck check;
    for (const qint64 key : keys) {
        if (!progress(check.checked, qint64(keys.size()))) {
            check.isStopped = true;
            break;
        }
        const auto rows = readIssued(connection, {key});
        if (!rows)
            return rows.error();
        for (const IssuedRow &row : *rows) {
            const DocumentState state = stateOf(row.place(), folders, check.mended);
            if (state != DocumentState::Whole)
                check.faulty.push_back({row, state});
            ++check.checked;
        }
    }
    return check;
}

QString DocumentCheck::words(qsizetype longest) const
{
    QStringList lines;
    if (isStopped)
        lines << u"途中で中止しました。"_s;
    lines << (faulty.empty()
                  ? u"%1 件の控えを検査しました。すべて発行した時のまま残っています。"_s.arg(checked)
                  : u"%1 件の控えを検査しました。%2 件に問題があります。"_s.arg(checked).arg(faulty.size()));
    if (mended > 0)
        lines << u"壊れていたか見つからなかった %1 件は、バックアップから戻しました。"_s.arg(mended);
    for (const FaultyDocument &each : faulty) {
        if (lines.size() > longest) {
            lines << u"ほか"_s;
            break;
        }
        lines << u"控え番号 %1　%2：%3"_s.arg(QString::number(each.row.key), each.row.words(),
                                              nameOf(each.state));
    }
    return lines.join(u'\n');
}

} // namespace slips
