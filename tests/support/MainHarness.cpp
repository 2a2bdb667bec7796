#include "support/MainHarness.h"

#include "config/IniFile.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QEventLoop>
#include <QFileDialog>
#include <QFocusEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>

namespace {
// The simulated network, noting what panel 2 shows each time the window turns to the
// network: a message replaced within the same handler is seen too.
class ObservedNet : public SimulatedRadioNet {
public:
    mutable QStringList said;

    qint16 LinkState() const override { return note(SimulatedRadioNet::LinkState()); }
    QString CommPort() const override { return note(SimulatedRadioNet::CommPort()); }
    SatelliteList &Satellites() override { return note(SimulatedRadioNet::Satellites()); }
    void GetNotification(bool &sendToPc, qint16 &timeNotify, qint16 &timeGoingOn) override {
        note(0);
        SimulatedRadioNet::GetNotification(sendToPc, timeNotify, timeGoingOn);
    }

private:
    template <typename T> T &&note(T &&value) const {
        // The window owns the network, perhaps through a wrapper of its own.
        const QObject *window = parent();
        while (window && !window->isWidgetType())
            window = window->parent();
        const QLabel *panel =
            window ? window->findChild<QLabel *>(QStringLiteral("StatusPanel2")) : nullptr;
        if (panel && (said.isEmpty() || said.last() != panel->text()))
            said << panel->text();
        return std::forward<T>(value);
    }
};
} // namespace

QByteArray ProgramFolder::read(const QString &name) const {
    QFile f(file(name));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void ProgramFolder::write(const QString &name, const QByteArray &bytes) const {
    QFile f(file(name));
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(bytes);
}

QByteArray referenceFile(const QString &name) {
    QFile f(QStringLiteral(NORVALE_REFERENCE_DIR "/") + name);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
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

QString keyOf(const QString &file, const char *section, const char *key) {
    QString value;
    ReadIniKey(QString::fromLatin1(section), QString::fromLatin1(key), value, file);
    return value;
}

QStringList recentSettings(const ProgramFolder &folder) {
    QStringList files;
    for (const char *key : {"File1", "File2", "File3", "File4"})
        files << keyOf(folder.file(QStringLiteral("Setup.ini")), "General", key);
    return files;
}

QStringList satellitesOf(RadioNetControl &net) {
    QStringList list;
    for (qint16 position = 1; position <= net.Satellites().Count(); ++position) {
        const SatellitePtr s = net.Satellites().Item(position);
        list << QStringLiteral("%1/%2/%3").arg(s->SatId()).arg(s->Interface()).arg(s->Enabled());
    }
    return list;
}

QStringList terminalsOf(RadioNetControl &net) {
    QStringList numbers;
    for (qint16 position = 1; position <= net.Devices().Count(); ++position)
        numbers << QString::number(net.Devices().Item(position)->Number());
    return numbers;
}

std::function<void(SimulatedRadioNet &)> onAir(const QList<OnAirSatellite> &satellites) {
    return [satellites](SimulatedRadioNet &net) {
        net.clearAir();
        for (const OnAirSatellite &satellite : satellites)
            net.putOnAir(satellite);
    };
}

FileDialogAnswerer::FileDialogAnswerer(QStringList files)
    : files_(std::move(files)) {
    timer_.setInterval(5);
    QObject::connect(&timer_, &QTimer::timeout, [this] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!dialog || dialog == current_ || dialog->objectName() != QStringLiteral("CD1"))
            return;
        current_ = dialog;
        if (seen_++ == 0)
            first_ = {dialog->acceptMode() == QFileDialog::AcceptSave ? "save" : "open",
                      dialog->fileMode() == QFileDialog::ExistingFile ? "existing" : "any",
                      dialog->testOption(QFileDialog::DontUseNativeDialog) ? "own" : "native",
                      dialog->directory().absolutePath(),
                      dialog->nameFilters().join(u';'),
                      dialog->defaultSuffix()};
        if (files_.isEmpty()) {
            dialog->reject();
            return;
        }
        // Typed into the name box, as the user does, and accepted through QDialog: the
        // file dialog's own accept, with its checks, is protected.
        dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(files_.takeFirst());
        static_cast<QDialog *>(dialog)->accept();
    });
    timer_.start();
}

MainHarness::MainHarness(const QString &commandLine,
                         const std::function<void(SimulatedRadioNet &)> &prepare,
                         const ProgramFolder *folder)
    : ownFolder_(folder ? nullptr : std::make_unique<ProgramFolder>())
    , folder_(folder ? folder : ownFolder_.get()) {
    net_ = new ObservedNet;
    net_->setAnswerDelayMs(0);
    if (prepare)
        prepare(*net_);
    main_ = std::make_unique<Main>(net_, folder_->path(), commandLine);
}

QStringList MainHarness::panel2History() {
    QStringList said = static_cast<ObservedNet *>(net_)->said;
    return said.isEmpty() || said.last() != panel2() ? said << panel2() : said;
}

QString MainHarness::shownBy(QString name) {
    if (name == u"log")
        return net_->callLog().join(u',');
    if (name == u"said")
        return panel2History().mid(said_).join(u',');
    if (name == u"sats")
        return satellitesOf(*net_).join(u' ');
    if (name == u"MFG1" || name.startsWith(u"MFG2:")) {
        const bool testView = name != u"MFG1";
        const auto *grid = w<QTableWidget>(testView ? "MFG2" : "MFG1");
        QStringList cells;
        for (int n = 0; n < (testView ? 3 : 6); ++n)
            cells << (testView ? grid->item(name.mid(5).toInt(), n) : grid->item(n, 1))->text();
        return cells.join(u',');
    }
    if (name == u"recent") {
        QStringList items;
        for (const char *item : {"mFile1", "mFile2", "mFile3", "mfile4"}) {
            const QAction *a = w<QAction>(item);
            items << (a->isVisible() == !a->text().isEmpty() ? a->text()
                                                             : "<wrong " + a->text() + ">");
        }
        return items.join(u',');
    }
    // A suffix asks for a flag or a state rather than a text.
    const QChar suffix = name.back();
    const auto properties = suffix == u'?'   ? QList<const char *>{"enabled"}
                            : suffix == u'!' ? QList<const char *>{"visible"}
                            : suffix == u'#'
                                ? QList<const char *>{"currentIndex", "checked", "active"}
                                : QList<const char *>{"currentText", "title", "text"};
    if (suffix == u'?' || suffix == u'!' || suffix == u'#')
        name.chop(1);
    const QObject *o = main_->findChild<QObject *>(name);
    if (auto *box = qobject_cast<const QCheckBox *>(o); box && suffix == u'#')
        return QString::number(box->checkState());
    for (const char *property : properties) {
        if (o && o->metaObject()->indexOfProperty(property) >= 0)
            return o->property(property).toString();
    }
    return QStringLiteral("<no %1>").arg(name);
}

QStringList MainHarness::shown(std::initializer_list<const char *> names) {
    QStringList texts;
    for (const char *name : names)
        texts << shownBy(QString::fromLatin1(name));
    return texts;
}

QString MainHarness::state(std::initializer_list<const char *> names) {
    return shown(names).join(QStringLiteral(" | "));
}

void MainHarness::act(const QString &steps) {
    for (const QString &step : steps.split(u' ', Qt::SkipEmptyParts)) {
        if (step.startsWith(u'~')) {
            const QStringList event = step.mid(1).split(u':');
            const qint16 number = event.value(1).toShort();
            const QString text = event.value(2).replace(u'_', u' ');
            if (event[0] == u"log") {
                net_->clearCallLog();
                said_ = panel2History().size();
            } else if (event[0] == u"error")
                net_->raiseNetError(number, text);
            else if (event[0] == u"answered")
                net_->raiseSatelliteAnswered(number, text);
            else if (event[0] == u"config")
                net_->raiseConfigReceived(number);
            else if (event[0] == u"status")
                net_->raiseStatusReceived(number);
            else if (event[0] == u"state")
                net_->setLinkStateOverride(event[1] == u"-" ? std::nullopt : std::optional(number));
            else
                net_->Satellites().Add(number);
            settle();
            continue;
        }
        const QString value = step.section(u'=', 1).replace(u'_', u' ');
        QObject *o = main_->findChild<QObject *>(step.section(u'=', 0, 0));
        if (!step.contains(u'=')) {
            if (auto *button = qobject_cast<QPushButton *>(o))
                button->click();
            else if (auto *action = qobject_cast<QAction *>(o))
                action->trigger();
            else if (auto *menu = qobject_cast<QMenu *>(o))
                emit menu->aboutToShow(); // the menu drops down
            else
                leave(qPrintable(step));
        } else if (auto *edit = qobject_cast<QLineEdit *>(o)) {
            edit->setText(value);
        } else if (auto *combo = qobject_cast<QComboBox *>(o)) {
            combo->setCurrentText(value);
        } else if (auto *box = qobject_cast<QCheckBox *>(o)) {
            box->setCheckState(Qt::CheckState(value.toInt()));
        } else if (auto *label = qobject_cast<QLabel *>(o)) {
            label->setText(value);
        } else if (auto *tabs = qobject_cast<QTabWidget *>(o)) {
            tabs->setCurrentIndex(value.toInt());
        } else if (auto *grid = qobject_cast<QTableWidget *>(o)) {
            for (int row = grid->property("fixedRows").toInt(); row < grid->rowCount(); ++row) {
                for (int col = grid->property("fixedCols").toInt(); col < grid->columnCount();
                     ++col)
                    grid->item(row, col)->setText(value);
            }
        } else {
            qFatal("cannot set %s", qPrintable(step));
        }
        settle();
    }
}

void MainHarness::leave(const char *name) {
    QFocusEvent event(QEvent::FocusOut, Qt::TabFocusReason);
    QCoreApplication::sendEvent(w(name), &event);
}

QStringList MainHarness::open(const QString &file) {
    FileDialogAnswerer answer({file});
    act("mOuvrir");
    return answer.firstShown();
}

bool MainHarness::settle(int timeoutMs) {
    return settleNetwork(*net_, timeoutMs);
}

bool settleNetwork(SimulatedRadioNet &net, int timeoutMs) {
    // Round after round while the handlers ask for more: an answer may ask for the
    // next one (the live test asks for ever; it stops after a few rounds). Each round
    // waits for a status answer from Sat ID -32768, which no handler takes, queued behind
    // the rest, in an event loop of its own: QTest::qWaitFor rests between rounds.
    for (int round = 0; round < 20; ++round) {
        const qsizetype calls = net.callLog().size();
        QEventLoop loop;
        bool arrived = false;
        QObject::connect(&net, &RadioNetControl::StatusReceived, &loop, [&](qint16 satId) {
            arrived = arrived || satId == -32768;
            if (arrived)
                loop.quit();
        });
        QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
        net.raiseStatusReceived(-32768);
        loop.exec();
        if (!arrived)
            return false;
        if (net.callLog().size() == calls)
            break;
    }
    return true;
}

TickHook::TickHook(QTimer *timer, std::function<void(int tick)> action) {
    QObject::connect(timer, &QTimer::timeout, &context_,
                     [ticks = ticks_, action = std::move(action)] { action(++*ticks); });
}
