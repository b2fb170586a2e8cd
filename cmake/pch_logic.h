#pragma once
#include <QtCore/QtCore>
#include <QtSql/QtSql>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>
