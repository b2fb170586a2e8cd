#pragma once

#include <QDate>

namespace book
{

/// Days of a list, both included.
struct Period
{
    QDate from;
    QDate to;
};

} // namespace book
