#include "registers/postal/postal_run.h"

#include <QHash>

#include <algorithm>
#include <tuple>

namespace registers
{

namespace
{

class RunBuilder
{
public:
    explicit RunBuilder(const PostalRunCities &group)
        : m_group(group)
    {}

    std::vector<PostalRunRecord> build()
    {
        for (const PostalCity *city : m_group.cities)
            for (const PostalTown &town : city->towns)
                learn(*city, town);
        doubtBeginnings();
        for (const PostalCity *city : m_group.cities)
            for (const PostalTown &town : city->towns)
                add(*city, town);
        return sorted();
    }

private:
    struct Meaning
    {
        const PostalCity *city; // null: several, with codes of their own
        QString town;
        QString code;
    };

    struct Ranked
    {
        PostalRunRecord record;
        qsizetype length; // of the town as it is written
        bool isOfficial;
    };

    void learn(const PostalCity &city, const PostalTown &town)
    {
        learn(m_towns, town.name, city, town);
        for (const QStringList &spellings : {town.otherSpellings, town.anywhere})
            for (const QString &spelling : spellings)
                learn(m_spellings, spelling, city, town);
    }

    static void learn(QHash<QString, Meaning> &meanings, const QString &text, const PostalCity &city,
                      const PostalTown &town)
    {
        const auto known = meanings.find(text);
        if (known == meanings.end())
            meanings.insert(text, {&city, town.name, town.code});
        else if ((known->city != &city || known->town != town.name) && known->code != town.code)
            known->city = nullptr;
    }

    // Where 明石町 may be either of two towns, the 明石 of a third must not answer for it.
    void doubtBeginnings()
    {
        QStringList doubtful;
        for (auto town = m_towns.cbegin(); town != m_towns.cend(); ++town)
            if (!town->city)
                doubtful += town.key();
        for (const QString &name : std::as_const(doubtful)) {
            for (qsizetype length = 1; length < name.size(); ++length) {
                const auto shorter = m_towns.find(name.first(length));
                if (shorter != m_towns.end())
                    shorter->city = nullptr;
            }
        }
    }

    void add(const PostalCity &city, const PostalTown &town)
    {
        const bool isOnlyOne = m_towns[town.name].city && !(town.name.isEmpty() && m_group.listsCityOnly);
        if (isOnlyOne)
            add({town.code, m_group.lead + town.name, m_group.remark(city)}, town.name, true);
        else
            add({town.code, city.full() + town.name, {}}, town.name, true);
        const QString official = city.full() + town.name;
        for (const QString &spelling : town.otherSpellings)
            if (isSpellingOfOne(spelling))
                add({town.code, m_group.lead.back() + spelling, official}, spelling, false);
        for (const QString &text : town.anywhere)
            if (isSpellingOfOne(text))
                add({town.code, text, official}, town.name, false);
    }

    void add(const PostalRunRecord &record, const QString &written, bool isOfficial)
    {
        m_places.push_back({record, written.size(), isOfficial});
    }

    [[nodiscard]] bool isSpellingOfOne(const QString &spelling) const
    {
        return !m_towns.contains(spelling) && m_spellings[spelling].city;
    }

    // Of several codes for one town, the lowest is the town's centre more often than not: it comes last.
    std::vector<PostalRunRecord> sorted()
    {
        std::stable_sort(m_places.begin(), m_places.end(), [](const Ranked &a, const Ranked &b) {
            return std::tie(a.length, a.isOfficial, b.record.code) <
                   std::tie(b.length, b.isOfficial, a.record.code);
        });
        std::vector<PostalRunRecord> records;
        records.reserve(m_places.size());
        for (Ranked &place : m_places)
            records.push_back(std::move(place.record));
        return records;
    }

    const PostalRunCities &m_group;
    QHash<QString, Meaning> m_towns;
    QHash<QString, Meaning> m_spellings;
    std::vector<Ranked> m_places;
};

} // namespace

std::vector<PostalRunRecord> postalRun(const PostalRunCities &group) { return RunBuilder(group).build(); }

} // namespace registers
