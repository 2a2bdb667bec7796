#include "support/MainHarness.h"

#include <QAction>
#include <QComboBox>
#include <QFocusEvent>
#include <QLineEdit>

MainHarness::MainHarness(const QString &commandLine,
                         const std::function<void(SimulatedRadioNet &)> &prepare)
    : ownFolder_(std::make_unique<ProgramFolder>())
    , folder_(ownFolder_.get()) {
    net_ = new SimulatedRadioNet;
    net_->setAnswerDelayMs(0);
    if (prepare)
        prepare(*net_);
    main_ = std::make_unique<Main>(net_, folder_->path(), commandLine);
}

MainHarness::MainHarness(const ProgramFolder &folder, const QString &commandLine,
                         const std::function<void(SimulatedRadioNet &)> &prepare)
    : folder_(&folder) {
    net_ = new SimulatedRadioNet;
    net_->setAnswerDelayMs(0);
    if (prepare)
        prepare(*net_);
    main_ = std::make_unique<Main>(net_, folder_->path(), commandLine);
}

void MainHarness::leave(const char *name) {
    QFocusEvent event(QEvent::FocusOut, Qt::TabFocusReason);
    QCoreApplication::sendEvent(w(name), &event);
}

void MainHarness::trigger(const char *actionName) {
    QAction *action = main_->findChild<QAction *>(QString::fromLatin1(actionName));
    if (!action)
        qFatal("no action named %s", actionName);
    action->trigger();
}

void MainHarness::typeAndLeave(const char *name, const QString &text) {
    QWidget *widget = w(name);
    if (auto *edit = qobject_cast<QLineEdit *>(widget))
        edit->setText(text);
    else if (auto *combo = qobject_cast<QComboBox *>(widget))
        combo->setCurrentText(text);
    leave(name);
}
