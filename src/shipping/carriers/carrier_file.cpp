#include "shipping/carriers/carrier_file.h"

#include "base/replacement.h"
#include "text/cp932.h"
#include "text/postal_code.h"

#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr auto lineEnd = "\r\n"_L1;

bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }

bool consistsOf(const QString &value, bool (*kind)(QChar))
{
    return std::all_of(value.begin(), value.end(), kind);
}

// What no line of a file can hold, or no program shows.
bool isUnwritable(const QString &value)
{
    return !value.isValidUtf16() || std::any_of(value.begin(), value.end(), [](QChar c) {
        return c.category() == QChar::Other_Control || c.unicode() == 0x2028 || c.unicode() == 0x2029;
    });
}

QString faultOfKind(const CarrierColumn &column, const QString &value)
{
    switch (column.kind) {
    case FieldKind::FullWidth:
        return column.longest > 0 && text::cp932Bytes(value) > 2 * column.longest
                   ? u"全角 %1 文字までのところ、全角 %2 文字あります。"_s.arg(column.longest)
                         .arg((text::cp932Bytes(value) + 1) / 2)
                   : QString();
    case FieldKind::HalfWidth:
        if (!consistsOf(value, [](QChar c) { return c >= u' ' && c <= u'~'; }))
            return u"半角の英数字ではない文字があります。"_s;
        break;
    case FieldKind::Digits:
        if (!consistsOf(value, isDigit))
            return u"数字ではない文字があります。"_s;
        break;
    case FieldKind::Phone:
        if (!consistsOf(value, [](QChar c) { return isDigit(c) || c == u'-'; }) ||
            std::count_if(value.begin(), value.end(), isDigit) < 9)
            return u"電話番号の形ではありません。"_s;
        break;
    case FieldKind::PostalCode:
        if (!text::completePostalCode(value))
            return u"郵便番号が 7 けたではありません。"_s;
        break;
    }
    return column.longest > 0 && value.size() > column.longest
               ? u"半角 %1 文字までのところ、%2 文字あります。"_s.arg(column.longest).arg(value.size())
               : QString();
}

QString faultOf(const CarrierFormat &format, const CarrierColumn &column, const QString &value)
{
    if (value.isEmpty())
        return column.needed ? u"空欄では出力できません。"_s : QString();
    if (isUnwritable(value))
        return u"改行など、ファイルに書けない文字があります。"_s;
    if (const QString strange = format.isCp932 ? text::notInCp932(value) : QString(); !strange.isEmpty())
        return u"%1が読めない文字があります：%2"_s.arg(programName(format.program), strange);
    return faultOfKind(column, value);
}

struct Field
{
    QString value;
    QString fault;
};

Field fieldOf(const CarrierFormat &format, const CarrierColumn &column, const CarrierParcel &parcel,
              const CarrierSettings &settings)
{
    if (!column.value)
        return {};
    const auto value = column.value(parcel, settings);
    return value ? Field{*value, faultOf(format, column, *value)} : Field{{}, value.error().text};
}

QString quoted(const QString &value)
{
    const bool isPlain =
        std::none_of(value.begin(), value.end(), [](QChar c) { return c == u',' || c == u'"'; });
    return isPlain ? value : u'"' + QString(value).replace(u'"', "\"\""_L1) + u'"';
}

QString headingLine(const CarrierFormat &format)
{
    QStringList headings;
    for (const CarrierColumn &column : format.columns)
        headings << quoted(QString::fromUtf16(column.heading));
    return headings.join(u',') + lineEnd;
}

base::Result<QString> lineOf(const CarrierFormat &format, const CarrierParcel &parcel,
                             const CarrierSettings &settings)
{
    QStringList values;
    for (const CarrierColumn &column : format.columns) {
        const Field field = fieldOf(format, column, parcel, settings);
        if (!field.fault.isEmpty())
            return base::Error{u"発送ID %1 の「%2」：%3\nファイルは作っていません。"_s.arg(parcel.shipment.id)
                                   .arg(QString::fromUtf16(column.heading), field.fault)};
        values << quoted(field.value);
    }
    return values.join(u',') + lineEnd;
}

base::Result<QByteArray> encoded(const CarrierFormat &format, const QString &content)
{
    if (!format.isCp932)
        return "\xEF\xBB\xBF" + content.toUtf8();
    const auto bytes = text::toCp932(content);
    return bytes ? base::Result<QByteArray>(*bytes)
                 : base::Error{u"運送会社のプログラムが読めない文字があるため、書き出しませんでした。"_s};
}

base::Result<QString> contentOf(const CarrierFormat &format, const std::vector<CarrierParcel> &parcels,
                                const CarrierSettings &settings, const base::Progress &progress)
{
    QString content;
    if (format.alwaysHeading || settings.value(u"heading"_s) == u"1")
        content = headingLine(format);
    qint64 done = 0;
    for (const CarrierParcel &parcel : parcels) {
        if (!progress(done++, qint64(parcels.size())))
            return base::cancelled();
        const auto line = lineOf(format, parcel, settings);
        if (!line)
            return line;
        content += *line;
    }
    return content;
}

base::Status fill(const QString &fileName, const QByteArray &bytes)
{
    QFile file(fileName);
    const bool isWritten = file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
                           file.write(bytes) == bytes.size() && file.flush();
    file.close();
    return isWritten && file.error() == QFileDevice::NoError
               ? base::Status()
               : base::Error{u"ファイルに書き込めませんでした。空き容量と、書き込みのできる場所かどうかを"
                             "確かめてください。(%1)"_s.arg(file.errorString())};
}

} // namespace

const CarrierFormat &formatOf(CarrierProgram program)
{
    static const std::array<CarrierFormat, carrierPrograms.size()> formats{
        {{CarrierProgram::B2Cloud, true, false, b2Columns()},
         {CarrierProgram::Hiden3, false, true, hidenColumns()},
         {CarrierProgram::Yupri, false, false, yupriColumns()}}};
    return formats[std::size_t(program)];
}

std::vector<CarrierFinding> findingsOf(CarrierProgram program, const CarrierParcel &parcel,
                                       const CarrierSettings &settings)
{
    const CarrierFormat &format = formatOf(program);
    std::vector<CarrierFinding> findings;
    for (const CarrierColumn &column : format.columns) {
        const Field field = fieldOf(format, column, parcel, settings);
        if (!field.fault.isEmpty() && column.source != ShipmentField::Settings)
            findings.push_back({parcel.shipment.id, QString::fromUtf16(column.heading), field.value,
                                field.fault, column.source});
    }
    return findings;
}

std::vector<CarrierFinding> settingsFindings(CarrierProgram program, const CarrierSettings &settings)
{
    std::vector<CarrierFinding> findings;
    for (const CarrierSetting &setting : settingsOf(program)) {
        const QString value = settings.value(setting.name);
        if (const QString fault = faultOf(setting, value); !fault.isEmpty())
            findings.push_back({0, setting.caption, value, fault, ShipmentField::Settings});
    }
    return findings;
}

base::Status writeCarrierFile(const QString &fileName, CarrierProgram program,
                              const std::vector<CarrierParcel> &parcels, const CarrierSettings &settings,
                              const base::Progress &progress)
{
    const CarrierFormat &format = formatOf(program);
    const auto content = contentOf(format, parcels, settings, progress);
    if (!content)
        return content.error();
    const auto bytes = encoded(format, *content);
    if (!bytes)
        return bytes.error();
    base::Replacement file(fileName);
    base::Status done = file.begin();
    if (done)
        done = fill(file.name(), *bytes);
    return done ? file.finish() : done;
}

} // namespace shipping
