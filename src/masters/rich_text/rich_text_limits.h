#pragma once

#include <QtGlobal>

// What a formatted company-name block may hold. The file comes from anywhere, so the reader stops at these
// bounds; the writer keeps to the same ones, so that whatever was saved can be opened again.
namespace masters::limits
{

inline constexpr qint64 fileBytes = 32 * 1024 * 1024;
inline constexpr qint64 attachmentBytes = 8 * 1024 * 1024;
inline constexpr qint64 pixels = 50'000'000; // of all pictures of one document together
inline constexpr int damagedPictures = 100;  // after so many no further one is tried
inline constexpr int characters = 20'000;    // Qt lays out a paragraph of many looks in quadratic time
inline constexpr int groupDepth = 100;
inline constexpr int tableEntries = 4096;         // fonts, and colours
inline constexpr double pictureTwips = 22 * 1440; // the longest side of a page in the trade's programs
inline constexpr double smallestPoints = 1;
inline constexpr double largestPoints = 400;

} // namespace masters::limits
