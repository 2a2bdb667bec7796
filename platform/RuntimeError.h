#pragma once

#include <QString>
#include <stdexcept>

// The program's one run-time error: a 16-bit overflow, a bad list position or a
// failing call on the radio network control. It ends the handler that raised it;
// the handler guard reports it and the program goes on.
class RuntimeError : public std::runtime_error {
public:
    enum Number : int {
        Overflow = 6,
        SubscriptOutOfRange = 9,
        TypeMismatch = 13,
        ResourceNotFound = 326,
        ControlCallFailed = 440,
    };

    RuntimeError(int number, const QString &description);

    int number() const { return number_; }
    QString description() const { return description_; }
    // "Run-time error 6: Overflow", as reported on standard error and panel 2.
    QString text() const;

    static RuntimeError overflow();
    static RuntimeError subscriptOutOfRange();

private:
    int number_;
    QString description_;
};
