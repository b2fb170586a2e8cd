#include "shipping/history/history_grid.h"

using namespace Qt::StringLiterals;

namespace shipping
{

QList<ui::GridColumn> historyColumns()
{
    using enum base::Format;
    return {{u"発送ID"_s, 8, u"ID"_s, Number},
            {u"受付日"_s, 11, {}, Date},
            {u"届先名1"_s, 20, u"お届け先"_s},
            {u"送り状番号"_s, 15},
            {u"品名"_s, 16},
            {u"依頼主名1"_s, 18, u"ご依頼主"_s},
            {u"発送方法"_s, 12},
            {u"届先名2"_s, 14, u"お届け先２"_s},
            {u"個数"_s, 5, {}, Number},
            {u"配達日"_s, 11, u"配達予定日"_s, Date},
            {u"発送区分"_s, 12},
            {u"価格"_s, 9, {}, Amount},
            {u"届先住所1"_s, 26, u"お届け先住所"_s},
            {u"届先電話"_s, 14, u"電話番号"_s},
            {u"印刷日"_s, 11, {}, Date},
            {u"出力日"_s, 11, u"書き出した日"_s, Date}};
}

} // namespace shipping
