#pragma once

#include <QtGlobal>

/// The number in an environment variable, by which the long run of a test is asked for.
inline int numberFrom(const char *variable, int otherwise)
{
    bool isNumber = false;
    const int number = qEnvironmentVariableIntValue(variable, &isNumber);
    return isNumber ? number : otherwise;
}
