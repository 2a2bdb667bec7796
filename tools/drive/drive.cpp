// Drives the real main window over an installed program folder, for
// tools/test-package.sh. The window is made as main() makes it, with the folder
// given instead of the executable's own; its modal dialogs are found by their
// objectName and answered as a user answers them. Prints what it met, a line each:
//   dialog: <folder the file dialog CD1 showed>
//   status: <status panel 2 after a command>
//   message: <text of a message box>
#include "app/Main.h"
#include "radionet/SimulatedRadioNet.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCommandLineParser>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QTextStream>
#include <QTimer>
#include <functional>

namespace {

void report(const QString &what, const QString &text) {
    QTextStream(stdout) << what << ": " << text << Qt::endl;
}

// Polls the modal widget: the file dialog CD1 gets the file name typed into it,
// the About box a click on System Info... and then on OK, a message box OK.
class Answerer {
public:
    explicit Answerer(QString fileName)
        : fileName_(std::move(fileName)) {
        timer_.setInterval(10);
        QObject::connect(&timer_, &QTimer::timeout, [this] { poll(); });
        timer_.start();
    }

private:
    void poll() {
        QWidget *modal = QApplication::activeModalWidget();
        if (auto *box = qobject_cast<QMessageBox *>(modal)) {
            report(QStringLiteral("message"), box->text());
            box->button(QMessageBox::Ok)->click();
            return;
        }
        // While a click or an accept runs (it may show a message box), the rest waits.
        if (!modal || busy_)
            return;
        if (auto *dialog = qobject_cast<QFileDialog *>(modal);
            dialog && dialog->objectName() == QLatin1String("CD1")) {
            report(QStringLiteral("dialog"), dialog->directory().absolutePath());
            dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(fileName_);
            // Through QDialog: the file dialog's accept, with its checks, is protected.
            later([dialog = QPointer<QDialog>(dialog)] {
                if (dialog)
                    dialog->accept();
            });
        } else if (modal->objectName() == QLatin1String("frmAbout")) {
            QPointer button = modal->findChild<QAbstractButton *>(
                sysInfoClicked_ ? QStringLiteral("cmdOK") : QStringLiteral("cmdSysInfo"));
            sysInfoClicked_ = true;
            later([button] {
                if (button)
                    button->click();
            });
        }
    }

    // From a timer of its own: a timer does not fire again while its slot runs,
    // and the step may wait in a message box that the next poll closes.
    void later(std::function<void()> step) {
        busy_ = true;
        QTimer::singleShot(0, &timer_, [this, step = std::move(step)] {
            step();
            busy_ = false;
        });
    }

    QString fileName_;
    QTimer timer_;
    bool busy_ = false;
    bool sysInfoClicked_ = false;
};

} // namespace

int main(int argc, char *argv[]) {
    QApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "save-as: File > Open of <file> in the dialog's folder, then Save as onto it twice.\n"
        "sysinfo: Help > About, then System Info...");
    parser.addHelpOption();
    parser.addPositionalArgument("command", "save-as or sysinfo");
    parser.addPositionalArgument("folder", "the installed program folder");
    parser.addPositionalArgument("file", "save-as: the file name typed into the dialog");
    parser.process(app);
    const QStringList args = parser.positionalArguments();
    const QString command = args.value(0);
    if (args.size() != (command == QLatin1String("save-as") ? 3 : 2) ||
        (command != QLatin1String("save-as") && command != QLatin1String("sysinfo")))
        parser.showHelp(2);

    Main window(new SimulatedRadioNet, args[1], QString());
    window.show();
    const Answerer answerer(args.value(2));
    auto run = [&](const char *action) {
        window.findChild<QAction *>(QLatin1String(action))->trigger();
        report(QStringLiteral("status"),
               window.findChild<QLabel *>(QStringLiteral("StatusPanel2"))->text());
    };
    if (command == QLatin1String("save-as")) {
        run("mOuvrir");
        run("m_enregistersous");
        run("m_enregistersous");
    } else {
        run("m_apropos");
    }
    return 0;
}
