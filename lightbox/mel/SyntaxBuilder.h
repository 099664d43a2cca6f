#pragma once

#include "mel/SyntaxTable.h"

#include <maya/MSyntax.h>

#include <string>

namespace lightbox::mel {

/// The types of flag arguments in the commands' syntaxes.
constexpr auto NUMBER = MSyntax::kDouble;
constexpr auto TEXT = MSyntax::kString;
constexpr auto SWITCH = MSyntax::kBoolean;

/// Builds a command's syntax in one expression:
/// `SyntaxBuilder().Flag("-n", "-name", MSyntax::kString).Query().Objects(0, 1)`.
class SyntaxBuilder {
public:
    template <class... Types>
    SyntaxBuilder& Flag(const char* shortName, const char* longName, Types... arguments) {
        syntax_.addFlag(shortName, longName, arguments...);
        lastFlag_ = longName;
        return *this;
    }
    /// Allows the last added flag to be given more than once.
    SyntaxBuilder& MultiUse() {
        syntax_.makeFlagMultiUse(lastFlag_.c_str());
        return *this;
    }
    /// Adds a flag with one argument that is a number or a text, like a time or a range.
    SyntaxBuilder& RangeFlag(const char* shortName, const char* longName) {
        Flag(shortName, longName, MSyntax::kString);
        SyntaxTable::Change(syntax_).flags.back().takesNumbers = true;
        return *this;
    }
    /// Makes the last added flag keep its arguments in a query.
    SyntaxBuilder& QueryWithArguments() {
        syntax_.makeFlagQueryWithFullArgs(lastFlag_.c_str(), false);
        return *this;
    }
    SyntaxBuilder& Query() {
        syntax_.enableQuery(true);
        return *this;
    }
    SyntaxBuilder& Edit() {
        syntax_.enableEdit(true);
        return *this;
    }
    /// Allows any number of objects, at least `minimum`.
    SyntaxBuilder& Objects(unsigned minimum = 0) {
        syntax_.setObjectType(MSyntax::kStringObjects, minimum);
        return *this;
    }
    SyntaxBuilder& Objects(unsigned minimum, unsigned maximum) {
        syntax_.setObjectType(MSyntax::kStringObjects, minimum, maximum);
        return *this;
    }
    operator const MSyntax&() const { return syntax_; }

private:
    MSyntax syntax_;
    std::string lastFlag_;
};

} // namespace lightbox::mel
