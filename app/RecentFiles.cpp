#include "app/RecentFiles.h"

#include "app/Settings.h"
#include "config/ConfigFile.h"
#include "config/Globale.h"

#include <QAction>
#include <QLabel>

RecentFiles::RecentFiles(Widgets w, Globale &g, const Texts &texts, RadioNetControl &RF1,
                         Settings &settings)
    : w_(w)
    , g_(g)
    , texts_(texts)
    , RF1_(RF1)
    , settings_(settings) {}

void RecentFiles::UpdateRecentFiles() {
    // Exact, case-sensitive comparisons. An empty name (start-up) takes the front
    // place like any other, holes and all: kept on purpose.
    const QString &name = g_.ConfigFileName;
    if (g_.RecentFile4 == name) {
        g_.RecentFile4 = g_.RecentFile3;
        g_.RecentFile3 = g_.RecentFile2;
        g_.RecentFile2 = g_.RecentFile1;
    } else if (g_.RecentFile3 == name) {
        g_.RecentFile3 = g_.RecentFile2;
        g_.RecentFile2 = g_.RecentFile1;
    } else if (g_.RecentFile2 == name) {
        g_.RecentFile2 = g_.RecentFile1;
    } else if (g_.RecentFile1 != name) {
        g_.RecentFile4 = g_.RecentFile3;
        g_.RecentFile3 = g_.RecentFile2;
        g_.RecentFile2 = g_.RecentFile1;
    }
    g_.RecentFile1 = name;

    const std::array<const QString *, 4> files = {&g_.RecentFile1, &g_.RecentFile2, &g_.RecentFile3,
                                                  &g_.RecentFile4};
    bool any = false;
    for (size_t i = 0; i < files.size(); ++i) {
        const QString &file = *files[i];
        w_.items[i]->setText(file);
        w_.items[i]->setVisible(!file.isEmpty());
        any = any || !file.isEmpty();
    }
    w_.mtiret3->setVisible(any);
    if (!settings_.WriteSettings())
        w_.StatusPanel2->setText(texts_(153));
}

void RecentFiles::OpenCurrentFile() {
    if (ReadConfigFile(g_.ConfigFileName, RF1_)) {
        w_.StatusPanel2->setText(texts_(143));
        w_.m_enregistrer->setEnabled(true);
        UpdateRecentFiles();
        // The window caption stays as it is on this path, unlike File > Open.
        if (commands_)
            commands_->ShowConfiguration();
    } else {
        w_.m_enregistrer->setEnabled(false);
        w_.StatusPanel2->setText(texts_(144));
    }
}

void RecentFiles::openItem(int index) {
    g_.ConfigFileName = w_.items[size_t(index)]->text();
    OpenCurrentFile();
}
