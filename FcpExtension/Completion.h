#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <utility>
#include <variant>

namespace fcp {

// Why a waiting operation failed. Callers treat every failure alike; the text is for a debugger.
struct OperationError {
    std::string description;
};

template <typename T>
using Outcome = std::variant<T, OperationError>;

// The one-shot end of a waiting operation: receives a value or an error, exactly once. It is handed along by
// moving. Resuming it twice, or dropping it unresumed, prints one line with its label (the operation's
// signature) on standard error; it never aborts and never calls back twice. Main thread only.
template <typename T>
class Completion {
public:
    Completion(std::string operation, std::function<void(Outcome<T>)> onOutcome)
        : label(std::move(operation))
        , callback(std::move(onOutcome)) {}

    Completion(Completion&& other) noexcept
        : label(std::move(other.label))
        , callback(std::exchange(other.callback, nullptr))
        , state(std::exchange(other.state, State::Moved)) {}

    Completion(Completion const&) = delete;
    Completion& operator=(Completion const&) = delete;
    Completion& operator=(Completion&&) = delete;

    ~Completion() {
        if (state == State::Waiting)
            complain("was dropped without being resumed");
    }

    void resume(T value) { complete(Outcome<T>(std::in_place_index<0>, std::move(value))); }

    void fail(OperationError error) { complete(Outcome<T>(std::in_place_index<1>, std::move(error))); }

private:
    enum class State { Waiting, Resumed, Moved };

    void complete(Outcome<T> outcome) {
        if (state != State::Waiting)
            return complain("was resumed more than once");
        state = State::Resumed;
        // The callback may destroy this completion.
        auto const call = std::exchange(callback, nullptr);
        call(std::move(outcome));
    }

    void complain(char const* what) const {
        std::fprintf(stderr, "Completion of %s %s.\n", label.c_str(), what);
    }

    std::string label;
    std::function<void(Outcome<T>)> callback;
    State state = State::Waiting;
};

} // namespace fcp
