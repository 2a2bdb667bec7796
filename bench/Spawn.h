#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>

// One run of a program to its end, timed on the monotonic clock.
struct Finished {
    std::int64_t startedNs = 0; // just before the process was made
    std::int64_t endedNs = 0;   // once it had ended and was reaped
    bool started = false;
    bool timedOut = false; // killed after the time allowed
    int exitCode = -1;     // -1 when it did not exit by itself
    QString output;        // its standard output and error, one after the other as written

    bool succeeded() const { return started && !timedOut && exitCode == 0; }
};

// Starts the program with posix_spawn (no shell, no search of PATH) and collects what
// it writes until it ends; past timeoutMs without a word it is killed.
Finished runProgram(const QString &program, const QStringList &arguments, int timeoutMs);
