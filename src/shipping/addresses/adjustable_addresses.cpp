#include "shipping/addresses/adjustable_addresses.h"

#include "shipping/addresses/address_form.h"

using namespace Qt::StringLiterals;

namespace shipping
{

std::vector<printing::AdjustableForm> adjustableAddresses(const workspace::Settings &settings)
{
    std::vector<printing::AdjustableForm> forms;
    for (const AddressPaper &paper : addressPapers()) {
        for (const Writing writing : {Writing::Vertical, Writing::Horizontal}) {
            if (!paper.mayBe(writing))
                continue;
            const QString how = writing == Writing::Vertical ? u"　縦書き"_s : u"　横書き"_s;
            printing::AdjustableForm form;
            form.caption = u"宛名　"_s + paper.name + (paper.isLabels ? QString() : how);
            form.fileName = paper.layout(writing);
            form.items = &addressItems();
            form.otherCase = itemsOfOtherCases();
            form.shifts = letterShifts(settings);
            form.purpose = printing::Purpose::Addresses;
            forms.push_back(std::move(form));
        }
    }
    return forms;
}

} // namespace shipping
