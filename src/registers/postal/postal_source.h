#pragma once

#include <QString>
#include <QStringList>

#include <map>
#include <vector>

// What a national list of postal codes says, whoever published it.
namespace registers
{

/// A town with its code; an empty town: whatever of the city the list does not name.
struct PostalArea
{
    QString code; // seven digits
    QString prefecture;
    QString city; // with its county, or its ward: 虻田郡ニセコ町, 札幌市中央区
    QString town;
};

/// A business office with a code of its own.
struct PostalOffice
{
    QString code; // seven digits
    QString name;
    QString address;
};

/// The lines of a list that were not taken.
class PostalRefusals
{
public:
    /// \a line: counted from 1.
    void add(const QString &reason, int line);
    void add(const PostalRefusals &others);

    [[nodiscard]] int count() const;
    /// One line a reason: how many lines, and the first of them.
    [[nodiscard]] QStringList summary() const;

private:
    struct Lines
    {
        int count;
        int first;
    };
    std::map<QString, Lines> m_byReason;
};

enum class PostalPublisher {
    Dictionary,    // delivered with the program
    PostalService, // fetched by the user
};

/// The contents of one or several lists.
struct PostalSource
{
    std::vector<PostalArea> areas;
    std::vector<PostalOffice> offices;
    PostalRefusals refused;
    PostalPublisher areasFrom = PostalPublisher::Dictionary;
    PostalPublisher officesFrom = PostalPublisher::Dictionary;

    /// Appends what another list of the same publisher says.
    void add(PostalSource other);
    /// Takes the areas of \a other where this has none, and likewise its offices.
    void fillFrom(PostalSource other);
    /// How many of the 47 prefectures have an area.
    [[nodiscard]] int prefectureCount() const;
};

/// The prefecture that \a address begins with, or an empty text.
QStringView prefectureOf(QStringView address);

/// Whether \a code is seven half-width digits.
bool isPostalCode(QStringView code);

/// \a code with a hyphen after its third digit.
QString withHyphen(const QString &code);

} // namespace registers
