#include "mel/Parser.h"
#include "scene/ScopeExit.h"

#include <QScopedValueRollback>

namespace lightbox::mel {

StatementPtr Parser::ParseStatement() {
    const QScopedValueRollback<int> nesting(nesting_, NextNesting());
    const Token token = lexer_.Peek();
    switch (token.kind) {
    case TokenKind::Semicolon:
        lexer_.Take();
        return std::make_unique<ExpressionStatement>(token.begin, nullptr);
    case TokenKind::LeftBrace:
        return ParseBlock();
    case TokenKind::If:
        return ParseIf();
    case TokenKind::For:
        return ParseFor();
    case TokenKind::While:
        return ParseWhile();
    case TokenKind::Do:
        return ParseDo();
    case TokenKind::Switch:
        return ParseSwitch();
    case TokenKind::Break:
    case TokenKind::Continue:
        return ParseJump();
    case TokenKind::Return:
        return ParseReturn();
    case TokenKind::Proc:
    case TokenKind::Global:
    case TokenKind::TypeInt:
    case TokenKind::TypeFloat:
    case TokenKind::TypeString:
    case TokenKind::TypeVector:
    case TokenKind::TypeMatrix:
        return ParseTypeOrGlobal();
    default:
        return ParseExpressionStatement();
    }
}

/// Parses the statement of an if or a loop. Without braces it still has its own scope.
StatementPtr Parser::ParseBody() {
    if (variables_.IsAtTop()) {
        // At the top level, a variable introduced in a condition is global, like everywhere there.
        return ParseStatement();
    }
    variables_.OpenBlock();
    const ScopeExit closeBlock([this] { variables_.CloseBlock(); });
    return ParseStatement();
}

StatementPtr Parser::ParseBlock() {
    const Token open = Expect(TokenKind::LeftBrace, "\"{\"");
    variables_.OpenBlock();
    const ScopeExit closeBlock([this] { variables_.CloseBlock(); });
    StatementList statements;
    while (!NextIs(TokenKind::RightBrace)) {
        if (lexer_.AtEnd()) {
            Fail("Syntax error: the block has no closing \"}\".", open.begin);
        }
        statements.push_back(ParseStatement());
    }
    lexer_.Take();
    return std::make_unique<BlockStatement>(open.begin, std::move(statements));
}

StatementPtr Parser::ParseIf() {
    const Token keyword = lexer_.Peek();
    std::vector<IfStatement::Branch> branches;
    StatementPtr otherwise;
    // An else-if chain is one list: a long one must not nest.
    for (bool more = true; more;) {
        Expect(TokenKind::If, "\"if\"");
        IfStatement::Branch branch;
        Expect(TokenKind::LeftParen, "\"(\"");
        branch.condition = ParseExpression();
        Expect(TokenKind::RightParen, "\")\"");
        branch.body = ParseBody();
        branches.push_back(std::move(branch));
        more = false;
        if (Accept(TokenKind::Else)) {
            more = NextIs(TokenKind::If);
            if (!more) {
                otherwise = ParseBody();
            }
        }
    }
    return std::make_unique<IfStatement>(keyword.begin, std::move(branches), std::move(otherwise));
}

bool Parser::AtForIn(Token& name) {
    const std::uint32_t begin = lexer_.Position();
    if (!NextIs(TokenKind::Variable)) {
        return false;
    }
    name = lexer_.Take();
    const Token word = lexer_.Peek();
    if (word.kind == TokenKind::Identifier && TextOf(word) == "in") {
        lexer_.Take();
        return true;
    }
    lexer_.MoveTo(begin);
    return false;
}

StatementPtr Parser::ParseFor() {
    const Token keyword = lexer_.Take();
    Expect(TokenKind::LeftParen, "\"(\"");
    const Token type = lexer_.Peek();
    const bool isDeclared = type.kind >= TokenKind::TypeInt && type.kind <= TokenKind::TypeVector;
    if (isDeclared) {
        lexer_.Take();
    }
    Token name;
    if (AtForIn(name)) {
        return ParseForIn(keyword, name);
    }
    StatementPtr declaration;
    ExpressionList start;
    if (isDeclared) {
        // The variables stay behind the loop, like those that an assignment in it makes.
        lexer_.MoveTo(type.begin);
        declaration = ParseDeclaration(type.begin, ParseType(), false);
    } else {
        start = ParseExpressionList(TokenKind::Semicolon);
        Expect(TokenKind::Semicolon, "\";\"");
    }
    ExpressionPtr condition = NextIs(TokenKind::Semicolon) ? nullptr : ParseExpression();
    Expect(TokenKind::Semicolon, "\";\"");
    ExpressionList step = ParseExpressionList(TokenKind::RightParen);
    Expect(TokenKind::RightParen, "\")\"");
    const QScopedValueRollback<int> inLoop(loops_, loops_ + 1);
    StatementPtr body = ParseBody();
    auto loop = std::make_unique<LoopStatement>(keyword.begin, std::move(start), std::move(condition),
                                                std::move(step), std::move(body));
    if (!declaration) {
        return loop;
    }
    StatementList both;
    both.push_back(std::move(declaration));
    both.push_back(std::move(loop));
    return std::make_unique<BlockStatement>(keyword.begin, std::move(both));
}

StatementPtr Parser::ParseForIn(const Token& keyword, const Token& name) {
    ExpressionPtr array = ParseExpression();
    Expect(TokenKind::RightParen, "\")\"");
    const Type elementType = array->type == Type::Any ? Type::Any : ElementOf(array->type);
    if (elementType == Type::None) {
        Fail(std::string("Cannot iterate over a value of type ") + TypeName(array->type) +
                 ": it is not an array.",
             array->offset);
    }
    const std::string_view variableName = TextOf(name).substr(1);
    auto place = variables_.Find(variableName);
    if (!place) {
        place = variables_.Declare(variableName, elementType)->place;
    }
    const QScopedValueRollback<int> inLoop(loops_, loops_ + 1);
    StatementPtr body = ParseBody();
    return std::make_unique<ForInStatement>(keyword.begin,
                                            std::make_unique<VariableExpression>(name.begin, *place),
                                            std::move(array), std::move(body));
}

StatementPtr Parser::ParseWhile() {
    const Token keyword = lexer_.Take();
    Expect(TokenKind::LeftParen, "\"(\"");
    ExpressionPtr condition = ParseExpression();
    Expect(TokenKind::RightParen, "\")\"");
    const QScopedValueRollback<int> inLoop(loops_, loops_ + 1);
    StatementPtr body = ParseBody();
    return std::make_unique<LoopStatement>(keyword.begin, ExpressionList(), std::move(condition),
                                           ExpressionList(), std::move(body));
}

StatementPtr Parser::ParseDo() {
    const Token keyword = lexer_.Take();
    StatementPtr body;
    {
        const QScopedValueRollback<int> inLoop(loops_, loops_ + 1);
        body = ParseBody();
    }
    Expect(TokenKind::While, "\"while\"");
    Expect(TokenKind::LeftParen, "\"(\"");
    ExpressionPtr condition = ParseExpression();
    Expect(TokenKind::RightParen, "\")\"");
    Expect(TokenKind::Semicolon, "\";\"");
    return std::make_unique<DoStatement>(keyword.begin, std::move(body), std::move(condition));
}

StatementPtr Parser::ParseSwitch() {
    const Token keyword = lexer_.Take();
    Expect(TokenKind::LeftParen, "\"(\"");
    ExpressionPtr value = ParseExpression();
    Expect(TokenKind::RightParen, "\")\"");
    const Token open = Expect(TokenKind::LeftBrace, "\"{\"");
    variables_.OpenBlock();
    const ScopeExit closeBlock([this] { variables_.CloseBlock(); });
    const QScopedValueRollback<int> inSwitch(switches_, switches_ + 1);
    std::vector<SwitchStatement::Label> labels;
    StatementList statements;
    while (!Accept(TokenKind::RightBrace)) {
        if (lexer_.AtEnd()) {
            Fail("Syntax error: the block has no closing \"}\".", open.begin);
        }
        SwitchStatement::Label label;
        label.statement = statements.size();
        if (Accept(TokenKind::Case)) {
            label.value = ParseExpression();
        } else if (!Accept(TokenKind::Default)) {
            if (labels.empty()) {
                Fail("Syntax error: \"case\" or \"default\" is expected.", lexer_.Position());
            }
            statements.push_back(ParseStatement());
            continue;
        }
        Expect(TokenKind::Colon, "\":\"");
        labels.push_back(std::move(label));
    }
    return std::make_unique<SwitchStatement>(keyword.begin, std::move(value), std::move(labels),
                                             std::move(statements));
}

StatementPtr Parser::ParseJump() {
    const Token keyword = lexer_.Take();
    const bool isBreak = keyword.kind == TokenKind::Break;
    if (loops_ == 0 && !(isBreak && switches_ > 0)) {
        Fail(isBreak ? "Syntax error: \"break\" is outside of a loop or switch."
                     : "Syntax error: \"continue\" is outside of a loop.",
             keyword.begin);
    }
    Expect(TokenKind::Semicolon, "\";\"");
    return std::make_unique<JumpStatement>(keyword.begin, isBreak ? Flow::Break : Flow::Continue);
}

StatementPtr Parser::ParseReturn() {
    const Token keyword = lexer_.Take();
    ExpressionPtr value;
    if (!NextIs(TokenKind::Semicolon) && !lexer_.AtEnd()) {
        value = ParseExpression();
    }
    if (!lexer_.AtEnd()) {
        Expect(TokenKind::Semicolon, "\";\"");
    }
    if (variables_.IsInProcedure() && value && returnType_ == Type::None) {
        Fail("This procedure returns no value.", keyword.begin);
    }
    if (!value && returnType_ != Type::None) {
        Fail(std::string("This procedure has to return a value of type ") + TypeName(returnType_) + ".",
             keyword.begin);
    }
    const Type type = variables_.IsInProcedure() ? returnType_ : Type::Any;
    return std::make_unique<ReturnStatement>(keyword.begin, std::move(value), type);
}

StatementPtr Parser::ParseExpressionStatement() {
    const std::uint32_t offset = lexer_.Position();
    ExpressionPtr expression = NextIs(TokenKind::Identifier) ? ParseNamed(true) : ParseExpression();
    // The last statement of a text needs no semicolon.
    if (lexer_.PeekCharacter() != '\0') {
        Expect(TokenKind::Semicolon, "\";\"");
    }
    return std::make_unique<ExpressionStatement>(offset, std::move(expression));
}

ExpressionList Parser::ParseExpressionList(TokenKind end) {
    ExpressionList list;
    while (!NextIs(end)) {
        list.push_back(ParseExpression());
        if (!Accept(TokenKind::Comma)) {
            break;
        }
    }
    return list;
}

Type Parser::ParseType() {
    switch (lexer_.Take().kind) {
    case TokenKind::TypeInt:
        return Type::Int;
    case TokenKind::TypeFloat:
        return Type::Float;
    case TokenKind::TypeString:
        return Type::String;
    case TokenKind::TypeVector:
        return Type::Vector;
    default:
        return Type::Matrix;
    }
}

StatementPtr Parser::ParseTypeOrGlobal() {
    const std::uint32_t offset = lexer_.Position();
    const bool isGlobal = Accept(TokenKind::Global);
    if (Accept(TokenKind::Proc)) {
        const TokenKind next = lexer_.Peek().kind;
        Type returnType = Type::None;
        if (next >= TokenKind::TypeInt && next <= TokenKind::TypeVector) {
            returnType = ParseType();
            if (Accept(TokenKind::LeftBracket)) {
                Expect(TokenKind::RightBracket, "\"]\"");
                returnType = ArrayOf(returnType);
            }
        }
        return ParseProcedure(offset, returnType, isGlobal);
    }
    const TokenKind next = lexer_.Peek().kind;
    if (next < TokenKind::TypeInt || next > TokenKind::TypeMatrix) {
        Unexpected();
    }
    const Token keyword = lexer_.Peek();
    const Type type = ParseType();
    if (!isGlobal && NextIs(TokenKind::LeftParen)) {
        lexer_.MoveTo(keyword.begin);
        return ParseExpressionStatement();
    }
    return ParseDeclaration(offset, type, isGlobal);
}

StatementPtr Parser::ParseDeclaration(std::uint32_t offset, Type type, bool isGlobal) {
    std::vector<DeclarationStatement::Variable> declared;
    do {
        declared.push_back(ParseDeclarator(type, isGlobal));
    } while (Accept(TokenKind::Comma));
    if (!lexer_.AtEnd()) {
        Expect(TokenKind::Semicolon, "\";\"");
    }
    return std::make_unique<DeclarationStatement>(offset, std::move(declared));
}

int Parser::ParseDimension() {
    const Token open = Expect(TokenKind::LeftBracket, "\"[\"");
    int size = 0;
    if (!NextIs(TokenKind::RightBracket)) {
        const ExpressionPtr number = ParseExpression();
        const auto* constant = dynamic_cast<const ConstantExpression*>(number.get());
        if (!constant || !constant->GetValue().IsNumber() || constant->GetValue().AsInt() < 0) {
            Fail("The size of an array has to be a constant number.", open.begin);
        }
        size = constant->GetValue().AsInt();
        constexpr int largest = 1 << 22;
        if (size > largest) {
            Fail("The array is too large.", open.begin);
        }
    }
    Expect(TokenKind::RightBracket, "\"]\"");
    return size;
}

DeclarationStatement::Variable Parser::ParseDeclarator(Type type, bool isGlobal) {
    const Token name = Expect(TokenKind::Variable, "a variable");
    DeclarationStatement::Variable declared;
    if (NextIs(TokenKind::LeftBracket)) {
        declared.rows = ParseDimension();
        if (type == Type::Matrix) {
            declared.columns = ParseDimension();
            constexpr double largest = 1 << 24;
            if (static_cast<double>(declared.rows) * declared.columns > largest) {
                Fail("The matrix is too large.", name.begin);
            }
        } else {
            type = ArrayOf(type);
        }
    }
    // Parse the initial value first, since it must not see the variable.
    if (Accept(TokenKind::Assign)) {
        declared.initial = ParseExpression();
    }
    const std::string_view variableName = TextOf(name).substr(1);
    const bool wasAtTop = variables_.IsAtTop();
    const auto result =
        isGlobal ? variables_.DeclareGlobal(variableName, type) : variables_.Declare(variableName, type);
    if (!result) {
        Fail("Invalid redeclaration of variable \"" + std::string(TextOf(name)) + "\" as a different type.",
             name.begin);
    }
    if (result->again && !isGlobal && !wasAtTop && !declared.initial) {
        warn_("Redeclaration of variable \"" + std::string(TextOf(name)) +
              "\" shadows previous declaration. Previous value will be retained.");
    }
    declared.keepsValue = isGlobal || (result->again && !wasAtTop);
    declared.initialOnce = isGlobal && variables_.IsInProcedure();
    declared.variable = std::make_unique<VariableExpression>(name.begin, result->place);
    return declared;
}

void Parser::ParseParameters(Procedure& procedure) {
    Expect(TokenKind::LeftParen, "\"(\"");
    while (!NextIs(TokenKind::RightParen)) {
        const TokenKind next = lexer_.Peek().kind;
        if (next < TokenKind::TypeInt || next > TokenKind::TypeMatrix) {
            Unexpected();
        }
        Procedure::Parameter parameter;
        parameter.type = ParseType();
        const Token name = Expect(TokenKind::Variable, "a variable");
        parameter.name = std::string(TextOf(name).substr(1));
        while (NextIs(TokenKind::LeftBracket)) {
            ParseDimension();
            parameter.type = parameter.type == Type::Matrix ? Type::Matrix : ArrayOf(parameter.type);
            if (parameter.type == Type::None) {
                Fail("Syntax error: arrays of arrays are not supported.", name.begin);
            }
        }
        const auto declared = variables_.Declare(parameter.name, parameter.type);
        if (!declared || declared->again) {
            Fail("Two parameters have the name \"$" + parameter.name + "\".", name.begin);
        }
        procedure.parameters.push_back(std::move(parameter));
        if (!Accept(TokenKind::Comma)) {
            break;
        }
    }
    Expect(TokenKind::RightParen, "\")\"");
}

StatementPtr Parser::ParseProcedure(std::uint32_t offset, Type returnType, bool isGlobal) {
    const Token name = Expect(TokenKind::Identifier, "the name of a procedure");
    if (variables_.IsInProcedure()) {
        Fail("Syntax error: a procedure cannot be defined inside a procedure.", name.begin);
    }
    auto procedure = std::make_shared<Procedure>();
    procedure->name = std::string(TextOf(name));
    procedure->isGlobal = isGlobal;
    procedure->returnType = returnType;
    procedure->source = source_;
    procedure->scope = &scope_;
    variables_.OpenProcedure();
    const ScopeExit closeProcedure([this] { variables_.CloseProcedure(); });
    const QScopedValueRollback<Type> returns(returnType_, returnType);
    const QScopedValueRollback<int> noLoop(loops_, 0);
    const QScopedValueRollback<int> noSwitch(switches_, 0);
    ParseParameters(*procedure);
    procedure->body = ParseBlock();
    procedure->variableCount = variables_.SlotCount();
    procedures_.push_back(procedure);
    return std::make_unique<ProcedureStatement>(offset, std::move(procedure));
}

} // namespace lightbox::mel
