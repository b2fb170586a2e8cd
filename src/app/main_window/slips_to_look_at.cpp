#include "app/main_window/slips_to_look_at.h"

#include "book/slip_store.h"

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

constexpr int mostNamed = 10;
constexpr int monthsBack = 2; // what is older has been billed

QString named(const QStringList &numbers)
{
    return numbers.mid(0, mostNamed).join(u"、"_s) + (numbers.size() > mostNamed ? u"、ほか"_s : QString());
}

} // namespace

// A program that was killed, or left without closing its slip, has booked no tax on it; a tax line may have
// been deleted, or the slip given to a counterpart who is charged it.
base::Result<QString> slipsToLookAt(db::Connection &connection, const QDate &today)
{
    const auto leftOpen = book::slipsLeftOpen(connection, mostNamed + 1);
    if (!leftOpen)
        return leftOpen.error();
    const auto untaxed = book::slipsWithoutTax(connection, today.addMonths(-monthsBack), mostNamed + 1);
    if (!untaxed)
        return untaxed.error();
    QStringList told;
    if (!leftOpen->isEmpty())
        told << u"閉じられていない伝票があります。\n"_s + named(*leftOpen) +
                    u"\nほかのパソコンで入力中でなければ、伝票の訂正画面の「伝票完了」で"
                    "消費税を計上して閉じてください。"_s;
    if (!untaxed->isEmpty())
        told << u"外税の相手先への伝票に、消費税の行のないものがあります。\n"_s + named(*untaxed) +
                    u"\n伝票の訂正画面の「伝票完了」で消費税を計上するか、税込の伝票なら「内税」に"
                    "直してください。"_s;
    return told.join(u"\n\n"_s);
}

} // namespace app
