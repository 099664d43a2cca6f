#include "mel/AssignmentExpressions.h"
#include "mel/OperatorExpressions.h"
#include "mel/Parser.h"

#include <QScopedValueRollback>

namespace lightbox::mel {

namespace {

/// The precedence of a binary operator, 0 for other tokens. A higher one binds tighter.
int Precedence(TokenKind kind) {
    switch (kind) {
    case TokenKind::Or:
        return 1;
    case TokenKind::And:
        return 2;
    case TokenKind::Equal:
    case TokenKind::NotEqual:
        return 3;
    case TokenKind::Less:
    case TokenKind::LessEqual:
    case TokenKind::Greater:
    case TokenKind::GreaterEqual:
        return 4;
    case TokenKind::Plus:
    case TokenKind::Minus:
        return 5;
    case TokenKind::Star:
    case TokenKind::Slash:
    case TokenKind::Percent:
    case TokenKind::Caret:
        return 6;
    default:
        return 0;
    }
}

Operator OperatorOf(TokenKind kind) {
    switch (kind) {
    case TokenKind::Plus:
    case TokenKind::PlusAssign:
        return Operator::Add;
    case TokenKind::Minus:
    case TokenKind::MinusAssign:
        return Operator::Subtract;
    case TokenKind::Star:
    case TokenKind::StarAssign:
        return Operator::Multiply;
    case TokenKind::Slash:
    case TokenKind::SlashAssign:
        return Operator::Divide;
    case TokenKind::Percent:
    case TokenKind::PercentAssign:
        return Operator::Remainder;
    case TokenKind::Caret:
    case TokenKind::CaretAssign:
        return Operator::Cross;
    case TokenKind::Less:
        return Operator::Less;
    case TokenKind::LessEqual:
        return Operator::LessEqual;
    case TokenKind::Greater:
        return Operator::Greater;
    case TokenKind::GreaterEqual:
        return Operator::GreaterEqual;
    case TokenKind::Equal:
        return Operator::Equal;
    default:
        return Operator::NotEqual;
    }
}

bool IsAssignment(TokenKind kind) {
    return kind >= TokenKind::Assign && kind <= TokenKind::CaretAssign;
}

bool IsTypeWord(TokenKind kind) {
    return kind >= TokenKind::TypeInt && kind <= TokenKind::TypeVector;
}

bool CanBeJoined(Type type) {
    return !IsArray(type) && type != Type::Matrix;
}

} // namespace

ExpressionPtr Parser::Bounded(ExpressionPtr expression) const {
    constexpr int deepest = 1000;
    if (expression->depth > deepest) {
        Fail("The expression is too long.", expression->offset);
    }
    return expression;
}

ExpressionPtr Parser::ParseExpression(ExpressionPtr first) {
    const QScopedValueRollback<int> nesting(nesting_, NextNesting());
    ExpressionPtr expression = ParseBinary(1, std::move(first));
    const Token next = lexer_.Peek();
    if (IsAssignment(next.kind)) {
        return ParseAssignment(std::move(expression), lexer_.Take());
    }
    if (next.kind != TokenKind::Question) {
        return expression;
    }
    lexer_.Take();
    ExpressionPtr chosen = ParseExpression();
    Expect(TokenKind::Colon, "\":\"");
    ExpressionPtr otherwise = ParseExpression();
    return Bounded(std::make_unique<ConditionalExpression>(next.begin, std::move(expression),
                                                           std::move(chosen), std::move(otherwise)));
}

ExpressionPtr Parser::ParseAssignment(ExpressionPtr left, const Token& op) {
    TargetPtr target(dynamic_cast<Target*>(left.get()));
    if (!target) {
        Fail("Syntax error: the left side of \"" + std::string(TextOf(op)) + "\" is not a variable.",
             op.begin);
    }
    // The same object, now owned by its actual type.
    static_cast<void>(left.release());
    ExpressionPtr value = ParseExpression();
    if (op.kind == TokenKind::Assign) {
        const bool known = value->type != Type::Any && target->type != Type::Any;
        if (known && IsArray(value->type) != IsArray(target->type) && value->type != Type::Vector &&
            target->type != Type::Vector) {
            Fail(std::string("Cannot convert data of type ") + TypeName(value->type) + " to type " +
                     TypeName(target->type) + ".",
                 op.begin);
        }
        return Bounded(std::make_unique<AssignExpression>(op.begin, std::move(target), std::move(value)));
    }
    const Operator operation = OperatorOf(op.kind);
    if (ResultType(operation, target->type, value->type) == Type::None) {
        Fail(IllegalOperation(operation, target->type, value->type), op.begin);
    }
    return Bounded(
        std::make_unique<CompoundExpression>(op.begin, operation, std::move(target), std::move(value)));
}

ExpressionPtr Parser::ParseBinary(int minimumPrecedence, ExpressionPtr first) {
    ExpressionPtr left = first ? std::move(first) : ParseUnary();
    for (;;) {
        const Token op = lexer_.Peek();
        const int precedence = Precedence(op.kind);
        if (precedence < minimumPrecedence || precedence == 0) {
            return left;
        }
        lexer_.Take();
        ExpressionPtr right = ParseBinary(precedence + 1, nullptr);
        left = Bounded(Combine(op, std::move(left), std::move(right)));
    }
}

ExpressionPtr Parser::Combine(const Token& token, ExpressionPtr left, ExpressionPtr right) {
    if (token.kind == TokenKind::And || token.kind == TokenKind::Or) {
        return std::make_unique<LogicalExpression>(token.begin, token.kind == TokenKind::And, std::move(left),
                                                   std::move(right));
    }
    const Operator op = OperatorOf(token.kind);
    if (ResultType(op, left->type, right->type) == Type::None) {
        Fail(IllegalOperation(op, left->type, right->type), token.begin);
    }
    const bool isText = left->type == Type::String || right->type == Type::String;
    if (op == Operator::Add && isText && CanBeJoined(left->type) && CanBeJoined(right->type)) {
        if (auto* const sum = dynamic_cast<ConcatenationExpression*>(left.get())) {
            sum->Append(std::move(right));
            return left;
        }
        return std::make_unique<ConcatenationExpression>(token.begin, std::move(left), std::move(right));
    }
    return std::make_unique<BinaryExpression>(token.begin, op, std::move(left), std::move(right));
}

ExpressionPtr Parser::ParseUnary() {
    const QScopedValueRollback<int> nesting(nesting_, NextNesting());
    const Token op = lexer_.Peek();
    switch (op.kind) {
    case TokenKind::Not:
        lexer_.Take();
        return Bounded(std::make_unique<NotExpression>(op.begin, ParseUnary()));
    case TokenKind::Plus:
        lexer_.Take();
        return ParseUnary();
    case TokenKind::Minus: {
        lexer_.Take();
        ExpressionPtr operand = ParseUnary();
        if (operand->type == Type::String || IsArray(operand->type)) {
            Fail(IllegalOperation("-", operand->type), op.begin);
        }
        if (const auto* const constant = dynamic_cast<const ConstantExpression*>(operand.get())) {
            return std::make_unique<ConstantExpression>(op.begin, Negated(constant->GetValue()));
        }
        return Bounded(std::make_unique<NegationExpression>(op.begin, std::move(operand)));
    }
    case TokenKind::PlusPlus:
    case TokenKind::MinusMinus:
        lexer_.Take();
        return ParseStep(op, ParseUnary(), true);
    default:
        return ParsePostfix();
    }
}

ExpressionPtr Parser::ParseStep(const Token& op, ExpressionPtr operand, bool isPrefix) {
    TargetPtr target(dynamic_cast<Target*>(operand.get()));
    const std::string text(TextOf(op));
    if (!target) {
        Fail("Syntax error: \"" + text + "\" needs a variable.", op.begin);
    }
    static_cast<void>(operand.release());
    const Type type = target->type;
    if (type != Type::Int && type != Type::Float && type != Type::Vector && type != Type::Any) {
        Fail(IllegalOperation(text.c_str(), type), op.begin);
    }
    return Bounded(std::make_unique<StepExpression>(op.begin, std::move(target),
                                                    op.kind == TokenKind::PlusPlus, isPrefix));
}

ExpressionPtr Parser::ParsePostfix() {
    ExpressionPtr expression = ParseComponents(ParsePrimary());
    while (NextIs(TokenKind::PlusPlus) || NextIs(TokenKind::MinusMinus)) {
        const Token op = lexer_.Take();
        expression = ParseStep(op, std::move(expression), false);
    }
    return expression;
}

ExpressionPtr Parser::ParseComponents(ExpressionPtr vector) {
    const Token dot = lexer_.Peek();
    if (dot.kind != TokenKind::Dot) {
        return vector;
    }
    lexer_.Take();
    const Token name = lexer_.Peek();
    const std::string_view text = TextOf(name);
    const bool isComponent = text == "x" || text == "y" || text == "z";
    if (!isComponent || (vector->type != Type::Vector && vector->type != Type::Any)) {
        Fail("Syntax error: unexpected \".\".", dot.begin);
    }
    lexer_.Take();
    return Bounded(std::make_unique<ComponentExpression>(dot.begin, std::move(vector), text[0]));
}

ExpressionPtr Parser::ParsePrimary() {
    const Token token = lexer_.Peek();
    switch (token.kind) {
    case TokenKind::Integer:
    case TokenKind::Float:
        return ParseNumber();
    case TokenKind::String:
        return ParseString();
    case TokenKind::Variable:
        return ParseVariable();
    case TokenKind::LeftParen:
        return ParseParenthesised();
    case TokenKind::Backquote:
        return ParseBackquoted();
    case TokenKind::VectorOpen:
        return ParseVectorOrMatrix();
    case TokenKind::LeftBrace:
        return ParseArray();
    case TokenKind::True:
    case TokenKind::False:
        lexer_.Take();
        return std::make_unique<ConstantExpression>(token.begin, token.kind == TokenKind::True);
    case TokenKind::TypeInt:
    case TokenKind::TypeFloat:
    case TokenKind::TypeString:
    case TokenKind::TypeVector: {
        const Type type = ParseType();
        Expect(TokenKind::LeftParen, "\"(\"");
        ExpressionPtr operand = ParseExpression();
        Expect(TokenKind::RightParen, "\")\"");
        return Bounded(std::make_unique<CastExpression>(token.begin, type, std::move(operand)));
    }
    case TokenKind::Identifier:
        return ParseNamed(false);
    default:
        Unexpected();
    }
}

ExpressionPtr Parser::ParseNumber() {
    const Token token = lexer_.Take();
    bool isInt = false;
    int integer = 0;
    double number = 0.0;
    ScanNumberLiteral(TextOf(token), isInt, integer, number);
    return std::make_unique<ConstantExpression>(token.begin, isInt ? Value(integer) : Value(number));
}

ExpressionPtr Parser::ParseString() {
    const Token token = lexer_.Take();
    const std::string_view literal = TextOf(token).substr(1, token.end - token.begin - 2);
    constexpr std::size_t longestKept = 256;
    if (literal.size() <= longestKept) {
        return std::make_unique<ConstantExpression>(token.begin, token.hasEscapes ? Value(Unescaped(literal))
                                                                                  : Value(literal));
    }
    return std::make_unique<TextExpression>(token.begin, literal, token.hasEscapes);
}

/// (expression) or (type)operand
ExpressionPtr Parser::ParseParenthesised() {
    const Token open = lexer_.Take();
    const QScopedValueRollback<bool> outside(inBackquotes_, false);
    const Token next = lexer_.Peek();
    if (IsTypeWord(next.kind)) {
        const Type type = ParseType();
        if (Accept(TokenKind::RightParen)) {
            return Bounded(std::make_unique<CastExpression>(open.begin, type, ParseUnary()));
        }
        lexer_.MoveTo(next.begin);
    }
    ExpressionPtr expression = ParseExpression();
    Expect(TokenKind::RightParen, "\")\"");
    return expression;
}

ExpressionPtr Parser::ParseVariable() {
    const Token name = lexer_.Take();
    const auto place = variables_.Find(TextOf(name).substr(1));
    if (!place) {
        return ParseUndeclared(name);
    }
    if (!NextIs(TokenKind::LeftBracket)) {
        return std::make_unique<VariableExpression>(name.begin, *place);
    }
    ExpressionPtr index = ParseIndex();
    return ParseIndexed(name, *place, std::move(index), NextIs(TokenKind::LeftBracket));
}

ExpressionPtr Parser::ParseIndex() {
    Expect(TokenKind::LeftBracket, "\"[\"");
    const QScopedValueRollback<bool> outside(inBackquotes_, false);
    ExpressionPtr index = ParseExpression();
    if (IsArray(index->type)) {
        Fail("An index has to be a number.", index->offset);
    }
    Expect(TokenKind::RightBracket, "\"]\"");
    return index;
}

ExpressionPtr Parser::ParseIndexed(const Token& name, const VariablePlace& place, ExpressionPtr index,
                                   bool hasColumn) {
    auto variable = std::make_unique<VariableExpression>(name.begin, place);
    if (place.type == Type::Matrix || (place.type == Type::Any && hasColumn)) {
        ExpressionPtr column = ParseIndex();
        return Bounded(
            std::make_unique<CellExpression>(std::move(variable), std::move(index), std::move(column)));
    }
    if (!IsArray(place.type) && place.type != Type::Any) {
        Fail("The variable \"" + std::string(TextOf(name)) + "\" is not an array.", name.begin);
    }
    return Bounded(std::make_unique<ElementExpression>(std::move(variable), std::move(index)));
}

/// Parses an unknown variable name. An assignment declares it, with the type of the value.
ExpressionPtr Parser::ParseUndeclared(const Token& name) {
    ExpressionPtr index = NextIs(TokenKind::LeftBracket) ? ParseIndex() : nullptr;
    const Token op = lexer_.Peek();
    if (op.kind != TokenKind::Assign) {
        Fail("\"" + std::string(TextOf(name)) + "\" is an undeclared variable.", name.begin);
    }
    lexer_.Take();
    ExpressionPtr value = ParseExpression();
    Type type = value->type;
    if (index && type != Type::Any) {
        type = ArrayOf(type);
        if (type == Type::None) {
            Fail(std::string("Cannot convert data of type ") + TypeName(value->type) +
                     " to an element of an array.",
                 op.begin);
        }
    }
    const auto declared = variables_.Declare(TextOf(name).substr(1), type);
    if (!declared) {
        Fail("Invalid redeclaration of variable \"" + std::string(TextOf(name)) + "\" as a different type.",
             name.begin);
    }
    TargetPtr target;
    auto variable = std::make_unique<VariableExpression>(name.begin, declared->place);
    if (index) {
        target = std::make_unique<ElementExpression>(std::move(variable), std::move(index));
    } else {
        target = std::move(variable);
    }
    return Bounded(std::make_unique<AssignExpression>(op.begin, std::move(target), std::move(value)));
}

ExpressionPtr Parser::ParseVectorOrMatrix() {
    const Token open = lexer_.Take();
    const QScopedValueRollback<bool> outside(inBackquotes_, false);
    std::vector<ExpressionList> rows;
    do {
        ExpressionList row;
        do {
            row.push_back(ParseExpression());
        } while (Accept(TokenKind::Comma));
        if (!rows.empty() && row.size() != rows.front().size()) {
            Fail("Syntax error: the rows of a matrix have to be of the same length.", open.begin);
        }
        rows.push_back(std::move(row));
    } while (Accept(TokenKind::Semicolon));
    Expect(TokenKind::VectorClose, "\">>\"");
    if (rows.size() == 1 && rows.front().size() == 3) {
        ExpressionList& row = rows.front();
        return Bounded(std::make_unique<VectorExpression>(open.begin, std::move(row[0]), std::move(row[1]),
                                                          std::move(row[2])));
    }
    return Bounded(std::make_unique<MatrixExpression>(open.begin, std::move(rows)));
}

ExpressionPtr Parser::ParseArray() {
    const Token open = lexer_.Take();
    const QScopedValueRollback<bool> outside(inBackquotes_, false);
    ExpressionList elements = ParseExpressionList(TokenKind::RightBrace);
    Expect(TokenKind::RightBrace, "\"}\"");
    return Bounded(std::make_unique<ArrayExpression>(open.begin, std::move(elements)));
}

} // namespace lightbox::mel
