#include "platform/HandlerGuard.h"

#include "platform/RuntimeError.h"

#include <cstdio>
#include <exception>

void HandlerGuard::reportCurrentException() const noexcept {
    QString text;
    try {
        throw;
    } catch (const RuntimeError &e) {
        text = e.text();
    } catch (const std::exception &e) {
        text = QStringLiteral("Run-time error: %1").arg(QString::fromLocal8Bit(e.what()));
    } catch (...) {
        text = QStringLiteral("Run-time error: unknown failure");
    }
    std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
    std::fflush(stderr);
    if (!report_)
        return;
    try {
        report_(text);
    } catch (...) {
        // The report itself must never take the program down.
    }
}
