#include "shipping/addresses/address_form.h"

#include "printing/forms/form_files.h"
#include "printing/forms/form_sheets.h"
#include "printing/text_fit.h"
#include "printing/vertical.h"
#include "shipping/addresses/house_numbers.h"
#include "text/postal_code.h"
#include "text/width.h"

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;
using printing::FormItemKind;
using printing::FormRecord;

namespace shipping
{

namespace
{

constexpr int postalDigitCount = 7;
const QString postalCode = u"郵便番号"_s;
const QString senders = u"差出人."_s;
const QString firmItem = u"宛先.会社名"_s;
const QString firmSectionItem = u"宛先.部署"_s;

QString numbered(const QString &name, qsizetype number) { return name + QString::number(number); }

// Full width, which fills a box as a written digit does.
void addDigits(FormRecord &record, const QString &item, const QString &digits)
{
    for (qsizetype i = 0; i < digits.size(); ++i)
        record[numbered(item, i + 1)] = text::toFullWidth(QStringView(digits).mid(i, 1));
}

/// Writes addresses as a column or a line takes them.
class Writer
{
public:
    Writer(const AddressStyle &style, Writing writing)
        : m_figures(style.kanji ? Figures::Kanji : Figures::Upright)
        , m_between(style.no ? Between::No : Between::Dash)
        , m_isColumn(writing == Writing::Vertical)
    {}

    [[nodiscard]] QString address(const QString &typed) const
    {
        return m_isColumn ? columnAddress(typed, m_figures, m_between) : lineAddress(typed);
    }
    [[nodiscard]] QString telephone(const QString &typed) const
    {
        const QString number =
            m_isColumn ? columnAddress(typed, Figures::Upright, Between::Dash) : lineAddress(typed);
        return number.isEmpty() ? number : u"電話　"_s + number;
    }

private:
    Figures m_figures;
    Between m_between;
    bool m_isColumn;
};

void addNames(FormRecord &record, const QStringList &names)
{
    const QString item = names.size() == 3 ? u"三名"_s : u"二名"_s;
    if (names.size() == 1)
        record[u"氏名"_s] = names.front();
    for (qsizetype i = 0; i < names.size() && names.size() > 1; ++i)
        record[numbered(item, i + 1)] = names.at(i);
}

void addSender(FormRecord &record, const masters::OwnCompany &sender, const Writer &writer)
{
    const QString digits = postalDigits(sender.zip);
    addDigits(record, senders + postalCode, digits);
    if (!digits.isEmpty())
        record[senders + postalCode] = text::completePostalCode(digits).value_or(QString());
    record[senders + u"住所1"_s] = writer.address(sender.address1);
    record[senders + u"住所2"_s] = writer.address(sender.address2);
    record[senders + u"会社名1"_s] = text::toFullWidth(printing::singleLine(sender.name1).trimmed());
    record[senders + u"会社名2"_s] = text::toFullWidth(printing::singleLine(sender.name2).trimmed());
    record[senders + u"電話"_s] = writer.telephone(sender.tel1);
}

printing::TextItem *itemWith(printing::Sheet &sheet, const FormRecord &values, const QString &item)
{
    const QString words = printing::formText({.item = item}, values);
    const auto found = std::ranges::find(sheet.texts, words, &printing::TextItem::text);
    return words.isEmpty() || found == sheet.texts.end() ? nullptr : &*found;
}

double columnEnd(const printing::TextItem &item)
{
    const double natural =
        printing::twipsFromMillimetres(printing::columnLength(item.text, item.pairedDigits, item.points));
    return item.y + (item.room > 0 ? std::min(item.room, natural) : natural);
}

// The shorter column of an address ends level with the longer one.
void endLevel(printing::Sheet &sheet, const FormRecord &values)
{
    const printing::TextItem *first = itemWith(sheet, values, u"住所1"_s);
    printing::TextItem *second = itemWith(sheet, values, u"住所2"_s);
    if (first && second && first->vertical && second->vertical)
        second->y += std::max(0.0, columnEnd(*first) - columnEnd(*second));
}

// However long its name is, the firm is written larger than its section.
void keepSectionSmaller(printing::Sheet &sheet, const FormRecord &values)
{
    constexpr double most = 0.85;
    const printing::TextItem *firm = itemWith(sheet, values, firmItem);
    printing::TextItem *section = itemWith(sheet, values, firmSectionItem);
    if (firm && section)
        section->points = std::min(section->points, most * firm->points);
}

/// Fills the sheet of one address after the other.
struct Filler
{
    printing::Form form;
    std::vector<Addressee> addressees;
    AddressSetup setup;

    [[nodiscard]] printing::Sheet sheet(std::size_t index) const
    {
        printing::FormValues values =
            addressValues(addressees[index], setup.sender, setup.style, setup.writing);
        values.shifts = setup.shifts;
        printing::Sheet sheet = printing::formSheets(form, values).front();
        endLevel(sheet, values.items);
        keepSectionSmaller(sheet, values.items);
        return sheet;
    }
};

// Labels are moved as a whole sheet, however small they are drawn.
void move(printing::Sheet &sheet, const QHash<QString, double> &shifts)
{
    const double right = printing::twipsFromMillimetres(shifts.value(u"letterOffsetX"_s));
    const double down = printing::twipsFromMillimetres(shifts.value(u"letterOffsetY"_s));
    for (printing::TextItem &item : sheet.texts) {
        item.x += right;
        item.y += down;
    }
}

base::Result<printing::Sheets> labelSheetsOf(Filler filler)
{
    const QHash<QString, double> shifts = std::exchange(filler.setup.shifts, {});
    auto pages = labelPages(filler.setup.labels, filler.addressees.size(), filler.setup.firstPlace,
                            [&filler](std::size_t label) { return filler.sheet(label); });
    if (!pages)
        return pages.error();
    for (printing::Sheet &page : *pages)
        move(page, shifts);
    return printing::Sheets(std::move(*pages));
}

} // namespace

const printing::FormItems &addressItems()
{
    static const printing::FormItems items = [] {
        printing::FormItems all;
        QStringList names{u"郵便番号の横線"_s, u"郵便番号の枠"_s, u"住所1"_s,          u"住所2"_s,
                          u"会社名"_s,         u"部署"_s,         u"氏名"_s,           u"差出人.郵便番号"_s,
                          u"差出人.住所1"_s,   u"差出人.住所2"_s, u"差出人.会社名1"_s, u"差出人.会社名2"_s,
                          u"差出人.電話"_s};
        for (int digit = 1; digit <= postalDigitCount; ++digit)
            names << numbered(postalCode, digit) << numbered(senders + postalCode, digit);
        for (const QString &name : names + itemsOfOtherCases())
            all.items[name] = FormItemKind::Text;
        all.shifts = QStringList{u"letterOffsetX"_s, u"letterOffsetY"_s};
        return all;
    }();
    return items;
}

QStringList itemsOfOtherCases()
{
    return {u"二名1"_s, u"二名2"_s, u"三名1"_s, u"三名2"_s, u"三名3"_s, firmItem, firmSectionItem};
}

printing::FormValues addressValues(const Addressee &addressee,
                                   const std::optional<masters::OwnCompany> &sender,
                                   const AddressStyle &style, Writing writing)
{
    const Writer writer(style, writing);
    const AddressWords words = addressWords(addressee, style.honours);
    const QString digits = postalDigits(addressee.zip);
    printing::FormValues values;
    addDigits(values.items, postalCode, digits);
    values.items[u"郵便番号の横線"_s] = digits.isEmpty() ? QString() : u"－"_s;
    values.items[u"郵便番号の枠"_s] = style.boxes ? u"1"_s : QString();
    values.items[u"住所1"_s] = writer.address(addressee.address1);
    values.items[u"住所2"_s] = writer.address(addressee.address2);
    const bool isToSection = words.names.isEmpty();
    values.items[isToSection ? firmItem : u"会社名"_s] = words.company;
    values.items[isToSection ? firmSectionItem : u"部署"_s] = words.section;
    addNames(values.items, words.names);
    if (style.sender && sender)
        addSender(values.items, *sender, writer);
    return values;
}

base::Result<AddressSheets> addressSheets(const QString &applicationFolder, std::vector<Addressee> addressees,
                                          const AddressSetup &setup)
{
    printing::FormFile file =
        printing::loadForm(applicationFolder, setup.paper.layout(setup.writing), addressItems());
    const std::size_t count = addressees.size();
    Filler filler{std::move(file.form), std::move(addressees), setup};
    if (!setup.paper.isLabels) {
        auto kept = std::make_shared<const Filler>(std::move(filler));
        return AddressSheets{
            printing::Sheets(count, [kept](std::size_t index) { return kept->sheet(index); }),
            file.complaint};
    }
    auto sheets = labelSheetsOf(std::move(filler));
    if (!sheets)
        return sheets.error();
    return AddressSheets{std::move(*sheets), file.complaint};
}

} // namespace shipping
