#include "radionet/gui/NetworkLogModel.h"

#include <QColor>
#include <algorithm>

QString logMs(qint64 ns) {
    return ns < 0 ? QString() : QString::number(double(ns) / 1e6, 'f', 1);
}

NetworkLogModel::NetworkLogModel(std::size_t bound, QObject *parent)
    : QAbstractTableModel(parent)
    , bound_(std::max<std::size_t>(1, bound)) {}

bool NetworkLogModel::take(const NetworkLog &log) {
    const std::vector<NetworkLog::Entry> fresh = log.entries(last_);
    if (fresh.empty())
        return false;
    last_ = fresh.back().number;
    // Room first, in one removal: what goes past the bound goes from the top.
    const std::size_t added = std::min(fresh.size(), bound_);
    if (rows_.size() + added > bound_) {
        const std::size_t gone = rows_.size() + added - bound_;
        beginRemoveRows(QModelIndex(), 0, int(gone) - 1);
        rows_.erase(rows_.begin(), rows_.begin() + std::ptrdiff_t(gone));
        endRemoveRows();
    }
    const int first = int(rows_.size());
    beginInsertRows(QModelIndex(), first, first + int(added) - 1);
    rows_.insert(rows_.end(), fresh.end() - std::ptrdiff_t(added), fresh.end());
    endInsertRows();
    return true;
}

void NetworkLogModel::setHeaders(const QStringList &headers) {
    headers_ = headers;
    emit headerDataChanged(Qt::Horizontal, 0, Columns - 1);
}

int NetworkLogModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : int(rows_.size());
}

int NetworkLogModel::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : Columns;
}

QVariant NetworkLogModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid() || std::size_t(index.row()) >= rows_.size())
        return {};
    const NetworkLog::Entry &e = rows_[std::size_t(index.row())];
    if (role == Qt::TextAlignmentRole)
        return index.column() == Time || index.column() == SatId || index.column() == Latency
                   ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                   : QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    if (role == Qt::ForegroundRole && e.what == NetworkLog::What::NetError)
        return QColor(Qt::darkRed); // an error stands out among the answers
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case Time:
        return logMs(e.timeNs);
    case Direction:
        return NetworkLog::isEvent(e.what) ? QStringLiteral("<-") : QStringLiteral("->");
    case SatId:
        return e.satId == NetworkLog::NoSatellite ? QString() : QString::number(e.satId);
    case What:
        return NetworkLog::whatName(e.what);
    case Details:
        return NetworkLog::describe(e);
    default:
        return logMs(e.latencyNs);
    }
}

QVariant NetworkLogModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return headers_.value(section);
    return QAbstractTableModel::headerData(section, orientation, role);
}
