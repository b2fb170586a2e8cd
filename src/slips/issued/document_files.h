#pragma once

#include "base/result.h"

#include <QDate>
#include <QStringList>

// The PDFs of issued documents: each as it was issued, in a folder of its year, under the SHA-256 of its
// bytes. They are only added to. Any viewer shows them, with this program or without.
namespace slips
{

/// Where a document is found.
struct DocumentPlace
{
    QDate date;   // of the document; it decides the year's folder
    QString hash; // SHA-256 of its bytes, in hexadecimal digits
};

/// The hash of \a pdf.
QString hashOf(const QByteArray &pdf);

/// "2026/<hash>.pdf". Empty where the hash is none: it would lead anywhere.
QString pathOf(const DocumentPlace &place);

/// Puts \a pdf into \a folder, flushed, under the name of its contents; only to be read from then on. What is
/// there already stays as it is; where that was damaged it is put right.
base::Status storeDocument(const QString &folder, const DocumentPlace &place, const QByteArray &pdf);

enum class DocumentState { Whole, Damaged, Missing };

/// A document as it was found.
struct FoundDocument
{
    DocumentState state = DocumentState::Missing;
    QString fileName; // of one that is whole
    QByteArray pdf;
};

/// The document at \a place in the first of \a folders in which it is whole.
FoundDocument findDocument(const QStringList &folders, const DocumentPlace &place);

} // namespace slips
