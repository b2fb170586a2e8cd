#include "document_cases.h"

using namespace Qt::StringLiterals;
using namespace slips;

namespace document_cases
{

namespace
{

const QString longText = u"特選宇治抹茶入り玄米茶（業務用）ティーバッグ徳用袋"_s;

masters::OwnCompany sender()
{
    masters::OwnCompany company;
    company.name1 = u"有限会社山田茶舗"_s;
    company.name2 = u"通信販売部"_s;
    company.zip = u"420-0001"_s;
    company.address1 = u"静岡市葵区井宮町１２３"_s;
    company.address2 = u"ﾔﾏﾀﾞﾋﾞﾙ 2F"_s;
    company.tel1 = u"054-123-4567"_s;
    company.fax = u"054-123-4568"_s;
    return company;
}

book::Slip slipOf(int lines)
{
    book::Slip slip;
    slip.number = u"O24-125"_s;
    slip.date = QDate(2026, 4, 1);
    slip.employeeName = u"鈴木"_s;
    slip.name1 = u"株式会社東京百貨店"_s;
    slip.zip = u"150-0001"_s;
    slip.address1 = u"東京都渋谷区神宮前１－２－３"_s;
    slip.tel = u"03-1234-5678"_s;
    slip.fax = u"03-1234-5679"_s;
    for (int i = 0; i < lines; ++i)
        slip.lines.push_back({u"煎茶 %1"_s.arg(i + 1), u"100g"_s, 1.5 * i, u"袋"_s, 1080.25 * i, 2160.0 * i});
    return slip;
}

void addOddLines(book::Slip &slip)
{
    slip.lines.push_back(
        {longText.repeated(3), longText, -1234567.25, u"ダース"_s, 1234567.5, -123456789012.0});
    slip.lines.push_back({u"値引\n(tab)\tつき"_s, {}, std::nullopt, {}, std::nullopt, -500});
    slip.lines.push_back({u"𠮷野葛"_s, longText.left(12), 12, u"ｹｰｽ"_s, 0.29, 3});
    slip.lines.push_back({u"消費税"_s, {}, std::nullopt, {}, std::nullopt, 99});
}

/// One line of a slip that fills more than a whole table.
book::SlipLine endlessLine() { return {longText.repeated(60), {}, 1, u"個"_s, 10, 10}; }

void fillNames(book::Slip &slip, masters::OwnCompany &company, int length)
{
    const QString text = longText.repeated(8).left(length);
    slip.name1 = slip.name2 = slip.address1 = slip.address2 = slip.employeeName = text;
    slip.number = text.left(40);
    slip.tel = slip.fax = text.left(30);
    company.name1 = company.name2 = company.address1 = company.address2 = text;
    company.tel1 = company.fax = text.left(30);
}

DeliveryNoteData note(int lines)
{
    DeliveryNoteData data;
    data.sender = sender();
    data.slip = slipOf(lines);
    data.total = 43200.0 * lines;
    data.memo = u"新茶は五月\n午前中にお届けします"_s;
    return data;
}

EstimateData estimate(int lines)
{
    EstimateData data;
    data.sender = sender();
    data.slip = slipOf(lines);
    data.goods = 10'000.0 * lines;
    data.tax = 1'000.0 * lines;
    data.taxed = EstimateTax::Added;
    data.terms = {QDate(2026, 5, 1), QDate(2026, 4, 15), u"月末締め翌月末払い"_s, u"貴社倉庫"_s,
                  u"送料込み\n他言無用"_s};
    return data;
}

} // namespace

DeliveryNotes deliveryNotes()
{
    DeliveryNotes notes;
    for (const int lines : {0, 1, 19, 20, 21, 40, 41, 65})
        notes[u"lines %1"_s.arg(lines)] = note(lines);
    notes[u"nothing filled in"_s] = {};
    for (const int length : {22, 23, 60, 150})
        fillNames(notes[u"names of %1"_s.arg(length)].slip, notes[u"names of %1"_s.arg(length)].sender,
                  length);
    auto &odd = notes[u"odd lines"_s] = note(17);
    addOddLines(odd.slip);
    odd.total = -123456789012.0;
    odd.memo = longText.repeated(20);
    auto &endless = notes[u"a line longer than the table"_s] = note(2);
    endless.slip.lines.push_back(endlessLine());
    auto &inclusive = notes[u"inclusive"_s] = note(3);
    inclusive.includedTax = 9817.9;
    inclusive.includedRates = u"0%"_s;
    auto &large = notes[u"inclusive, large amounts"_s] = note(1);
    large.total = 999'999'999'999'999.0;
    large.includedTax = 99'999'999'999'999.0;
    large.includedRates = u"0%"_s;
    notes[u"sender omitted"_s] = note(1);
    notes[u"sender omitted"_s].companyName = CompanyName::Omitted;
    notes[u"sender extended"_s] = note(21);
    notes[u"sender extended"_s].companyName = CompanyName::Extended;
    auto &moved = notes[u"moved"_s] = note(21);
    moved.offsets = {2, -3, 4};
    auto &department = notes[u"department"_s] = note(1);
    department.slip.name2 = u"食品課　第二係"_s;
    department.slip.fax.clear();
    department.slip.employeeName.clear();
    department.sender.name2.clear();
    department.sender.tel1.clear();
    auto &rates = notes[u"two rates, honoured"_s] = note(2);
    rates.slip.taxRate = 10;
    rates.slip.honorific = u"御中"_s;
    rates.slip.zip = u"１５０ー０００１"_s;
    rates.sender.zip = u"4200001"_s;
    rates.slip.lines.push_back({u"消費税"_s, {}, {}, {}, {}, 500});
    rates.slip.lines.push_back({u"消費税"_s, {}, {}, {}, {}, 80, book::GoodsTax::Food, 8});
    auto &billed = notes[u"taxed on the bill, without honorific"_s] = note(1);
    billed.slip.taxClass = book::TaxClass::OnBill;
    billed.slip.honorific = u""_s;
    notes[u"customer gone"_s].slip.name1 = u"(削除済み) ID 5"_s;
    return notes;
}

Estimates estimates()
{
    Estimates all;
    for (const int lines : {0, 1, 17, 18, 44, 45})
        all[u"lines %1"_s.arg(lines)] = estimate(lines);
    all[u"nothing filled in"_s] = {};
    for (const int length : {22, 60, 150}) {
        auto &data = all[u"names of %1"_s.arg(length)] = estimate(18);
        fillNames(data.slip, data.sender, length);
        data.terms.place = data.terms.payment = longText.repeated(3).left(length);
        data.terms.remarks = (longText + u'\n').repeated(length / 20);
    }
    auto &odd = all[u"odd lines"_s] = estimate(15);
    addOddLines(odd.slip);
    odd.goods = -999'999'999'999.0;
    all[u"a line longer than the table"_s] = estimate(1);
    all[u"a line longer than the table"_s].slip.lines.push_back(endlessLine());
    for (const auto &[name, taxed] :
         {std::pair(u"included"_s, EstimateTax::Included), std::pair(u"separate"_s, EstimateTax::Separate),
          std::pair(u"untold"_s, EstimateTax::Untold)})
        (all[name] = estimate(2)).taxed = taxed;
    auto &large = all[u"included, large amounts"_s] = estimate(1);
    large.goods = large.tax = 999'999'999'999'999.0;
    large.taxed = EstimateTax::Included;
    (all[u"sender omitted"_s] = estimate(18)).companyName = CompanyName::Omitted;
    (all[u"sender extended"_s] = estimate(18)).companyName = CompanyName::Extended;
    auto &person = all[u"person, few terms"_s] = estimate(1);
    person.slip.name1 = u"山田　太郎"_s;
    person.terms = {};
    person.terms.payment = u"現金"_s;
    auto &department = all[u"department"_s] = estimate(18);
    department.slip.name2 = u"仕入部"_s;
    return all;
}

} // namespace document_cases
