#include "openmaya/Access.h"
#include "openmaya/PluginCommandState.h"

#include <maya/MDoubleArray.h>
#include <maya/MGlobal.h>
#include <maya/MIntArray.h>
#include <maya/MPxCommand.h>
#include <maya/MStringArray.h>
#include <maya/MSyntax.h>

using lightbox::Access;
using lightbox::PluginCommandCall;
using lightbox::mel::Type;
using lightbox::mel::Value;

namespace {

void SetResult(Value value) {
    if (PluginCommandCall* const call = PluginCommandCall::Current()) {
        call->result = std::move(value);
    }
}

/// Appends to a result of that element type; a single value becomes an array.
template <class Array, class Element>
MStatus Append(Type type, Array& (Value::*elements)() const, const Element& element) {
    PluginCommandCall* const call = PluginCommandCall::Current();
    if (!call) {
        return MS::kFailure;
    }
    Value& result = call->result;
    if (result.IsNone()) {
        result = Value::Default(ArrayOf(type));
    } else if (result.GetType() == type) {
        Value array = Value::Default(ArrayOf(type));
        if constexpr (std::is_same_v<Element, std::string>) {
            (array.*elements)().push_back(result.Text());
        } else {
            (array.*elements)().push_back(static_cast<Element>(result.AsFloat()));
        }
        result = std::move(array);
    }
    if (result.GetType() != ArrayOf(type)) {
        return Access::Fail(MS::kInvalidParameter, "The result is of another type.");
    }
    (result.*elements)().push_back(element);
    return MS::kSuccess;
}

template <class Elements, class Array>
Elements Copied(const Array& array) {
    Elements elements;
    elements.reserve(array.length());
    for (unsigned int i = 0; i < array.length(); ++i) {
        elements.push_back(array[i]);
    }
    return elements;
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
    return state_->command && state_->command->hasSyntax;
}

MSyntax MPxCommand::syntax() const {
    return state_->command ? state_->command->syntax : MSyntax();
}

MString MPxCommand::commandString() const {
    return Access::Wrap(state_->text);
}

void MPxCommand::setCommandString(const MString& text) {
    state_->text = Access::Text(text);
}

void MPxCommand::displayInfo(const MString& theMessage, bool showLineNumber) {
    MGlobal::displayInfo(theMessage, showLineNumber);
}

void MPxCommand::displayWarning(const MString& theWarning, bool showLineNumber) {
    MGlobal::displayWarning(theWarning, showLineNumber);
}

void MPxCommand::displayError(const MString& theError, bool showLineNumber) {
    MGlobal::displayError(theError, showLineNumber);
}

void MPxCommand::clearResult() {
    SetResult(Value());
}

void MPxCommand::setResult(bool result) {
    SetResult(result);
}

void MPxCommand::setResult(int result) {
    SetResult(result);
}

void MPxCommand::setResult(unsigned int result) {
    SetResult(static_cast<int>(result));
}

void MPxCommand::setResult(double result) {
    SetResult(result);
}

void MPxCommand::setResult(const MString& result) {
    SetResult(Access::Text(result));
}

void MPxCommand::setResult(const char* result) {
    SetResult(result ? result : "");
}

void MPxCommand::setResult(const MIntArray& result) {
    SetResult(Copied<Value::IntArray>(result));
}

void MPxCommand::setResult(const MDoubleArray& result) {
    SetResult(Copied<Value::FloatArray>(result));
}

void MPxCommand::setResult(const MStringArray& result) {
    Value::StringArray texts;
    texts.reserve(result.length());
    for (unsigned int i = 0; i < result.length(); ++i) {
        texts.push_back(Access::Text(result[i]));
    }
    SetResult(std::move(texts));
}

MStatus MPxCommand::appendToResult(int result) {
    return Append(Type::Int, &Value::Ints, result);
}

MStatus MPxCommand::appendToResult(double result) {
    return Append(Type::Float, &Value::Floats, result);
}

MStatus MPxCommand::appendToResult(const MString& result) {
    return Append(Type::String, &Value::Strings, Access::Text(result));
}
