#pragma once

#include <QString>

struct Globale;
class Texts;
class RadioNetControl;
class GeneralFields;
class SatelliteView;
class QAction;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QWidget;

// What the file commands need of the recent-files list, which lives with the
// application shell above this layer.
class RecentFileRecorder {
public:
    virtual ~RecentFileRecorder() = default;
    virtual void UpdateRecentFiles() = 0;
};

// File > Open, Save and Save as, the File menu's own check, and the copy of a
// loaded configuration into the window's fields.
class FileCommands {
public:
    struct Widgets {
        QWidget *Main; // caption, and parent of the file dialog
        QAction *m_enregistrer;
        QAction *m_enregistersous;
        QComboBox *C_port;
        QComboBox *C_timeout;
        QLineEdit *Text1;
        QLineEdit *Text2;
        QLabel *L_nbTPChiffre;
        QLineEdit *Text3;
        QComboBox *C_Interface;
        QCheckBox *Check1;
        QLabel *StatusPanel2;
    };

    FileCommands(Widgets w, Globale &g, const Texts &texts, RadioNetControl &RF1,
                 GeneralFields &general, SatelliteView &view, RecentFileRecorder &recent);

    void mFichier_Click();
    void mOuvrir_Click();
    void m_enregistrer_Click();
    void m_enregistersous_Click();
    void RevalidateFields();
    void ShowConfiguration();

private:
    // The bodies of Open and Save as, run under their silent error handler.
    void openChosenFile();
    void saveUnderChosenName();
    bool savingAllowed();
    // The file dialog CD1; an empty answer means the user cancelled.
    QString askFileName(bool forSaving);
    void showFileNameInCaption();

    Widgets w_;
    Globale &g_;
    const Texts &texts_;
    RadioNetControl &RF1_;
    GeneralFields &general_;
    SatelliteView &view_;
    RecentFileRecorder &recent_;
};
