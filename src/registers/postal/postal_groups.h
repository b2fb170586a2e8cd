#pragma once

#include "registers/postal/postal_run.h"

#include <QSet>

#include <functional>

namespace registers
{

/// The groups of the table of areas, in the order in which their names are looked for.
///
/// A city has a group for each way of writing it: with and without its prefecture, its county or its ward,
/// and in its spellings; cities that share such a name share the group. A longer name comes before one that
/// it holds. The name of a village without its county, or of a ward without its city, is a part of many
/// addresses: it is looked for only when no other name is found.
class PostalGroups
{
public:
    /// \a cities must outlive the groups.
    explicit PostalGroups(const std::vector<PostalCity> &cities);

    [[nodiscard]] std::size_t size() const { return m_plans.size(); }
    [[nodiscard]] QString name(std::size_t k) const;
    [[nodiscard]] QString shortName(std::size_t k) const;
    [[nodiscard]] std::vector<PostalRunRecord> run(std::size_t k) const;

private:
    /// What of a city a group's name says, in the order in which the names are tried.
    enum class Form {
        Full,              // 北海道虻田郡ニセコ町
        WithoutMiddle,     // 北海道ニセコ町; 神奈川県横浜市 for all its wards
        WithoutPrefecture, // 虻田郡ニセコ町
        DesignatedCity,    // 横浜市 for all its wards
        NameOnly,          // ニセコ町, 中央区
    };

    enum class Spelling {
        Official,
        Other, // only where no city is really called so
    };

    struct Plan
    {
        Form form;
        QString lead;
        std::vector<const PostalCity *> cities;
        Spelling spelling;
        int rank = 0; // among names of the same form
    };

    void addForms(const PostalCity &city, Spelling spelling);
    void addPlan(Form form, const QString &lead, const PostalCity &city, Spelling spelling);
    void findNamesInTowns(const std::vector<PostalCity> &cities);
    void rankPlans();
    [[nodiscard]] static bool standsAlone(const Plan &plan);
    static QString remark(const Plan &plan, const PostalCity &city);

    std::vector<Plan> m_plans;
    std::size_t m_officialPlans = 0;                              // come first while they are being added
    std::map<std::pair<Form, QString>, std::size_t> m_planOfLead; // while they are being added
    QHash<QString, int> m_citiesOfName;                           // prefectures left out
    QSet<QString> m_townNames;
    QSet<QString> m_namesInTowns; // of other cities: 市原市 in 上尾市原市
};

} // namespace registers
