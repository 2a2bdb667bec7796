#pragma once

#include <QtGlobal>
#include <optional>

struct Globale;
class Texts;
class RadioNetControl;
class SatelliteView;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;

// The current satellite's Sat ID, interface and active flag, each written into the
// satellite at CurrentSatelliteIndex when left, and all three at once before the
// list moves.
class SatelliteFields {
public:
    struct Widgets {
        QLineEdit *Text3;
        QComboBox *C_Interface;
        QCheckBox *Check1;
        QLabel *StatusPanel2;
    };

    SatelliteFields(Widgets w, Globale &g, const Texts &texts, RadioNetControl &RF1,
                    SatelliteView &view);

    // The interface code a combo-box text stands for: 1 for exactly "RS-232", else 0
    // (RS-485). The satellite commands send the same code.
    static qint16 interfaceCode(const QComboBox &C_Interface);

    void Text3_LostFocus();
    void C_Interface_LostFocus();
    void Check1_LostFocus();
    bool StoreCurrentSatellite();

private:
    // The Sat ID of Text3 when the focus handlers accept it (below 2000, or 2047);
    // otherwise marks the field rejected and answers nothing.
    std::optional<qint16> acceptedSatId();
    void rejectSatId();
    qint16 interfaceCode() const { return interfaceCode(*w_.C_Interface); }

    Widgets w_;
    Globale &g_;
    const Texts &texts_;
    RadioNetControl &RF1_;
    SatelliteView &view_;
};
