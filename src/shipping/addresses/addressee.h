#pragma once

#include "base/result.h"

#include <QStringList>

#include <vector>

namespace db
{
class Connection;
}

// Whom a letter goes to, and how he is addressed.
namespace shipping
{

/// More persons than these have no place beside each other.
inline constexpr qsizetype mostNames = 3;

struct Addressee
{
    qint64 customer = 0; // 納品先ID; 0: nobody of the register
    QString zip{};
    QString address1{};
    QString address2{};
    QString company{};
    QString section{};
    QStringList names{}; // persons, the eldest first
    QString honorific{}; // empty: by whom is addressed; book::noHonorific: none

    friend bool operator==(const Addressee &, const Addressee &) = default;
};

/// The columns of a customer that tell whom to address.
struct AddressRow
{
    qint64 id = 0;
    QString name1;
    QString name2;
    QString name3;
    QString zip;
    QString address1;
    QString address2;
    QString contact;   // 担当者名, the person in a firm
    QString honorific; // 敬称
};

/// Whom \a row means. A firm's further name lines are its section, with the person's title, or the person
/// there; those of a person are the persons of one household. \a withContact: a firm without a person is
/// addressed to its 担当者名.
Addressee addresseeOf(const AddressRow &row, bool withContact);

/// The rows of the customers \a ids, in that order; those deleted meanwhile are left out.
base::Result<std::vector<AddressRow>> readAddressRows(db::Connection &connection,
                                                      const std::vector<qint64> &ids);

/// The same out of a supplementary roster: \a fileName, which is not the open file. The customers keep their
/// keys where the open register has them under the same name or address, so that it is known whom a letter
/// went to. Fails for a file that is no roster.
base::Result<std::vector<AddressRow>> readRosterRows(db::Connection &connection, const QString &fileName);

/// How an addressee is written. A letter to a section has no names: the section bears the honorific.
struct AddressWords
{
    QString company; // where a person or a section follows
    QString section;
    QStringList names; // with their honorifics; of a household each as long as the others, so that family
                       // name, given names and honorifics stand level

    [[nodiscard]] bool isEmpty() const { return section.isEmpty() && names.isEmpty(); }
};

/// \a honours: whether honorifics are written. None is ever written twice, whatever was typed.
AddressWords addressWords(const Addressee &addressee, bool honours);

/// What keeps a letter from being addressed; empty when nothing does.
QString addressLack(const Addressee &addressee);

/// What is told of an address that is printed all the same: a postal code that cannot be read, words that
/// are squeezed until nobody can read them. Empty: nothing.
QString addressDoubt(const Addressee &addressee);

/// The seven digits of \a zip, however they were typed; empty where they are not all there.
QString postalDigits(const QString &zip);

/// The addressee in one line, for lists and titles.
QString addresseeInWords(const Addressee &addressee);

} // namespace shipping
