#include "config/gui/GeneralFields.h"

#include "config/Globale.h"
#include "config/IniFile.h"
#include "platform/Numeric.h"
#include "radionet/RadioNetControl.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <limits>

GeneralFields::GeneralFields(Widgets w, Globale &g, const Texts &texts, RadioNetControl &RF1)
    : w_(w)
    , g_(g)
    , texts_(texts)
    , RF1_(RF1) {}

void GeneralFields::C_port_LostFocus() {
    RF1_.setCommPort(w_.C_port->currentText());
}

void GeneralFields::C_timeout_LostFocus() {
    RF1_.setTimeOut(textToInt16(w_.C_timeout->currentText()));
}

void GeneralFields::Text1_Change() {
    checkTerminal(w_.Text1, g_.FirstDevice);
}

void GeneralFields::Text2_Change() {
    checkTerminal(w_.Text2, g_.LastDevice);
}

void GeneralFields::showRangeError() {
    w_.L_nbTPChiffre->setText(texts_(150));
    g_.TerminalRangeStatus = 2;
    w_.StatusPanel2->setText(texts_(151));
}

void GeneralFields::refuse(QLineEdit *box, qint16 &device) {
    box->clear(); // fires this check again on the empty text, with the same outcome
    device = 0;
    showRangeError();
}

void GeneralFields::checkTerminal(QLineEdit *box, qint16 &device) {
    constexpr int largest = std::numeric_limits<qint16>::max();
    const QString text = box->text();
    // A number too large for 16 bits is refused like any other text that is not a
    // terminal number.
    if (!IsDigitString(text) || leadingNumber(text) > largest) {
        refuse(box, device);
        return;
    }
    device = textToInt16(text);
    if (device < 1) {
        refuse(box, device); // terminal numbers start at 1
        return;
    }
    // The count leaves 16 bits only for a last terminal of 32767 after a refused
    // first one (0); that number is refused too.
    const int count = int(g_.LastDevice) - int(g_.FirstDevice) + 1;
    if (count > largest) {
        refuse(box, device);
        return;
    }
    if (count < 1) {
        // The box keeps its text: the other end of the range may still be typed.
        showRangeError();
        return;
    }
    w_.L_nbTPChiffre->setText(QString::number(count));
    g_.TerminalRangeStatus = 0;
    w_.StatusPanel2->setText(texts_(148));
}
