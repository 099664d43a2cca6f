#include "scene/OptionVars.h"

#include "scene/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <iterator>

namespace lightbox {

namespace {

/// The JSON keys that name a value's type, so that 1 and 1.0 stay different.
const char* const TYPE_KEYS[] = {"int", "float", "string", "ints", "floats", "strings"};

QJsonValue Json(int value) {
    return value;
}
QJsonValue Json(double value) {
    return value;
}
QJsonValue Json(const std::string& value) {
    return QString::fromStdString(value);
}
template <typename T>
QJsonValue Json(const std::vector<T>& values) {
    QJsonArray array;
    for (const T& value : values) {
        array.append(Json(value));
    }
    return array;
}

template <typename T, typename Convert>
std::vector<T> Each(const QJsonValue& json, const Convert& convert) {
    std::vector<T> values;
    const QJsonArray array = json.toArray();
    for (const auto& value : array) {
        values.push_back(convert(value));
    }
    return values;
}

int Int(const QJsonValue& json) {
    return json.toInt();
}
double Double(const QJsonValue& json) {
    return json.toDouble();
}
std::string Text(const QJsonValue& json) {
    return json.toString().toStdString();
}

OptionVars::Value FromJson(const QString& kind, const QJsonValue& json) {
    switch (std::find(std::begin(TYPE_KEYS), std::end(TYPE_KEYS), kind.toStdString()) -
            std::begin(TYPE_KEYS)) {
    case 0:
        return Int(json);
    case 1:
        return Double(json);
    case 3:
        return Each<int>(json, Int);
    case 4:
        return Each<double>(json, Double);
    case 5:
        return Each<std::string>(json, Text);
    default:
        return Text(json);
    }
}

} // namespace

OptionVars::OptionVars(const std::string& folder) {
    if (!folder.empty()) {
        file_ =
            QDir(QString::fromStdString(folder)).filePath(QStringLiteral("optionVars.json")).toStdString();
        Load();
    }
}

void OptionVars::Load() {
    QFile file(QString::fromStdString(file_));
    if (!file.open(QIODevice::ReadOnly)) {
        return;
    }
    const QJsonObject all = QJsonDocument::fromJson(file.readAll()).object();
    for (auto entry = all.begin(); entry != all.end(); ++entry) {
        const QJsonObject value = entry->toObject();
        if (!value.isEmpty()) {
            values_[entry.key().toStdString()] = FromJson(value.begin().key(), value.begin().value());
        }
    }
}

const OptionVars::Value* OptionVars::Find(const std::string& name) const {
    const auto found = values_.find(name);
    return found == values_.end() ? nullptr : &found->second;
}

void OptionVars::Set(const std::string& name, Value value) {
    values_[name] = std::move(value);
    changed_ = true;
}

bool OptionVars::Remove(const std::string& name) {
    const bool removed = values_.erase(name) != 0;
    changed_ = changed_ || removed;
    return removed;
}

std::vector<std::string> OptionVars::Names() const {
    std::vector<std::string> names;
    for (const auto& value : values_) {
        names.push_back(value.first);
    }
    return names;
}

std::string OptionVars::Save() {
    if (!changed_ || file_.empty()) {
        return {};
    }
    QJsonObject all;
    for (const auto& entry : values_) {
        const QJsonValue json = std::visit([](const auto& value) { return Json(value); }, entry.second);
        all[QString::fromStdString(entry.first)] =
            QJsonObject{{QString::fromLatin1(TYPE_KEYS[entry.second.index()]), json}};
    }
    QDir().mkpath(QFileInfo(QString::fromStdString(file_)).path());
    const std::string fault = WholeFile::Write(file_, QJsonDocument(all).toJson().toStdString());
    changed_ = !fault.empty();
    return fault.empty() ? fault : "Could not write \"" + file_ + "\": " + fault + ".";
}

} // namespace lightbox
