#pragma once

struct Globale;
class Texts;
class RadioNetControl;
class SatelliteView;
class SatelliteFields;
class LinkStatus;
class QLabel;
class QLineEdit;
class QPushButton;

// Insert, remove, remove all, previous and next over the satellite list, which
// lives in the control; only the current position is kept here.
class SatelliteListEditor {
public:
    struct Widgets {
        QLineEdit *Text3;
        QPushButton *b_Config;
        QLabel *StatusPanel2;
    };

    SatelliteListEditor(Widgets w, Globale &g, const Texts &texts, RadioNetControl &RF1,
                        SatelliteView &view, SatelliteFields &fields, LinkStatus &link);

    void b_Insert_Click();
    void b_Supp_Click();
    void b_ClearAll_Click();
    void b_Next_antenne_Click();
    void b_Prev_antenne_Click();

private:
    void moveTo(int step);

    Widgets w_;
    Globale &g_;
    const Texts &texts_;
    RadioNetControl &RF1_;
    SatelliteView &view_;
    SatelliteFields &fields_;
    LinkStatus &link_;
};
