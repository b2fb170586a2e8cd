#pragma once

#include "masters/rich_text/attachment.h"

#include <QByteArray>

#include <optional>

namespace masters
{

/// The embedded object of class "Package" (OLE 1.0) that word processors use for a file of any kind; the
/// content of RTF's \objdata. The name is kept in CP932 and in Unicode.
QByteArray encodePackage(const Attachment &attachment);

/// The file in an embedded "Package"; nothing when \a object is of another class, damaged, or its file larger
/// than an attachment may be. Folders in the stored name are cut off.
std::optional<Attachment> decodePackage(const QByteArray &object);

} // namespace masters
