#pragma once

#include "mel/ArgumentTokens.h"
#include "mel/SyntaxTable.h"
#include "mel/Value.h"

#include <maya/MSyntax.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lightbox::mel {

/// Parses a command's arguments by its syntax: flags in any order, before and after the objects, by short
/// name, long name or the start of a long name; -query and -edit where the syntax allows them. In a query,
/// flags take no arguments. Used for plug-in commands and Lightbox's own alike.
class ParsedArguments {
public:
    /// One use of a flag.
    struct Use {
        const SyntaxTable::Flag* flag = nullptr;
        /// Index of the flag and of its first argument among the tokens.
        std::size_t position = 0;
        std::size_t firstArgument = 0;
        std::size_t argumentCount = 0;
    };

    /// Throws Error when the arguments do not fit: "Invalid flag '-x'", "Flag '-x' must be passed a string
    /// argument", "Too many objects or values." With `takesNotFinite`, a flag's number may be a word like
    /// "inf"; where that is no sense, the flag counts as invalid.
    ParsedArguments(const MSyntax& syntax, ArgumentTokens tokens, bool takesNotFinite = false);

    bool IsQuery() const { return isQuery_; }
    bool IsEdit() const { return isEdit_; }
    const SyntaxTable& Syntax() const { return *syntax_; }
    const ArgumentTokens& Tokens() const { return tokens_; }

    const std::vector<Use>& Uses() const { return uses_; }
    unsigned UseCount(std::string_view flag) const;
    /// Use number `occurrence` of a flag; null when there is none.
    const Use* Find(std::string_view flag, unsigned occurrence = 0) const;
    /// An argument of a flag; null when it is missing.
    const Value* Argument(std::string_view flag, unsigned index, unsigned occurrence = 0) const;

    /// The command's own arguments (MSyntax::addArg), and the objects that follow them.
    const std::vector<Value>& CommandArguments() const { return commandArguments_; }
    const std::vector<Value>& Objects() const { return objects_; }

private:
    bool Parse();
    void FindMode();
    bool ParseFlag(std::size_t& index);
    void ParseFlagArguments(Use& use, std::size_t& index);
    /// Makes a number of the token if it is a word for one that is not finite.
    bool TakeNotFinite(const Use& use, MSyntax::MArgType type, std::size_t index);
    void AddObject(const Value& value);
    void CheckObjects() const;
    bool BeginsFlag(std::size_t index) const;

    std::shared_ptr<const SyntaxTable> syntax_;
    ArgumentTokens tokens_;
    std::vector<Use> uses_;
    std::vector<Value> commandArguments_;
    std::vector<Value> objects_;
    bool takesNotFinite_ = false;
    bool isQuery_ = false;
    bool isEdit_ = false;
};

} // namespace lightbox::mel
