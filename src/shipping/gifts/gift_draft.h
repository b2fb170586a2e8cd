#pragma once

#include "shipping/gifts/gift_order.h"

// A gift order sheet that is not all out yet, kept in a file until the screen opens again.
namespace shipping
{

/// Where the draft of this application folder lies.
QString draftFile(const QString &applicationFolder);

/// Writes \a order over the draft \a fileName.
base::Status saveDraft(const QString &fileName, const GiftOrder &order);

/// The draft \a fileName; nothing where there is none. Fails for a file that is no draft, which stays under
/// a name with \a today's date.
base::Result<std::optional<GiftOrder>> readDraft(const QString &fileName, const QDate &today);

/// Takes the draft away, where there is one.
base::Status dropDraft(const QString &fileName);

} // namespace shipping
