#include "formats/Codeset.h"

#include <QByteArray>
#include <QChar>
#include <QString>
#include <QTextCodec>

#include <algorithm>
#include <cctype>
#include <limits>
#include <utility>

namespace lightbox {
namespace {

/// The comments at the beginning of a file end within this many bytes.
constexpr std::size_t HEAD_LENGTH = 4096;

bool IsUtf8(std::string_view name) {
    std::string plain;
    for (const char letter : name) {
        if (std::isalnum(static_cast<unsigned char>(letter))) {
            plain += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
        }
    }
    return plain == "utf8" || plain == "65001" || plain == "usascii" || plain == "ascii";
}

/// The codec by the name or the number of a code page.
QTextCodec* CodecOf(const std::string& name) {
    const QByteArray bytes = QByteArray::fromStdString(name);
    const bool isNumber =
        std::all_of(name.begin(), name.end(), [](unsigned char letter) { return std::isdigit(letter); });
    if (!isNumber) {
        return QTextCodec::codecForName(bytes);
    }
    struct CodePage {
        const char* number;
        const char* codec;
    };
    static constexpr CodePage pages[] = {{"932", "Shift_JIS"}, {"936", "GB18030"},  {"949", "EUC-KR"},
                                         {"950", "Big5"},      {"20932", "EUC-JP"}, {"28591", "ISO-8859-1"},
                                         {"54936", "GB18030"}};
    for (const CodePage& page : pages) {
        if (name == page.number) {
            return QTextCodec::codecForName(page.codec);
        }
    }
    QTextCodec* const windows = QTextCodec::codecForName("windows-" + bytes);
    return windows ? windows : QTextCodec::codecForName("IBM" + bytes);
}

} // namespace

std::string_view Codeset::HeadValue(std::string_view text, std::string_view key) {
    std::string_view head = text.substr(0, HEAD_LENGTH);
    while (head.compare(0, 2, "//") == 0) {
        const std::string_view line = head.substr(0, head.find('\n'));
        if (line.compare(0, key.size(), key) == 0) {
            const std::size_t begin = line.find_first_not_of(' ', key.size());
            const std::size_t end = line.find_last_not_of(" \t\r");
            return begin == std::string_view::npos || end < begin ? std::string_view()
                                                                  : line.substr(begin, end + 1 - begin);
        }
        head.remove_prefix(std::min(line.size() + 1, head.size()));
    }
    return {};
}

Codeset::Result Codeset::Decode(std::string& text, std::string& name) {
    const bool isAscii =
        std::all_of(text.begin(), text.end(), [](unsigned char letter) { return letter < 0x80; });
    name = std::string(HeadValue(text, "//Codeset:"));
    if (isAscii || name.empty() || IsUtf8(name)) {
        return Result::AsItWas;
    }
    QTextCodec* const codec = CodecOf(name);
    if (!codec) {
        return Result::Unknown;
    }
    // Line by line: no codeset named here lets a character go beyond one, and a scene may be very long.
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size() - 1) + 1;
        const std::size_t length = end - begin;
        const char* const line = text.data() + begin;
        const bool isPlain =
            std::all_of(line, line + length, [](unsigned char letter) { return letter < 0x80; });
        if (isPlain) {
            decoded.append(line, length);
        } else {
            if (length > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
                return Result::Invalid;
            }
            QTextCodec::ConverterState state;
            const QString letters = codec->toUnicode(line, static_cast<int>(length), &state);
            const bool isValid = state.invalidChars == 0 && state.remainingChars == 0 &&
                                 !letters.contains(QChar(QChar::ReplacementCharacter));
            if (!isValid) {
                return Result::Invalid;
            }
            const QByteArray bytes = letters.toUtf8();
            decoded.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
        }
        begin = end;
    }
    text = std::move(decoded);
    return Result::Decoded;
}

} // namespace lightbox
