#pragma once

#include "registers/postal/postal_areas.h"
#include "registers/postal/postal_lookup.h"

namespace registers
{

/// The search of "ZIPCODE.txt" through the groups of its index, one area group after the other as long as
/// nothing is found.
class PostalSearch
{
public:
    /// As names stand in text and tables, or in the form that all spellings of a place share.
    enum class Names { AsTheyStand, Folded };

    PostalSearch(const PostalData &data, const base::Progress &progress, Names names = Names::AsTheyStand);

    /// First the group of the first name, then that of the second name in the whole \a text and, shortened by
    /// one character after the other, in its beginnings. Fails when the table cannot be read.
    base::Status run(const QString &text);

    PostalFinds finds;
    /// Up to where in the text the area of the code reaches, in characters, blanks aside.
    qsizetype reach = 0;
    /// What stands before that area in the text.
    QString before;
    /// Whether the text names no more of that area than its city.
    bool isCityAlone = false;
    /// Whether the text names another area of another code just as well; only where names are folded.
    bool isDoubtful = false;

private:
    [[nodiscard]] bool isOver() const { return finds.stopped || !finds.lines.isEmpty(); }
    [[nodiscard]] QString inOurNames(const QString &name) const;
    [[nodiscard]] std::size_t groupNamedIn(const QString &text) const;
    [[nodiscard]] std::vector<std::size_t> groupsByLength(const QString &text) const;
    base::Status search(std::size_t k, QStringView text);
    void compare(std::size_t k, const PostalRecord &record, QStringView text);
    void take(std::size_t k, const QString &code, const QString &area, const QString &compared,
              QStringView text);

    const std::vector<PostalGroup> &m_groups; // with their names as they are compared
    const base::Progress &m_progress;
    Names m_names;
    PostalAreas m_areas;
    QString m_area; // the one of the code, as the table has it
    bool m_open = false;
};

/// The path of the data file \a name.
QString postalFile(const PostalData &data, const QString &name);

/// The groups of \a data; none where none were loaded.
const PostalIndex &postalGroups(const PostalData &data);

/// \a text with the ward that the list has for the one that is written, or without any.
QString inWardsOfTheList(const PostalData &data, const QString &text);

/// \a text without blanks of either width.
QString withoutBlanks(QStringView text);

} // namespace registers
