#include "reports/period_check.h"

using namespace Qt::StringLiterals;

namespace reports
{

base::Status checkPeriod(const book::Period &period)
{
    if (period.to < period.from)
        return base::Error{u"期間の終わりが始まりより前になっています。日付を入力し直してください。"_s};
    return {};
}

} // namespace reports
