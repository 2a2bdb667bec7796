#pragma once

#include <QString>
#include <functional>
#include <utility>

// Runs every event handler of the window: a run-time error (or any other exception)
// ends that handler where it was raised, what it did before stays done, the error's
// text is reported, and nothing ever crosses the Qt event loop.
class HandlerGuard {
public:
    using Reporter = std::function<void(const QString &)>;

    explicit HandlerGuard(Reporter report)
        : report_(std::move(report)) {}

    template <typename F> void run(F &&handler) const noexcept {
        try {
            std::forward<F>(handler)();
        } catch (...) {
            reportCurrentException();
        }
    }

    // A slot for connect(): calls obj->handler(args...) inside the guard. The slot
    // takes exactly the handler's parameters, so a handler without arguments can be
    // connected to a signal that has some.
    template <typename Obj, typename Target, typename... Args>
    auto operator()(Obj *obj, void (Target::*handler)(Args...)) const {
        return [this, obj, handler](Args... args) { run([&] { (obj->*handler)(args...); }); };
    }

private:
    void reportCurrentException() const noexcept;

    Reporter report_;
};
