#pragma once

#include <maya/MSyntax.h>

#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lightbox::mel {

/// The content of an MSyntax.
struct SyntaxTable {
    struct Flag {
        /// Names without the hyphen.
        std::string shortName;
        std::string longName;
        std::vector<MSyntax::MArgType> arguments;
        bool isMultiUse = false;
        /// In a query the flag may take its arguments, or must do so.
        bool keepsArgumentsInQuery = false;
        bool needsArgumentsInQuery = false;
        /// A number is accepted in place of a text: a time range may be either. Only for Lightbox's own
        /// commands.
        bool takesNumbers = false;
    };

    static const SyntaxTable& Of(const MSyntax& syntax) { return *syntax.table_; }
    static SyntaxTable& Change(MSyntax& syntax) { return syntax.change(); }
    static std::shared_ptr<const SyntaxTable> Share(const MSyntax& syntax) { return syntax.table_; }

    /// The flag with that short or long name, with or without a hyphen; null when there is none.
    const Flag* Find(std::string_view name) const;
    /// Like Find(), but an unambiguous start of a long name also matches. `isAmbiguous` tells whether null is
    /// returned because several flags match.
    const Flag* FindTyped(std::string_view name, bool& isAmbiguous) const;

    static constexpr unsigned NO_MAXIMUM = std::numeric_limits<unsigned>::max();

    std::vector<Flag> flags;
    std::vector<MSyntax::MArgType> arguments;
    MSyntax::MObjectFormat objectFormat = MSyntax::kNone;
    unsigned minimumObjects = 0;
    unsigned maximumObjects = NO_MAXIMUM;
    bool usesSelection = false;
    bool canQuery = false;
    bool canEdit = false;
};

/// A flag's name without its hyphen.
std::string_view WithoutHyphen(std::string_view name);

} // namespace lightbox::mel
