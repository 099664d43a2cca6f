#include "formats/ReferencePath.h"

#include "formats/SceneFiles.h"

#include <QDir>
#include <QString>

#include <cctype>
#include <cstdlib>

namespace lightbox {
namespace {

bool IsVariableCharacter(char letter) {
    return letter == '_' || std::isalnum(static_cast<unsigned char>(letter));
}

/// Replaces $NAME and ${NAME}. A variable that is not set stays as it is written.
std::string Expanded(const std::string& path) {
    std::string text;
    std::size_t at = 0;
    while (at < path.size()) {
        if (path[at] != '$') {
            text += path[at++];
            continue;
        }
        const bool isBraced = path.compare(at + 1, 1, "{") == 0;
        const std::size_t begin = at + (isBraced ? 2 : 1);
        std::size_t end = begin;
        while (end < path.size() && IsVariableCharacter(path[end])) {
            ++end;
        }
        const bool isWhole = end > begin && (!isBraced || path.compare(end, 1, "}") == 0);
        const char* const value = isWhole ? std::getenv(path.substr(begin, end - begin).c_str()) : nullptr;
        const std::size_t next = end + (isBraced && isWhole ? 1 : 0);
        text += value ? std::string(value) : path.substr(at, next - at);
        at = next;
    }
    return text;
}

bool IsSlash(char letter) {
    return letter == '/' || letter == '\\';
}

bool HasDrive(const std::string& path) {
    return path.size() > 2 && std::isalpha(static_cast<unsigned char>(path[0])) && path[1] == ':' &&
           IsSlash(path[2]);
}

/// The path without the number of a file that is referenced again.
std::string WithoutNumber(const std::string& path) {
    const std::size_t brace = path.rfind('{');
    const bool isNumbered = brace != std::string::npos && path.back() == '}' && brace + 2 < path.size() &&
                            path.find_first_not_of("0123456789", brace + 1) == path.size() - 1;
    return isNumbered ? path.substr(0, brace) : path;
}

} // namespace

std::string ReferencePath::Resolve(const std::string& given, const std::string& folder) {
    std::string path = Expanded(WithoutNumber(given));
    if (IsRemote(path) || IsOfOtherSystem(path)) {
        return path;
    }
    if (QDir::isAbsolutePath(QString::fromStdString(path)) || path.compare(0, 1, "~") == 0) {
        return SceneFiles::FindFile(path);
    }
    return path.compare(0, 1, "$") == 0 ? path : SceneFiles::FindFile(folder + "/" + path);
}

bool ReferencePath::IsRemote(const std::string& path) {
    return path.size() > 1 && IsSlash(path[0]) && IsSlash(path[1]);
}

bool ReferencePath::AreOnSameServer(const std::string& left, const std::string& right) {
    const auto server = [](const std::string& path) {
        const QString name = QString::fromStdString(path.substr(2, path.find_first_of("/\\", 2) - 2));
        return name.toLower();
    };
    return IsRemote(left) && IsRemote(right) && server(left) == server(right);
}

bool ReferencePath::IsOfOtherSystem(const std::string& path) {
#ifdef Q_OS_WIN
    Q_UNUSED(path);
    return false;
#else
    return HasDrive(path);
#endif
}

} // namespace lightbox
