#include "masters/own_company.h"

#include "db/connection.h"
#include "masters/list_queries.h"

using namespace Qt::StringLiterals;

namespace masters
{

base::Result<std::optional<OwnCompany>> ownCompany(db::Connection &connection)
{
    const auto rows = connection.select(lists::ownCompany().statement() + u" LIMIT 1"_s);
    if (!rows)
        return rows.error();
    if (rows->isEmpty())
        return std::optional<OwnCompany>();
    const auto text = [&rows](const QString &column) { return rows->value(0, column).toString(); };
    return std::optional(OwnCompany{.name1 = text(u"会社名1"_s),
                                    .name2 = text(u"会社名2"_s),
                                    .zip = text(u"郵便番号"_s),
                                    .address1 = text(u"住所1"_s),
                                    .address2 = text(u"住所2"_s),
                                    .tel1 = text(u"TEL1"_s),
                                    .tel2 = text(u"TEL2"_s),
                                    .fax = text(u"FAX"_s),
                                    .bank1 = text(u"取引銀行1"_s),
                                    .bank2 = text(u"取引銀行2"_s),
                                    .memo = text(u"備考"_s),
                                    .registrationNumber = text(u"登録番号"_s)});
}

} // namespace masters
