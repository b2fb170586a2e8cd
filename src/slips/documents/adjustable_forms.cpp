#include "slips/documents/adjustable_forms.h"

#include "slips/documents/delivery_note.h"
#include "slips/documents/estimate.h"
#include "slips/documents/transfer_form_print.h"

using namespace Qt::StringLiterals;

namespace slips
{

QStringList inclusiveItems() { return {u"内税額"_s, u"内税率"_s}; }

std::vector<printing::AdjustableForm> adjustableForms(const workspace::Settings &settings)
{
    const auto note = [moved = noteShifts(noteOffsets(printing::noteSteps(settings)))](
                          const QString &caption, const char16_t *layout) {
        return printing::AdjustableForm{caption, QString::fromUtf16(layout), &deliveryNoteItems(),
                                        inclusiveItems(), moved};
    };
    return {note(u"納品書　A4 無地"_s, plainDeliveryNoteLayout),
            note(u"納品書　HISAGO 1149"_s, continuousDeliveryNoteLayout),
            note(u"納品書・物品受領書　HISAGO BP0201"_s, receiptDeliveryNoteLayout),
            note(u"指定納品書"_s, designatedDeliveryNoteLayout),
            {u"見積書　A4 無地"_s, QString::fromUtf16(estimateLayout), &estimateItems(), {u"内消費税"_s}},
            {.caption = u"郵便振替用紙"_s,
             .fileName = QString::fromUtf16(transferFormLayout),
             .items = &transferFormItems(),
             .otherCase = {u"依頼人.電話"_s},
             .shifts = transferShifts(settings),
             .purpose = printing::Purpose::TransferForms,
             .lay = [&settings](printing::Sheet &sheet) { setTransferFormPaper(sheet, settings); }}};
}

} // namespace slips
