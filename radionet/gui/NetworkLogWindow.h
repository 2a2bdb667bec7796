#pragma once

#include "platform/OwnTexts.h"
#include "radionet/gui/NetworkLogModel.h"

#include <QPointer>
#include <QSortFilterProxyModel>
#include <QTimer>
#include <QWidget>

class HandlerGuard;
class NetworkLog;
class QAction;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;
class QTableWidget;

// The network log window: the live table of the log's calls and events, a filter by
// Sat ID, each satellite's health, and Save as CSV. It takes what is new in the log
// on a timer, in batches, and only while it is shown.
class NetworkLogWindow : public QWidget {
    Q_OBJECT

public:
    static constexpr int BatchMs = 200;

    NetworkLogWindow(NetworkLog &log, const HandlerGuard &guard, QWidget *parent);

    void retranslate(OwnTexts::Language language);
    // The timer's tick: the new rows (followed unless the user scrolled up), the health.
    void logTimer_Timer();
    void logFilter_Change(const QString &text);
    void saveCsv_Click();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void showHealth();

    NetworkLog &log_;
    const HandlerGuard &guard_;
    OwnTexts texts_;
    OwnTexts::Language language_ = OwnTexts::English;
    NetworkLogModel rows_;
    QSortFilterProxyModel shown_;
    QTimer logTimer_;
    QLabel *filterLabel_;
    QLineEdit *logFilter_;
    QPushButton *saveCsv_;
    QTableView *logTable_;
    QLabel *healthLabel_;
    QTableWidget *healthTable_;
    QLabel *saveStatus_;
};

// The menu item "Network log…": one window per main window, made when first asked
// for, raised when asked for again; it follows the window's language.
class NetworkLogMenu {
public:
    NetworkLogMenu(QWidget *main, NetworkLog &log, const HandlerGuard &guard);
    ~NetworkLogMenu();
    NetworkLogMenu(const NetworkLogMenu &) = delete;
    NetworkLogMenu &operator=(const NetworkLogMenu &) = delete;

    void m_networkLog_Click();
    void setLanguage(OwnTexts::Language language);

private:
    QWidget *main_;
    NetworkLog &log_;
    const HandlerGuard &guard_;
    OwnTexts::Language language_ = OwnTexts::English;
    QPointer<NetworkLogWindow> window_;
};
