#pragma once
#include "pch_logic.h"

#include <QtPrintSupport/QtPrintSupport>
#include <QtWidgets/QtWidgets>
