#pragma once

#include "mel/Procedure.h"
#include "mel/SourceText.h"
#include "mel/Statement.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace lightbox::mel {

/// A parsed text, or one statement of it.
struct Program {
    std::shared_ptr<const SourceText> source;
    StatementList statements;
    /// Byte offset of each statement's end.
    std::vector<std::uint32_t> ends;
    /// Byte offset of the first statement.
    std::uint32_t begin = 0;
    /// Number of local variables of its blocks.
    int variableCount = 0;
    /// All procedures that it defines; defined before the first statement runs.
    std::vector<std::shared_ptr<const Procedure>> procedures;
};

} // namespace lightbox::mel
