#include "text/file_name.h"

using namespace Qt::StringLiterals;

namespace text
{

QString fileNamePart(const QString &typed)
{
    static const QString forbidden = u"\\/:*?\"<>|_"_s;
    QString name;
    for (const char32_t c : typed.toUcs4()) {
        const bool isForbidden = c < 0x80 && forbidden.contains(QChar(char16_t(c)));
        if (isForbidden || !QChar::isPrint(c))
            name += u'-';
        else
            name += QString::fromUcs4(&c, 1);
    }
    return name.trimmed();
}

QString cutToBytes(const QString &name, qsizetype bytes)
{
    QString shortened;
    qsizetype taken = 0;
    for (const char32_t c : name.toUcs4()) {
        const QString next = QString::fromUcs4(&c, 1);
        taken += next.toUtf8().size();
        if (taken > bytes)
            break;
        shortened += next;
    }
    return shortened;
}

} // namespace text
