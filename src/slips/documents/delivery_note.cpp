#include "slips/documents/delivery_note.h"

#include "book/counterpart_name.h"
#include "printing/forms/form_sheets.h"

#include <cmath>

using namespace Qt::StringLiterals;
using printing::FormItemKind;

namespace slips
{

namespace
{

// Millimetres a step.
constexpr double verticalStep = 1.41;
constexpr double horizontalStep = 1.75;
constexpr double halfWidthCharacter = 1.75; // of the addressee's 10-point type

QString honoured(const QString &name)
{
    return book::isUnknownCounterpartName(name) ? name : name + u"　様"_s;
}

void addNames(printing::FormRecord &items, const book::Slip &slip)
{
    const bool alone = slip.name2.isEmpty();
    const QString last = honoured(alone ? slip.name1 : slip.name2);
    items[u"宛先.名称1"_s] = alone ? last : slip.name1;
    items[u"宛先.名称2"_s] = alone ? QString() : last;
    items[u"宛先.名称"_s] = alone ? last : slip.name1 + u'　' + last;
}

} // namespace

const printing::FormItems &deliveryNoteItems()
{
    static const printing::FormItems items = [] {
        printing::FormItems all = noteItems();
        all.items[u"内税額"_s] = FormItemKind::Number;
        all.shifts = QStringList{u"OffsetB"_s, u"OffsetL"_s, u"OffsetF"_s};
        return all;
    }();
    return items;
}

std::vector<printing::Sheet> deliveryNote(const DeliveryNoteData &data, const printing::Form &form)
{
    printing::FormValues values = noteValues(data.slip, data.sender, data.companyName);
    addNames(values.items, data.slip);
    values.items[u"合計金額"_s] = data.total;
    values.items[u"備考"_s] = data.memo;
    if (data.includedTax)
        values.items[u"内税額"_s] = std::trunc(*data.includedTax);
    values.shifts = {{u"OffsetB"_s, data.offsets.down * verticalStep},
                     {u"OffsetL"_s, data.offsets.right * horizontalStep},
                     {u"OffsetF"_s, data.offsets.addresseeRight * halfWidthCharacter}};
    return printing::formSheets(form, values);
}

} // namespace slips
