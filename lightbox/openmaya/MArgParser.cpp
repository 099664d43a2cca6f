#include "mel/Error.h"
#include "mel/ParsedArguments.h"
#include "openmaya/ApiBridge.h"

#include <maya/MArgList.h>
#include <maya/MArgParser.h>
#include <maya/MGlobal.h>
#include <maya/MStringArray.h>
#include <maya/MSyntax.h>
#include <maya/MTime.h>

using lightbox::ApiBridge;
using lightbox::mel::ArgumentTokens;
using lightbox::mel::ParsedArguments;
using lightbox::mel::Value;

namespace {

template <class T>
using Reader = bool (*)(const Value&, T&);

template <class T>
MStatus Convert(const Value* value, Reader<T> read, T& result) {
    T converted = T();
    if (!value || !read(*value, converted)) {
        return MS::kInvalidParameter;
    }
    result = converted;
    return MS::kSuccess;
}

/// Reads a flag's argument. Fails when the list does not match the syntax, or the argument is missing.
template <class T>
MStatus FlagArgument(const ParsedArguments* parsed, const char* flag, unsigned int index, Reader<T> read,
                     T& result) {
    return Convert(parsed && flag ? parsed->Argument(flag, index) : nullptr, read, result);
}

template <class T>
MStatus CommandArgument(const ParsedArguments* parsed, unsigned int index, Reader<T> read, T& result) {
    const bool exists = parsed && index < parsed->CommandArguments().size();
    return Convert(exists ? &parsed->CommandArguments()[index] : nullptr, read, result);
}

/// Returns the value and reports the status, for the getters of that form.
template <class T>
T Returned(const MStatus& status, const T& value, MStatus* returnStatus) {
    ApiBridge::Report(returnStatus, status);
    return value;
}

} // namespace

MArgParser::MArgParser(const MSyntax& syntax, const MArgList& argList, MStatus* ReturnStatus) {
    MStatus status;
    try {
        parsed_ = std::make_unique<ParsedArguments>(syntax, ArgumentTokens::Of(argList));
    } catch (const lightbox::mel::Error& error) {
        status = ApiBridge::Fail(MS::kInvalidParameter, error.what());
        MGlobal::displayError(error.what());
    }
    ApiBridge::Report(ReturnStatus, status);
}

MArgParser::~MArgParser() = default;

bool MArgParser::isFlagSet(const char* flag, MStatus* ReturnStatus) const {
    const bool known = parsed_ && flag && parsed_->Syntax().Find(flag);
    ApiBridge::Report(ReturnStatus, known ? MS::kSuccess : MS::kInvalidParameter);
    return known && parsed_->Find(flag);
}

bool MArgParser::isFlagSet(const MString& flag, MStatus* ReturnStatus) const {
    return isFlagSet(flag.asChar(), ReturnStatus);
}

bool MArgParser::isEdit(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, parsed_ ? MS::kSuccess : MS::kFailure);
    return parsed_ && parsed_->IsEdit();
}

bool MArgParser::isQuery(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, parsed_ ? MS::kSuccess : MS::kFailure);
    return parsed_ && parsed_->IsQuery();
}

unsigned int MArgParser::numberOfFlagsUsed() const {
    return parsed_ ? static_cast<unsigned int>(parsed_->Uses().size()) : 0;
}

unsigned int MArgParser::numberOfFlagUses(const char* flag) const {
    return parsed_ && flag ? parsed_->UseCount(flag) : 0;
}

bool MArgParser::flagArgumentBool(const char* flag, unsigned int index, MStatus* ReturnStatus) const {
    bool value = false;
    return Returned(getFlagArgument(flag, index, value), value, ReturnStatus);
}

int MArgParser::flagArgumentInt(const char* flag, unsigned int index, MStatus* ReturnStatus) const {
    int value = 0;
    return Returned(getFlagArgument(flag, index, value), value, ReturnStatus);
}

double MArgParser::flagArgumentDouble(const char* flag, unsigned int index, MStatus* ReturnStatus) const {
    double value = 0.0;
    return Returned(getFlagArgument(flag, index, value), value, ReturnStatus);
}

MString MArgParser::flagArgumentString(const char* flag, unsigned int index, MStatus* ReturnStatus) const {
    MString value;
    return Returned(getFlagArgument(flag, index, value), value, ReturnStatus);
}

MTime MArgParser::flagArgumentMTime(const char* flag, unsigned int index, MStatus* ReturnStatus) const {
    MTime value;
    return Returned(getFlagArgument(flag, index, value), value, ReturnStatus);
}

MDistance MArgParser::flagArgumentMDistance(const char* flag, unsigned int index,
                                            MStatus* ReturnStatus) const {
    MDistance value;
    const MStatus status = getFlagArgument(flag, index, value);
    return Returned(status, value, ReturnStatus);
}

MAngle MArgParser::flagArgumentMAngle(const char* flag, unsigned int index, MStatus* ReturnStatus) const {
    MAngle value;
    const MStatus status = getFlagArgument(flag, index, value);
    return Returned(status, value, ReturnStatus);
}

MStatus MArgParser::getFlagArgument(const char* flag, unsigned int index, bool& result) const {
    return FlagArgument<bool>(parsed_.get(), flag, index, lightbox::mel::ReadBool, result);
}

MStatus MArgParser::getFlagArgument(const char* flag, unsigned int index, int& result) const {
    return FlagArgument<int>(parsed_.get(), flag, index, lightbox::mel::ReadInt, result);
}

MStatus MArgParser::getFlagArgument(const char* flag, unsigned int index, unsigned int& result) const {
    return FlagArgument<unsigned int>(parsed_.get(), flag, index, lightbox::mel::ReadUnsigned, result);
}

MStatus MArgParser::getFlagArgument(const char* flag, unsigned int index, double& result) const {
    return FlagArgument<double>(parsed_.get(), flag, index, lightbox::mel::ReadDouble, result);
}

MStatus MArgParser::getFlagArgument(const char* flag, unsigned int index, MString& result) const {
    return FlagArgument<MString>(parsed_.get(), flag, index, ApiBridge::ReadString, result);
}

MStatus MArgParser::getFlagArgument(const char* flag, unsigned int index, MTime& result) const {
    return FlagArgument<MTime>(parsed_.get(), flag, index, lightbox::mel::ReadTime, result);
}

MStatus MArgParser::getFlagArgument(const char* flag, unsigned int index, MDistance& result) const {
    return FlagArgument<MDistance>(parsed_.get(), flag, index, ApiBridge::ReadDistance, result);
}

MStatus MArgParser::getFlagArgument(const char* flag, unsigned int index, MAngle& result) const {
    return FlagArgument<MAngle>(parsed_.get(), flag, index, ApiBridge::ReadAngle, result);
}

MStatus MArgParser::getFlagArgumentList(const char* flag, unsigned int occurrence, MArgList& args) const {
    const ParsedArguments::Use* const use = parsed_ && flag ? parsed_->Find(flag, occurrence) : nullptr;
    if (!use) {
        return MS::kInvalidParameter;
    }
    ArgumentTokens tokens;
    for (std::size_t i = 0; i < use->argumentCount; ++i) {
        tokens.Add(parsed_->Tokens().At(use->firstArgument + i));
    }
    args = ArgumentTokens::Wrap(std::move(tokens));
    return MS::kSuccess;
}

MStatus MArgParser::getFlagArgumentPosition(const char* flag, unsigned int occurrence,
                                            unsigned int& position) const {
    const ParsedArguments::Use* const use = parsed_ && flag ? parsed_->Find(flag, occurrence) : nullptr;
    if (!use) {
        return MS::kInvalidParameter;
    }
    position = static_cast<unsigned int>(use->position);
    return MS::kSuccess;
}

bool MArgParser::commandArgumentBool(unsigned int index, MStatus* ReturnStatus) const {
    bool value = false;
    return Returned(getCommandArgument(index, value), value, ReturnStatus);
}

int MArgParser::commandArgumentInt(unsigned int index, MStatus* ReturnStatus) const {
    int value = 0;
    return Returned(getCommandArgument(index, value), value, ReturnStatus);
}

double MArgParser::commandArgumentDouble(unsigned int index, MStatus* ReturnStatus) const {
    double value = 0.0;
    return Returned(getCommandArgument(index, value), value, ReturnStatus);
}

MString MArgParser::commandArgumentString(unsigned int index, MStatus* ReturnStatus) const {
    MString value;
    return Returned(getCommandArgument(index, value), value, ReturnStatus);
}

MTime MArgParser::commandArgumentMTime(unsigned int index, MStatus* ReturnStatus) const {
    MTime value;
    const MStatus status = getCommandArgument(index, value);
    return Returned(status, value, ReturnStatus);
}

MDistance MArgParser::commandArgumentMDistance(unsigned int index, MStatus* ReturnStatus) const {
    MDistance value;
    const MStatus status = getCommandArgument(index, value);
    return Returned(status, value, ReturnStatus);
}

MAngle MArgParser::commandArgumentMAngle(unsigned int index, MStatus* ReturnStatus) const {
    MAngle value;
    const MStatus status = getCommandArgument(index, value);
    return Returned(status, value, ReturnStatus);
}

MStatus MArgParser::getCommandArgument(unsigned int index, bool& result) const {
    return CommandArgument<bool>(parsed_.get(), index, lightbox::mel::ReadBool, result);
}

MStatus MArgParser::getCommandArgument(unsigned int index, int& result) const {
    return CommandArgument<int>(parsed_.get(), index, lightbox::mel::ReadInt, result);
}

MStatus MArgParser::getCommandArgument(unsigned int index, double& result) const {
    return CommandArgument<double>(parsed_.get(), index, lightbox::mel::ReadDouble, result);
}

MStatus MArgParser::getCommandArgument(unsigned int index, MString& result) const {
    return CommandArgument<MString>(parsed_.get(), index, ApiBridge::ReadString, result);
}

MStatus MArgParser::getCommandArgument(unsigned int index, MTime& result) const {
    return CommandArgument<MTime>(parsed_.get(), index, lightbox::mel::ReadTime, result);
}

MStatus MArgParser::getCommandArgument(unsigned int index, MDistance& result) const {
    return CommandArgument<MDistance>(parsed_.get(), index, ApiBridge::ReadDistance, result);
}

MStatus MArgParser::getCommandArgument(unsigned int index, MAngle& result) const {
    return CommandArgument<MAngle>(parsed_.get(), index, ApiBridge::ReadAngle, result);
}

MStatus MArgParser::getObjects(MStringArray& result) const {
    if (!parsed_) {
        return MS::kFailure;
    }
    result.clear();
    for (const Value& object : parsed_->Objects()) {
        result.append(ApiBridge::Wrap(object.AsString()));
    }
    return MS::kSuccess;
}
