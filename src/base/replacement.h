#pragma once

#include "base/result.h"

namespace base
{

/// A file that is written beside the one it is to replace, and takes its place once it is complete. Until
/// then it has a name that no other program uses, and is for its owner alone. What a link leads to is
/// replaced, the link stays.
class Replacement
{
public:
    /// \a label: with what the name begins until the file is in its place.
    explicit Replacement(const QString &target, const QString &label = QStringLiteral("Kanbalore"));
    /// Removes the file unless it took its place.
    ~Replacement();
    Replacement(const Replacement &) = delete;
    Replacement &operator=(const Replacement &) = delete;

    /// Makes the empty file.
    Status begin();

    /// Where to write.
    [[nodiscard]] const QString &name() const { return m_name; }
    /// What is replaced, at the end of all links.
    [[nodiscard]] const QString &target() const { return m_target; }

    /// Flushes the file and puts it in its place: with owner, group and mode of what stands there, or the
    /// rights that a new file has in its folder.
    Status finish();

private:
    QString m_target;
    QString m_label;
    QString m_name;
    bool m_isThere = false;
};

} // namespace base
