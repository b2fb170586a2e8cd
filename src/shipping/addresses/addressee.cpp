#include "shipping/addresses/addressee.h"

#include "book/slip_reader.h"
#include "printing/text_fit.h"
#include "printing/vertical.h"
#include "shipping/slips/firm_names.h"
#include "text/postal_code.h"
#include "text/width.h"

#include <QRegularExpression>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

const QString person = u"様"_s;
const QString firm = u"御中"_s;
const QString teacher = u"先生"_s;

constexpr QStringView honorificEnds[] = {u"様", u"御中", u"先生", u"殿", u"さま", u"さん"};

QString plain(const QString &typed)
{
    return text::toFullWidth(printing::singleLine(typed).simplified()).trimmed();
}

/// A name with the honorific that was typed behind it.
struct Honoured
{
    QString name;
    QString honorific; // empty: none was typed
};

Honoured taken(const QString &typed)
{
    const QString whole = plain(typed);
    for (const QStringView end : honorificEnds) {
        if (whole.size() > end.size() && whole.endsWith(end))
            return {whole.chopped(end.size()).trimmed(), end.toString()};
    }
    return {whole, {}};
}

QString follow(const QString &name, const QString &honorific)
{
    return honorific.isEmpty() || name.isEmpty() ? name : name + u'　' + honorific;
}

/// What is behind \a names without one of their own: the first is the one that the customer's is for.
QString usualHonorific(const Addressee &addressee, bool isPerson, qsizetype place)
{
    const QString &chosen = addressee.honorific;
    if (chosen == QString::fromUtf16(book::noHonorific))
        return {};
    if (!isPerson)
        return chosen.isEmpty() ? firm : chosen;
    if (chosen.isEmpty() || chosen == firm || (place > 0 && chosen == teacher))
        return person;
    return chosen;
}

/// A person's name in two parts; one that is written without a blank is all given name.
struct PersonName
{
    QString family;
    QString given;
    QString honorific;
};

PersonName inParts(const QString &name)
{
    const qsizetype blank = name.lastIndexOf(u'　');
    return blank < 0 ? PersonName{{}, name, {}} : PersonName{name.left(blank), name.mid(blank + 1), {}};
}

qsizetype squares(const QString &text) { return qsizetype(printing::verticalSquares(text, false).size()); }

QString blanks(qsizetype count) { return QString(std::max<qsizetype>(count, 0), u'　'); }

/// Puts the others of a household under the family name of the first: 花子 and 山田花子 beside 山田　太郎.
void shareFamily(std::vector<PersonName> &persons)
{
    constexpr qsizetype longestGiven = 3; // a longer one without a blank is a whole name
    const QString family = persons.front().family;
    for (std::size_t i = 1; i < persons.size() && !family.isEmpty(); ++i) {
        PersonName &other = persons[i];
        if (other.family.isEmpty() && other.given.size() > family.size() && other.given.startsWith(family))
            other.given = other.given.mid(family.size());
        else if (!other.family.isEmpty() ? other.family != family : other.given.size() > longestGiven)
            continue;
        other.family = blanks(squares(family));
    }
}

/// The names of a household, each as long as the others.
QStringList levelled(std::vector<PersonName> persons)
{
    shareFamily(persons);
    qsizetype family = 0;
    qsizetype given = 0;
    qsizetype honour = 0;
    for (const PersonName &each : persons) {
        family = std::max(family, squares(each.family));
        given = std::max(given, squares(each.given));
        honour = std::max(honour, squares(each.honorific));
    }
    QStringList lines;
    for (const PersonName &each : persons) {
        QString line = each.family + blanks(family - squares(each.family));
        line += (family > 0 ? u"　"_s : QString()) + each.given + blanks(given - squares(each.given));
        line += honour > 0 ? u'　' + each.honorific + blanks(honour - squares(each.honorific)) : QString();
        lines << line;
    }
    return lines;
}

QStringList personLines(const Addressee &addressee, bool honours)
{
    std::vector<PersonName> persons;
    for (const QString &typed : addressee.names) {
        const Honoured name = taken(typed);
        if (name.name.isEmpty())
            continue;
        const qsizetype place = qsizetype(persons.size());
        persons.push_back(inParts(name.name));
        if (honours)
            persons.back().honorific =
                name.honorific.isEmpty() ? usualHonorific(addressee, true, place) : name.honorific;
    }
    if (persons.size() > 1)
        return levelled(std::move(persons));
    QStringList lines;
    for (const PersonName &only : persons)
        lines << follow(only.family.isEmpty() ? only.given : only.family + u'　' + only.given,
                        only.honorific);
    return lines;
}

/// "長野支店　営業課長　山田太郎": what he belongs to and what he is there, and who is behind it.
std::pair<QString, QString> placeAndPerson(const QString &line)
{
    QStringList behind = line.split(u'　');
    QStringList place;
    while (behind.size() > 1 && (isSection(behind.front()) || isTitle(behind.front())))
        place << behind.takeFirst();
    return {place.join(u'　'), behind.join(u'　')};
}

void append(QString &whole, const QString &part)
{
    if (!part.isEmpty())
        whole += whole.isEmpty() ? part : u'　' + part;
}

// A line that tells of the first person in a firm, or of its section or his title alone.
void addPlace(Addressee &addressee, const QString &line)
{
    if (isSection(taken(line).name) || isTitle(line)) {
        append(addressee.section, line);
        return;
    }
    const auto [place, behind] = placeAndPerson(line);
    append(addressee.section, place);
    addressee.names << behind;
}

// A further name line of a firm.
void addFirmLine(Addressee &addressee, const QString &typed)
{
    const QString line = plain(typed);
    if (line.isEmpty())
        return;
    const bool tellsPlace =
        isSection(taken(line).name) || isTitle(line) || !placeAndPerson(line).first.isEmpty();
    if (addressee.names.isEmpty() && !tellsPlace && isFirm(line))
        append(addressee.company, line);
    else if (addressee.names.isEmpty())
        addPlace(addressee, line);
    else if (addressee.names.size() < mostNames)
        addressee.names << line;
}

// Where no name follows a title, it stands for the person.
void addressTitle(Addressee &addressee)
{
    const qsizetype blank = addressee.section.lastIndexOf(u'　');
    const QString last = addressee.section.mid(blank + 1);
    if (!addressee.names.isEmpty() || last.isEmpty() || !isTitle(last))
        return;
    addressee.names << last;
    addressee.section.truncate(std::max<qsizetype>(blank, 0));
}

// A further name line of a person: another one of the household, or where he works and as what.
void addPersonLine(Addressee &addressee, const QString &typed)
{
    const QString line = plain(typed);
    if (line.isEmpty())
        return;
    if (isFirm(line) && addressee.company.isEmpty())
        addressee.company = line;
    else if (isTitle(line))
        append(addressee.section, line);
    else if (addressee.names.size() < mostNames)
        addressee.names << line;
}

} // namespace

Addressee addresseeOf(const AddressRow &row, bool withContact)
{
    Addressee addressee{.customer = row.id,
                        .zip = row.zip.trimmed(),
                        .address1 = printing::singleLine(row.address1).trimmed(),
                        .address2 = printing::singleLine(row.address2).trimmed(),
                        .company = {},
                        .section = {},
                        .names = {},
                        .honorific = row.honorific.trimmed()};
    const QString first = plain(row.name1);
    // Whoever has departments is a firm, whatever it is called.
    const bool ofFirm = isFirm(taken(first).name) || taken(first).honorific == firm ||
                        (!first.isEmpty() && (isSection(taken(row.name2).name) ||
                                              !placeAndPerson(plain(row.name2)).first.isEmpty()));
    if (ofFirm)
        addressee.company = first;
    else if (!first.isEmpty())
        addressee.names << first;
    for (const QString &line : {row.name2, row.name3})
        ofFirm ? addFirmLine(addressee, line) : addPersonLine(addressee, line);
    const QString contact = plain(row.contact);
    if (withContact && ofFirm && addressee.names.isEmpty() && !contact.isEmpty())
        addPlace(addressee, contact);
    addressTitle(addressee);
    return addressee;
}

AddressWords addressWords(const Addressee &addressee, bool honours)
{
    const Honoured company = taken(addressee.company);
    const Honoured section = taken(addressee.section);
    AddressWords words{company.name, section.name, personLines(addressee, honours)};
    if (!words.names.isEmpty())
        return words;
    QString &last = words.section.isEmpty() ? words.company : words.section;
    const QString &typed = words.section.isEmpty() ? company.honorific : section.honorific;
    const QString honorific = typed.isEmpty() ? usualHonorific(addressee, false, 0) : typed;
    last = follow(last, honours ? honorific : QString());
    if ((words.section.isEmpty() || words.company.isEmpty()) && !last.isEmpty())
        words.names << std::exchange(last, QString());
    return words;
}

QString addressLack(const Addressee &addressee)
{
    if (addressWords(addressee, false).isEmpty())
        return u"名前がありません"_s;
    if (addressee.address1.isEmpty() && addressee.address2.isEmpty())
        return u"住所がありません"_s;
    return {};
}

namespace
{

QString zipDoubt(const Addressee &addressee)
{
    if (!postalDigits(addressee.zip).isEmpty())
        return {};
    if (addressee.zip.isEmpty())
        return u"郵便番号がありません"_s;
    return u"郵便番号「%1」は 7 桁の数字として読み取れないため、印刷しません"_s.arg(addressee.zip);
}

QString lengthDoubt(const Addressee &addressee)
{
    constexpr qsizetype mostReadable = 45; // characters, on the smallest papers half as wide as high
    const AddressWords words = addressWords(addressee, true);
    qsizetype longest = 0;
    for (const QString &line :
         words.names + QStringList{words.company, words.section, addressee.address1, addressee.address2})
        longest = std::max(longest, line.size());
    return longest > mostReadable ? u"%1 文字の行があり、字が詰まって読めないおそれがあります"_s.arg(longest)
                                  : QString();
}

} // namespace

QString addressDoubt(const Addressee &addressee)
{
    QStringList doubts{zipDoubt(addressee), lengthDoubt(addressee)};
    doubts.removeAll(QString());
    return doubts.join(u'、');
}

QString postalDigits(const QString &zip)
{
    static const QRegularExpression blanks(u"\\s+"_s);
    return text::completePostalCode(QString(zip).remove(blanks)).value_or(QString()).remove(u'-');
}

QString addresseeInWords(const Addressee &addressee)
{
    const AddressWords words = addressWords(addressee, true);
    QStringList parts{words.company, words.section};
    for (const QString &name : words.names)
        parts << name.trimmed();
    parts.removeAll(QString());
    return parts.join(u'　');
}

} // namespace shipping
