#pragma once

#include <QDateTime>
#include <QString>

#include <functional>
#include <memory>
#include <typeindex>
#include <unordered_map>

namespace db
{
class Connection;
}

namespace workspace
{

class Settings;

/// Line spacing of lists.
enum class GridSpacing { Small, Medium, Large };

/// The plain values of the main window's settings panel. The main window writes them, the screens read them.
struct Panel
{
    qint64 employeeId = 0; // 社員ID of the person in charge; 0: nobody is chosen
    QString employeeName;
    QString companyName1; // 会社名1 and 会社名2 of the own company
    QString companyName2;

    double taxRate = 5;           // percent, kept by hand
    bool followsTaxTable = false; // the rates are those of the table 税率, by date and class
    bool automaticNumbers = true; // "伝票番号を自動で設定："
    QString numberInfix;          // between kind letter and key in automatic numbers

    QString deliveryPaper; // "HISAGO 1149", "HISAGO BP0201", "A4 無地"
    QString billPaper;     // "HISAGO 1148", "A4 無地"
    QString carrier;

    bool transferFormAfterDelivery = false; // Check2
    bool omitCompanyName = false;           // Check3
    bool extendedCompanyName = false;       // Check4
    bool transferFormAfterBill = false;     // Check5
    bool deliveryNoticeMailOrder = false;   // Check6
    bool deliveryNotice = false;            // Check7
    bool customerOption = false;            // Check8

    bool slipPaperDeclared = false; // kuUserSize: shipping slips tell the printer their paper

    int textSize = 10;      // points, entry screens
    int desktopSurplus = 0; // points that the desktop's large type is larger
    GridSpacing gridSpacing = GridSpacing::Small;
};

/// What every screen works with: the one connection, the settings, the application folder, the clock and
/// the panel's values.
class Workspace
{
public:
    using Clock = std::function<QDateTime()>;

    /// \a clock: the current local time; the system's own when empty.
    Workspace(db::Connection &theConnection, Settings &theSettings, const QString &applicationFolder,
              Clock clock = {});

    db::Connection &connection;
    Settings &settings;
    Panel panel;

    [[nodiscard]] QString applicationFolder() const { return m_applicationFolder; }
    /// \a name in the application folder; no second separator when the folder is a root.
    [[nodiscard]] QString inApplicationFolder(const QString &name) const;

    [[nodiscard]] QDateTime now() const { return m_clock(); }
    [[nodiscard]] QDate today() const { return m_clock().date(); }

    /// What a house above has read once and keeps for the whole run, by its type; none before it was read.
    template <class T>
    [[nodiscard]] std::shared_ptr<const T> kept() const
    {
        const auto found = m_kept.find(typeid(T));
        return found == m_kept.end() ? nullptr : std::static_pointer_cast<const T>(found->second);
    }
    template <class T>
    void keep(T value)
    {
        m_kept[typeid(T)] = std::make_shared<const T>(std::move(value));
    }

private:
    QString m_applicationFolder;
    Clock m_clock;
    std::unordered_map<std::type_index, std::shared_ptr<const void>> m_kept;
};

/// \a name in \a folder, with one separator between them ("/" stays "/name").
QString joinPath(const QString &folder, const QString &name);

} // namespace workspace
