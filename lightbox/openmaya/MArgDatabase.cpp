#include "mel/ParsedArguments.h"
#include "mel/SyntaxTable.h"
#include "openmaya/ApiBridge.h"

#include <maya/MArgDatabase.h>
#include <maya/MGlobal.h>
#include <maya/MSelectionList.h>

using lightbox::ApiBridge;
using lightbox::mel::Value;

MArgDatabase::MArgDatabase(const MSyntax& syntax, const MArgList& argList, MStatus* ReturnStatus)
    : MArgParser(syntax, argList, ReturnStatus) {}

MArgDatabase::~MArgDatabase() = default;

MStatus MArgDatabase::getFlagArgument(const char* flag, unsigned int index, MSelectionList& result) const {
    const Value* const name = parsed_ && flag ? parsed_->Argument(flag, index) : nullptr;
    if (!name) {
        return MS::kInvalidParameter;
    }
    MSelectionList found;
    MStatus status = found.add(ApiBridge::Wrap(name->AsString()));
    if (status) {
        result = found;
    }
    return status;
}

MStatus MArgDatabase::getCommandArgument(unsigned int index, MSelectionList& result) const {
    if (!parsed_ || index >= parsed_->CommandArguments().size()) {
        return MS::kInvalidParameter;
    }
    MSelectionList found;
    MStatus status = found.add(ApiBridge::Wrap(parsed_->CommandArguments()[index].AsString()));
    if (status) {
        result = found;
    }
    return status;
}

MStatus MArgDatabase::getObjects(MSelectionList& result) const {
    if (!parsed_) {
        return MS::kFailure;
    }
    if (parsed_->Objects().empty() && parsed_->Syntax().usesSelection) {
        return MGlobal::getActiveSelectionList(result);
    }
    MSelectionList found;
    for (const Value& object : parsed_->Objects()) {
        MStatus status = found.add(ApiBridge::Wrap(object.AsString()));
        if (!status) {
            return status;
        }
    }
    result = found;
    return MS::kSuccess;
}
