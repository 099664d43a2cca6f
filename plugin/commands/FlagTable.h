#pragma once

#include "host/MayaUtil.h"

#include <maya/MArgDatabase.h>
#include <maya/MStatus.h>
#include <maya/MSyntax.h>
#include <maya/MTime.h>

#include <QString>

#include <algorithm>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace vellix {

/// One argument of a flag, and the member of the command that it is read into. The member's type is the type
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
    FlagValue(MTime Command::*member)
        : FlagValue(MSyntax::kTime, member, &MArgParser::flagArgumentMTime) {}
    /// An argument that is accepted and not read.
    FlagValue(MSyntax::MArgType type)
        : type_(type) {}
    /// A whole number from 0; one that is too large for the member becomes the largest.
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
    /// False, with the member as it was, when the argument is not there: in a query there are none.
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
    std::function<bool(Command&, const MArgDatabase&, const char*, unsigned int)> read_;
};

/// One flag of a command: its names, its arguments, and what it does. A flag that does nothing is an option
/// of the others.
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

    /// What the flag does, and what takes it back (nothing when the drawing stays as it is).
    FlagRow& Does(Step doing, Step undoing = nullptr) {
        redo = std::move(doing);
        undo = std::move(undoing);
        return *this;
    }
    /// What the flag does where doing it again takes it back.
    FlagRow& Exchanges(Step exchanging) { return Does(exchanging, exchanging); }
    /// What the flag answers in a query. Such a flag does what it does only with -edit.
    FlagRow& Answers(Step answering) {
        query = std::move(answering);
        return *this;
    }
    /// What has to be so before the flag does anything; logs an error when it returns false.
    FlagRow& Needs(Check needed) {
        check = std::move(needed);
        return *this;
    }
    /// What is said when the scene has no drawing node, in place of "Node not found".
    FlagRow& WithoutNode(const char* refusal) {
        withoutNode = refusal;
        return *this;
    }
    /// Sets the member when the flag is given.
    FlagRow& Sets(bool Command::*member) {
        given = member;
        return *this;
    }

    bool IsGiven(const MArgDatabase& arguments) const { return arguments.isFlagSet(name.c_str()); }

    /// Reads the arguments of the flag, which is given, into the command. False when one is not there.
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
    std::string name; ///< the short one, with its hyphen
    std::vector<Value> values;
    bool Command::*given = nullptr;
    Step redo;
    Step undo;
    Step query;
    Check check;
    const char* withoutNode = "Node not found";
};

/// The flags of a command: its syntax is made and its arguments are read from them. Where several flags of a
/// line do something, the first of the table is done.
template <typename Command>
class FlagTable {
public:
    using Row = FlagRow<Command>;

    explicit FlagTable(std::vector<Row> rows)
        : rows_(std::move(rows)) {}

    /// All flags. The command takes -query and -edit when one of them answers.
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
        }
        const bool answers =
            std::any_of(rows_.begin(), rows_.end(), [](const Row& row) { return bool(row.query); });
        syntax.enableQuery(answers);
        syntax.enableEdit(answers);
        return syntax;
    }

    /// The first given flag that does something or, with &Row::query, that answers; null for none.
    const Row* FindGiven(const MArgDatabase& arguments, typename Row::Step Row::*step = &Row::redo) const {
        const auto found = std::find_if(rows_.begin(), rows_.end(),
                                        [&](const Row& row) { return row.*step && row.IsGiven(arguments); });
        return found == rows_.end() ? nullptr : &*found;
    }

    /// Reads the given options, then the arguments of the first given flag that does something, into the
    /// command. Returns that flag; null for none.
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
