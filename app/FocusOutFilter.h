#pragma once

#include <QHash>
#include <QObject>
#include <functional>

// Runs a widget's LostFocus handler on its FocusOut event. Focus lost to a popup
// or to another window is not a change of field and runs nothing.
class FocusOutFilter : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    void watch(QObject *widget, std::function<void()> handler);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QHash<QObject *, std::function<void()>> handlers_;
};
