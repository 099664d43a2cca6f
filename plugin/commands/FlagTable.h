#pragma once

#include "host/MayaUtil.h"

#include <maya/MArgDatabase.h>
#include <maya/MArgList.h>
#include <maya/MStatus.h>
#include <maya/MSyntax.h>
#include <maya/MTime.h>

#include <QString>
#include <QStringList>

#include <algorithm>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace vellix {

/// One argument of a flag, bound to the member of the command that receives it. The member's type is the type
/// of the argument.
template <typename Command>
class FlagValue {
public:
    FlagValue(bool Command::*member)
        : FlagValue(MSyntax::kBoolean, member, &MArgParser::flagArgumentBool) {}
    FlagValue(int Command::*member)
        : FlagValue(MSyntax::kLong, member, &MArgParser::flagArgumentInt) {}
    FlagValue(double Command::*member)
        : FlagValue(MSyntax::kDouble, member, &MArgParser::flagArgumentDouble) {}
    FlagValue(QString Command::*member)
        : FlagValue(MSyntax::kString, member, &MArgParser::flagArgumentString) {}
    /// A text for each use of the flag, which may then be given several times.
    FlagValue(QStringList Command::*member)
        : type_(MSyntax::kString)
        , isMultiUse_(true)
        , read_([member](Command& command, const MArgDatabase& arguments, const char* flag, unsigned int) {
            for (unsigned int use = 0; use < arguments.numberOfFlagUses(flag); ++use) {
                MArgList given;
                if (!arguments.getFlagArgumentList(flag, use, given)) {
                    return false;
                }
                (command.*member).append(MayaUtil::ToQString(given.asString(0)));
            }
            return true;
        }) {}
    FlagValue(MTime Command::*member)
        : FlagValue(MSyntax::kTime, member, &MArgParser::flagArgumentMTime) {}
    /// An argument that is accepted but not read.
    FlagValue(MSyntax::MArgType type)
        : type_(type) {}
    /// A non-negative integer. A value too large for the member becomes the largest int.
    static FlagValue Whole(int Command::*member) {
        FlagValue value(MSyntax::kUnsigned);
        value.read_ = [member](Command& command, const MArgDatabase& arguments, const char* flag,
                               unsigned int index) {
            unsigned int number = 0;
            const bool found = arguments.getFlagArgument(flag, index, number);
            constexpr auto largest = static_cast<unsigned int>(std::numeric_limits<int>::max());
            command.*member = found ? static_cast<int>(std::min(number, largest)) : command.*member;
            return found;
        };
        return value;
    }

    MSyntax::MArgType GetType() const { return type_; }
    bool IsMultiUse() const { return isMultiUse_; }
    /// Returns false, and leaves the member unchanged, if the argument is missing: a query has none.
    bool Read(Command& command, const MArgDatabase& arguments, const char* flag, unsigned int index) const {
        return !read_ || read_(command, arguments, flag, index);
    }

private:
    template <typename Member, typename Given>
    FlagValue(MSyntax::MArgType type, Member Command::*member,
              Given (MArgParser::*get)(const char* flag, unsigned int index, MStatus* status) const)
        : type_(type)
        , read_([=](Command& command, const MArgDatabase& arguments, const char* flag, unsigned int index) {
            MStatus status;
            const Given given = (arguments.*get)(flag, index, &status);
            if (status) {
                Assign(command.*member, given);
            }
            return bool(status);
        }) {}

    template <typename Member>
    static void Assign(Member& member, const Member& given) {
        member = given;
    }
    static void Assign(QString& member, const MString& given) { member = MayaUtil::ToQString(given); }

    MSyntax::MArgType type_;
    bool isMultiUse_ = false;
    std::function<bool(Command&, const MArgDatabase&, const char*, unsigned int)> read_;
};

/// One flag of a command: its names, its arguments and its action. A flag without an action is an option for
/// the other flags.
template <typename Command>
struct FlagRow {
    using Value = FlagValue<Command>;
    using Step = std::function<MStatus(Command&)>;
    using Check = std::function<bool(const Command&)>;

    FlagRow(const char* shortName, const char* longName, std::vector<Value> values = {})
        : shortName(shortName)
        , longName(longName)
        , name(*shortName == '-' ? shortName : std::string("-") + shortName)
        , values(std::move(values)) {}

    /// Sets the flag's action and its undo (none if the drawing does not change).
    FlagRow& Does(Step doing, Step undoing = nullptr) {
        redo = std::move(doing);
        undo = std::move(undoing);
        return *this;
    }
    /// Sets an action that undoes itself when it runs again.
    FlagRow& Exchanges(Step exchanging) {
        exchanges = true;
        return Does(exchanging, exchanging);
    }
    /// Sets the answer to a query. The action of such a flag then needs -edit.
    FlagRow& Answers(Step answering) {
        query = std::move(answering);
        return *this;
    }
    /// Sets the precondition of the action. The check logs an error when it returns false.
    FlagRow& Needs(Check needed) {
        check = std::move(needed);
        return *this;
    }
    /// Sets the error message for a scene without a drawing node; "Node not found" by default.
    FlagRow& WithoutNode(const char* refusal) {
        withoutNode = refusal;
        return *this;
    }
    /// Sets the member to true if the flag is given.
    FlagRow& Sets(bool Command::*member) {
        given = member;
        return *this;
    }

    bool IsGiven(const MArgDatabase& arguments) const { return arguments.isFlagSet(name.c_str()); }

    /// Reads the arguments of the flag, which must be given, into the command. Returns false if one is
    /// missing.
    bool Read(Command& command, const MArgDatabase& arguments) const {
        if (given) {
            command.*given = true;
        }
        unsigned int index = 0;
        return std::all_of(values.begin(), values.end(), [&](const Value& value) {
            return value.Read(command, arguments, name.c_str(), index++);
        });
    }

    const char* shortName;
    const char* longName;
    std::string name; ///< the short name with its hyphen
    std::vector<Value> values;
    bool Command::*given = nullptr;
    Step redo;
    Step undo;
    bool exchanges = false; ///< the action undoes itself
    Step query;
    Check check;
    const char* withoutNode = "Node not found";
};

/// All flags of a command. Creates its syntax from them and reads its arguments. If several flags with an
/// action are given, the first one in the table wins.
template <typename Command>
class FlagTable {
public:
    using Row = FlagRow<Command>;

    explicit FlagTable(std::vector<Row> rows)
        : rows_(std::move(rows)) {}

    /// The syntax with all flags. Enables -query and -edit if a flag answers queries.
    MSyntax GetSyntax() const {
        MSyntax syntax;
        for (const Row& row : rows_) {
            std::vector<MSyntax::MArgType> types;
            for (const typename Row::Value& value : row.values) {
                types.push_back(value.GetType());
            }
            types.resize(6, MSyntax::kNoArg);
            syntax.addFlag(row.shortName, row.longName, types[0], types[1], types[2], types[3], types[4],
                           types[5]);
            if (!row.values.empty() && row.values.front().IsMultiUse()) {
                syntax.makeFlagMultiUse(row.name.c_str());
            }
        }
        const bool answers =
            std::any_of(rows_.begin(), rows_.end(), [](const Row& row) { return bool(row.query); });
        syntax.enableQuery(answers);
        syntax.enableEdit(answers);
        return syntax;
    }

    /// The first given flag with an action or, with &Row::query, with an answer; null for none. Owned by the
    /// table.
    const Row* FindGiven(const MArgDatabase& arguments, typename Row::Step Row::*step = &Row::redo) const {
        const auto found = std::find_if(rows_.begin(), rows_.end(),
                                        [&](const Row& row) { return row.*step && row.IsGiven(arguments); });
        return found == rows_.end() ? nullptr : &*found;
    }

    /// Reads the given options, then the arguments of the first given flag with an action, into the command.
    /// Returns that flag, owned by the table; null for none.
    const Row* Read(Command& command, const MArgDatabase& arguments) const {
        for (const Row& row : rows_) {
            if (!row.redo && row.IsGiven(arguments)) {
                row.Read(command, arguments);
            }
        }
        const Row* const chosen = FindGiven(arguments);
        if (chosen) {
            chosen->Read(command, arguments);
        }
        return chosen;
    }

private:
    std::vector<Row> rows_;
};

} // namespace vellix
