#pragma once

#include "host/Guarded.h"

#include <QObject>

#include <utility>

namespace vellix {

namespace guarded {

constexpr const char* ACTION = "The action";

/// Calls a function object, whose `operator()` has the type Call, and catches what it throws.
template <typename Function, typename Call>
class Caller;

template <typename Function, typename Result, typename Owner, typename... Arguments>
class Caller<Function, Result (Owner::*)(Arguments...) const> {
public:
    explicit Caller(Function function)
        : function_(std::move(function)) {}

    void operator()(Arguments... arguments) const {
        RunGuarded(ACTION, [&] { function_(arguments...); });
    }

private:
    Function function_;
};

} // namespace guarded

/// QObject::connect() for a function object whose exceptions become errors: they must not get into the event
/// loop. The connection ends with the receiver.
template <typename Sender, typename Signal, typename Function>
void ConnectGuarded(const Sender* sender, Signal signal, const QObject* receiver, Function function) {
    QObject::connect(sender, signal, receiver,
                     guarded::Caller<Function, decltype(&Function::operator())>(std::move(function)));
}

/// The same for a slot of the receiver.
template <typename Sender, typename Signal, typename Receiver, typename Owner, typename Result,
          typename... Arguments>
void ConnectGuarded(const Sender* sender, Signal signal, Receiver* receiver,
                    Result (Owner::*slot)(Arguments...)) {
    ConnectGuarded(sender, signal, static_cast<const QObject*>(receiver),
                   [receiver, slot](Arguments... arguments) { (receiver->*slot)(arguments...); });
}

} // namespace vellix
