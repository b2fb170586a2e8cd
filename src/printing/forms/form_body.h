#pragma once

#include "printing/forms/form.h"
#include "printing/forms/form_values.h"
#include "printing/sheet_writer.h"
#include "printing/text_fit.h"

namespace printing
{

/// A row of the bodies as it is set: each cell's text, broken and sized; as many ruled rows as it needs.
struct FormLine
{
    std::vector<std::vector<FittedText>> cells; // of each body
    int rows = 1;
    double summed = 0; // what it adds to the sum carried over
};

using FormPage = std::vector<FormLine>;

/// The bodies of one form, which show the same rows.
using FormBodies = std::vector<const FormBody *>;

/// How the rows fall on the sheets, at least one. \a carryTakesRow: a sheet that another one follows has a
/// row less.
std::vector<FormPage> formPages(const FormBodies &bodies, const FormValues &values, bool carryTakesRow);

/// Draws the rows of \a page, the headings and the rules of a body on the sheet counted from 0. \a cells: of
/// which body the cells are.
void writeFormBody(SheetWriter &writer, const FormBody &body, std::size_t cells, const FormPage &page,
                   std::size_t sheet);

/// The top of the row below the last one of \a page.
double formRowAfter(const FormBody &body, const FormPage &page, std::size_t sheet);

} // namespace printing
