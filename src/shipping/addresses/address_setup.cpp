#include "shipping/addresses/address_setup.h"

#include "printing/print_offsets.h"
#include "workspace/settings.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;
namespace keys = workspace::keys;

namespace shipping
{

namespace
{

const QString writingName = u"書字"_s;
const QString horizontalWord = u"横"_s;
const QString verticalWord = u"縦"_s;
const QString contactName = u"担当者"_s;

AddressPaper onPaper(const QString &name, const QString &layout, const QSizeF &size)
{
    return {.name = name,
            .vertical = u"address-%1-v.toml"_s.arg(layout),
            .horizontal = u"address-%1-h.toml"_s.arg(layout),
            .size = size};
}

AddressPaper card(const QString &name, const QString &layout)
{
    AddressPaper paper = onPaper(name, layout, {100, 148});
    paper.hasBoxes = true;
    return paper;
}

// Of a size that is carried at the usual charge.
AddressPaper envelope(const QString &name, const QString &layout, const QSizeF &size)
{
    AddressPaper paper = onPaper(u"封筒　"_s + name, layout, size);
    paper.hasBoxes = true;
    paper.liesAcross = true;
    return paper;
}

AddressPaper labels()
{
    AddressPaper paper;
    paper.name = u"宛名ラベル"_s;
    paper.horizontal = u"address-label.toml"_s;
    paper.size = {210, 297};
    paper.isLabels = true;
    return paper;
}

// The value of \a name among "name=value" for each option; empty where it is not there.
QString optionIn(const QString &stored, const QString &name)
{
    for (const QString &option : stored.split(u';')) {
        if (option.section(u'=', 0, 0) == name)
            return option.section(u'=', 1);
    }
    return {};
}

bool storedFlag(const workspace::Settings &settings, const workspace::SettingKey &key, bool usual)
{
    return settings.text(key).isEmpty() ? usual : settings.checked(key);
}

} // namespace

const std::vector<AddressPaper> &addressPapers()
{
    static const std::vector<AddressPaper> papers{
        card(u"はがき"_s, u"postcard"_s),
        card(u"年賀はがき"_s, u"newyear"_s),
        envelope(u"長形3号"_s, u"naga3"_s, {120, 235}),
        envelope(u"長形4号"_s, u"naga4"_s, {90, 205}),
        onPaper(u"封筒　角形2号"_s, u"kaku2"_s, {240, 332}),
        onPaper(u"封筒　角形3号"_s, u"kaku3"_s, {216, 277}),
        envelope(u"洋形2号"_s, u"you2"_s, {114, 162}),
        envelope(u"洋形4号"_s, u"you4"_s, {105, 235}),
        envelope(u"洋形長3号"_s, u"younaga3"_s, {120, 235}),
        labels(),
    };
    return papers;
}

const AddressPaper &addressPaper(const QString &name)
{
    const auto &papers = addressPapers();
    const auto found = std::ranges::find(papers, name, &AddressPaper::name);
    return found == papers.end() ? papers.front() : *found;
}

AddressStyle addressStyle(const workspace::Settings &settings)
{
    const AddressStyle usual;
    return {storedFlag(settings, keys::hagakiAop[0], usual.sender),
            storedFlag(settings, keys::hagakiAop[1], usual.kanji),
            storedFlag(settings, keys::hagakiAop[2], usual.no),
            storedFlag(settings, keys::hagakiAop[3], usual.boxes),
            storedFlag(settings, keys::hagakiAop[4], usual.honours)};
}

void storeAddressStyle(workspace::Settings &settings, const AddressStyle &style)
{
    settings.write(keys::hagakiAop[0], style.sender);
    settings.write(keys::hagakiAop[1], style.kanji);
    settings.write(keys::hagakiAop[2], style.no);
    settings.write(keys::hagakiAop[3], style.boxes);
    settings.write(keys::hagakiAop[4], style.honours);
}

AddressChoice addressChoice(const workspace::Settings &settings)
{
    const QString stored = settings.text(keys::addressOptions);
    const AddressPaper &paper = addressPaper(settings.text(keys::addressPaper));
    const bool lies = optionIn(stored, writingName) == horizontalWord || !paper.mayBe(Writing::Vertical);
    return {paper.name, lies ? Writing::Horizontal : Writing::Vertical,
            optionIn(stored, contactName) == u"1"_s};
}

void storeAddressChoice(workspace::Settings &settings, const AddressChoice &choice)
{
    settings.write(keys::addressPaper, choice.paper);
    settings.write(keys::addressOptions,
                   writingName + u'=' +
                       (choice.writing == Writing::Vertical ? verticalWord : horizontalWord) + u';' +
                       contactName + u'=' + QString::number(choice.withContact ? 1 : 0));
}

QHash<QString, double> letterShifts(const workspace::Settings &settings)
{
    using namespace printing;
    return {{u"letterOffsetX"_s, offsetFrom(settings.text(keys::letterOffsetX), letterRight)},
            {u"letterOffsetY"_s, offsetFrom(settings.text(keys::letterOffsetY), letterDown)}};
}

} // namespace shipping
