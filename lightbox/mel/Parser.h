#pragma once

#include "mel/ArgumentForm.h"
#include "mel/Expression.h"
#include "mel/GlobalVariables.h"
#include "mel/Lexer.h"
#include "mel/LiteralExpressions.h"
#include "mel/Operations.h"
#include "mel/Procedure.h"
#include "mel/Program.h"
#include "mel/Statements.h"
#include "mel/VariableScope.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace lightbox::mel {

/// Parses a text into a program. Errors are syntax errors with their location. No text can crash the parser
/// or overflow the stack, since nesting is limited.
class Parser {
public:
    /// `scope` receives the procedures without `global`. `warn` receives warnings.
    Parser(std::shared_ptr<const SourceText> source, GlobalVariables& globals, FileScope& scope,
           std::function<void(const std::string&)> warn);

    Program ParseAll();
    /// Parses the next statement; returns false at the end of the text. Without `declares`, the global
    /// variables that it introduces are forgotten.
    bool ParseNext(Program& program, bool declares = true);
    /// The name with which the next statement begins, or its keyword; empty when it begins with neither.
    std::string_view NextName();
    /// Continues at an offset.
    void ContinueAt(std::uint32_t offset) { lexer_.MoveTo(offset); }
    /// Continues after an error, after the next line that ends with a semicolon. Returns false when there is
    /// none.
    bool Recover();
    /// Byte offset of the statement that was parsed last, or begun.
    std::uint32_t StatementBegin() const { return statementBegin_; }
    /// Byte offset where parsing goes on; after an error that of the first thing that is not MEL.
    std::uint32_t RawPosition() const { return lexer_.RawPosition(); }

private:
    [[noreturn]] void Fail(const std::string& message, std::uint32_t offset) const;
    [[noreturn]] void Unexpected();
    /// The next level of nesting. Too many levels are a syntax error, because parsing and running them takes
    /// stack.
    int NextNesting() const;
    bool Accept(TokenKind kind);
    Token Expect(TokenKind kind, const char* text);
    std::string_view TextOf(const Token& token) const { return lexer_.TextOf(token); }
    bool NextIs(TokenKind kind) { return lexer_.Peek().kind == kind; }

    // Statements (ParserStatements.cpp)
    StatementPtr ParseStatement();
    StatementPtr ParseBody();
    StatementPtr ParseBlock();
    StatementPtr ParseIf();
    StatementPtr ParseFor();
    StatementPtr ParseForIn(const Token& keyword, const Token& name);
    bool AtForIn(Token& name);
    StatementPtr ParseWhile();
    StatementPtr ParseDo();
    StatementPtr ParseSwitch();
    StatementPtr ParseJump();
    StatementPtr ParseReturn();
    StatementPtr ParseExpressionStatement();
    StatementPtr ParseTypeOrGlobal();
    StatementPtr ParseDeclaration(std::uint32_t offset, Type type, bool isGlobal);
    DeclarationStatement::Variable ParseDeclarator(Type type, bool isGlobal);
    int ParseDimension();
    StatementPtr ParseProcedure(std::uint32_t offset, Type returnType, bool isGlobal);
    void ParseParameters(Procedure& procedure);
    Type ParseType();
    ExpressionList ParseExpressionList(TokenKind end);

    // `first` is an operand that was parsed already.
    ExpressionPtr ParseExpression(ExpressionPtr first = nullptr);
    ExpressionPtr ParseBinary(int minimumPrecedence, ExpressionPtr first);
    ExpressionPtr Combine(const Token& op, ExpressionPtr left, ExpressionPtr right);
    ExpressionPtr ParseUnary();
    ExpressionPtr ParsePostfix();
    ExpressionPtr ParsePrimary();
    ExpressionPtr ParseParenthesised();
    ExpressionPtr ParseAssignment(ExpressionPtr target, const Token& op);
    ExpressionPtr ParseVariable();
    ExpressionPtr ParseUndeclared(const Token& name);
    ExpressionPtr ParseIndexed(const Token& name, const VariablePlace& place, ExpressionPtr index,
                               bool hasColumn);
    ExpressionPtr ParseIndex();
    ExpressionPtr ParseComponents(ExpressionPtr vector);
    ExpressionPtr ParseStep(const Token& op, ExpressionPtr target, bool isPrefix);
    ExpressionPtr ParseVectorOrMatrix();
    ExpressionPtr ParseArray();
    ExpressionPtr ParseNumber();
    ExpressionPtr ParseString();
    ExpressionPtr Bounded(ExpressionPtr expression) const;

    // Commands (ParserCalls.cpp)
    ExpressionPtr ParseNamed(bool atStatement);
    ExpressionPtr ParseFunctionCall(const Token& name);
    ExpressionPtr ParseCommand(const Token& name, ExpressionPtr first);
    ExpressionPtr ParseBackquoted();
    ExpressionPtr ParseArgument(ArgumentForm& form);
    ExpressionPtr ParseSignedArgument(ArgumentForm& form);
    ExpressionPtr ParseWord(ArgumentForm& form);
    ExpressionPtr ParseCatch(const Token& name);
    bool AtArgumentEnd();
    bool BeginsArgument();
    ExpressionPtr ParseVariableArgument();
    ExpressionPtr ParseRestOfWord(ExpressionPtr first);
    void ParseWordIndex(ExpressionList& parts);

    std::shared_ptr<const SourceText> source_;
    Lexer lexer_;
    VariableScope variables_;
    FileScope& scope_;
    std::function<void(const std::string&)> warn_;
    GlobalVariables& globals_;
    std::vector<std::shared_ptr<const Procedure>> procedures_;
    std::uint32_t statementBegin_ = 0;
    int nesting_ = 0;
    int loops_ = 0;
    int switches_ = 0;
    /// A back-quote ends the current command.
    bool inBackquotes_ = false;
    Type returnType_ = Type::None;
};

} // namespace lightbox::mel
