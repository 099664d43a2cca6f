#include "formats/FileReader.h"

#include "formats/BinaryReader.h"
#include "formats/ChunkFile.h"
#include "formats/Codeset.h"
#include "formats/FileError.h"
#include "formats/PreservedContent.h"
#include "formats/QuoteRepair.h"
#include "formats/SceneFiles.h"
#include "formats/SceneStatements.h"
#include "mel/Interpreter.h"
#include "mel/Runtime.h"
#include "scene/Host.h"
#include "scene/Output.h"
#include "scene/Scene.h"
#include "scene/ScopeExit.h"
#include "scene/UndoQueue.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <bitset>
#include <cctype>
#include <new>
#include <optional>
#include <utility>

namespace lightbox {
namespace {

constexpr char ASCII_SIGNATURE[] = "//Maya ASCII";
constexpr char BYTE_ORDER_MARK[] = "\xef\xbb\xbf";
/// A text with more statements that are not MEL is not read further.
constexpr int MAX_SYNTAX_ERRORS = 100;
/// Number of attempts to run the beginning of a statement that is not MEL.
constexpr int MAX_ATTEMPTS = 4;
/// The comments at the beginning of a file end within this many bytes.
constexpr std::size_t MAX_HEAD_LENGTH = 1000;
/// Limit of the lines that the summary of what did not run names.
constexpr std::size_t MAX_NAMED_LINES = 20;

/// The text without white space at its end.
std::string_view Trimmed(std::string_view text) {
    return text.substr(0, text.find_last_not_of(" \t\r\n") + 1);
}

/// The first word of a statement; empty when it does not begin with one.
std::string FirstWord(std::string_view statement) {
    const std::string_view word = statement.substr(0, statement.find_first_of(" \t\r\n;(\"-=$"));
    const bool isWord =
        !word.empty() && (std::isalpha(static_cast<unsigned char>(word[0])) || word[0] == '_');
    return isWord ? std::string(word) : std::string();
}

bool IsAscii(const std::string& bytes) {
    std::size_t begin = bytes.compare(0, 3, BYTE_ORDER_MARK) == 0 ? 3 : 0;
    begin = bytes.find_first_not_of(" \t\r\n", begin);
    return begin != std::string::npos &&
           bytes.compare(begin, sizeof ASCII_SIGNATURE - 1, ASCII_SIGNATURE) == 0;
}

/// The statement with one wrong bit of its first word put right, so that it is one of a scene; null if that
/// is not what is wrong with it.
std::optional<std::string> WithWordRestored(std::string_view statement) {
    for (const std::string_view name : SceneStatementNames()) {
        const bool isAsLong = statement.size() > name.size() && statement[name.size()] == ' ';
        std::size_t wrongBits = 0;
        for (std::size_t i = 0; isAsLong && i < name.size(); ++i) {
            wrongBits += std::bitset<8>(static_cast<unsigned char>(statement[i] ^ name[i])).count();
        }
        if (isAsLong && wrongBits == 1) {
            return std::string(name) + std::string(statement.substr(name.size()));
        }
    }
    return std::nullopt;
}

/// Whether a statement with this word may be about the current node.
bool IsAboutCurrent(std::string_view word) {
    return word == "setAttr" || word == "addAttr" || word == "lockNode" || word == "rename";
}

/// Whether a statement with this word belongs in a scene, but has no meaning here.
bool IsKeptStatement(std::string_view word) {
    return word == "relationship" || word == "dataStructure" || word == "applyMetadata";
}

/// Whether a statement with this word makes another node the current one.
bool SetsCurrent(std::string_view word) {
    return word == "createNode" || word == "select";
}

} // namespace

void FileReader::CheckIsScene(const std::string& bytes, const std::string& path) {
    if (!IsAscii(bytes) && !ChunkFile::HasSignature(bytes) && !ChunkFile::HasChunk(bytes)) {
        throw FileError("\"" + path + "\" is not a scene that can be read (Maya ASCII or Lightbox binary).");
    }
}

void FileReader::Read(std::string bytes) {
    CheckIsScene(bytes, source_.path);
    const UndoQueue::Pause pause(host_.undo());
    // Binary files contain statements, too.
    const mel::CommandRegistry::Overlay statements(host_.interpreter().Commands(), SceneStatements(*this));
    const ScopeExit restoreNamespace([&scene = host_.scene(), before = host_.scene().currentNamespace] {
        scene.currentNamespace = before;
    });
    host_.scene().currentNamespace.clear();
    try {
        ReadContent(std::move(bytes));
        ApplySceneScript();
        ShowSummary();
        ShowRefused();
    } catch (const std::bad_alloc&) {
        ReportFault("There is not enough memory to read all of the file.");
    } catch (const std::exception& error) {
        ReportFault(std::string("The reading ended early: ") + error.what());
    }
}

void FileReader::ReadContent(std::string bytes) {
    if (IsAscii(bytes)) {
        ReadAscii(std::move(bytes));
    } else {
        BinaryReader(host_.scene(), host_.files().references(), *this).Read(bytes);
    }
}

void FileReader::ReadAscii(std::string text) {
    if (text.compare(0, 3, BYTE_ORDER_MARK) == 0) {
        text.erase(0, 3);
    }
    std::string codeset;
    const Codeset::Result decoded = Codeset::Decode(text, codeset);
    if (decoded == Codeset::Result::Unknown || decoded == Codeset::Result::Invalid) {
        WarnOnce("codeset", "The file is not in its codeset, " + codeset +
                                ". Its letters beyond ASCII are read as UTF-8.");
    }
    KeepHeadComments(text);
    CheckEnd(text);
    hasLines_ = true;
    Run(std::move(text));
}

void FileReader::KeepHeadComments(std::string_view text) {
    if (source_.mode != Mode::Open) {
        return;
    }
    while (text.compare(0, 2, "//") == 0) {
        const std::string_view line = text.substr(0, text.find('\n'));
        const std::string comment(Trimmed(line));
        const auto begins = [&comment](const char* key) { return comment.rfind(key, 0) == 0; };
        if (!begins(ASCII_SIGNATURE) && !begins("//Name:") && !begins("//Last modified:") &&
            !begins("//Codeset:") && !begins("// End of")) {
            host_.files().preserved().headComments.push_back(comment);
        }
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
}

void FileReader::RunStatement(const std::string& text) {
    if (text.compare(0, 2, "//") == 0 && text.find('\n') == std::string::npos) {
        KeepHeadComments(text);
        return;
    }
    Run(text + ";");
}

void FileReader::Run(std::string text) {
    mel::RunOptions options;
    options.streamed = true;
    options.isAllowed = IsSceneStatement;
    options.onRefused = [this](std::string_view refused, int line) { OnRefused(refused, line); };
    options.beforeStatement = [this](std::string_view statement, int line) {
        return BeforeStatement(statement, line);
    };
    options.onError = [this](const mel::Error& error) { return OnError(error); };
    options.afterUnreadable = [this](std::string_view readable, std::string_view skipped, int line) {
        AfterUnreadable(readable, skipped, line);
    };
    const QScopedValueRollback<int> depth(depth_, depth_ + 1);
    const QScopedValueRollback<std::string_view> statement(statement_);
    try {
        host_.interpreter().Execute(std::move(text), source_.path, options);
    } catch (const mel::Error& error) {
        // Too many syntax errors or an interrupt by the user stopped the reading.
        ShowFault(error.Described());
    }
}

bool FileReader::BeforeStatement(std::string_view statement, int line) {
    if (depth_ == 1) {
        statementLine_ = line;
    }
    statement_ = Trimmed(statement);
    const std::string word = FirstWord(statement_);
    if (SetsCurrent(word)) {
        // If it fails, what follows must not change the node before.
        Select({});
        keepsBlock_ = false;
    }
    const bool isCut = !statement_.empty() && statement_.back() != ';';
    if (!isCut && !statement_.empty()) {
        statement_.remove_suffix(1);
    }
    if (depth_ == 1) {
        isStatementCut_ = isCut;
    }
    if (isCut) {
        ReportFault("The statement has no \";\" at its end: it is cut off.");
        return word == "setAttr";
    }
    if (keepsBlock_ && IsAboutCurrent(word)) {
        Keep(word);
        return false;
    }
    return true;
}

void FileReader::OnRefused(std::string_view statement, int line) {
    if (depth_ == 1) {
        statementLine_ = line;
    }
    statement_ = Trimmed(statement);
    const std::string word = FirstWord(statement_);
    if (!statement_.empty() && statement_.back() == ';') {
        statement_.remove_suffix(1);
    }
    if (RunWithWordRestored(statement, line)) {
        return;
    }
    if (depth_ == 1 && IsKeptStatement(word)) {
        KeepForFile(Statement(), "statement " + word,
                    "The statement '" + word + "' has no meaning here; it is kept and written back.");
        return;
    }
    RefuseStatement();
}

void FileReader::RefuseStatement() {
    refusedLines_.push_back(statementLine_);
    Keep(FirstWord(statement_));
}

void FileReader::Keep(const std::string& word) {
    if (depth_ > 1) {
        return; // a part of a statement that is kept itself
    }
    if (SetsCurrent(word)) {
        Select({});
        keepsBlock_ = true;
    }
    const bool isOfNode = !keepsBlock_ && IsAboutCurrent(word) && (Current() || !MissingDefault().empty());
    if (isOfNode) {
        KeepForCurrent(Statement(), "", "");
    } else {
        KeepForFile(Statement(), "", "");
    }
}

void FileReader::ShowRefused() const {
    const std::size_t count = refusedLines_.size();
    if (count == 0) {
        return;
    }
    std::string text = std::to_string(count) + (count == 1 ? " statement does" : " statements do");
    text += " not belong in a scene and did not run";
    if (hasLines_) {
        text += std::string(": line") + (count == 1 ? "" : "s");
        for (std::size_t i = 0; i < std::min(count, MAX_NAMED_LINES); ++i) {
            text += (i == 0 ? " " : ", ") + std::to_string(refusedLines_[i]);
        }
        text += count > MAX_NAMED_LINES ? " and more" : "";
    }
    text += source_.mode == Mode::Open ? ". They are kept and written back." : ".";
    host_.output().Warning("file: " + source_.path + ": " + text);
}

std::string FileReader::RunConfiguration(const std::string& script) {
    std::string rest;
    if (source_.mode != Mode::Open) {
        return rest;
    }
    mel::RunOptions options;
    options.streamed = true;
    options.isAllowed = [](std::string_view command) { return command == "playbackOptions"; };
    options.onRefused = [&](std::string_view statement, int) {
        rest += std::string(Trimmed(statement)) + "\n";
    };
    options.onError = [this](const mel::Error& error) {
        WarnOnce("configuration",
                 std::string("A part of the scene's configuration script has no meaning: ") + error.what());
        return true;
    };
    host_.interpreter().Execute(script + ";", source_.path, options);
    return rest;
}

bool FileReader::OnError(const mel::Error& error) {
    if (error.IsSyntaxError() && depth_ == 1 && ++syntaxErrors_ > MAX_SYNTAX_ERRORS) {
        return false;
    }
    if (error.IsSyntaxError() && isStatementCut_) {
        return true; // shown already
    }
    if (error.IsInvalidFlag() && !isStatementCut_) {
        const std::string word = FirstWord(statement_);
        NoteKept("flag " + word + error.what(),
                 word + ": " + error.what() + " The statement is kept and written back.");
        Keep(word);
        return true;
    }
    if (std::string_view(error.what()) == mel::Runtime::OUT_OF_MEMORY) {
        throw std::bad_alloc();
    }
    // A place in a text that the file does not hold as such says nothing.
    ShowFault(depth_ == 1 ? error.Described() : Place() + error.what());
    return true;
}

bool FileReader::RunWithWordRestored(std::string_view statement, int line) {
    const std::optional<std::string> restored = depth_ == 1 ? WithWordRestored(statement) : std::nullopt;
    if (!restored || host_.interpreter().Commands().Find(FirstWord(statement))) {
        return false;
    }
    statementLine_ = line;
    statement_ = Trimmed(statement);
    isStatementCut_ = false;
    ReportFault("A letter of '" + std::string(statement.substr(0, statement.find(' '))) +
                "' is damaged. The statement was read as '" + FirstWord(*restored) + "'.");
    Run(*restored);
    return true;
}

bool FileReader::RunRestored(std::string_view statement, int line) {
    statement.remove_prefix(std::min(statement.find_first_not_of(" \t\r\n"), statement.size()));
    statement = Trimmed(statement);
    if (RunWithWordRestored(statement, line)) {
        return true;
    }
    const bool isWhole = depth_ == 1 && !statement.empty() && statement.back() == ';';
    const std::optional<std::string> restored = isWhole ? WithQuoteRestored(statement) : std::nullopt;
    if (!restored) {
        return false;
    }
    statementLine_ = line;
    statement_ = statement;
    isStatementCut_ = false;
    ReportFault(
        "A quotation mark is damaged. The statement was read with the one that must have been there.");
    Run(*restored);
    return true;
}

void FileReader::AfterUnreadable(std::string_view readable, std::string_view skipped, int line) {
    if (RunRestored(skipped, line)) {
        return;
    }
    readable = Trimmed(readable);
    if (depth_ > 1 && readable.size() + 1 >= Trimmed(skipped).size()) {
        // What is before the fault is not MEL either: "{".
        readable = Trimmed(readable.substr(0, readable.find_last_of(" \t\r\n") + 1));
    }
    if (FirstWord(readable) == "setAttr" && depth_ <= MAX_ATTEMPTS) {
        statementLine_ = depth_ == 1 ? line : statementLine_;
        const QScopedValueRollback<bool> cut(isStatementCut_, true);
        RunStatement(std::string(readable));
    }
    bool setsCurrent = false;
    while (!skipped.empty() && !setsCurrent) {
        setsCurrent = SetsCurrent(FirstWord(skipped));
        skipped.remove_prefix(std::min(skipped.find('\n'), skipped.size() - 1) + 1);
    }
    if (setsCurrent) {
        Select({});
    }
}

void FileReader::CheckEnd(std::string_view text) {
    const std::size_t end = text.find_last_not_of(" \t\r\n");
    const std::size_t lineBegin = text.rfind('\n', end) + 1;
    if (end == std::string_view::npos || text.substr(lineBegin, 6) == "// End") {
        return;
    }
    // A program that writes the file's name at its beginning writes it at its end, too.
    if (text.substr(0, MAX_HEAD_LENGTH).find("\n//Name:") != std::string_view::npos) {
        ReportFault("The last line of the file is missing: the file is cut off.");
    } else {
        WarnOnce("cut off", "The last line of the file is missing; the file may have been cut off.");
    }
}

} // namespace lightbox
