#pragma once

#include <QString>

struct Globale;
class Texts;
class RadioNetControl;
class Settings;
class RecentFiles;
class Language;
class LinkStatus;
class QAction;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QTableWidget;
class QTimer;

// The fourteen start-up steps that put every field into its first state.
class Startup {
public:
    struct Widgets {
        QTimer *Timer1;
        QAction *m_enregistrer, *m_French, *m_English;
        QTableWidget *MFG1, *MFG2;
        QComboBox *C_port, *C_timeout;
        QLineEdit *Text1, *Text2;
        QLabel *L_nbTPChiffre;
        QLineEdit *Text3;
        QComboBox *C_Interface;
        QCheckBox *Check1;
        QLabel *StatusPanel1, *StatusPanel2;
    };

    Startup(Widgets w, Globale &g, const Texts &texts, RadioNetControl &RF1, Settings &settings,
            RecentFiles &recent, Language &language, LinkStatus &link);

    void Form_Load(const QString &commandLine);

private:
    void layOutGrids();
    void openCommandLineFile(const QString &commandLine);

    Widgets w_;
    Globale &g_;
    const Texts &texts_;
    RadioNetControl &RF1_;
    Settings &settings_;
    RecentFiles &recent_;
    Language &language_;
    LinkStatus &link_;
};
