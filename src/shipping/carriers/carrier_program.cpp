#include "shipping/carriers/carrier_program.h"

#include "shipping/slips/shipment.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

struct Program
{
    QString name;
    QString carrier;
    QStringList forms;
};

const Program &facts(CarrierProgram program)
{
    static const std::array<Program, carrierPrograms.size()> all{
        {{u"B2クラウド"_s, u"ヤマト運輸"_s, {u"宅急便"_s, u"宅急便　コレクト"_s}},
         {u"e飛伝Ⅲ"_s, u"佐川急便"_s, {u"佐川急便"_s}},
         {u"ゆうプリ"_s, u"日本郵便"_s, {u"ゆうパック"_s}}}};
    return all[std::size_t(program)];
}

} // namespace

QString programName(CarrierProgram program) { return facts(program).name; }

QString carrierName(CarrierProgram program) { return facts(program).carrier; }

const QStringList &formsOf(CarrierProgram program) { return facts(program).forms; }

const QStringList &formsOfAnyCarrier()
{
    static const QStringList forms = [] {
        QStringList left = shippingForms();
        for (const CarrierProgram program : carrierPrograms)
            left.removeIf([&](const QString &form) { return formsOf(program).contains(form); });
        return left;
    }();
    return forms;
}

} // namespace shipping
