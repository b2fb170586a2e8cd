#include "registers/postal/postal_groups.h"

#include "registers/postal/postal_spellings.h"

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

// Names of up to this many characters are looked for in the names of towns.
constexpr qsizetype longestName = 8;

} // namespace

PostalGroups::PostalGroups(const std::vector<PostalCity> &cities)
{
    for (const PostalCity &city : cities) {
        addForms(city, Spelling::Official);
        ++m_citiesOfName[city.withoutPrefecture()];
    }
    for (const PostalCity &city : cities)
        addForms(city, Spelling::Other);
    findNamesInTowns(cities);
    rankPlans();
    std::stable_sort(m_plans.begin(), m_plans.end(), [](const Plan &a, const Plan &b) {
        const Form formOfA = standsAlone(a) ? Form::WithoutPrefecture : a.form;
        const Form formOfB = standsAlone(b) ? Form::WithoutPrefecture : b.form;
        return std::tuple(formOfA, a.rank, -a.lead.size()) < std::tuple(formOfB, b.rank, -b.lead.size());
    });
}

void PostalGroups::addForms(const PostalCity &city, Spelling spelling)
{
    addPlan(Form::Full, city.full(), city, spelling);
    if (city.outer.isEmpty()) {
        // The wards and island towns of Tokyo belong to no city or county, and others have the same names.
        const Form form = city.name.endsWith(u'市') ? Form::WithoutPrefecture : Form::NameOnly;
        addPlan(form, city.name, city, spelling);
        return;
    }
    addPlan(Form::WithoutPrefecture, city.withoutPrefecture(), city, spelling);
    addPlan(Form::NameOnly, city.name, city, spelling);
    addPlan(Form::WithoutMiddle, city.prefecture + (city.isWard() ? city.outer : city.name), city, spelling);
    if (city.isWard())
        addPlan(Form::DesignatedCity, city.outer, city, spelling);
}

void PostalGroups::addPlan(Form form, const QString &lead, const PostalCity &city, Spelling spelling)
{
    const QStringList spellings = citySpellings(lead);
    const QStringList names = spelling == Spelling::Official ? spellings.first(1) : spellings.sliced(1);
    for (const QString &name : names) {
        const auto [found, isNew] = m_planOfLead.try_emplace({form, name}, m_plans.size());
        if (isNew)
            m_plans.push_back({form, name, {}, spelling});
        Plan &plan = m_plans[found->second];
        if (plan.spelling == spelling)
            plan.cities.push_back(&city);
    }
}

void PostalGroups::findNamesInTowns(const std::vector<PostalCity> &cities)
{
    static const QString endings = u"市区町村"_s;
    QSet<QStringView> names;
    for (const Plan &plan : m_plans)
        names.insert(plan.lead);
    for (const PostalCity &city : cities) {
        for (const PostalTown &town : city.towns) {
            m_townNames.insert(town.name);
            const QString address = city.withoutPrefecture() + town.name;
            for (qsizetype end = city.withoutPrefecture().size() + 1; end <= address.size(); ++end) {
                if (!endings.contains(address[end - 1]))
                    continue;
                for (qsizetype length = 2; length <= std::min(longestName, end); ++length) {
                    const QStringView name = QStringView(address).sliced(end - length, length);
                    if (names.contains(name))
                        m_namesInTowns.insert(name.toString());
                }
            }
        }
    }
}

// A longer name comes before one that it holds; a name that occurs in the towns of other cities comes after
// theirs (上尾市原市 is no 市原市). Among the names that stand alone, villages come before wards
// (音更町雄飛が丘南区).
void PostalGroups::rankPlans()
{
    for (Plan &plan : m_plans) {
        const bool isWard = plan.form == Form::NameOnly && plan.lead.endsWith(u'区');
        plan.rank = isWard ? 1 : m_namesInTowns.contains(plan.lead) ? 2 : 0;
    }
    for (Plan &plan : m_plans)
        for (const Plan &held : m_plans)
            if (held.form == plan.form && held.rank < plan.rank && plan.lead.contains(held.lead))
                plan.rank = held.rank;
}

// A ward's name that is long enough to be no part of another and that no other city's ward has.
bool PostalGroups::standsAlone(const Plan &plan)
{
    return plan.form == Form::NameOnly && plan.lead.endsWith(u'区') && plan.lead.size() > 2 &&
           plan.cities.size() == 1;
}

QString PostalGroups::name(std::size_t k) const
{
    const Plan &plan = m_plans[k];
    // An earlier group has this name already: this one is found by its second name only.
    return plan.form == Form::NameOnly && !standsAlone(plan) ? plan.cities.front()->full() : plan.lead;
}

QString PostalGroups::shortName(std::size_t k) const
{
    const Plan &plan = m_plans[k];
    const PostalCity &city = *plan.cities.front();
    // A name that several cities share is left to the group that has them all.
    const bool isShared = m_citiesOfName[city.withoutPrefecture()] > 1;
    if (plan.form != Form::Full || (city.outer.isEmpty() && !city.name.endsWith(u'市')) || isShared)
        return plan.lead;
    return plan.lead.sliced(city.prefecture.size());
}

QString PostalGroups::remark(const Plan &plan, const PostalCity &city)
{
    if (plan.spelling == Spelling::Other)
        return city.full();
    switch (plan.form) {
    case Form::Full:
        break;
    case Form::WithoutMiddle:
        return city.isWard() ? city.name : city.outer;
    case Form::WithoutPrefecture:
        return city.prefecture;
    case Form::DesignatedCity:
        return city.prefecture + city.name;
    case Form::NameOnly:
        return city.prefecture + city.outer;
    }
    return {};
}

std::vector<PostalRunRecord> PostalGroups::run(std::size_t k) const
{
    const Plan &plan = m_plans[k];
    // 富士見町 is a village, and a town in many cities.
    const bool isAmbiguous = plan.form == Form::NameOnly && m_townNames.contains(plan.lead);
    return postalRun({plan.lead, plan.cities, [&plan](const PostalCity &city) { return remark(plan, city); },
                      isAmbiguous});
}

} // namespace registers
