#pragma once

#include "printing/forms/form_values.h"

namespace printing
{

/// A value for each of \a items, so that every item of a form shows where it stands: texts say their own
/// names, numbers and dates are long ones. \a rows: of the body, whose texts are one letter long. \a without:
/// items left out, which never stand beside the others.
FormValues specimenValues(const FormItems &items, int rows, const QStringList &without = {});

} // namespace printing
