#pragma once

#include <QtGlobal>

struct Globale;
class Texts;
class RadioNetControl;
class QComboBox;
class QLabel;
class QLineEdit;

// The general tab: port and time-out committed into the control when left, and the
// terminal range checked on every change and again when left.
class GeneralFields {
public:
    struct Widgets {
        QComboBox *C_port;
        QComboBox *C_timeout;
        QLineEdit *Text1;
        QLineEdit *Text2;
        QLabel *L_nbTPChiffre;
        QLabel *StatusPanel2;
    };

    GeneralFields(Widgets w, Globale &g, const Texts &texts, RadioNetControl &RF1);

    void C_port_LostFocus();
    void C_timeout_LostFocus();
    // The Change and LostFocus handlers of a terminal box are one procedure.
    void Text1_Change();
    void Text1_LostFocus() { Text1_Change(); }
    void Text2_Change();
    void Text2_LostFocus() { Text2_Change(); }

private:
    void checkTerminal(QLineEdit *box, qint16 &device);
    // Empties the box, resets its terminal number to 0 and shows the range error.
    void refuse(QLineEdit *box, qint16 &device);
    void showRangeError();

    Widgets w_;
    Globale &g_;
    const Texts &texts_;
    RadioNetControl &RF1_;
};
