#pragma once

#include "support/fake_printers.h"

#include <QApplication>
#include <QProgressDialog>

/// A queue that takes so many documents; then it refuses, or the clerk stops the run.
class TiredPrinters : public FakePrinters
{
public:
    int most = 99;
    bool clerkStops = false;

    base::Result<int> print(const printing::Document &document, const printing::Look &look,
                            const printing::JobSettings &settings, const base::Progress &progress) override
    {
        if (int(given.size()) == most)
            return base::Error{QStringLiteral("用紙がありません。")};
        titles << document.title;
        auto job = FakePrinters::print(document, look, settings, progress);
        if (clerkStops && int(given.size()) == most)
            stop();
        return job;
    }

    QStringList titles;

private:
    static void stop()
    {
        for (QWidget *window : QApplication::allWidgets()) {
            if (auto *progress = qobject_cast<QProgressDialog *>(window))
                progress->cancel();
        }
    }
};
