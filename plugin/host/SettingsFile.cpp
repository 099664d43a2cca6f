#include "host/SettingsFile.h"

#include <QFile>
#include <QHash>
#include <QSaveFile>
#include <QVector>

#include <algorithm>
#include <utility>

namespace vellix {

namespace {

QByteArray ReadFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void WriteFile(const QString& path, const QByteArray& content) {
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(content);
        file.commit();
    }
}

int DigitValue(char digit, int base) {
    const int value = digit >= '0' && digit <= '9'   ? digit - '0'
                      : digit >= 'a' && digit <= 'f' ? digit - 'a' + 10
                      : digit >= 'A' && digit <= 'F' ? digit - 'A' + 10
                                                     : base;
    return value < base ? value : -1;
}

/// Returns whether the data after "@Variant(" is a colour, the only type that is ever stored. The type number
/// comes first, then the colour model, which QColor does not check.
bool HoldsColor(const QByteArray& object) {
    constexpr int LAST_MODEL = 4; // QColor::Hsl
    return object.startsWith(QByteArray("\0\0\0\x43", 4)) && object.size() > 4 && object[4] >= 0 &&
           object[4] <= LAST_MODEL;
}

/// The text as QSettings reads it: escapes resolved, quotes and line ends left out. Keeps each character's
/// index in the file.
struct Unescaped {
    explicit Unescaped(const QByteArray& content) {
        text.reserve(content.size());
        origin.reserve(content.size());
        for (int at = 0; at < content.size();) {
            const int start = at;
            const char character = content[at++];
            if (character == '\\') {
                AddEscape(content, at, start);
            } else if (character != '"' && character != '\r' && character != '\n') {
                Add(character, start);
            }
        }
    }

    QByteArray text;
    QVector<int> origin;

private:
    void Add(char character, int start) {
        text.append(character);
        origin.append(start);
    }
    void AddEscape(const QByteArray& content, int& at, int start) {
        static const QByteArray letters("abfnrtv\"?'\\");
        static const QByteArray meanings("\a\b\f\n\r\t\v\"?'\\");
        const char kind = at < content.size() ? content[at] : '\0';
        const int letter = letters.indexOf(kind);
        if (letter >= 0) {
            ++at;
            Add(meanings[letter], start);
        } else if (kind == 'x' || DigitValue(kind, 8) >= 0) {
            AddNumber(content, at, start);
        } else {
            ++at; // QSettings skips the character after the backslash
        }
    }
    void AddNumber(const QByteArray& content, int& at, int start) {
        const int base = content[at] == 'x' ? 16 : 8;
        at += base == 16 ? 1 : 0;
        const int first = at;
        quint16 value = 0;
        for (int digit = 0; at < content.size() && (digit = DigitValue(content[at], base)) >= 0; ++at) {
            value = static_cast<quint16>(value * base + digit);
        }
        if (at > first) {
            Add(value > 0xFF ? '?' : static_cast<char>(value), start);
        }
    }
};

/// One line of the file and its "group/key"; the key is empty for a group's header. Blank lines are dropped.
struct SettingLine {
    QByteArray text;
    QString key;
};

QVector<SettingLine> SplitLines(const QByteArray& content) {
    QVector<SettingLine> lines;
    QString group;
    for (const QByteArray& text : content.split('\n')) {
        const QByteArray trimmed = text.trimmed();
        if (trimmed.startsWith('[')) {
            group = QString::fromUtf8(trimmed.mid(1, trimmed.indexOf(']') - 1)) + QLatin1Char('/');
            lines.append({text, group});
        } else if (!trimmed.isEmpty()) {
            lines.append({text, group + QString::fromUtf8(trimmed.left(trimmed.indexOf('=')))});
        }
    }
    return lines;
}

} // namespace

void SettingsFile::Disarm(const QString& path) {
    const QByteArray content = ReadFile(path);
    const QByteArray disarmed = Disarmed(content);
    if (disarmed != content) {
        WriteFile(path, disarmed);
    }
}

QByteArray SettingsFile::Disarmed(const QByteArray& content) {
    const QByteArray marker("@Variant(");
    const Unescaped unescaped(content);
    QByteArray result = content;
    int added = 0;
    for (int at = 0; (at = unescaped.text.indexOf(marker, at)) >= 0; at += marker.size()) {
        // "@@" stands for a plain "@".
        const bool plainText = at > 0 && unescaped.text[at - 1] == '@';
        if (!plainText && !HoldsColor(unescaped.text.mid(at + marker.size(), 5))) {
            result.insert(unescaped.origin[at] + added++, '@');
        }
    }
    return result;
}

void SettingsFile::Sort(const QString& path, const QStringList& keys) {
    QHash<QString, int> ranks;
    for (const QString& key : keys) {
        const QString group = key.left(key.indexOf(QLatin1Char('/')) + 1);
        if (!ranks.contains(group)) {
            ranks.insert(group, ranks.size());
        }
        ranks.insert(key, ranks.size());
    }
    QVector<SettingLine> lines = SplitLines(ReadFile(path));
    const auto rank = [&](const SettingLine& line) {
        const QString group = line.key.left(line.key.indexOf(QLatin1Char('/')) + 1);
        const int last = ranks.size();
        return std::make_pair(ranks.value(group, last), ranks.value(line.key, last));
    };
    std::stable_sort(lines.begin(), lines.end(), [&](const SettingLine& left, const SettingLine& right) {
        return rank(left) < rank(right);
    });
    QByteArray content;
    for (const SettingLine& line : lines) {
        const bool header = line.key.endsWith(QLatin1Char('/'));
        content += (header && !content.isEmpty() ? "\n" : "") + line.text + '\n';
    }
    WriteFile(path, content);
}

} // namespace vellix
