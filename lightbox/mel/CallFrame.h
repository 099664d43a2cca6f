#pragma once

#include "mel/Value.h"

#include <cstdint>

namespace lightbox::mel {

class Runtime;
class SourceText;

/// A running text or procedure: its local variables and its current position.
struct CallFrame {
    Runtime& runtime;
    const SourceText& source;
    /// The local variables, by the numbers that the parser gave them.
    Value* variables;
    /// Byte offset of the running code, for messages.
    std::uint32_t offset = 0;
    /// The value of `return`, and whether it was executed.
    Value result = Value();
    bool hasReturned = false;
};

} // namespace lightbox::mel
