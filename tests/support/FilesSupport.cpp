#include "support/FilesSupport.h"

#include "config/IniFile.h"
#include "radionet/RadioNetControl.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>

FileDialogAnswerer::FileDialogAnswerer(QStringList files)
    : files_(std::move(files)) {
    timer_.setInterval(5);
    QObject::connect(&timer_, &QTimer::timeout, [this] { poll(); });
    timer_.start();
}

void FileDialogAnswerer::poll() {
    QWidget *modal = QApplication::activeModalWidget();
    if (auto *box = qobject_cast<QMessageBox *>(modal)) {
        messages_ << box->text();
        if (QAbstractButton *ok = box->button(QMessageBox::Ok))
            ok->click();
        else
            box->reject();
        return;
    }
    auto *dialog = qobject_cast<QFileDialog *>(modal);
    // While an accept runs (it may show a message box), the dialog is left alone.
    if (!dialog || dialog->objectName() != QStringLiteral("CD1") || answering_)
        return;
    if (dialog != current_) {
        current_ = dialog;
        if (seen_++ == 0) {
            first_.nonNative = dialog->testOption(QFileDialog::DontUseNativeDialog);
            first_.acceptMode = dialog->acceptMode();
            first_.fileMode = dialog->fileMode();
            first_.directory = dialog->directory().absolutePath();
            first_.nameFilters = dialog->nameFilters();
            first_.defaultSuffix = dialog->defaultSuffix();
        }
    }
    if (files_.isEmpty()) {
        dialog->reject();
        return;
    }
    // Accepted from a timer of its own: a timer does not fire again while its own
    // slot runs, and the accept may wait in a message box that this poll must close.
    answering_ = true;
    const QString file = files_.takeFirst();
    QTimer::singleShot(0, &timer_, [this, dialog = QPointer<QFileDialog>(dialog), file] {
        if (dialog) {
            // Typed into the name box, as the user does: selectFile leaves a box
            // that has the focus alone.
            if (auto *name = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit")))
                name->setText(file);
            else
                dialog->selectFile(file);
            // Through QDialog: the file dialog's accept, with its checks, is protected.
            static_cast<QDialog *>(dialog.data())->accept();
        }
        answering_ = false;
    });
}

QByteArray configFileBytes(const ConfigSpec &spec) {
    QByteArray text;
    auto section = [&](const QByteArray &name) { text += "[" + name + "]\r\n"; };
    auto key = [&](const QByteArray &name, const QByteArray &value) {
        text += name + "=" + value + "\r\n";
    };
    auto number = [](int n) { return QByteArray::number(n); };
    section("General");
    key("Version", "TALMOR NORVALE CONFIGURATION FILE");
    key("CommPort", spec.commPort);
    key("BaudRate", "38400");
    key("Enabled", "1");
    key("Synchro", "1");
    key("TimeOut", number(spec.timeOut));
    key("Timer", number(spec.timeOut));
    key("mode", "0");
    key("SendToPc", "1");
    key("TimeNotify", "1");
    key("TimeGoingOn", "10");
    section("Devices");
    key("FirstDevice", number(spec.firstDevice));
    key("LastDevice", number(spec.lastDevice));
    for (int n = 1; n <= 16; ++n) {
        const SatelliteRecord unused{9999, 0, 0};
        const SatelliteRecord &s = n <= spec.satellites.size() ? spec.satellites[n - 1] : unused;
        section("Satellite" + number(n));
        key("SatId", number(s.satId));
        key("Interface", number(s.interfaceCode));
        key("Enabled", number(s.enabled));
    }
    return text;
}

QStringList satellitesOf(RadioNetControl &net) {
    QStringList list;
    SatelliteList &satellites = net.Satellites();
    for (int position = 1; position <= satellites.Count(); ++position) {
        const SatellitePtr s = satellites.Item(qint16(position));
        list << QStringLiteral("%1/%2/%3").arg(s->SatId()).arg(s->Interface()).arg(s->Enabled());
    }
    return list;
}

QList<qint16> terminalsOf(RadioNetControl &net) {
    QList<qint16> numbers;
    TerminalList &devices = net.Devices();
    for (int position = 1; position <= devices.Count(); ++position)
        numbers << devices.Item(qint16(position))->Number();
    return numbers;
}

QStringList recentMenu(MainHarness &h) {
    QStringList shown;
    for (const char *name : {"mFile1", "mFile2", "mFile3", "mfile4"}) {
        const QAction *item = h.w<QAction>(name);
        if (item->isVisible() == !item->text().isEmpty())
            shown << item->text();
        else
            shown << QStringLiteral("<%1 visible=%2 caption=%3>")
                         .arg(QLatin1String(name))
                         .arg(item->isVisible())
                         .arg(item->text());
    }
    return shown;
}

QStringList recentSettings(const ProgramFolder &folder) {
    QStringList files;
    for (int n = 1; n <= 4; ++n) {
        QString value;
        ReadIniKey(QStringLiteral("General"), QStringLiteral("File%1").arg(n), value,
                   folder.file(QStringLiteral("Setup.ini")));
        files << value;
    }
    return files;
}

void dropFileMenu(MainHarness &h) {
    emit h.w<QMenu>("mFichier")->aboutToShow();
}

QString backupOf(const QString &fileName) {
    return fileName.left(fileName.indexOf(u'.')) + QStringLiteral(".bak");
}
