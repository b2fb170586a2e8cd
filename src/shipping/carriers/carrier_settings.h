#pragma once

#include "base/result.h"
#include "shipping/carriers/carrier_program.h"

#include <QMap>

#include <vector>

namespace workspace
{
class Settings;
}

// What a carrier's program wants to know of the shop with every parcel, and the shop enters once.
namespace shipping
{

struct CarrierSetting
{
    enum class Kind { Text, Digits, Letters, Choice, Yes };

    QString name;
    QString caption;
    Kind kind = Kind::Text;
    int longest = 0; // full-width characters of a text, digits or letters of the others
    bool needed = false;
    QString usual = {};
    QStringList choices = {}; // "0 発払い": the value and what it means
};

/// All of them of \a program, in the order in which they are asked for.
const std::vector<CarrierSetting> &settingsOf(CarrierProgram program);

/// Their values, by name.
class CarrierSettings
{
public:
    /// As they are stored; what is not there is as usual.
    static CarrierSettings read(const workspace::Settings &settings, CarrierProgram program);
    void write(workspace::Settings &settings, CarrierProgram program) const;

    [[nodiscard]] QString value(const QString &name) const { return m_values.value(name); }
    void set(const QString &name, const QString &value) { m_values[name] = value; }

    friend bool operator==(const CarrierSettings &, const CarrierSettings &) = default;

private:
    QMap<QString, QString> m_values;
};

/// What is wrong with \a value of \a setting, for the clerk; empty when nothing is.
QString faultOf(const CarrierSetting &setting, const QString &value);

/// What stands before a shipment's key in the numbers by which the carriers' programs know a parcel
/// (お客様管理番号), so that those of a web shop are not taken for ours.
inline const QString prefixSetting = QStringLiteral("prefix");

} // namespace shipping
