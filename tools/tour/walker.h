#pragma once

#include "support/screen_driver.h"

#include <QDir>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>

class QDialog;
class QTableView;

namespace tour
{

/// Works one screen.
class Hands : public ScreenDriver
{
public:
    using ScreenDriver::ScreenDriver;

private:
    [[noreturn]] void lost(const QString &what) const override;
};

/// Goes from screen to screen as a clerk does, and takes their pictures. What is not
/// as it should be is noted, and the walk goes on.
class Walker
{
public:
    /// Pictures go to \a folder as NN-name.png.
    explicit Walker(const QDir &folder);

    /// Sets off \a trigger, which opens a modal screen, does \a work in it, and closes it.
    void visit(const QString &what, const std::function<void()> &trigger,
               const std::function<void(QDialog &)> &work);

    /// The hands on \a screen, once it has done what it was still to do. What cannot be done ends the visit.
    [[nodiscard]] static Hands on(QWidget &screen);

    /// Saves the picture of \a screen.
    void picture(QWidget &screen, const QString &name);

    /// Saves a picture of each page of the PDF \a fileName.
    void pages(const QString &fileName, const QString &name);

    /// Notes \a what unless \a good.
    void check(bool good, const QString &what);
    void checkText(QWidget &screen, const QString &box, const QString &expected);

    /// What was not as it should be, boxes nobody expected included; empty after a good walk.
    QStringList troubles();

private:
    QDir m_folder;
    int m_pictures = 0;
    QString m_where;
    QStringList m_troubles;
};

} // namespace tour
