#pragma once

#include "mel/Value.h"

#include <cstdint>

namespace lightbox::mel {

class Runtime;
class SourceText;

/// One running text or procedure: its local variables and where it is.
struct CallFrame {
    Runtime& runtime;
    const SourceText& source;
    /// The local variables; the parser has numbered them.
    Value* variables;
    /// What runs right now, for the place in messages.
    std::uint32_t offset = 0;
    /// What `return` returned, and that it did.
    Value result = Value();
    bool hasReturned = false;
};

} // namespace lightbox::mel
