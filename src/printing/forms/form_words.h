#pragma once

#include "printing/forms/form.h"

#include <array>
#include <span>
#include <utility>

// The words and bounds of layout files. Not for other folders.
namespace printing
{

inline constexpr double thickestLine = 5; // millimetres
inline constexpr double mostLeading = 5;
inline constexpr double slack = 0.05; // millimetres, of sums of measures with decimals

template <class Value, std::size_t Count>
using Words = std::array<std::pair<const char16_t *, Value>, Count>;

inline constexpr Words<OnSheets, 5> sheetWords{{{u"every", OnSheets::Every},
                                                {u"first", OnSheets::First},
                                                {u"further", OnSheets::Further},
                                                {u"last", OnSheets::Last},
                                                {u"before_last", OnSheets::BeforeLast}}};
inline constexpr Words<Align, 3> alignWords{
    {{u"left", Align::Left}, {u"center", Align::Centre}, {u"right", Align::Right}}};
inline constexpr Words<FormFit, 3> fitWords{
    {{u"squeeze", FormFit::Squeeze}, {u"shrink", FormFit::Shrink}, {u"wrap", FormFit::Wrap}}};

inline constexpr Words<Origin, 3> originWords{{{u"paper", Origin::PaperEdge},
                                               {u"printable", Origin::PrintableArea},
                                               {u"lead_lines", Origin::LeadLines}}};

/// \a words as FormFields::choice takes them.
template <class Value, std::size_t Count>
std::span<const std::pair<const char16_t *, Value>> wordList(const Words<Value, Count> &words)
{
    return words;
}

} // namespace printing
