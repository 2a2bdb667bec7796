#include "support/SatelliteEditorHelpers.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QStringList>
#include <QTableWidget>

QString satelliteList(SimulatedRadioNet &net) {
    SatelliteList &satellites = net.Satellites();
    QStringList parts;
    for (qint32 position = 1; position <= satellites.Count(); ++position) {
        const SatellitePtr s = satellites.Item(qint16(position));
        parts << QStringLiteral("%1,%2,%3").arg(s->SatId()).arg(s->Interface()).arg(s->Enabled());
    }
    return parts.join(u' ');
}

QString satIds(SimulatedRadioNet &net) {
    SatelliteList &satellites = net.Satellites();
    QStringList parts;
    for (qint32 position = 1; position <= satellites.Count(); ++position)
        parts << QString::number(satellites.Item(qint16(position))->SatId());
    return parts.join(u' ');
}

void setSatellites(MainHarness &h, std::initializer_list<SatSpec> satellites) {
    SatelliteList &list = h.net().Satellites();
    list.Clear();
    for (const SatSpec &spec : satellites) {
        const SatellitePtr s = list.Add(spec.satId);
        s->setInterface(spec.interfaceCode);
        s->setEnabled(spec.enabled);
    }
    const SatSpec &first = *satellites.begin();
    h.w<QLineEdit>("Text3")->setText(QString::number(first.satId));
    h.w<QComboBox>("C_Interface")
        ->setCurrentText(first.interfaceCode == 1 ? QStringLiteral("RS-232")
                                                  : QStringLiteral("RS-485"));
    h.w<QCheckBox>("Check1")->setCheckState(first.enabled != 0 ? Qt::Checked : Qt::Unchecked);
    h.w<QLabel>("l_index")->setText(QStringLiteral("1/%1").arg(satellites.size()));
    h.net().clearCallLog();
}

void goToPosition(MainHarness &h, int position) {
    for (int i = 1; i < position; ++i)
        h.click("b_Next_antenne");
}

void fillNetworkView(MainHarness &h) {
    auto *grid = h.w<QTableWidget>("MFG1");
    for (int row = 0; row < 6; ++row)
        grid->item(row, 1)->setText(QStringLiteral("x"));
}

bool networkViewCleared(MainHarness &h) {
    auto *grid = h.w<QTableWidget>("MFG1");
    const char *labels[] = {"ID Sat", "Interface", "Enabled", "RF Version", "Rx Free", "Tx Free"};
    for (int row = 0; row < 6; ++row) {
        if (!grid->item(row, 1)->text().isEmpty() ||
            grid->item(row, 0)->text() != QLatin1String(labels[row]))
            return false;
    }
    return true;
}
