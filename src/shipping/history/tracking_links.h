#pragma once

#include <QString>
#include <QUrl>

#include <optional>

// The carriers' public pages on which a parcel is followed by its number.
namespace shipping
{

enum class Carrier { Yamato, Sagawa, JapanPost };
inline constexpr Carrier carriers[] = {Carrier::Yamato, Carrier::Sagawa, Carrier::JapanPost};

/// "ヤマト運輸", "佐川急便", "日本郵便".
QString nameOf(Carrier carrier);

/// Who carries a parcel whose slip is of \a form (発送方法); nothing where that does not tell, as of a label
/// or a slip of the shop's own.
std::optional<Carrier> carrierOf(const QString &form);

/// The page of \a carrier on the parcel \a number. Only the number's digits go into the address: nothing that
/// somebody wrote into a row leads anywhere else. Nothing where it has none.
std::optional<QUrl> trackingPage(Carrier carrier, const QString &number);

} // namespace shipping
