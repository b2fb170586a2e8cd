#pragma once

#include "db/old_files/conversion_summary.h"

#include <QDialog>

#include <memory>

namespace Ui
{
class DialogConversion;
}

namespace app
{

/// What became of an old file: each table with its rows read and written, and everything that was not carried
/// over as it was.
class DialogConversion : public QDialog
{
    Q_OBJECT

public:
    DialogConversion(const QString &source, const QString &target, const db::ConversionSummary &summary,
                     QWidget *parent = nullptr);
    ~DialogConversion() override;

private:
    void fillTables();
    void copy();
    void save();

    std::unique_ptr<Ui::DialogConversion> m_ui;
    db::ConversionSummary m_summary;
    QString m_target;
};

} // namespace app
