#pragma once

#include "printing/forms/form.h"
#include "printing/forms/form_values.h"

namespace printing
{

/// A form that is ready to be filled.
struct FormFile
{
    Form form;
    QString
        complaint; // what is wrong with the user's own file, in whose place the built-in form is; or empty
};

/// The folder below the application folder that takes the users' own layout files.
QString formFolder(const QString &applicationFolder);

/// The form of the layout file \a fileName ("estimate-a4.toml"), for a document that has \a items to show:
/// the user's own in \a applicationFolder, else the built-in one, which there must be.
FormFile loadForm(const QString &applicationFolder, const QString &fileName, const FormItems &items);

/// The built-in one alone.
Form builtInForm(const QString &fileName, const FormItems &items);

} // namespace printing
