#pragma once

#include "mel/Value.h"

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace lightbox {
class Host;
}

namespace lightbox::mel {

class Interpreter;
class ParsedArguments;

/// A call of one of Lightbox's own commands: flags, objects and mode, checked against the command's syntax
/// before the command runs. Flag names may be short or long, with or without the hyphen. A getter throws
/// Error with a message for the user when the flag is missing or its argument has another type.
class CommandCall {
public:
    /// `parsed` is null for a raw call. Borrows all references for the duration of the call.
    CommandCall(Interpreter& interpreter, const std::string& name, const std::vector<Value>& arguments,
                const ParsedArguments* parsed)
        : interpreter_(interpreter)
        , name_(name)
        , arguments_(arguments)
        , parsed_(parsed) {}

    /// The same call about other objects, which have to outlive it.
    CommandCall With(const std::vector<Value>& objects) const {
        return CommandCall(interpreter_, name_, objects, parsed_);
    }

    const std::string& Name() const { return name_; }
    Interpreter& GetInterpreter() const { return interpreter_; }
    Host& GetHost() const;

    bool IsQuery() const;
    bool IsEdit() const;
    /// Neither query nor edit.
    bool IsCreate() const { return !IsQuery() && !IsEdit(); }

    bool Has(const char* flag) const;
    /// Number of uses of a multi-use flag; 0 or 1 for any other.
    unsigned UseCount(const char* flag) const;

    /// Argument `index` of use `use` of a flag.
    bool Bool(const char* flag, unsigned index = 0, unsigned use = 0) const;
    int Int(const char* flag, unsigned index = 0, unsigned use = 0) const;
    double Float(const char* flag, unsigned index = 0, unsigned use = 0) const;
    /// The text argument, without a copy.
    const std::string& String(const char* flag, unsigned index = 0, unsigned use = 0) const;
    const Value& Argument(const char* flag, unsigned index = 0, unsigned use = 0) const;
    /// The same, with a default for a flag that is missing (or has no argument, as in a query).
    int IntOr(const char* flag, int fallback) const;
    double FloatOr(const char* flag, double fallback) const;
    std::string StringOr(const char* flag, const std::string& fallback) const;

    /// The arguments after the flags, arrays flattened. For a raw command: all arguments, with arrays whole
    /// and by reference.
    const std::vector<Value>& Objects() const;
    /// The objects as texts.
    std::vector<std::string> ObjectNames() const;
    /// Object number `index`; throws an error that names the missing object.
    const Value& Object(std::size_t index) const;

    /// For a query: the answer to the first of these flags that the call has. Ends the call with an error
    /// when it has none of them.
    Value Answer(std::initializer_list<std::pair<const char*, Value>> answers) const;

    void Warn(const std::string& message) const;
    /// Ends the call with an error.
    [[noreturn]] void Fail(const std::string& message) const;

private:
    Interpreter& interpreter_;
    const std::string& name_;
    const std::vector<Value>& arguments_;
    const ParsedArguments* parsed_;
};

} // namespace lightbox::mel
