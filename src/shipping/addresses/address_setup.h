#pragma once

#include <QHash>
#include <QSizeF>
#include <QString>

#include <vector>

namespace workspace
{
class Settings;
}

// What addresses are printed on, and how they are written.
namespace shipping
{

enum class Writing { Vertical, Horizontal };

/// A postcard, an envelope, or label sheets.
struct AddressPaper
{
    QString name{};     // as it is offered and stored
    QString vertical{}; // its layout files; empty: it is not written so
    QString horizontal{};
    QSizeF size{};           // as it is read upright, millimetres; of a label sheet that of the sheet
    bool hasBoxes = false;   // for the postal code, where it is used upright
    bool liesAcross = false; // where it is written horizontally
    bool isLabels = false;   // several addresses on a sheet

    [[nodiscard]] bool mayBe(Writing writing) const
    {
        return !(writing == Writing::Vertical ? vertical : horizontal).isEmpty();
    }
    /// Whether the postal code stands in boxes: where the paper lies on its side there are none.
    [[nodiscard]] bool usesBoxes(Writing writing) const
    {
        return hasBoxes && (writing == Writing::Vertical || !liesAcross);
    }
    [[nodiscard]] const QString &layout(Writing writing) const
    {
        return writing == Writing::Vertical ? vertical : horizontal;
    }
};

const std::vector<AddressPaper> &addressPapers();

/// The one called \a name; the postcard where there is none.
const AddressPaper &addressPaper(const QString &name);

/// The options of address printing, HagakiAop1 to 5 in this order.
struct AddressStyle
{
    bool sender = true;  // the own company as sender
    bool kanji = false;  // the numbers of a column
    bool no = false;     // の between them
    bool boxes = false;  // those of the postal code are drawn: blank paper
    bool honours = true; // 様, 御中 and so on

    friend bool operator==(const AddressStyle &, const AddressStyle &) = default;
};

AddressStyle addressStyle(const workspace::Settings &settings);
void storeAddressStyle(workspace::Settings &settings, const AddressStyle &style);

/// What was printed last, to begin with.
struct AddressChoice
{
    QString paper; // by its name
    Writing writing = Writing::Vertical;
    bool withContact = false; // of the bulk run: firms are addressed to their 担当者名

    friend bool operator==(const AddressChoice &, const AddressChoice &) = default;
};

AddressChoice addressChoice(const workspace::Settings &settings);
void storeAddressChoice(workspace::Settings &settings, const AddressChoice &choice);

/// How far the settings move what layouts call by their names, millimetres.
QHash<QString, double> letterShifts(const workspace::Settings &settings);

} // namespace shipping
