#pragma once

#include "printing/renderer.h"

/// A document of \a pages pages, each with its number on it.
inline printing::Document pagesOfText(int pages)
{
    printing::Document document;
    document.title = QStringLiteral("納品書 O1");
    for (int page = 1; page <= pages; ++page) {
        printing::Sheet sheet;
        sheet.texts.push_back({1000, 1000, QStringLiteral("第%1葉").arg(page), 12});
        document.sheets.push_back(sheet);
    }
    return document;
}
