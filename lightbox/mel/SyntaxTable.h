#pragma once

#include <maya/MSyntax.h>

#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lightbox::mel {

/// What an MSyntax holds.
struct SyntaxTable {
    struct Flag {
        /// Names without the hyphen.
        std::string shortName;
        std::string longName;
        std::vector<MSyntax::MArgType> arguments;
        bool isMultiUse = false;
        /// In a query it takes its arguments too, or may do so.
        bool keepsArgumentsInQuery = false;
        bool needsArgumentsInQuery = false;
        /// Where it takes a text, a number will do: a time range is either. Lightbox's own commands only.
        bool takesNumbers = false;
    };

    static const SyntaxTable& Of(const MSyntax& syntax) { return *syntax.table_; }
    static SyntaxTable& Change(MSyntax& syntax) { return syntax.change(); }
    static std::shared_ptr<const SyntaxTable> Share(const MSyntax& syntax) { return syntax.table_; }

    /// The flag of that short or long name, with or without a hyphen; null when there is none.
    const Flag* Find(std::string_view name) const;
    /// The same for what was typed, where the beginning of a long name will do when it is the only one.
    /// `isAmbiguous` tells why the answer is null.
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
