#pragma once

#include "masters/rich_text/attachment.h"
#include "masters/rich_text/text_look.h"
#include "ui/screen.h"

#include <functional>
#include <memory>

namespace Ui
{
class DialogMyCo;
}

namespace masters
{

/// The extended company name: a freely formatted block that is printed in place of the two plain name lines.
/// It lies in a file of its own, whose name is kept when the screen closes.
class DialogMyCo : public ui::Screen
{
    Q_OBJECT

public:
    explicit DialogMyCo(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~DialogMyCo() override;

signals:
    /// The look at the cursor, for the buttons that show it.
    void lookShown(const masters::TextLook &look);

protected:
    void becameActive() override;
    bool mayClose() override;

private:
    struct ToolbarCommand
    {
        QString key; // object name and caption; empty: a separator
        QKeySequence shortcut;
        std::function<void()> run;
        bool TextLook::*state = nullptr; // what the button shows as pressed
    };

    QList<ToolbarCommand> toolbarCommands();
    void fillToolbar();
    void connectControls();

    void setOnlyShown(bool onlyShown);
    void clearText();
    void open();
    bool saveAs();
    void chooseFont();
    void chooseColour();
    void toggle(bool TextLook::*state, void (QTextCharFormat::*set)(bool));
    void toggleBold();
    void align(Qt::Alignment alignment);
    void applySize();

    void browse();
    void insertObject();
    void saveAttachedFile(const Attachment &attachment);

    bool load(const QString &fileName);
    bool save(const QString &fileName);
    bool mayLeaveText();
    bool mayReplace(const QString &fileName);
    bool hasSelection();
    void format(const QTextCharFormat &format);
    void showFormat();

    std::unique_ptr<Ui::DialogMyCo> ui;
    QString m_fileName;      // what the box shows was read from or saved to
    QString m_pendingNotice; // about the registered file, told once the screen is up
};

} // namespace masters
