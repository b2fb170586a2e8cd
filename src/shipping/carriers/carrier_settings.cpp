#include "shipping/carriers/carrier_settings.h"

#include "text/cp932.h"
#include "workspace/settings.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

using Kind = CarrierSetting::Kind;

// The shortest room for a management number, that of ゆうプリ, holds fifteen characters; a key takes ten.
const CarrierSetting prefix{prefixSetting, u"管理番号の頭文字"_s, Kind::Letters, 5};

const std::vector<CarrierSetting> b2{
    {u"customer"_s, u"請求先顧客コード"_s, Kind::Digits, 12, true},
    {u"class"_s, u"請求先分類コード"_s, Kind::Digits, 3},
    {u"freight"_s, u"運賃管理番号"_s, Kind::Digits, 2, true, u"01"_s},
    {u"payment"_s, u"運賃の支払い"_s, Kind::Choice, 1, true, u"0"_s, {u"0 発払い"_s, u"5 着払い"_s}},
    {u"honorific"_s, u"敬称"_s, Kind::Text, 2, false, u"様"_s},
    {u"handling1"_s, u"荷扱い1"_s, Kind::Text, 10},
    {u"handling2"_s, u"荷扱い2"_s, Kind::Text, 10},
    {u"heading"_s, u"見出しの行を付ける"_s, Kind::Yes, 1, false, u"0"_s},
    prefix};

const std::vector<CarrierSetting> hiden{
    {u"customer"_s, u"お客様コード"_s, Kind::Digits, 12, true},
    {u"payment"_s, u"元着区分"_s, Kind::Choice, 1, true, u"1"_s, {u"1 元払い"_s, u"2 着払い"_s}},
    {u"packaging"_s, u"荷姿"_s, Kind::Digits, 3},
    {u"seal"_s, u"指定シール1"_s, Kind::Digits, 3},
    prefix};

const std::vector<CarrierSetting> yupri{
    {u"kind"_s, u"送り状種別"_s, Kind::Letters, 20, true},
    {u"product"_s, u"荷物商品名"_s, Kind::Text, 25, false, u"ゆうパック"_s},
    {u"size"_s, u"サイズ"_s, Kind::Letters, 4},
    {u"heading"_s, u"見出しの行を付ける"_s, Kind::Yes, 1, false, u"1"_s},
    prefix};

const workspace::SettingKey &keyOf(CarrierProgram program)
{
    switch (program) {
    case CarrierProgram::B2Cloud:
        return workspace::keys::b2Settings;
    case CarrierProgram::Hiden3:
        return workspace::keys::hidenSettings;
    case CarrierProgram::Yupri:
        break;
    }
    return workspace::keys::yupriSettings;
}

bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }

bool isLetter(QChar c)
{
    return isDigit(c) || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || c == u'-';
}

bool isChosen(const CarrierSetting &setting, const QString &value)
{
    return std::any_of(setting.choices.begin(), setting.choices.end(),
                       [&](const QString &choice) { return choice.section(u' ', 0, 0) == value; });
}

QString faultOfText(const CarrierSetting &setting, const QString &value)
{
    if (const QString strange = text::notInCp932(value); !strange.isEmpty())
        return u"「%1」に、運送会社のプログラムが読めない文字（%2）があります。"_s.arg(setting.caption,
                                                                                       strange);
    return text::cp932Bytes(value) > 2 * setting.longest
               ? u"「%1」は全角 %2 文字までです。"_s.arg(setting.caption).arg(setting.longest)
               : QString();
}

} // namespace

const std::vector<CarrierSetting> &settingsOf(CarrierProgram program)
{
    switch (program) {
    case CarrierProgram::B2Cloud:
        return b2;
    case CarrierProgram::Hiden3:
        return hiden;
    case CarrierProgram::Yupri:
        break;
    }
    return yupri;
}

CarrierSettings CarrierSettings::read(const workspace::Settings &settings, CarrierProgram program)
{
    CarrierSettings values;
    for (const CarrierSetting &setting : settingsOf(program))
        values.set(setting.name, setting.usual);
    for (const QString &line : settings.text(keyOf(program)).split(u'\n', Qt::SkipEmptyParts)) {
        const QString name = line.section(u'=', 0, 0);
        if (values.m_values.contains(name))
            values.set(name, line.section(u'=', 1));
    }
    return values;
}

void CarrierSettings::write(workspace::Settings &settings, CarrierProgram program) const
{
    QStringList lines;
    for (const CarrierSetting &setting : settingsOf(program))
        lines << setting.name + u'=' + value(setting.name);
    settings.write(keyOf(program), lines.join(u'\n'));
}

QString faultOf(const CarrierSetting &setting, const QString &value)
{
    if (value.isEmpty())
        return setting.needed ? u"「%1」が入力されていません。"_s.arg(setting.caption) : QString();
    const auto isAll = [&](bool (*kind)(QChar)) { return std::all_of(value.begin(), value.end(), kind); };
    switch (setting.kind) {
    case Kind::Text:
        return faultOfText(setting, value);
    case Kind::Digits:
        return isAll(isDigit) && value.size() <= setting.longest
                   ? QString()
                   : u"「%1」は数字 %2 けたまでです。"_s.arg(setting.caption).arg(setting.longest);
    case Kind::Letters:
        return isAll(isLetter) && value.size() <= setting.longest
                   ? QString()
                   : u"「%1」は半角の英数字とハイフンで %2 文字までです。"_s.arg(setting.caption)
                         .arg(setting.longest);
    case Kind::Choice:
        return isChosen(setting, value) ? QString() : u"「%1」を選んでください。"_s.arg(setting.caption);
    case Kind::Yes:
        break;
    }
    return {};
}

} // namespace shipping
