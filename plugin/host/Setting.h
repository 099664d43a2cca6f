#pragma once

#include <QString>
#include <QVariant>

#include <functional>

namespace vellix {

/// A persisted setting: one row for its place in the file, for reading and for writing.
struct Setting {
    /// What a key that is not in the file does to its member.
    enum class Missing {
        Keeps,
        Resets, ///< to the value that the member had when the row was made
    };

    /// Any value is taken as it is.
    template <typename Value>
    static Setting Of(const char* group, const QString& key, Value& member, Missing missing = Missing::Keeps);
    /// A number from 0 to `last`; others are ignored.
    static Setting Choice(const char* group, const QString& key, int& member, int last,
                          Missing missing = Missing::Keeps);
    /// A number from `least` to `most`; others reset the member.
    static Setting Count(const char* group, const QString& key, int& member, int least, int most);

    QString GetPath() const { return QLatin1String(group) + QLatin1Char('/') + key; }
    /// What a missing key stands for.
    QVariant GetDefault() const { return reset.isValid() ? reset : get(); }

    const char* group;
    QString key;
    std::function<QVariant()> get;
    /// None: the value is written and never read.
    std::function<void(const QVariant&)> set;
    QVariant reset; ///< invalid: a missing key keeps the member
};

template <typename Value>
Setting Setting::Of(const char* group, const QString& key, Value& member, Missing missing) {
    return {group, key, [&member] { return QVariant::fromValue(member); },
            [&member](const QVariant& value) { member = value.value<Value>(); },
            missing == Missing::Resets ? QVariant::fromValue(member) : QVariant()};
}

} // namespace vellix
