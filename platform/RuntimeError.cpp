#include "platform/RuntimeError.h"

RuntimeError::RuntimeError(int number, const QString &description)
    : std::runtime_error(description.toStdString())
    , number_(number)
    , description_(description) {}

QString RuntimeError::text() const {
    return QStringLiteral("Run-time error %1: %2").arg(number_).arg(description_);
}

RuntimeError RuntimeError::overflow() {
    return RuntimeError(Overflow, QStringLiteral("Overflow"));
}

RuntimeError RuntimeError::subscriptOutOfRange() {
    return RuntimeError(SubscriptOutOfRange, QStringLiteral("Subscript out of range"));
}
