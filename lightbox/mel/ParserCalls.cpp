#include "mel/CallExpressions.h"
#include "mel/OperatorExpressions.h"
#include "mel/Parser.h"

#include <QScopedValueRollback>

#include <cstring>

namespace lightbox::mel {

namespace {

bool IsWordStart(char letter) {
    return IsNameCharacter(letter) || static_cast<unsigned char>(letter) >= 0x80 ||
           (letter != '\0' && std::strchr(".|:*?#@~", letter) != nullptr);
}

} // namespace

/// Parses a name that begins a call. At the start of a statement or in back-quotes it may be a command with
/// arguments, anywhere else only a function call.
ExpressionPtr Parser::ParseNamed(bool atStatement) {
    const Token name = lexer_.Take();
    if (TextOf(name) == "catch" || TextOf(name) == "catchQuiet") {
        ExpressionPtr caught = ParseCatch(name);
        return atStatement ? ParseExpression(std::move(caught)) : std::move(caught);
    }
    if (lexer_.PeekCharacter() != '(') {
        if (!atStatement) {
            Fail("Syntax error: unexpected \"" + std::string(TextOf(name)) + "\".", name.begin);
        }
        return ParseCommand(name, nullptr);
    }
    if (!atStatement) {
        return ParseFunctionCall(name);
    }
    // name (...) is a function call, unless more arguments follow; then the parenthesis is just the first
    // argument.
    ExpressionList arguments;
    {
        const QScopedValueRollback<bool> outside(inBackquotes_, false);
        Expect(TokenKind::LeftParen, "\"(\"");
        arguments = ParseExpressionList(TokenKind::RightParen);
        Expect(TokenKind::RightParen, "\")\"");
    }
    if (arguments.size() == 1 && BeginsArgument()) {
        return ParseCommand(name, std::move(arguments.front()));
    }
    ExpressionPtr call = Bounded(std::make_unique<CallExpression>(
        name.begin, std::string(TextOf(name)), std::move(arguments), std::vector<ArgumentForm>(), &scope_));
    return ParseExpression(ParseComponents(std::move(call)));
}

ExpressionPtr Parser::ParseFunctionCall(const Token& name) {
    Expect(TokenKind::LeftParen, "\"(\"");
    const QScopedValueRollback<bool> outside(inBackquotes_, false);
    ExpressionList arguments = ParseExpressionList(TokenKind::RightParen);
    Expect(TokenKind::RightParen, "\")\"");
    return Bounded(std::make_unique<CallExpression>(
        name.begin, std::string(TextOf(name)), std::move(arguments), std::vector<ArgumentForm>(), &scope_));
}

/// catch(expression) or catch `command`
ExpressionPtr Parser::ParseCatch(const Token& name) {
    const bool isQuiet = TextOf(name) == "catchQuiet";
    ExpressionPtr tried;
    if (NextIs(TokenKind::Backquote)) {
        tried = ParseBackquoted();
    } else {
        Expect(TokenKind::LeftParen, "\"(\"");
        const QScopedValueRollback<bool> outside(inBackquotes_, false);
        tried = ParseExpression();
        Expect(TokenKind::RightParen, "\")\"");
    }
    return Bounded(std::make_unique<CatchExpression>(name.begin, std::move(tried), isQuiet));
}

ExpressionPtr Parser::ParseBackquoted() {
    const QScopedValueRollback<int> nesting(nesting_, NextNesting());
    const Token open = lexer_.Take();
    ExpressionPtr command;
    {
        const QScopedValueRollback<bool> inside(inBackquotes_, true);
        if (!NextIs(TokenKind::Identifier)) {
            Fail("Syntax error: a command is expected in back-quotes.", open.begin);
        }
        command = ParseNamed(true);
    }
    Expect(TokenKind::Backquote, "\"`\"");
    return command;
}

bool Parser::AtArgumentEnd() {
    const char letter = lexer_.PeekCharacter();
    return letter == '\0' || letter == ';' || letter == ')' || letter == '}' ||
           (letter == '`' && inBackquotes_);
}

/// Whether another argument follows name(...) at the start of a statement, rather than the operator of an
/// expression.
bool Parser::BeginsArgument() {
    const std::uint32_t end = lexer_.RawPosition();
    const char letter = lexer_.PeekCharacter();
    const bool spaceBefore = lexer_.RawPosition() != end;
    if (letter == '-' || letter == '+') {
        // "a -1" is an argument, "a - 1" and "a-1" are differences.
        const char next = lexer_.CharacterAfter(1);
        return spaceBefore && (IsNameCharacter(next) || next == '.' || next == '$' || next == '(');
    }
    if (letter == '<') {
        return lexer_.CharacterAfter(1) == '<';
    }
    if (letter == '.') {
        // ".x" right after a vector is its component.
        return spaceBefore;
    }
    if (letter == '|') {
        return lexer_.CharacterAfter(1) != '|';
    }
    if (letter == '`') {
        return !inBackquotes_;
    }
    return letter == '"' || letter == '$' || letter == '(' || letter == '{' || letter == ':' ||
           IsNameCharacter(letter) || static_cast<unsigned char>(letter) >= 0x80;
}

ExpressionPtr Parser::ParseCommand(const Token& name, ExpressionPtr first) {
    ExpressionList arguments;
    std::vector<ArgumentForm> forms;
    if (first) {
        arguments.push_back(std::move(first));
        forms.push_back(ArgumentForm::Computed);
    }
    while (!AtArgumentEnd()) {
        ArgumentForm form = ArgumentForm::Computed;
        arguments.push_back(ParseArgument(form));
        forms.push_back(form);
    }
    return Bounded(std::make_unique<CallExpression>(name.begin, std::string(TextOf(name)),
                                                    std::move(arguments), std::move(forms), &scope_));
}

ExpressionPtr Parser::ParseArgument(ArgumentForm& form) {
    const char letter = lexer_.PeekCharacter();
    switch (letter) {
    case '"':
        form = ArgumentForm::Quoted;
        return ParseString();
    case '$':
        return ParseVariableArgument();
    case '(':
        return ParseParenthesised();
    case '`':
        return ParseBackquoted();
    case '{':
        return ParseArray();
    case '<':
        if (lexer_.CharacterAfter(1) == '<') {
            return ParseVectorOrMatrix();
        }
        Unexpected();
    case '-':
    case '+':
        return ParseSignedArgument(form);
    default:
        if (!IsWordStart(letter)) {
            Unexpected();
        }
        return ParseWord(form);
    }
}

/// $name, $name[index], $name.x, $name.tx: what follows without a blank belongs to it.
ExpressionPtr Parser::ParseVariableArgument() {
    const Token name = lexer_.Take();
    const auto place = variables_.Find(TextOf(name).substr(1));
    if (!place) {
        Fail("\"" + std::string(TextOf(name)) + "\" is an undeclared variable.", name.begin);
    }
    if (lexer_.CharacterAfter(0) == '[') {
        ExpressionPtr index = ParseIndex();
        return ParseRestOfWord(ParseIndexed(name, *place, std::move(index), lexer_.CharacterAfter(0) == '['));
    }
    ExpressionPtr variable = std::make_unique<VariableExpression>(name.begin, *place);
    if (lexer_.CharacterAfter(0) != '.') {
        return variable;
    }
    const char component = lexer_.CharacterAfter(1);
    const bool isComponent =
        component >= 'x' && component <= 'z' && !IsNameCharacter(lexer_.CharacterAfter(2));
    const bool isVector = place->type == Type::Vector || (place->type == Type::Any && isComponent);
    return isVector ? ParseComponents(std::move(variable)) : ParseRestOfWord(std::move(variable));
}

/// Joins a word, or the value of a variable, with the attribute and the computed indexes that follow without
/// a blank. Returns `first` if nothing does.
ExpressionPtr Parser::ParseRestOfWord(ExpressionPtr first) {
    const std::uint32_t begin = first->offset;
    ExpressionList parts;
    parts.push_back(std::move(first));
    for (;;) {
        const char letter = lexer_.CharacterAfter(0);
        if (letter == '[') {
            ParseWordIndex(parts);
        } else if (letter == '.' || letter == '|') {
            const Token word = lexer_.TakeWord();
            parts.push_back(std::make_unique<ConstantExpression>(word.begin, Value(TextOf(word))));
        } else {
            break;
        }
        if (IsArray(parts.front()->type)) {
            Fail(IllegalOperation(".", parts.front()->type), begin);
        }
    }
    return parts.size() == 1 ? std::move(parts.front())
                             : Bounded(std::make_unique<JoinedWordExpression>(begin, std::move(parts)));
}

/// [index] or [first:last]
void Parser::ParseWordIndex(ExpressionList& parts) {
    const auto add = [&](const char* text) {
        parts.push_back(
            std::make_unique<ConstantExpression>(lexer_.Position(), Value(std::string_view(text))));
    };
    add("[");
    Expect(TokenKind::LeftBracket, "\"[\"");
    {
        const QScopedValueRollback<bool> outside(inBackquotes_, false);
        parts.push_back(ParseExpression());
        if (Accept(TokenKind::Colon)) {
            add(":");
            parts.push_back(ParseExpression());
        }
    }
    add("]");
    Expect(TokenKind::RightBracket, "\"]\"");
}

/// A negative number, a flag, or something negated.
ExpressionPtr Parser::ParseSignedArgument(ArgumentForm& form) {
    const std::uint32_t begin = lexer_.RawPosition();
    const bool isMinus = lexer_.CharacterAfter(0) == '-';
    const char next = lexer_.CharacterAfter(1);
    const bool isNumber = IsDigit(next) || (next == '.' && IsDigit(lexer_.CharacterAfter(2)));
    if (isNumber || (isMinus && IsNameStart(next))) {
        return ParseWord(form);
    }
    if (!isMinus || (next != '$' && next != '(')) {
        Unexpected();
    }
    lexer_.MoveTo(begin + 1);
    ExpressionPtr operand = next == '$' ? ParseVariableArgument() : ParseParenthesised();
    if (operand->type == Type::String || IsArray(operand->type)) {
        Fail(IllegalOperation("-", operand->type), begin);
    }
    return Bounded(std::make_unique<NegationExpression>(begin, std::move(operand)));
}

ExpressionPtr Parser::ParseWord(ArgumentForm& form) {
    const Token word = lexer_.TakeWord();
    const std::string_view text = TextOf(word);
    if (word.kind == TokenKind::Identifier) {
        if (text.size() > 1 && text[0] == '-' && IsNameStart(text[1])) {
            form = ArgumentForm::FlagWord;
        }
        ExpressionPtr constant = std::make_unique<ConstantExpression>(word.begin, Value(text));
        return lexer_.CharacterAfter(0) == '[' ? ParseRestOfWord(std::move(constant)) : std::move(constant);
    }
    bool isInt = false;
    int integer = 0;
    double number = 0.0;
    ScanNumberLiteral(text, isInt, integer, number);
    return std::make_unique<ConstantExpression>(word.begin, isInt ? Value(integer) : Value(number));
}

} // namespace lightbox::mel
