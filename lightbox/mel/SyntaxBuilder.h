#pragma once

#include "mel/SyntaxTable.h"

#include <maya/MSyntax.h>

#include <string>

namespace lightbox::mel {

/// The types of flag arguments, as the syntaxes of commands write them.
constexpr auto NUMBER = MSyntax::kDouble;
constexpr auto TEXT = MSyntax::kString;
constexpr auto SWITCH = MSyntax::kBoolean;

/// Writes down a command's syntax in one expression:
/// `SyntaxBuilder().Flag("-n", "-name", MSyntax::kString).Query().Objects(0, 1)`.
class SyntaxBuilder {
public:
    template <class... Types>
    SyntaxBuilder& Flag(const char* shortName, const char* longName, Types... arguments) {
        syntax.addFlag(shortName, longName, arguments...);
        lastFlag = longName;
        return *this;
    }
    /// The flag just added may be given more than once.
    SyntaxBuilder& MultiUse() {
        syntax.makeFlagMultiUse(lastFlag.c_str());
        return *this;
    }
    /// A flag with one argument that is a number or a text, like a time or a range.
    SyntaxBuilder& RangeFlag(const char* shortName, const char* longName) {
        Flag(shortName, longName, MSyntax::kString);
        SyntaxTable::Change(syntax).flags.back().takesNumbers = true;
        return *this;
    }
    /// The flag just added keeps its arguments in a query.
    SyntaxBuilder& QueryWithArguments() {
        syntax.makeFlagQueryWithFullArgs(lastFlag.c_str(), false);
        return *this;
    }
    SyntaxBuilder& Query() {
        syntax.enableQuery(true);
        return *this;
    }
    SyntaxBuilder& Edit() {
        syntax.enableEdit(true);
        return *this;
    }
    /// Any objects, at least `minimum` of them.
    SyntaxBuilder& Objects(unsigned minimum = 0) {
        syntax.setObjectType(MSyntax::kStringObjects, minimum);
        return *this;
    }
    SyntaxBuilder& Objects(unsigned minimum, unsigned maximum) {
        syntax.setObjectType(MSyntax::kStringObjects, minimum, maximum);
        return *this;
    }
    operator const MSyntax&() const { return syntax; }

private:
    MSyntax syntax;
    std::string lastFlag;
};

} // namespace lightbox::mel
