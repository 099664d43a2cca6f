#pragma once

#include <QString>
#include <QVariant>

#include <functional>

namespace vellix {

/// A persisted setting: its place in the file, and how it is read and written.
struct Setting {
    /// How a key that is missing in the file changes its member.
    enum class Missing {
        Keeps,
        Resets, ///< to the member's value when the Setting was created
    };

    /// Accepts any value.
    template <typename Value>
    static Setting Of(const char* group, const QString& key, Value& member, Missing missing = Missing::Keeps);
    /// A number from 0 to `last`. Other values are ignored.
    static Setting Choice(const char* group, const QString& key, int& member, int last,
                          Missing missing = Missing::Keeps);
    /// A number from `least` to `most`. Other values reset the member to its value when the Setting was
    /// created.
    static Setting Count(const char* group, const QString& key, int& member, int least, int most);

    /// The value that a missing key stands for.
    QVariant GetDefault() const { return reset.isValid() ? reset : get(); }

    const char* group;
    QString key;
    std::function<QVariant()> get;
    /// Empty if the value is written and never read.
    std::function<void(const QVariant&)> set;
    QVariant reset; ///< invalid if a missing key keeps the member
};

template <typename Value>
Setting Setting::Of(const char* group, const QString& key, Value& member, Missing missing) {
    return {group, key, [&member] { return QVariant::fromValue(member); },
            [&member](const QVariant& value) { member = value.value<Value>(); },
            missing == Missing::Resets ? QVariant::fromValue(member) : QVariant()};
}

} // namespace vellix
