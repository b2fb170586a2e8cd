#pragma once

#include "registers/duplicates/customer_merge.h"
#include "registers/duplicates/distinct_pairs.h"
#include "registers/duplicates/duplicate_customers.h"
#include "ui/screen.h"

#include <QHash>
#include <QTimer>

#include <memory>
#include <optional>

namespace Ui
{
class DialogDuplicates;
}

namespace registers
{

/// Customers that probably stand in the register twice, and the merging of two of them: which fields, slips
/// and shipments go where is shown before it is done, and the whole file is kept as it was before the first
/// one.
class DialogDuplicates : public ui::Screen
{
    Q_OBJECT

public:
    explicit DialogDuplicates(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~DialogDuplicates() override;

    /// 納品先ID of the one that stands for the customer \a id now: the one it was merged into, or itself.
    [[nodiscard]] qint64 standsFor(qint64 id) const;

protected:
    void showEvent(QShowEvent *event) override;

private:
    /// Two customers of one group.
    struct Pair
    {
        qint64 kept = 0, gone = 0; // 納品先ID
    };

    bool find();
    void showGroups();
    void choosePair();
    void swapPair();
    void showPlan();
    void showStates();
    void markPair();
    [[nodiscard]] const ProbableDuplicate *customerWith(qint64 id) const;
    [[nodiscard]] bool isMarked() const;
    void merge();
    bool readBalances(MergePlan &plan);
    bool keepCopy();
    [[nodiscard]] QString planInWords() const;
    [[nodiscard]] QString shownValue(const QString &column, const QVariant &value) const;

    std::unique_ptr<Ui::DialogDuplicates> m_ui;
    std::vector<DuplicateGroup> m_found;
    std::vector<DuplicateGroup> m_groups; // those that are shown
    DistinctPairs m_distinct;
    QTimer m_planTimer;
    std::vector<std::pair<qint64, QString>> m_categories;
    std::optional<Pair> m_pair;
    std::optional<MergePlan> m_plan;
    QHash<qint64, qint64> m_mergedInto; // by the one that is gone; 納品先ID
    bool m_searched = false;
    bool m_copied = false; // the file as it was when the screen was opened
};

} // namespace registers
