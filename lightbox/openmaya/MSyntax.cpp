#include "mel/SyntaxTable.h"
#include "openmaya/ApiBridge.h"

#include <maya/MSyntax.h>

#include <algorithm>

using lightbox::mel::SyntaxTable;
using lightbox::mel::WithoutHyphen;

namespace lightbox::mel {

std::string_view WithoutHyphen(std::string_view name) {
    if (!name.empty() && name[0] == '-') {
        name.remove_prefix(1);
    }
    return name;
}

const SyntaxTable::Flag* SyntaxTable::Find(std::string_view name) const {
    name = WithoutHyphen(name);
    for (const Flag& flag : flags) {
        if (!name.empty() && (flag.shortName == name || flag.longName == name)) {
            return &flag;
        }
    }
    return nullptr;
}

const SyntaxTable::Flag* SyntaxTable::FindTyped(std::string_view name, bool& isAmbiguous) const {
    isAmbiguous = false;
    if (const Flag* const exact = Find(name)) {
        return exact;
    }
    name = WithoutHyphen(name);
    const Flag* found = nullptr;
    for (const Flag& flag : flags) {
        if (!name.empty() && flag.longName.compare(0, name.size(), name) == 0) {
            isAmbiguous = found != nullptr;
            if (isAmbiguous) {
                return nullptr;
            }
            found = &flag;
        }
    }
    return found;
}

} // namespace lightbox::mel

namespace {

bool IsFlagName(std::string_view name) {
    const auto isLetter = [](char letter) {
        return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || letter == '_';
    };
    const auto isPart = [&isLetter](char letter) {
        return isLetter(letter) || (letter >= '0' && letter <= '9');
    };
    return !name.empty() && isLetter(name[0]) && std::all_of(name.begin(), name.end(), isPart);
}

/// The flag of that name, to change it; null when there is none.
SyntaxTable::Flag* FlagIn(SyntaxTable& table, const char* name) {
    return name ? const_cast<SyntaxTable::Flag*>(table.Find(name)) : nullptr;
}

} // namespace

MSyntax::MSyntax()
    : table_(std::make_shared<SyntaxTable>()) {}

MSyntax::~MSyntax() = default;

SyntaxTable& MSyntax::change() {
    if (!writesThrough_ && table_.use_count() > 1) {
        table_ = std::make_shared<SyntaxTable>(*table_);
    }
    return *table_;
}

MStatus MSyntax::addFlag(const char* shortName, const char* longName, MArgType argType1, MArgType argType2,
                         MArgType argType3, MArgType argType4, MArgType argType5, MArgType argType6) {
    if (!shortName || !longName) {
        return MS::kInvalidParameter;
    }
    SyntaxTable::Flag flag;
    flag.shortName = WithoutHyphen(shortName);
    flag.longName = WithoutHyphen(longName);
    constexpr std::size_t longestShortName = 3;
    if (!IsFlagName(flag.shortName) || !IsFlagName(flag.longName) ||
        flag.shortName.size() > longestShortName) {
        return lightbox::ApiBridge::Fail(MS::kInvalidParameter, std::string("The names of the flag \"") +
                                                                    shortName + "\", \"" + longName +
                                                                    "\" are not valid.");
    }
    if (table_->Find(flag.shortName) || table_->Find(flag.longName)) {
        return lightbox::ApiBridge::Fail(MS::kFailure, std::string("The flag \"") + shortName + "\", \"" +
                                                           longName + "\" exists already.");
    }
    for (const MArgType type : {argType1, argType2, argType3, argType4, argType5, argType6}) {
        if (type == kNoArg) {
            break;
        }
        if (type <= kInvalidArgType || type >= kLastArgType) {
            return MS::kInvalidParameter;
        }
        flag.arguments.push_back(type);
    }
    change().flags.push_back(std::move(flag));
    return MS::kSuccess;
}

MStatus MSyntax::makeFlagMultiUse(const char* flag) {
    SyntaxTable::Flag* const found = FlagIn(change(), flag);
    if (!found) {
        return MS::kInvalidParameter;
    }
    found->isMultiUse = true;
    return MS::kSuccess;
}

MStatus MSyntax::makeFlagQueryWithFullArgs(const char* flag, bool argRequired) {
    SyntaxTable::Flag* const found = FlagIn(change(), flag);
    if (!found) {
        return MS::kInvalidParameter;
    }
    found->keepsArgumentsInQuery = true;
    found->needsArgumentsInQuery = argRequired;
    return MS::kSuccess;
}

MStatus MSyntax::addArg(MArgType argType) {
    if (argType <= kNoArg || argType >= kLastArgType) {
        return MS::kInvalidParameter;
    }
    change().arguments.push_back(argType);
    return MS::kSuccess;
}

MStatus MSyntax::setObjectType(MObjectFormat type, unsigned int minimumObjects) {
    return setObjectType(type, minimumObjects, SyntaxTable::NO_MAXIMUM);
}

MStatus MSyntax::setObjectType(MObjectFormat type, unsigned int minimumObjects, unsigned int maximumObjects) {
    if (type <= kInvalidObjectFormat || type >= kLastObjectFormat || minimumObjects > maximumObjects) {
        return MS::kInvalidParameter;
    }
    change().objectFormat = type;
    change().minimumObjects = minimumObjects;
    change().maximumObjects = maximumObjects;
    return MS::kSuccess;
}

void MSyntax::setMinObjects(unsigned int minimumObjects) {
    change().minimumObjects = minimumObjects;
}

void MSyntax::setMaxObjects(unsigned int maximumObjects) {
    change().maximumObjects = maximumObjects;
}

MSyntax::MObjectFormat MSyntax::objectType() const {
    return table_->objectFormat;
}

unsigned int MSyntax::minObjects() const {
    return table_->minimumObjects;
}

unsigned int MSyntax::maxObjects() const {
    return table_->maximumObjects;
}

void MSyntax::useSelectionAsDefault(bool useSelection) {
    change().usesSelection = useSelection;
}

void MSyntax::enableQuery(bool supportsQuery) {
    change().canQuery = supportsQuery;
}

void MSyntax::enableEdit(bool supportsEdit) {
    change().canEdit = supportsEdit;
}

bool MSyntax::canQuery() const {
    return table_->canQuery;
}

bool MSyntax::canEdit() const {
    return table_->canEdit;
}
