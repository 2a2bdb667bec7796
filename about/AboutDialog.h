#pragma once

#include "about/SysInfo.h"
#include "config/Globale.h"
#include "platform/HandlerGuard.h"

#include <QDialog>
#include <memory>

namespace Ui {
class frmAbout;
}

// The About box: the program's title, version and a usage caution in the current
// language, and a button that starts the system-information tool.
class frmAbout : public QDialog {
    Q_OBJECT

public:
    // `starter` starts the system-information tool found through the registry file
    // of g.ProgramFolder.
    frmAbout(const Globale &g, const Texts &texts, QWidget *parent = nullptr,
             ProgramStarter starter = startDetachedProgram);
    ~frmAbout() override;

    void Form_Load();
    void Form_Paint();
    void cmdOK_Click();
    void cmdSysInfo_Click();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void applyTexts();

    std::unique_ptr<Ui::frmAbout> ui_;
    const Globale &g_;
    ProgramStarter starter_;
    // Reports to standard error only: nothing of the main window is ours to write.
    HandlerGuard guard_{HandlerGuard::Reporter()};
};

// What the main window's menu item m_apropos runs: the About box, shown modally
// over `window`, made anew each time and gone when it closes.
class About {
public:
    About(const Globale &g, const Texts &texts, QWidget *window,
          ProgramStarter starter = startDetachedProgram);

    void m_apropos_Click();

private:
    const Globale &g_;
    Texts texts_;
    QWidget *window_;
    ProgramStarter starter_;
};
