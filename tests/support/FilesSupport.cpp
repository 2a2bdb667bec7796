#include "support/FilesSupport.h"

#include "config/IniFile.h"
#include "radionet/RadioNetControl.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QMessageBox>

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
        if (seen_++ == 0)
            first_ = {dialog->acceptMode() == QFileDialog::AcceptSave ? "save" : "open",
                      dialog->fileMode() == QFileDialog::ExistingFile ? "existing" : "any",
                      dialog->testOption(QFileDialog::DontUseNativeDialog) ? "own" : "native",
                      dialog->directory().absolutePath(),
                      dialog->nameFilters().join(u';'),
                      dialog->defaultSuffix()};
    }
    if (files_.isEmpty()) {
        dialog->reject();
        return;
    }
    // Accepted from a timer of its own: a timer does not fire again while its own
    // slot runs, and the accept may wait in a message box that this poll must close.
    answering_ = true;
    QTimer::singleShot(0, &timer_, [this, dialog = QPointer(dialog), file = files_.takeFirst()] {
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

QStringList fileDialogAsDesigned(const char *mode, const ProgramFolder &folder) {
    const QString filter = QStringLiteral("File configuration (*.nvl)");
    return {mode, "existing", "own", QDir(folder.path()).absolutePath(), filter, "nvl"};
}

void openThroughDialog(MainHarness &h, const QString &file, QStringList *shown) {
    FileDialogAnswerer answer({file});
    h.trigger("mOuvrir");
    if (shown)
        *shown = answer.firstShown();
    QCOMPARE(answer.dialogsSeen(), 1);
}

QByteArray goldenWith(const QList<std::pair<QByteArray, QByteArray>> &edits) {
    QByteArray bytes = referenceFile(QStringLiteral("three-satellites.nvl"));
    for (const auto &[text, replacement] : edits) {
        if (!bytes.contains(text))
            qFatal("the golden file has no \"%s\"", text.constData());
        bytes.replace(text, replacement);
    }
    return bytes;
}

QByteArray settingsFile(const QByteArray &language, const QStringList &files,
                        const QByteArray &version) {
    QByteArray bytes = "[General]\r\nVersion=" + version + "\r\nLanguage=" + language + "\r\n";
    for (int n = 0; n < 4; ++n)
        bytes += "File" + QByteArray::number(n + 1) + "=" + files.value(n).toUtf8() + "\r\n";
    return bytes;
}

QStringList satellitesOf(RadioNetControl &net) {
    QStringList list;
    for (qint16 position = 1; position <= net.Satellites().Count(); ++position) {
        const SatellitePtr s = net.Satellites().Item(position);
        list << QStringLiteral("%1/%2/%3").arg(s->SatId()).arg(s->Interface()).arg(s->Enabled());
    }
    return list;
}

QList<qint16> terminalsOf(RadioNetControl &net) {
    QList<qint16> numbers;
    for (qint16 position = 1; position <= net.Devices().Count(); ++position)
        numbers << net.Devices().Item(position)->Number();
    return numbers;
}

QStringList recentMenu(MainHarness &h) {
    QStringList shown;
    for (const char *name : {"mFile1", "mFile2", "mFile3", "mfile4"}) {
        const QAction *item = h.w<QAction>(name);
        shown << (item->isVisible() == !item->text().isEmpty()
                      ? item->text()
                      : QStringLiteral("<%1 visible=%2 caption=%3>")
                            .arg(QLatin1String(name))
                            .arg(item->isVisible())
                            .arg(item->text()));
    }
    return shown;
}

QStringList recentSettings(const ProgramFolder &folder) {
    QStringList files;
    for (const char *key : {"File1", "File2", "File3", "File4"})
        files << keyOf(folder.file(QStringLiteral("Setup.ini")), "General", key);
    return files;
}

QStringList shown(MainHarness &h, std::initializer_list<const char *> names) {
    QStringList texts;
    for (const char *name : names) {
        const QObject *o = h.main().findChild<QObject *>(QString::fromLatin1(name));
        QString text = QStringLiteral("<no %1>").arg(QLatin1String(name));
        for (const char *property : {"currentText", "title", "text"}) {
            if (o && o->metaObject()->indexOfProperty(property) >= 0) {
                text = o->property(property).toString();
                break;
            }
        }
        texts << text;
    }
    return texts;
}

QString keyOf(const QString &file, const char *section, const char *key) {
    QString value;
    ReadIniKey(QString::fromLatin1(section), QString::fromLatin1(key), value, file);
    return value;
}
