#include "commissioning/Report.h"

#include <algorithm>

bool CommissioningReport::clean() const {
    return std::all_of(rows.begin(), rows.end(),
                       [](const Row &row) { return row.state == Row::State::Matches; });
}

QString stateName(CommissioningReport::Row::State state) {
    switch (state) {
    case CommissioningReport::Row::State::Matches:
        return QStringLiteral("matches");
    case CommissioningReport::Row::State::Differs:
        return QStringLiteral("differs");
    case CommissioningReport::Row::State::Missing:
        return QStringLiteral("missing");
    case CommissioningReport::Row::State::Unexpected:
        return QStringLiteral("unexpected");
    case CommissioningReport::Row::State::Duplicate:
        break;
    }
    return QStringLiteral("duplicate");
}
