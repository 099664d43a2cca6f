#include "host/SettingsFile.h"

#include "paint/WholeFile.h"

#include <QColor>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace vellix {

namespace {

constexpr char ESCAPE_LETTERS[] = "abfnrtv\"?'\\";
constexpr char ESCAPE_MEANINGS[] = "\a\b\f\n\r\t\v\"?'\\";

const char BYTES_MARK[] = "@ByteArray(";
const char TEXT_MARK[] = "@String(";
const char OBJECT_MARK[] = "@Variant(";

int DigitValue(char digit, int base) {
    const int value = digit >= '0' && digit <= '9'   ? digit - '0'
                      : digit >= 'a' && digit <= 'f' ? digit - 'a' + 10
                      : digit >= 'A' && digit <= 'F' ? digit - 'A' + 10
                                                     : base;
    return value < base ? value : -1;
}

bool IsSpace(QChar character) {
    return character == QLatin1Char(' ') || character == QLatin1Char('\t');
}

/// A value without escapes, quotes, surrounding blanks, and the comment behind it.
class Unescaped {
public:
    explicit Unescaped(const QByteArray& text)
        : text_(text) {
        SkipSpaces();
        bool isQuoted = false;
        bool wasQuoted = false;
        while (at_ < text_.size() && (isQuoted || text_[at_] != ';')) {
            const char character = text_[at_++];
            if (character == '\\') {
                AddEscape();
            } else if (character == '"') {
                isQuoted = !isQuoted;
                wasQuoted = true;
                if (!isQuoted) {
                    SkipSpaces();
                }
            } else if (character != '\r') {
                result_.append(QLatin1Char(character));
            }
        }
        while (!wasQuoted && result_.size() > unbroken_ && IsSpace(result_[result_.size() - 1])) {
            result_.chop(1);
        }
    }

    const QString& Text() const { return result_; }

private:
    void SkipSpaces() {
        while (at_ < text_.size() && IsSpace(QLatin1Char(text_[at_]))) {
            ++at_;
        }
    }
    void AddEscape() {
        const char kind = at_ < text_.size() ? text_[at_] : '\0';
        const int letter =
            kind == '\0' ? -1
                         : QByteArray::fromRawData(ESCAPE_LETTERS, sizeof ESCAPE_LETTERS - 1).indexOf(kind);
        if (letter >= 0) {
            ++at_;
            result_.append(QLatin1Char(ESCAPE_MEANINGS[letter]));
        } else if (kind == 'x') {
            ++at_;
            AddNumber(16);
        } else if (DigitValue(kind, 8) >= 0) {
            AddNumber(8);
        } else {
            ++at_; // an unknown escape is skipped
        }
        unbroken_ = result_.size();
    }
    void AddNumber(int base) {
        const int first = at_;
        ushort value = 0;
        for (int digit = 0; at_ < text_.size() && (digit = DigitValue(text_[at_], base)) >= 0; ++at_) {
            value = static_cast<ushort>(value * base + digit);
        }
        if (at_ > first) {
            result_.append(QChar(value));
        }
    }

    const QByteArray& text_;
    int at_ = 0;
    QString result_;
    int unbroken_ = 0; ///< blanks before this place were written as escapes and belong to the text
};

QByteArray Escaped(const QString& text) {
    QByteArray result;
    bool needsQuotes = text.startsWith(QLatin1Char(' ')) || text.endsWith(QLatin1Char(' '));
    bool isAfterNumber = false; // a digit would be taken for a part of it
    for (const QChar character : text) {
        const ushort code = character.unicode();
        const char letter = code < 0x7F ? static_cast<char>(code) : '\0';
        const int escape = letter == '\0' || letter == '?' || letter == '\''
                               ? -1
                               : QByteArray(ESCAPE_MEANINGS).indexOf(letter);
        needsQuotes = needsQuotes || letter == ';' || letter == ',' || letter == '=';
        const bool isNumber = code == 0 || (escape < 0 && (code < ' ' || code >= 0x7F)) ||
                              (isAfterNumber && DigitValue(letter, 16) >= 0);
        if (code == 0) {
            result += "\\0";
        } else if (isNumber) {
            result += "\\x" + QByteArray::number(code, 16);
        } else if (escape >= 0) {
            result += '\\';
            result += ESCAPE_LETTERS[escape];
        } else {
            result += letter;
        }
        isAfterNumber = isNumber;
    }
    return needsQuotes ? '"' + result + '"' : result;
}

// QColor as QDataStream writes it: the colour model, which QDataStream does not check, and five numbers of 16
// bits. Before it stands the number of its type.
const QByteArray COLOR_TYPE("\0\0\0\x43", 4);
constexpr int COLOR_SIZE = 11;
constexpr int LAST_MODEL = QColor::Hsl;

QVariant ColorOf(const QByteArray& object) {
    const int model = object.size() < COLOR_TYPE.size() + COLOR_SIZE ? -1 : object[COLOR_TYPE.size()];
    if (!object.startsWith(COLOR_TYPE) || model < 0 || model > LAST_MODEL) {
        return QVariant();
    }
    QDataStream stream(object.mid(COLOR_TYPE.size()));
    stream.setVersion(QDataStream::Qt_4_0);
    QColor color;
    stream >> color;
    return color;
}

QByteArray BytesOf(const QColor& color) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_4_0);
    stream << (color.spec() <= LAST_MODEL ? color : color.toRgb());
    return COLOR_TYPE + bytes;
}

bool IsBlank(const QByteArray& line) {
    return line.trimmed().isEmpty();
}

QByteArray KeyOf(const QByteArray& line) {
    return line.left(line.indexOf('=')).trimmed();
}

QByteArray Joined(const QVector<QByteArray>& lines) {
    QByteArray text;
    int end = lines.size();
    while (end > 0 && IsBlank(lines[end - 1])) {
        --end;
    }
    for (int i = 0; i < end; ++i) {
        text += lines[i] + '\n';
    }
    return text;
}

} // namespace

SettingsFile::SettingsFile(const QString& path)
    : path_(path) {
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) {
        content_ = file.readAll();
    }
    if (file.error() != QFile::NoError && file.exists()) {
        fault_ = QStringLiteral("The old file cannot be read: ") + file.errorString();
    }
    Parse();
}

void SettingsFile::Parse() {
    // Some editors put this mark before the text.
    const QByteArray mark("\xEF\xBB\xBF");
    groups_.append(Group());
    for (const QByteArray& line : content_.mid(content_.startsWith(mark) ? mark.size() : 0).split('\n')) {
        const QByteArray trimmed = line.trimmed();
        if (trimmed.startsWith('[')) {
            const int end = trimmed.indexOf(']');
            groups_.append({line, trimmed.mid(1, end < 0 ? -1 : end - 1).trimmed(), {}});
        } else {
            groups_.last().lines.append(line);
        }
    }
}

QVariant SettingsFile::Value(const QString& group, const QString& key, const QVariant& missing) const {
    const QByteArray groupName = group.toLatin1();
    const QByteArray keyName = key.toLatin1();
    QVariant value = missing;
    for (const Group& part : groups_) {
        for (const QByteArray& line : part.lines) {
            // Of several lines with one key the last one counts.
            if (part.name == groupName && line.contains('=') && KeyOf(line) == keyName) {
                value = Decoded(line.mid(line.indexOf('=') + 1));
            }
        }
    }
    return value;
}

void SettingsFile::Set(const QString& group, const QString& key, const QVariant& value) {
    values_.append({group.toLatin1(), key.toLatin1(), Encoded(value)});
}

bool SettingsFile::IsSet(const QByteArray& group, const QByteArray& key) const {
    for (const NewValue& value : values_) {
        if (value.group == group && (key.isNull() || value.key == key)) {
            return true;
        }
    }
    return false;
}

/// The values that were set in a group, and its other lines.
QVector<QByteArray> SettingsFile::NewLines(const QByteArray& group) const {
    QVector<QByteArray> lines;
    for (const NewValue& value : values_) {
        if (value.group == group) {
            lines.append(value.key + '=' + value.text);
        }
    }
    for (const Group& part : groups_) {
        for (const QByteArray& line : part.lines) {
            const bool isReplaced = line.contains('=') && IsSet(group, KeyOf(line));
            if (part.name == group && !isReplaced && !IsBlank(line)) {
                lines.append(line);
            }
        }
    }
    return lines;
}

QByteArray SettingsFile::Composed() const {
    QByteArray content = Joined(groups_.first().lines);
    const auto add = [&content](const QByteArray& header, const QVector<QByteArray>& lines) {
        content += (content.isEmpty() ? "" : "\n") + header + '\n' + Joined(lines);
    };
    QVector<QByteArray> done;
    for (const NewValue& value : values_) {
        if (!done.contains(value.group)) {
            done.append(value.group);
            add('[' + value.group + ']', NewLines(value.group));
        }
    }
    for (int i = 1; i < groups_.size(); ++i) {
        if (!IsSet(groups_[i].name, QByteArray())) {
            add(groups_[i].header, groups_[i].lines);
        }
    }
    return content;
}

QString SettingsFile::Write() const {
    const QByteArray content = Composed();
    if (!fault_.isEmpty() || content == content_) {
        return fault_;
    }
    QDir().mkpath(QFileInfo(path_).path());
    return WholeFile::Write(path_, content);
}

QByteArray SettingsFile::Encoded(const QVariant& value) {
    const auto marked = [](const char* mark, const QString& text) {
        return Escaped(QLatin1String(mark) + text + QLatin1Char(')'));
    };
    const auto bytes = [](const QByteArray& array) {
        return QString::fromLatin1(array.constData(), array.size());
    };
    if (value.type() == QVariant::ByteArray) {
        return marked(BYTES_MARK, bytes(value.toByteArray()));
    }
    if (value.type() == QVariant::Color) {
        return marked(OBJECT_MARK, bytes(BytesOf(value.value<QColor>())));
    }
    const QString text = value.toString();
    if (text.contains(QChar::Null)) {
        return marked(TEXT_MARK, text);
    }
    return Escaped(text.startsWith(QLatin1Char('@')) ? QLatin1Char('@') + text : text);
}

QVariant SettingsFile::Decoded(const QByteArray& text) {
    const QString plain = Unescaped(text).Text();
    const auto holds = [&plain](const char* mark) {
        return plain.startsWith(QLatin1String(mark)) && plain.endsWith(QLatin1Char(')'));
    };
    const auto content = [&plain](const char* mark) {
        const int start = static_cast<int>(qstrlen(mark));
        return plain.mid(start, plain.size() - start - 1);
    };
    if (holds(BYTES_MARK)) {
        return content(BYTES_MARK).toLatin1();
    }
    if (holds(TEXT_MARK)) {
        return content(TEXT_MARK);
    }
    if (plain == QLatin1String("@Invalid()")) {
        return QVariant();
    }
    QVariant color = holds(OBJECT_MARK) ? ColorOf(content(OBJECT_MARK).toLatin1()) : QVariant();
    if (color.isValid()) {
        return color;
    }
    return plain.startsWith(QLatin1String("@@")) ? plain.mid(1) : plain;
}

} // namespace vellix
