#pragma once

#include <maya/MSyntax.h>

#include <string>

namespace lightbox::mel {

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
