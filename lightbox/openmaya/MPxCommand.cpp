#include "mel/Value.h"
#include "openmaya/ApiBridge.h"
#include "openmaya/CommandState.h"

#include <maya/MDoubleArray.h>
#include <maya/MGlobal.h>
#include <maya/MIntArray.h>
#include <maya/MPxCommand.h>
#include <maya/MStringArray.h>
#include <maya/MSyntax.h>

using lightbox::ApiBridge;
using lightbox::RunningCommandResult;
using lightbox::mel::Value;

namespace {

void Set(Value value) {
    if (Value* result = RunningCommandResult()) {
        *result = std::move(value);
    }
}

/// Appends to an array result. A single value or an empty result becomes an array first.
template <typename T>
MStatus Append(const T& item) {
    Value* result = RunningCommandResult();
    if (!result) {
        return MS::kFailure;
    }
    const Value single{item};
    const auto arrayType = lightbox::mel::ArrayOf(single.GetType());
    if (result->IsNone()) {
        *result = Value(std::vector<T>{item});
        return MS::kSuccess;
    }
    if (result->GetType() == single.GetType()) {
        std::vector<T> both;
        if constexpr (std::is_same_v<T, int>) {
            both = {result->AsInt(), item};
        } else if constexpr (std::is_same_v<T, double>) {
            both = {result->AsFloat(), item};
        } else {
            both = {result->Text(), item};
        }
        *result = Value(std::move(both));
        return MS::kSuccess;
    }
    if (result->GetType() != arrayType) {
        return MS::kInvalidParameter;
    }
    if constexpr (std::is_same_v<T, int>) {
        result->Ints().push_back(item);
    } else if constexpr (std::is_same_v<T, double>) {
        result->Floats().push_back(item);
    } else {
        result->Strings().push_back(item);
    }
    return MS::kSuccess;
}

} // namespace

MPxCommand::MPxCommand()
    : state_(std::make_unique<State>()) {}
MPxCommand::~MPxCommand() = default;

MStatus MPxCommand::undoIt() {
    return MS::kSuccess;
}
MStatus MPxCommand::redoIt() {
    return MS::kSuccess;
}
bool MPxCommand::isUndoable() const {
    return false;
}
bool MPxCommand::hasSyntax() const {
    return state_->command && state_->command->syntax.has_value();
}
MSyntax MPxCommand::syntax() const {
    return hasSyntax() ? *state_->command->syntax : MSyntax();
}

MString MPxCommand::commandString() const {
    return ApiBridge::Wrap(state_->commandString);
}
void MPxCommand::setCommandString(const MString& text) {
    state_->commandString = ApiBridge::Text(text);
}

void MPxCommand::displayInfo(const MString& theInfo) {
    MGlobal::displayInfo(theInfo);
}
void MPxCommand::displayWarning(const MString& theWarning, bool) {
    MGlobal::displayWarning(theWarning);
}
void MPxCommand::displayError(const MString& theError, bool) {
    MGlobal::displayError(theError);
}

void MPxCommand::clearResult() {
    Set(Value());
}
void MPxCommand::setResult(bool result) {
    Set(Value(result ? 1 : 0));
}
void MPxCommand::setResult(int result) {
    Set(Value(result));
}
void MPxCommand::setResult(unsigned int result) {
    Set(Value(static_cast<int>(result)));
}
void MPxCommand::setResult(double result) {
    Set(Value(result));
}
void MPxCommand::setResult(const MString& result) {
    Set(Value(ApiBridge::Text(result)));
}
void MPxCommand::setResult(const char* result) {
    Set(Value(std::string(result ? result : "")));
}

void MPxCommand::setResult(const MIntArray& result) {
    std::vector<int> values(result.length());
    result.get(values.data());
    Set(Value(std::move(values)));
}

void MPxCommand::setResult(const MDoubleArray& result) {
    std::vector<double> values(result.length());
    result.get(values.data());
    Set(Value(std::move(values)));
}

void MPxCommand::setResult(const MStringArray& result) {
    std::vector<std::string> values;
    for (unsigned int i = 0; i < result.length(); ++i) {
        values.push_back(ApiBridge::Text(result[i]));
    }
    Set(Value(std::move(values)));
}

MStatus MPxCommand::appendToResult(int result) {
    return Append(result);
}
MStatus MPxCommand::appendToResult(double result) {
    return Append(result);
}
MStatus MPxCommand::appendToResult(const MString& result) {
    return Append(ApiBridge::Text(result));
}
