#pragma once

#include "base/result.h"
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

/// A layout file as it stands.
struct LayoutFile
{
    QByteArray content;
    bool isOwn = false; // the user's, not the built-in one
    QString complaint;  // as FormFile
};

/// The folder below the application folder that takes the users' own layout files.
QString formFolder(const QString &applicationFolder);

/// The form of the layout file \a fileName ("estimate-a4.toml"), for a document that has \a items to show:
/// the user's own in \a applicationFolder, else the built-in one, which there must be.
FormFile loadForm(const QString &applicationFolder, const QString &fileName, const FormItems &items);

/// The layout file that loadForm() would take.
LayoutFile loadLayout(const QString &applicationFolder, const QString &fileName, const FormItems &items);

/// Makes \a content the user's own layout file. One that stands there and is not \a known is kept under a
/// dated name.
base::Status saveOwnLayout(const QString &applicationFolder, const QString &fileName,
                           const QByteArray &content, const QByteArray &known, const QDate &today);

/// Takes the user's own layout file away, so that the built-in form counts; it stays under a dated name.
/// \return that name, empty where there was none
base::Result<QString> dropOwnLayout(const QString &applicationFolder, const QString &fileName,
                                    const QDate &today);

/// The built-in one alone.
Form builtInForm(const QString &fileName, const FormItems &items);

} // namespace printing
