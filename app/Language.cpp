#include "app/Language.h"

#include "app/OwnCaptions.h"
#include "app/Settings.h"
#include "config/Globale.h"
#include "config/gui/GeneralFields.h"
#include "radionet/gui/LinkStatus.h"

#include <QAbstractButton>
#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QTabWidget>

Language::Language(Widgets w, Globale &g, const Texts &texts, LinkStatus &link,
                   GeneralFields &general, Settings &settings, OwnCaptions &own)
    : w_(w)
    , g_(g)
    , texts_(texts)
    , link_(link)
    , general_(general)
    , settings_(settings)
    , own_(own) {}

void Language::ApplyLanguage() {
    // Any other language name leaves the base as it was.
    if (g_.CurrentLanguage == QStringLiteral("FR"))
        g_.LanguageBase = 0;
    if (g_.CurrentLanguage == QStringLiteral("US"))
        g_.LanguageBase = 100;

    w_.mFichier->setTitle(texts_(101));
    w_.mOuvrir->setText(texts_(102));
    w_.m_enregistrer->setText(texts_(103));
    w_.m_enregistersous->setText(texts_(104));
    w_.mQuitter->setText(texts_(105));
    w_.m_Options->setTitle(texts_(106));
    w_.m_French->setText(texts_(107));
    w_.m_English->setText(texts_(108));
    // Crossed on purpose: Help takes 111 and About takes 110.
    w_.m_aide->setText(texts_(111));
    w_.m_apropos->setText(texts_(110));
    w_.Onglet1->setTabText(0, texts_(112));
    w_.F_port->setTitle(texts_(113));
    w_.F_terminaux->setTitle(texts_(114));
    w_.L_firsTP->setText(texts_(115));
    w_.L_lastTP->setText(texts_(116));
    w_.L_nbTP->setText(texts_(117));
    w_.Label5->setText(texts_(118));
    w_.L_satID->setText(texts_(119));
    w_.Label1->setText(texts_(120));
    w_.Check1->setText(texts_(121));
    w_.b_ClearAll->setText(texts_(122));
    w_.b_Insert->setText(texts_(123));
    w_.b_Supp->setText(texts_(124));
    w_.b_GetConfig->setText(texts_(125));
    w_.b_Config->setText(texts_(126));
    w_.b_Alive->setText(texts_(127));
    w_.Onglet1->setTabText(2, texts_(128));
    w_.b_Debut_test->setText(texts_(129));
    w_.b_Fin_Test->setText(texts_(130));
    // The About box takes its system-information caption (155) when it opens.
    own_.apply();

    link_.QueryLinkStatus();
    general_.C_port_LostFocus();
    general_.C_timeout_LostFocus();
    general_.Text1_LostFocus();
    general_.Text2_LostFocus();
}

void Language::choose(const char *language, QAction *tick, QAction *untick) {
    untick->setChecked(false);
    tick->setChecked(true);
    g_.CurrentLanguage = QString::fromLatin1(language);
    ApplyLanguage();
    settings_.WriteSettings(); // a failed write is not reported here
}

void Language::m_French_Click() {
    choose("FR", w_.m_French, w_.m_English);
}

void Language::m_English_Click() {
    choose("US", w_.m_English, w_.m_French);
}
