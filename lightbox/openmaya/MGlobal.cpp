#include "mel/Interpreter.h"
#include "openmaya/ApiBridge.h"
#include "openmaya/PluginCommand.h"
#include "scene/Host.h"
#include "scene/IdleQueue.h"
#include "scene/OptionVars.h"
#include "scene/Output.h"
#include "scene/Scene.h"
#include "scene/UndoQueue.h"

#include <maya/MCommandResult.h>
#include <maya/MDoubleArray.h>
#include <maya/MGlobal.h>
#include <maya/MIntArray.h>
#include <maya/MSelectionList.h>
#include <maya/MStringArray.h>

#include <algorithm>

using lightbox::ApiBridge;
using lightbox::Host;
using lightbox::OptionVars;
using lightbox::Selection;
using lightbox::mel::Value;

namespace {

/// Runs MEL for a plug-in. An error is shown like that of a typed line, and returned as the status.
MStatus Execute(const MString& command, bool display, bool undo, Value& result) {
    Host& host = Host::Get();
    // A command that is not undoable cannot undo the edits of the MEL it runs, so these are recorded.
    lightbox::UndoQueue::Pause pause(host.undo(), !undo && lightbox::IsInUndoablePluginCommand());
    if (display) {
        host.output().Print(ApiBridge::Text(command) + ";\n");
    }
    try {
        result = host.interpreter().Execute(ApiBridge::Text(command));
    } catch (const lightbox::mel::Error& error) {
        host.interpreter().Report(error);
        return ApiBridge::Fail(MS::kFailure, error.what());
    }
    if (display && !result.IsNone()) {
        host.output().Result(result.Shown());
    }
    return MS::kSuccess;
}

template <typename T>
MStatus ExecuteFor(T& result, const MString& command, bool display, bool undo) {
    MCommandResult whole;
    const MStatus status = MGlobal::executeCommand(command, whole, display, undo);
    return status ? whole.getResult(result) : status;
}

template <typename T>
T OptionVar(const MString& name, bool* exists, T fallback) {
    const OptionVars::Value* value = Host::Get().optionVars().Find(ApiBridge::Text(name));
    if (exists) {
        *exists = value != nullptr;
    }
    const T* held = value ? std::get_if<T>(value) : nullptr;
    return held ? *held : fallback;
}

bool SetOptionVar(const MString& name, OptionVars::Value value) {
    OptionVars& vars = Host::Get().optionVars();
    const bool isNew = !vars.Has(ApiBridge::Text(name));
    vars.Set(ApiBridge::Text(name), std::move(value));
    return isNew;
}

/// The selection after the adjustment by the list.
Selection::List Adjusted(Selection::List current, const Selection::List& list,
                         MGlobal::ListAdjustment adjustment) {
    if (adjustment == MGlobal::kReplaceList) {
        return list;
    }
    Selection::List head;
    for (const auto& node : list) {
        const auto found = std::find(current.begin(), current.end(), node);
        const bool isThere = found != current.end();
        if (isThere && adjustment != MGlobal::kAddToList) {
            current.erase(found);
        }
        if (adjustment == MGlobal::kAddToHeadOfList) {
            head.push_back(node);
        } else if (!isThere && adjustment != MGlobal::kRemoveFromList) {
            current.push_back(node);
        }
    }
    current.insert(current.begin(), head.begin(), head.end());
    return current;
}

Selection::List NodesOf(const MSelectionList& list) {
    Selection::List nodes;
    for (unsigned int i = 0; i < list.length(); ++i) {
        MObject object;
        list.getDependNode(i, object);
        const auto node = ApiBridge::GetNode(object);
        // A node deleted since the list was made cannot be selected.
        if (node && node->InScene()) {
            nodes.push_back(node);
        }
    }
    return nodes;
}

} // namespace

MGlobal::MMayaState MGlobal::mayaState(MStatus* ReturnStatus) {
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
    return Host::Get().IsBatch() ? kBatch : kInteractive;
}

MString MGlobal::mayaVersion() {
    return "2018";
}

int MGlobal::apiVersion() {
    return 201800;
}

void MGlobal::displayInfo(const MString& theMessage) {
    Host::Get().output().Info(ApiBridge::Text(theMessage));
}

void MGlobal::displayWarning(const MString& theWarning) {
    Host::Get().output().Warning(ApiBridge::Text(theWarning));
}

void MGlobal::displayError(const MString& theError) {
    Host::Get().output().Error(ApiBridge::Text(theError));
}

MStatus MGlobal::getActiveSelectionList(MSelectionList& dest, bool) {
    dest.clear();
    for (const auto& node : Host::Get().scene().selection().Get()) {
        dest.add(ApiBridge::Wrap(node));
    }
    return MS::kSuccess;
}

MStatus MGlobal::setActiveSelectionList(const MSelectionList& src, ListAdjustment listAdjustment) {
    Selection& selection = Host::Get().scene().selection();
    selection.Set(Adjusted(selection.Get(), NodesOf(src), listAdjustment));
    return MS::kSuccess;
}

MStatus MGlobal::clearSelectionList() {
    Host::Get().scene().selection().Clear();
    return MS::kSuccess;
}

MStatus MGlobal::select(const MObject& object, ListAdjustment listAdjustment) {
    MSelectionList list;
    const MStatus status = list.add(object);
    return status ? setActiveSelectionList(list, listAdjustment) : status;
}

MStatus MGlobal::select(const MDagPath& object, const MObject&, ListAdjustment listAdjustment) {
    return select(object.node(), listAdjustment);
}

MStatus MGlobal::selectByName(const MString& name, ListAdjustment listAdjustment) {
    MSelectionList list;
    const MStatus status = list.add(name);
    return status ? setActiveSelectionList(list, listAdjustment) : status;
}

MStatus MGlobal::unselect(const MObject& object) {
    return select(object, kRemoveFromList);
}

MStatus MGlobal::getSelectionListByName(const MString& name, MSelectionList& list) {
    list.clear();
    return list.add(name);
}

MStatus MGlobal::executeCommand(const MString& command, bool displayEnabled, bool undoEnabled) {
    Value result;
    return Execute(command, displayEnabled, undoEnabled, result);
}

MStatus MGlobal::executeCommand(const MString& command, MCommandResult& result, bool displayEnabled,
                                bool undoEnabled) {
    Value value;
    MStatus status = Execute(command, displayEnabled, undoEnabled, value);
    if (status) {
        result.setValue(value);
    }
    return status;
}

MStatus MGlobal::executeCommand(const MString& command, int& result, bool displayEnabled, bool undoEnabled) {
    return ExecuteFor(result, command, displayEnabled, undoEnabled);
}

MStatus MGlobal::executeCommand(const MString& command, MIntArray& result, bool displayEnabled,
                                bool undoEnabled) {
    return ExecuteFor(result, command, displayEnabled, undoEnabled);
}

MStatus MGlobal::executeCommand(const MString& command, double& result, bool displayEnabled,
                                bool undoEnabled) {
    return ExecuteFor(result, command, displayEnabled, undoEnabled);
}

MStatus MGlobal::executeCommand(const MString& command, MDoubleArray& result, bool displayEnabled,
                                bool undoEnabled) {
    return ExecuteFor(result, command, displayEnabled, undoEnabled);
}

MStatus MGlobal::executeCommand(const MString& command, MString& result, bool displayEnabled,
                                bool undoEnabled) {
    return ExecuteFor(result, command, displayEnabled, undoEnabled);
}

MStatus MGlobal::executeCommand(const MString& command, MStringArray& result, bool displayEnabled,
                                bool undoEnabled) {
    return ExecuteFor(result, command, displayEnabled, undoEnabled);
}

MString MGlobal::executeCommandStringResult(const MString& command, bool displayEnabled, bool undoEnabled,
                                            MStatus* ReturnStatus) {
    MString result;
    ApiBridge::Report(ReturnStatus, executeCommand(command, result, displayEnabled, undoEnabled));
    return result;
}

MStatus MGlobal::executeCommandOnIdle(const MString& command, bool displayEnabled) {
    Host::Get().idle().Add([command, displayEnabled] { executeCommand(command, displayEnabled, true); });
    return MS::kSuccess;
}

bool MGlobal::isUndoing() {
    return Host::Get().undo().IsUndoing();
}

bool MGlobal::isRedoing() {
    return Host::Get().undo().IsRedoing();
}

int MGlobal::optionVarIntValue(const MString& name, bool* exists) {
    return OptionVar<int>(name, exists, 0);
}

double MGlobal::optionVarDoubleValue(const MString& name, bool* exists) {
    return OptionVar<double>(name, exists, 0.0);
}

MString MGlobal::optionVarStringValue(const MString& name, bool* exists) {
    return ApiBridge::Wrap(OptionVar<std::string>(name, exists, std::string()));
}

bool MGlobal::setOptionVarValue(const MString& name, int value) {
    return SetOptionVar(name, value);
}
bool MGlobal::setOptionVarValue(const MString& name, double value) {
    return SetOptionVar(name, value);
}
bool MGlobal::setOptionVarValue(const MString& name, const MString& value) {
    return SetOptionVar(name, ApiBridge::Text(value));
}

bool MGlobal::optionVarExists(const MString& name) {
    return Host::Get().optionVars().Has(ApiBridge::Text(name));
}

bool MGlobal::removeOptionVar(const MString& name) {
    return Host::Get().optionVars().Remove(ApiBridge::Text(name));
}
