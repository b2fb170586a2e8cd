#include "shipping/slips/label_places.h"

#include "text/numbers.h"
#include "workspace/settings.h"

#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr qint64 mostPlaces = 1000;

// Tags that are cut from A4 paper: text keeps off the edges by their layouts.
const std::vector<LabelSheet> &tagSheets()
{
    static const std::vector<LabelSheet> sheets{{u"オリジナル荷札１"_s, 2, 4, 105, 74.25, 0, 0, 105, 74.25},
                                                {u"オリジナル荷札２"_s, 2, 2, 105, 148.5, 0, 0, 105, 148.5},
                                                {u"オリジナル荷札３"_s, 1, 2, 210, 148.5, 0, 0, 210, 148.5}};
    return sheets;
}

// "7;オリジナル荷札１=3": the labels' place, then those of the tags.
using Places = QHash<QString, int>;

Places placesIn(const workspace::Settings &settings)
{
    Places places;
    for (const QString &part : settings.text(workspace::keys::labelPlace).split(u';')) {
        const QString form = part.contains(u'=') ? part.section(u'=', 0, 0) : labelForm();
        const qint64 place = text::parseInteger(part.section(u'=', -1)).value_or(1);
        places[form] = static_cast<int>(std::clamp(place, qint64(1), mostPlaces));
    }
    return places;
}

void store(workspace::Settings &settings, const Places &places)
{
    QStringList parts{QString::number(places.value(labelForm(), 1))};
    for (const LabelSheet &tag : tagSheets()) {
        if (const auto place = places.constFind(tag.name); place != places.constEnd())
            parts << tag.name + u'=' + QString::number(*place);
    }
    settings.write(workspace::keys::labelPlace, parts.join(u';'));
}

} // namespace

QString labelForm() { return u"宛名ラベル"_s; }

std::optional<LabelSheet> sheetOfForm(const QString &form, const workspace::Settings &settings)
{
    if (form == labelForm())
        return labelSheet(settings.text(workspace::keys::labelSheet));
    for (const LabelSheet &tag : tagSheets()) {
        if (tag.name == form)
            return tag;
    }
    return std::nullopt;
}

void chooseLabelSheet(workspace::Settings &settings, const QString &name)
{
    if (labelSheet(settings.text(workspace::keys::labelSheet)).name == labelSheet(name).name)
        return;
    settings.write(workspace::keys::labelSheet, labelSheet(name).name);
    setNextPlace(settings, labelForm(), 1);
}

int nextPlace(const workspace::Settings &settings, const QString &form)
{
    const auto sheet = sheetOfForm(form, settings);
    const int place = placesIn(settings).value(form, 1);
    return sheet && place >= 1 && place <= sheet->places() ? place : 1;
}

void setNextPlace(workspace::Settings &settings, const QString &form, int place)
{
    const auto sheet = sheetOfForm(form, settings);
    if (!sheet)
        return;
    Places places = placesIn(settings);
    places[form] = place < 1 || place > sheet->places() ? 1 : place;
    store(settings, places);
}

} // namespace shipping
