#include "host/Setting.h"

namespace vellix {

Setting Setting::Choice(const char* group, const QString& key, int& member, int last, Missing missing) {
    Setting setting = Of(group, key, member, missing);
    setting.set = [&member, last](const QVariant& value) {
        const int number = value.toInt();
        if (number >= 0 && number <= last) {
            member = number;
        }
    };
    return setting;
}

Setting Setting::Count(const char* group, const QString& key, int& member, int least, int most) {
    Setting setting = Of(group, key, member, Missing::Resets);
    const int otherwise = member;
    setting.set = [&member, least, most, otherwise](const QVariant& value) {
        const int number = value.toInt();
        member = number >= least && number <= most ? number : otherwise;
    };
    return setting;
}

} // namespace vellix
