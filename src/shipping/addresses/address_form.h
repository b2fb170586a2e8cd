#pragma once

#include "base/result.h"
#include "masters/own_company.h"
#include "printing/forms/form_values.h"
#include "printing/sheets.h"
#include "shipping/addresses/address_setup.h"
#include "shipping/addresses/addressee.h"
#include "shipping/slips/label_sheet.h"

#include <optional>

// Addresses as layout files set them.
namespace shipping
{

/// What a layout of an address may show.
const printing::FormItems &addressItems();

/// Those of them that never stand beside the rest: of households, and of firms without a person.
QStringList itemsOfOtherCases();

/// Their values. \a sender: of the own company; none where it is not registered.
printing::FormValues addressValues(const Addressee &addressee,
                                   const std::optional<masters::OwnCompany> &sender,
                                   const AddressStyle &style, Writing writing);

/// Where and how addresses are printed.
struct AddressSetup
{
    AddressPaper paper;
    Writing writing = Writing::Vertical;
    AddressStyle style{};
    std::optional<masters::OwnCompany> sender{};
    QHash<QString, double> shifts{};
    LabelSheet labels{}; // of label paper
    int firstPlace = 1;  // the first of its places to be taken
};

struct AddressSheets
{
    printing::Sheets sheets;
    QString complaint; // of a layout of the shop's own, in whose place the built-in one is
};

/// The sheets of \a addressees, one each, or as many as labels fill. \a applicationFolder: of layouts of the
/// shop's own. Fails where the label sheet has no such place.
base::Result<AddressSheets> addressSheets(const QString &applicationFolder, std::vector<Addressee> addressees,
                                          const AddressSetup &setup);

} // namespace shipping
