#pragma once

struct Globale;
class Texts;
class LinkStatus;
class GeneralFields;
class Settings;
class OwnCaptions;
class QAbstractButton;
class QAction;
class QGroupBox;
class QLabel;
class QMenu;
class QTabWidget;

// French or English: every caption of the window from the language table.
class Language {
public:
    struct Widgets {
        QMenu *mFichier;
        QAction *mOuvrir, *m_enregistrer, *m_enregistersous, *mQuitter;
        QMenu *m_Options;
        QAction *m_French, *m_English, *m_aide, *m_apropos;
        QTabWidget *Onglet1;
        QGroupBox *F_port, *F_terminaux;
        QLabel *L_firsTP, *L_lastTP, *L_nbTP, *Label5, *L_satID, *Label1;
        QAbstractButton *Check1, *b_ClearAll, *b_Insert, *b_Supp, *b_GetConfig, *b_Config, *b_Alive;
        QAbstractButton *b_Debut_test, *b_Fin_Test;
    };

    Language(Widgets w, Globale &g, const Texts &texts, LinkStatus &link, GeneralFields &general,
             Settings &settings, OwnCaptions &own);

    void ApplyLanguage();
    void m_French_Click();
    void m_English_Click();

private:
    void choose(const char *language, QAction *tick, QAction *untick);

    Widgets w_;
    Globale &g_;
    const Texts &texts_;
    LinkStatus &link_;
    GeneralFields &general_;
    Settings &settings_;
    OwnCaptions &own_;
};
