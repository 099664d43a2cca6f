#include "mel/CommandRegistry.h"
#include "mel/Error.h"
#include "mel/Interpreter.h"
#include "mel/Operations.h"
#include "mel/Registration.h"
#include "mel/SyntaxBuilder.h"
#include "text/Quoted.h"
#include "text/TextUtil.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QString>

#include <algorithm>

namespace lightbox::mel {

namespace {

std::string Text(const CommandCall& call, std::size_t index) {
    return call.Object(index).AsString();
}

QString QText(CommandCall& call, std::size_t index) {
    return QString::fromStdString(Text(call, index));
}

QRegularExpression Pattern(CommandCall& call, std::size_t index) {
    const QRegularExpression pattern(QText(call, index), QRegularExpression::DotMatchesEverythingOption |
                                                             QRegularExpression::DontCaptureOption);
    if (!pattern.isValid()) {
        call.Fail("Invalid regular expression: \"" + Text(call, index) + "\".");
    }
    return pattern;
}

/// match(expression, text): the first match or "".
Value Match(CommandCall& call) {
    const QRegularExpressionMatch match = Pattern(call, 0).match(QText(call, 1));
    return match.captured(0).toStdString();
}

/// substitute(expression, text, replacement): replaces the first match.
Value Substitute(CommandCall& call) {
    QString text = QText(call, 1);
    const QRegularExpressionMatch match = Pattern(call, 0).match(text);
    if (!match.hasMatch()) {
        return Text(call, 1);
    }
    text.replace(match.capturedStart(0), match.capturedLength(0), QText(call, 2));
    return text.toStdString();
}

/// substituteAllString(text, search, replacement), without regular expressions.
Value SubstituteAll(CommandCall& call) {
    const std::string text = Text(call, 0);
    const std::string search = Text(call, 1);
    const std::string replacement = Text(call, 2);
    if (search.empty()) {
        return text;
    }
    std::string result;
    std::size_t begin = 0;
    for (auto found = text.find(search); found != std::string::npos; found = text.find(search, begin)) {
        result.append(text, begin, found - begin).append(replacement);
        CheckTextLength(result.size());
        begin = found + search.size();
    }
    return result.append(text, begin, std::string::npos);
}

/// substring(text, first, last): characters from 1, both inclusive. Positions outside the text are ignored.
Value Substring(CommandCall& call) {
    const std::string text = Text(call, 0);
    const int first = std::max(1, call.Object(1).AsInt());
    const int last = call.Object(2).AsInt();
    if (last < first) {
        return "";
    }
    const std::size_t begin = CharacterOffset(text, static_cast<std::size_t>(first) - 1);
    const std::size_t end = CharacterOffset(text, static_cast<std::size_t>(last));
    return text.substr(begin, end - begin);
}

/// The first or last `count` characters.
Value Start(CommandCall& call) {
    const std::string text = Text(call, 0);
    const auto count = static_cast<std::size_t>(std::max(0, call.Object(1).AsInt()));
    return text.substr(0, CharacterOffset(text, count));
}

Value End(CommandCall& call) {
    const std::string text = Text(call, 0);
    const auto count = static_cast<std::size_t>(std::max(0, call.Object(1).AsInt()));
    const std::size_t all = CharacterCount(text);
    return text.substr(CharacterOffset(text, count < all ? all - count : 0));
}

/// tokenize(text, [separators,] array): fills the array and returns the number of tokens.
Value Tokenize(CommandCall& call) {
    const std::size_t count = call.Objects().size();
    const Value& array = call.Object(count - 1);
    if (array.GetType() != Type::StringArray) {
        call.Fail("The last argument of \"tokenize\" has to be an array of strings.");
    }
    const std::string separators = count == 3 ? Text(call, 1) : " \t\r\n";
    array.Strings() = Tokens(Text(call, 0), separators);
    return static_cast<int>(array.Strings().size());
}

bool HasPrefix(const std::string& text, const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

bool HasSuffix(const std::string& text, const std::string& suffix) {
    return text.size() >= suffix.size() &&
           text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

Value Capitalized(CommandCall& call) {
    QString text = QText(call, 0);
    if (!text.isEmpty()) {
        text[0] = text[0].toUpper();
    }
    return text.toStdString();
}

/// format -stringArg a -stringArg b "^2s after ^1s": the text with the arguments in their places. A place
/// without an argument stays as it is.
Value Formatted(CommandCall& call) {
    const std::string pattern = Text(call, 0);
    std::string result;
    for (std::size_t i = 0; i < pattern.size();) {
        const std::size_t end = pattern[i] == '^' ? pattern.find_first_not_of("0123456789", i + 1) : i;
        const bool isPlace = end != i && end != std::string::npos && end > i + 1 && pattern[end] == 's';
        // More digits than any number of arguments needs are no place.
        const unsigned long number =
            isPlace && end - i <= 9 ? std::stoul(pattern.substr(i + 1, end - i - 1)) : 0;
        if (number >= 1 && number <= call.UseCount("-stringArg")) {
            result += call.String("-stringArg", 0, static_cast<unsigned>(number - 1));
            CheckTextLength(result.size());
            i = end + 1;
        } else {
            result += pattern[i++];
        }
    }
    return result;
}

/// A valid name of a node: other characters become underscores.
Value ValidObjectName(CommandCall& call) {
    std::string name = Text(call, 0);
    const auto isDigit = [](char letter) { return letter >= '0' && letter <= '9'; };
    for (char& letter : name) {
        const bool isLetter = (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
        letter = isLetter || isDigit(letter) ? letter : '_';
    }
    return !name.empty() && isDigit(name[0]) ? "_" + name : name;
}

/// The text with the escapes that it needs inside quotes.
Value Encoded(CommandCall& call) {
    const std::string quoted = Quoted(Text(call, 0));
    return quoted.substr(1, quoted.size() - 2);
}

Value Directory(CommandCall& call) {
    const std::string path = Text(call, 0);
    const auto slash = path.find_last_of("/\\");
    return slash == std::string::npos ? "" : path.substr(0, std::max<std::size_t>(slash, 1));
}

/// basename(path, suffix)
Value BaseName(CommandCall& call) {
    const std::string path = Text(call, 0);
    const auto slash = path.find_last_of("/\\");
    std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    const std::string suffix = call.Objects().size() > 1 ? Text(call, 1) : "";
    if (!suffix.empty() && name != suffix && HasSuffix(name, suffix)) {
        name.resize(name.size() - suffix.size());
    }
    return name;
}

Value BaseNameWithoutExtension(CommandCall& call) {
    const std::string name = QFileInfo(QText(call, 0)).completeBaseName().toStdString();
    return name;
}

Value WithForwardSlashes(CommandCall& call) {
    std::string path = Text(call, 0);
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

void RegisterPaths(CommandRegistry& registry) {
    registry.RegisterRaw("dirname", 1, 1, Directory);
    registry.RegisterRaw("basename", 2, 2, BaseName);
    registry.RegisterRaw("basenameEx", 1, 1, BaseNameWithoutExtension);
    registry.RegisterRaw("fileExtension", 1, 1, [](CommandCall& call) {
        return Value(QFileInfo(QText(call, 0)).suffix().toStdString());
    });
    registry.RegisterRaw("fromNativePath", 1, 1, WithForwardSlashes);
    registry.RegisterRaw("toNativePath", 1, 1, [](CommandCall& call) { return Value(Text(call, 0)); });
}

} // namespace

void RegisterStringCommands(CommandRegistry& registry) {
    registry.RegisterRaw("match", 2, 2, Match);
    registry.RegisterRaw("gmatch", 2, 2,
                         [](CommandCall& call) { return Value(MatchesGlob(Text(call, 0), Text(call, 1))); });
    registry.RegisterRaw("substitute", 3, 3, Substitute);
    registry.RegisterRaw("substituteAllString", 3, 3, SubstituteAll);
    registry.RegisterRaw("substring", 3, 3, Substring);
    registry.RegisterRaw("startString", 2, 2, Start);
    registry.RegisterRaw("endString", 2, 2, End);
    registry.RegisterRaw("strip", 1, 1, [](CommandCall& call) { return Value(Stripped(Text(call, 0))); });
    registry.RegisterRaw("toupper", 1, 1,
                         [](CommandCall& call) { return Value(QText(call, 0).toUpper().toStdString()); });
    registry.RegisterRaw("tolower", 1, 1,
                         [](CommandCall& call) { return Value(QText(call, 0).toLower().toStdString()); });
    registry.RegisterRaw("capitalizeString", 1, 1, Capitalized);
    registry.RegisterRaw("strcmp", 2, 2, [](CommandCall& call) {
        const int order = Text(call, 0).compare(Text(call, 1));
        return Value(order < 0 ? -1 : order > 0 ? 1 : 0);
    });
    registry.RegisterRaw("startsWith", 2, 2,
                         [](CommandCall& call) { return Value(HasPrefix(Text(call, 0), Text(call, 1))); });
    registry.RegisterRaw("endsWith", 2, 2,
                         [](CommandCall& call) { return Value(HasSuffix(Text(call, 0), Text(call, 1))); });
    registry.RegisterRaw("tokenize", 2, 3, Tokenize);
    registry.Register("format",
                      SyntaxBuilder().Flag("-s", "-stringArg", MSyntax::kString).MultiUse().Objects(1, 1),
                      Formatted);
    registry.RegisterRaw("formValidObjectName", 1, 1, ValidObjectName);
    registry.RegisterRaw("encodeString", 1, 1, Encoded);
    RegisterPaths(registry);
}

} // namespace lightbox::mel
