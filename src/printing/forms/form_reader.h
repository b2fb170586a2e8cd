#pragma once

#include "base/result.h"
#include "printing/forms/form.h"
#include "printing/forms/form_values.h"

#include <QByteArray>

namespace printing
{

/// The form that a layout file of \a content describes, for a document that has \a items to show. Fails with
/// a line "\a fileName:line: ..." for each fault found.
base::Result<Form> readForm(const QByteArray &content, const QString &fileName, const FormItems &items);

} // namespace printing
