#include "radionet/gui/NetworkLogWindow.h"

#include "platform/HandlerGuard.h"
#include "radionet/NetworkLog.h"

#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QSaveFile>
#include <QScrollBar>
#include <QTableView>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

template <typename W> W *named(W *widget, const char *name) {
    widget->setObjectName(QLatin1String(name));
    return widget;
}

// A table that only shows: rows of one line, selected whole, never edited.
void readOnlyRows(QTableView *table) {
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 6);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setWordWrap(false);
    table->setAlternatingRowColors(true);
}

// Columns as wide as their header or a sample of their contents, whichever is wider;
// the details take what is left. Never measured on the rows: there may be thousands.
void setWidths(QTableView *table, const QStringList &headers, const QStringList &samples) {
    QHeaderView *header = table->horizontalHeader();
    const QFontMetrics metrics = table->fontMetrics();
    for (int col = 0; col < headers.size(); ++col) {
        const int text = std::max(metrics.horizontalAdvance(headers[col]),
                                  metrics.horizontalAdvance(samples.value(col)));
        header->resizeSection(col, text + 24);
    }
    header->setSectionResizeMode(NetworkLogModel::Details, QHeaderView::Stretch);
}

} // namespace

NetworkLogWindow::NetworkLogWindow(NetworkLog &log, const HandlerGuard &guard, QWidget *parent)
    : QWidget(parent, Qt::Window)
    , log_(log)
    , guard_(guard)
    , rows_(std::size_t(log.capacity()))
    , logTimer_(this)
    , filterLabel_(new QLabel(this))
    , logFilter_(named(new QLineEdit(this), "logFilter"))
    , saveCsv_(named(new QPushButton(this), "saveCsv"))
    , logTable_(named(new QTableView(this), "logTable"))
    , healthLabel_(new QLabel(this))
    , healthTable_(named(new QTableWidget(0, 7, this), "healthTable"))
    , saveStatus_(named(new QLabel(this), "saveStatus")) {
    setObjectName(QStringLiteral("NetworkLogWindow"));
    // A window beside the main one: it never keeps the program running on its own.
    setAttribute(Qt::WA_QuitOnClose, false);
    resize(860, 600);

    shown_.setSourceModel(&rows_);
    shown_.setFilterKeyColumn(NetworkLogModel::SatId);
    logTable_->setModel(&shown_);
    readOnlyRows(logTable_);
    readOnlyRows(healthTable_);
    healthTable_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    logFilter_->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("\\d{0,4}")), this));
    logFilter_->setMaximumWidth(120);
    filterLabel_->setBuddy(logFilter_);
    saveStatus_->setWordWrap(true);
    saveStatus_->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto *top = new QHBoxLayout;
    top->addWidget(filterLabel_);
    top->addWidget(logFilter_);
    top->addStretch();
    top->addWidget(saveCsv_);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(logTable_, 4);
    layout->addWidget(healthLabel_);
    layout->addWidget(healthTable_, 1);
    layout->addWidget(saveStatus_);

    logTimer_.setObjectName(QStringLiteral("logTimer"));
    logTimer_.setInterval(BatchMs);
    connect(&logTimer_, &QTimer::timeout, this, guard(this, &NetworkLogWindow::logTimer_Timer));
    connect(logFilter_, &QLineEdit::textChanged, this,
            guard(this, &NetworkLogWindow::logFilter_Change));
    connect(saveCsv_, &QPushButton::clicked, this, guard(this, &NetworkLogWindow::saveCsv_Click));
}

void NetworkLogWindow::retranslate(OwnTexts::Language language) {
    language_ = language;
    setWindowTitle(texts_(language, "LogTitle"));
    filterLabel_->setText(texts_(language, "LogFilter"));
    logFilter_->setPlaceholderText(texts_(language, "LogFilterAll"));
    saveCsv_->setText(texts_(language, "LogSave"));
    healthLabel_->setText(texts_(language, "LogHealth"));
    const QStringList columns = texts_(language, "LogColumns").split(u'|');
    rows_.setHeaders(columns);
    setWidths(logTable_, columns, {"000000.0", "<-", "2047", "SatelliteAnswered", "", "0000.0"});
    const QStringList health = texts_(language, "LogHealthColumns").split(u'|');
    healthTable_->setHorizontalHeaderLabels(health);
}

void NetworkLogWindow::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    guard_.run([this] { logTimer_Timer(); });
    logTimer_.start();
}

void NetworkLogWindow::hideEvent(QHideEvent *event) {
    // Nothing runs while nobody looks.
    logTimer_.stop();
    QWidget::hideEvent(event);
}

void NetworkLogWindow::logTimer_Timer() {
    QScrollBar *bar = logTable_->verticalScrollBar();
    const bool follow = bar->value() == bar->maximum();
    // The row at the top stays at the top while rows come in and old ones go.
    const QPersistentModelIndex top = logTable_->indexAt(QPoint(0, 0));
    if (rows_.take(log_)) {
        if (follow)
            logTable_->scrollToBottom();
        else if (top.isValid())
            logTable_->scrollTo(top, QAbstractItemView::PositionAtTop);
    }
    showHealth();
}

void NetworkLogWindow::showHealth() {
    const std::vector<NetworkLog::Health> health = log_.health();
    healthTable_->setRowCount(int(health.size()));
    for (int row = 0; row < int(health.size()); ++row) {
        const NetworkLog::Health &h = health[std::size_t(row)];
        const QStringList cells{QString::number(h.satId),   QString::number(h.requests),
                                QString::number(h.answers), QString::number(h.missed),
                                logMs(h.medianLatencyNs),   logMs(h.worstLatencyNs),
                                logMs(h.lastSeenNs)};
        for (int col = 0; col < cells.size(); ++col) {
            QTableWidgetItem *item = healthTable_->item(row, col);
            if (!item) {
                item = new QTableWidgetItem;
                item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
                healthTable_->setItem(row, col, item);
            }
            item->setText(cells[col]);
        }
    }
}

void NetworkLogWindow::logFilter_Change(const QString &text) {
    bool number = false;
    const int satId = text.toInt(&number);
    // Whole Sat IDs only: "1" is not "12"; empty shows every row.
    shown_.setFilterRegularExpression(number ? QStringLiteral("^%1$").arg(satId) : QString());
    logTable_->scrollToBottom();
}

void NetworkLogWindow::saveCsv_Click() {
    QFileDialog dialog(this, texts_(language_, "LogSaveTitle"), QDir::homePath(),
                       texts_(language_, "LogSaveFilter"));
    dialog.setObjectName(QStringLiteral("logSaveDialog"));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("csv"));
    dialog.selectFile(QStringLiteral("network-log.csv"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    const QString file = QDir::toNativeSeparators(dialog.selectedFiles().first());
    // All or nothing: a failed write leaves no half-written file behind.
    QSaveFile out(file);
    const QByteArray bytes = log_.csv().toUtf8();
    if (out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size() && out.commit())
        saveStatus_->setText(texts_(language_, "LogSaved", file));
    else
        saveStatus_->setText(texts_(language_, "LogNotSaved", file, out.errorString()));
}

NetworkLogMenu::NetworkLogMenu(QWidget *main, NetworkLog &log, const HandlerGuard &guard)
    : main_(main)
    , log_(log)
    , guard_(guard) {}

NetworkLogMenu::~NetworkLogMenu() {
    // Before the guard and the log it uses go.
    delete window_;
}

void NetworkLogMenu::m_networkLog_Click() {
    if (!window_) {
        window_ = new NetworkLogWindow(log_, guard_, main_);
        window_->retranslate(language_);
    }
    window_->show();
    window_->raise();
    window_->activateWindow();
}

void NetworkLogMenu::setLanguage(OwnTexts::Language language) {
    if (window_ && language != language_)
        window_->retranslate(language);
    language_ = language;
}
