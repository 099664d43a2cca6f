#pragma once

#include <cstddef>
#include <string_view>

namespace lightbox::mel {

/// Where a statement ends, found by its brackets, texts and comments alone: for text that is not to be
/// parsed.
struct StatementEnd {
    /// Behind its semicolon or closing brace; npos when the text has no such end.
    std::size_t position = std::string_view::npos;
    /// Whether it mentions a variable, outside texts and comments.
    bool hasVariable = false;

    /// Looks at the statement that begins there.
    static StatementEnd Of(std::string_view text, std::size_t begin);
};

} // namespace lightbox::mel
