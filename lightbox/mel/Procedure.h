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

/// The entry of a procedure's name. It outlives redefinitions, so that calls can keep a pointer to it.
struct ProcedureEntry {
    std::shared_ptr<const Procedure> procedure;
};

/// The procedures local to a file (those without `global`).
struct FileScope {
    std::map<std::string, ProcedureEntry, std::less<>> procedures;
};

/// A parsed procedure.
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
    /// Number of local variables; the parameters come first.
    int variableCount = 0;
    std::unique_ptr<Statement> body;
    /// The body refers to both; the runtime owns the scope.
    std::shared_ptr<const SourceText> source;
    FileScope* scope = nullptr;
};

} // namespace lightbox::mel
