#pragma once

#include "mel/GlobalVariables.h"
#include "mel/VariableExpressions.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lightbox::mel {

/// The variables visible to the parser at one point: those of the open blocks and, outside procedures, the
/// globals. A variable declared outside any block is global.
class VariableScope {
public:
    explicit VariableScope(GlobalVariables& globals)
        : globals_(globals) {}

    /// Blocks of the same text or procedure.
    void OpenBlock() { blocks_.emplace_back(); }
    void CloseBlock() { blocks_.pop_back(); }
    /// A procedure cannot see the variables around it.
    void OpenProcedure();
    void CloseProcedure();
    bool IsInProcedure() const { return procedure_; }
    bool IsAtTop() const { return !procedure_ && blocks_.empty(); }
    /// Number of local variables so far, of the procedure or of the text's own blocks.
    int SlotCount() const { return slots_; }
    /// Starts a new text; numbers local variables from 0 again.
    void Restart() { slots_ = 0; }

    struct Declared {
        VariablePlace place;
        /// The name was already declared in the same block.
        bool again = false;
    };
    std::optional<VariablePlace> Find(std::string_view name) const;
    /// Adds a variable to the innermost block. Null when it exists there with another type.
    std::optional<Declared> Declare(std::string_view name, Type type);
    /// Makes a global variable visible; adds it if there is none. Null when it has another type.
    std::optional<Declared> DeclareGlobal(std::string_view name, Type type);

private:
    using Block = std::map<std::string, VariablePlace, std::less<>>;

    GlobalVariables& globals_;
    std::vector<Block> blocks_;
    int slots_ = 0;
    bool procedure_ = false;
    /// The state outside the procedure.
    std::vector<Block> outerBlocks_;
    int outerSlots_ = 0;
};

} // namespace lightbox::mel
