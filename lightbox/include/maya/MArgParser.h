#pragma once

#include <maya/MAngle.h>
#include <maya/MArgList.h>
#include <maya/MDistance.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MTime.h>

#include <memory>

class MStringArray;
class MSyntax;

namespace lightbox {
namespace mel {
class ParsedArguments;
}
} // namespace lightbox

/// A command's argument list, parsed by its syntax. Flags are given by short or long name, with or without
/// the hyphen. If the list does not match the syntax, the constructor's status is a failure with the reason
/// as its error string, and the message is shown as an error.
class MArgParser {
public:
    MArgParser(const MSyntax& syntax, const MArgList& argList, MStatus* ReturnStatus = nullptr);
    MArgParser(const MArgParser&) = default;
    MArgParser& operator=(const MArgParser&) = default;
    virtual ~MArgParser();

    bool isFlagSet(const char* flag, MStatus* ReturnStatus = nullptr) const;
    bool isFlagSet(const MString& flag, MStatus* ReturnStatus = nullptr) const;
    bool isEdit(MStatus* ReturnStatus = nullptr) const;
    bool isQuery(MStatus* ReturnStatus = nullptr) const;
    unsigned int numberOfFlagsUsed() const;
    unsigned int numberOfFlagUses(const char* flag) const;

    bool flagArgumentBool(const char* flag, unsigned int index, MStatus* ReturnStatus = nullptr) const;
    int flagArgumentInt(const char* flag, unsigned int index, MStatus* ReturnStatus = nullptr) const;
    double flagArgumentDouble(const char* flag, unsigned int index, MStatus* ReturnStatus = nullptr) const;
    MString flagArgumentString(const char* flag, unsigned int index, MStatus* ReturnStatus = nullptr) const;
    MTime flagArgumentMTime(const char* flag, unsigned int index, MStatus* ReturnStatus = nullptr) const;
    MDistance flagArgumentMDistance(const char* flag, unsigned int index,
                                    MStatus* ReturnStatus = nullptr) const;
    MAngle flagArgumentMAngle(const char* flag, unsigned int index, MStatus* ReturnStatus = nullptr) const;

    MStatus getFlagArgument(const char* flag, unsigned int index, bool& result) const;
    MStatus getFlagArgument(const char* flag, unsigned int index, int& result) const;
    MStatus getFlagArgument(const char* flag, unsigned int index, unsigned int& result) const;
    MStatus getFlagArgument(const char* flag, unsigned int index, double& result) const;
    MStatus getFlagArgument(const char* flag, unsigned int index, MString& result) const;
    MStatus getFlagArgument(const char* flag, unsigned int index, MTime& result) const;
    MStatus getFlagArgument(const char* flag, unsigned int index, MDistance& result) const;
    MStatus getFlagArgument(const char* flag, unsigned int index, MAngle& result) const;

    /// The arguments of one use of a multi-use flag.
    MStatus getFlagArgumentList(const char* flag, unsigned int occurrence, MArgList& args) const;
    /// The position of one use of a flag in the argument list.
    MStatus getFlagArgumentPosition(const char* flag, unsigned int occurrence, unsigned int& position) const;

    bool commandArgumentBool(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    int commandArgumentInt(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    double commandArgumentDouble(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    MString commandArgumentString(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    MTime commandArgumentMTime(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    MDistance commandArgumentMDistance(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    MAngle commandArgumentMAngle(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    MStatus getCommandArgument(unsigned int index, bool& result) const;
    MStatus getCommandArgument(unsigned int index, int& result) const;
    MStatus getCommandArgument(unsigned int index, double& result) const;
    MStatus getCommandArgument(unsigned int index, MString& result) const;
    MStatus getCommandArgument(unsigned int index, MTime& result) const;
    MStatus getCommandArgument(unsigned int index, MDistance& result) const;
    MStatus getCommandArgument(unsigned int index, MAngle& result) const;

    /// The objects as given in the argument list.
    MStatus getObjects(MStringArray& result) const;

protected:
    std::shared_ptr<lightbox::mel::ParsedArguments> parsed_;
};
