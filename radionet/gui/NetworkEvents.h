#pragma once

#include <QString>
#include <QtGlobal>

struct Globale;
class Texts;
class RadioNetControl;
class LinkStatus;
class SatelliteView;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

// The control's four events: the network view's read-back chain (RequestMode 1),
// the live test's answers (RequestMode 4) and network errors.
class NetworkEvents {
public:
    struct Widgets {
        QLineEdit *Text3;
        QTableWidget *MFG1;
        QTableWidget *MFG2;
        QPushButton *b_Config;
        QLabel *StatusPanel1;
        QLabel *StatusPanel2;
    };

    NetworkEvents(Widgets w, Globale &g, const Texts &texts, RadioNetControl &RF1, LinkStatus &link,
                  SatelliteView &view);

    void RF1_NetError(qint16 ErrNum, const QString &Description);
    void RF1_SatelliteAnswered(qint16 SatId, const QString &Identity);
    void RF1_ConfigReceived(qint16 SatId);
    void RF1_StatusReceived(qint16 SatId);
    qint16 FindSatelliteIndex(qint16 SatId);

private:
    double shownSatId() const;
    void setValue(int row, const QString &text);

    Widgets w_;
    Globale &g_;
    const Texts &texts_;
    RadioNetControl &RF1_;
    LinkStatus &link_;
    SatelliteView &view_;
};
