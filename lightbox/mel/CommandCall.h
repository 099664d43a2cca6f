#pragma once

#include "mel/Value.h"

#include <string>
#include <vector>

namespace lightbox {
class Host;
}

namespace lightbox::mel {

class Interpreter;
class ParsedArguments;

/// One call of a command of Lightbox's own: its flags, objects and mode, checked against the command's syntax
/// before the command runs. Flags are asked for by short or long name, with or without the hyphen. A getter
/// of a flag that is not there, or of an argument of another type, throws Error with the command's wording.
class CommandCall {
public:
    /// A raw call has arguments and no parsed ones.
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
    /// How often a multi-use flag was given; 0 or 1 for any other.
    unsigned UseCount(const char* flag) const;

    /// Argument number `index` of use number `use` of a flag.
    bool Bool(const char* flag, unsigned index = 0, unsigned use = 0) const;
    int Int(const char* flag, unsigned index = 0, unsigned use = 0) const;
    double Float(const char* flag, unsigned index = 0, unsigned use = 0) const;
    /// The text as it was given, without a copy.
    const std::string& String(const char* flag, unsigned index = 0, unsigned use = 0) const;
    const Value& Argument(const char* flag, unsigned index = 0, unsigned use = 0) const;
    /// The same with a default for a flag that is absent (or present without argument, as in a query).
    int IntOr(const char* flag, int fallback) const;
    double FloatOr(const char* flag, double fallback) const;
    std::string StringOr(const char* flag, const std::string& fallback) const;

    /// What follows the flags. Arrays that were handed over stand here element by element. Of a command
    /// registered as raw these are all its arguments, whole, arrays by reference.
    const std::vector<Value>& Objects() const;
    /// The objects as texts.
    std::vector<std::string> ObjectNames() const;
    /// The n-th object, or an error that says what is missing.
    const Value& Object(std::size_t index) const;

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
