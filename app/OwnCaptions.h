#pragma once

#include "platform/OwnTexts.h"

struct Globale;
class RadioNetControl;
class NetworkLogMenu;
class QAction;
class QLabel;

// The window's texts of our own, in the window's language: the status bar's label
// that says which network the window talks to, the network log's menu item and
// window, and the language of the network's own error descriptions.
class OwnCaptions {
public:
    struct Widgets {
        QLabel *NetworkLabel;
        QAction *m_networkLog;
    };

    OwnCaptions(Widgets w, const Globale &g, RadioNetControl &RF1, NetworkLogMenu &logMenu);

    // Again after every change of language or of the port.
    void apply();
    OwnTexts::Language language() const;

private:
    Widgets w_;
    const Globale &g_;
    RadioNetControl &RF1_;
    NetworkLogMenu &logMenu_;
    OwnTexts texts_;
};
