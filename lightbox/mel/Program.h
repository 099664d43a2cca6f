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
    /// Where each of them ends in the text.
    std::vector<std::uint32_t> ends;
    /// Where the first begins.
    std::uint32_t begin = 0;
    /// Local variables of its blocks.
    int variableCount = 0;
    /// Every procedure it defines; they are known before its first statement runs.
    std::vector<std::shared_ptr<const Procedure>> procedures;
};

} // namespace lightbox::mel
