#pragma once

#include "mel/Value.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace lightbox::mel {

class SourceText;
class Statement;
struct Procedure;

/// A procedure's name. It stays when the procedure is defined anew, so that calls can keep a pointer to it.
struct ProcedureEntry {
    std::shared_ptr<const Procedure> procedure;
};

/// The procedures that a file keeps to itself (those without `global`).
struct FileScope {
    std::map<std::string, ProcedureEntry, std::less<>> procedures;
};

/// A procedure as it was parsed.
struct Procedure {
    struct Parameter {
        std::string name;
        Type type = Type::Int;
    };

    ~Procedure();

    std::string name;
    bool isGlobal = false;
    Type returnType = Type::None;
    std::vector<Parameter> parameters;
    /// Parameters come first among the local variables.
    int variableCount = 0;
    std::unique_ptr<Statement> body;
    /// What its body refers to; the scope belongs to the runtime.
    std::shared_ptr<const SourceText> source;
    FileScope* scope = nullptr;
};

} // namespace lightbox::mel
