#pragma once

#include <QString>
#include <QtGlobal>

struct Globale;
class Texts;
class RadioNetControl;
class Pause;
class QLabel;

// The state of the serial link as status panel 1 shows it, and the four moves of
// the link (start, halt, close, reopen), each step followed by the pause.
class LinkStatus {
public:
    struct Widgets {
        QLabel *StatusPanel1;
        QLabel *StatusPanel2;
    };

    LinkStatus(Widgets w, Globale &g, const Texts &texts, RadioNetControl &RF1, Pause &pause);

    QString QueryLinkStatus();
    bool StartNetwork();
    bool HaltPolling();
    bool CloseNetwork();
    bool ReopenPort();

private:
    // Every move starts alike: the state shown and read, the pending error cleared.
    qint16 beginMove();

    Widgets w_;
    Globale &g_;
    const Texts &texts_;
    RadioNetControl &RF1_;
    Pause &pause_;
};
