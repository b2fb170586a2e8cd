#pragma once

#include "printing/forms/form.h"
#include "printing/forms/form_values.h"

namespace printing
{

/// The sheets of \a form filled with \a values, at least one. A full sheet ends with the form's carried-over
/// line, and the next one goes on.
std::vector<Sheet> formSheets(const Form &form, const FormValues &values);

} // namespace printing
