#pragma once

#include "mel/Parser.h"

namespace lightbox::mel {

/// One level of nesting; too many are a syntax error, because reading and running them takes stack.
class Parser::Nesting {
public:
    explicit Nesting(Parser& parser)
        : parser_(parser) {
        constexpr int deepest = 500;
        if (parser_.nesting_ >= deepest) {
            parser_.Fail("Syntax error: this is nested too deep.", parser_.lexer_.RawPosition());
        }
        ++parser_.nesting_;
    }
    ~Nesting() { --parser_.nesting_; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

private:
    Parser& parser_;
};

/// A block of variables, closed also when an error ends it.
class Parser::BlockScope {
public:
    explicit BlockScope(VariableScope& variables)
        : variables_(variables) {
        variables_.OpenBlock();
    }
    ~BlockScope() { variables_.CloseBlock(); }
    BlockScope(const BlockScope&) = delete;
    BlockScope& operator=(const BlockScope&) = delete;

private:
    VariableScope& variables_;
};

/// The variables of a procedure, likewise.
class Parser::ProcedureScope {
public:
    explicit ProcedureScope(VariableScope& variables)
        : variables_(variables) {
        variables_.OpenProcedure();
    }
    ~ProcedureScope() { variables_.CloseProcedure(); }
    ProcedureScope(const ProcedureScope&) = delete;
    ProcedureScope& operator=(const ProcedureScope&) = delete;

private:
    VariableScope& variables_;
};

/// Sets something for as long as a part is read.
template <class T>
class During {
public:
    During(T& place, T value)
        : place_(place)
        , before_(place) {
        place_ = value;
    }
    ~During() { place_ = before_; }
    During(const During&) = delete;
    During& operator=(const During&) = delete;

private:
    T& place_;
    T before_;
};

} // namespace lightbox::mel
