#include "formats/FileReader.h"

#include "formats/BinaryReader.h"
#include "formats/ChunkFile.h"
#include "formats/FileError.h"
#include "formats/SceneStatements.h"
#include "mel/Interpreter.h"
#include "scene/Host.h"
#include "scene/Output.h"
#include "scene/Scene.h"
#include "scene/UndoQueue.h"

#include <cctype>
#include <set>
#include <utility>

namespace lightbox {
namespace {

constexpr char ASCII_SIGNATURE[] = "//Maya ASCII";
constexpr char BYTE_ORDER_MARK[] = "\xef\xbb\xbf";
/// Faults of one file that are shown one by one; a damaged file may have any number.
constexpr int SHOWN_FAULTS = 50;

} // namespace

void FileReader::CheckIsScene(const std::string& bytes, const std::string& path) {
    std::size_t begin = bytes.compare(0, 3, BYTE_ORDER_MARK) == 0 ? 3 : 0;
    begin = bytes.find_first_not_of(" \t\r\n", begin);
    const bool isAscii =
        begin != std::string::npos && bytes.compare(begin, sizeof ASCII_SIGNATURE - 1, ASCII_SIGNATURE) == 0;
    if (!isAscii && !ChunkFile::HasSignature(bytes)) {
        throw FileError("\"" + path + "\" is not a scene that can be read (Maya ASCII or Lightbox binary).");
    }
}

void FileReader::Read(std::string bytes) {
    CheckIsScene(bytes, source_.path);
    const UndoQueue::Pause pause(host_.undo());
    // Binary files hold statements, too.
    const mel::CommandRegistry::Overlay statements(host_.interpreter().Commands(), SceneStatements(*this));
    Scene& scene = host_.scene();
    const std::string nameSpaceBefore = std::exchange(scene.currentNamespace, std::string());
    if (ChunkFile::HasSignature(bytes)) {
        BinaryReader(host_, *this).Read(bytes);
    } else {
        ReadAscii(std::move(bytes));
    }
    ApplySceneScript();
    scene.currentNamespace = nameSpaceBefore;
}

void FileReader::ReadAscii(std::string text) {
    if (text.compare(0, 3, BYTE_ORDER_MARK) == 0) {
        text.erase(0, 3);
    }
    WarnIfCutOff(text);
    hasLines_ = true;
    Run(std::move(text));
}

void FileReader::RunStatement(const std::string& text) {
    Run(text + ";");
}

void FileReader::Run(std::string text) {
    mel::RunOptions options;
    options.streamed = true;
    options.beforeStatement = [this](std::string_view statement, std::string_view before) {
        return BeforeStatement(statement, before);
    };
    options.onError = [this](const mel::Error& error) { return OnError(error); };
    try {
        host_.interpreter().Execute(std::move(text), source_.path, options);
    } catch (const mel::Error& error) {
        // What stopped the reading: a syntax error, or the user.
        ++faults_;
        host_.output().Error(error.Described());
    }
    statement_ = {};
}

bool FileReader::BeforeStatement(std::string_view statement, std::string_view before) {
    textBefore_ = before;
    statement_ = statement.substr(0, statement.find_last_not_of(" \t\r\n") + 1);
    if (!statement_.empty() && statement_.back() == ';') {
        statement_.remove_suffix(1);
    }
    const std::size_t end = statement_.find_first_of(" \t\r\n;(\"-=$");
    const std::string word(statement_.substr(0, end));
    const bool isWord =
        !word.empty() && (std::isalpha(static_cast<unsigned char>(word[0])) || word[0] == '_');
    mel::Interpreter& interpreter = host_.interpreter();
    static const std::set<std::string> keywords{"global", "proc", "if",    "for",    "while",  "do",
                                                "switch", "int",  "float", "string", "vector", "matrix"};
    if (!isWord || keywords.count(word) || interpreter.Commands().Find(word) ||
        interpreter.HasProcedure(word)) {
        return true;
    }
    KeepForFile(Statement(), "command " + word,
                "Unknown command '" + word + "'; its statements are kept and written back.");
    return false;
}

bool FileReader::OnError(const mel::Error& error) {
    if (error.IsSyntaxError()) {
        return false;
    }
    if (++faults_ <= SHOWN_FAULTS) {
        host_.output().Error(error.Described());
    } else if (faults_ == SHOWN_FAULTS + 1) {
        host_.output().Error("file: " + source_.path + ": there are more errors, which are not shown.");
    }
    return true;
}

void FileReader::WarnIfCutOff(std::string_view text) {
    const std::size_t end = text.find_last_not_of(" \t\r\n");
    const std::size_t lineBegin = text.rfind('\n', end) + 1;
    if (end != std::string_view::npos && text.substr(lineBegin, 6) != "// End") {
        WarnOnce("cut off", "The file does not have its last line; it may have been cut off.");
    }
}

} // namespace lightbox
