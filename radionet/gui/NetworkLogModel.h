#pragma once

#include "radionet/NetworkLog.h"

#include <QAbstractTableModel>
#include <QStringList>
#include <deque>

// The rows of the network log window: the log's entries, taken in batches of what
// is new since the last one taken, never more than a bound (the oldest rows go).
// A row's text is made only when the view asks for it.
class NetworkLogModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Time, Direction, SatId, What, Details, Latency, Columns };

    explicit NetworkLogModel(std::size_t bound, QObject *parent = nullptr);

    // Appends what the log holds beyond the last entry taken; false when nothing was new.
    bool take(const NetworkLog &log);
    void setHeaders(const QStringList &headers);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::deque<NetworkLog::Entry> rows_;
    std::size_t bound_;
    quint64 last_ = 0;
    QStringList headers_;
};

// Nanoseconds as milliseconds with one decimal; "" for none (negative).
QString logMs(qint64 ns);
