#pragma once

#include "config/gui/FileCommands.h"

#include <array>

struct Globale;
class Texts;
class RadioNetControl;
class Settings;
class QAction;
class QLabel;

// The four most recent configuration files in the File menu, newest first, kept in
// "Setup.ini", and opening one of them.
class RecentFiles : public RecentFileRecorder {
public:
    struct Widgets {
        std::array<QAction *, 4> items; // mFile1, mFile2, mFile3, mfile4
        QAction *mtiret3;
        QAction *m_enregistrer;
        QLabel *StatusPanel2;
    };

    RecentFiles(Widgets w, Globale &g, const Texts &texts, RadioNetControl &RF1,
                Settings &settings);
    // The file commands are made after this list (they record into it).
    void setFileCommands(FileCommands &commands) { commands_ = &commands; }

    void UpdateRecentFiles() override;
    void OpenCurrentFile();
    void mFile1_Click() { openItem(0); }
    void mFile2_Click() { openItem(1); }
    void mFile3_Click() { openItem(2); }
    void mfile4_Click() { openItem(3); }

private:
    void openItem(int index);

    Widgets w_;
    Globale &g_;
    const Texts &texts_;
    RadioNetControl &RF1_;
    Settings &settings_;
    FileCommands *commands_ = nullptr;
};
