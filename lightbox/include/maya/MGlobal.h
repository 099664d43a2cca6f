#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

/// Services of the whole host: messages, selection, command execution, option variables.
class MGlobal {
public:
    enum MMayaState { kInteractive = 0, kBatch, kLibraryApp, kBaseUIMode };
    enum ListAdjustment { kReplaceList = 0, kXORWithList, kAddToList, kRemoveFromList, kAddToHeadOfList };

    static MMayaState mayaState(MStatus* ReturnStatus = nullptr);
    static MString mayaVersion();
    static int apiVersion();

    static void displayInfo(const MString& theMessage);
    static void displayWarning(const MString& theWarning);
    static void displayError(const MString& theError);

    static MStatus getActiveSelectionList(MSelectionList& dest, bool orderedSelectionIfAvailable = false);
    static MStatus setActiveSelectionList(const MSelectionList& src,
                                          ListAdjustment listAdjustment = kReplaceList);
    static MStatus clearSelectionList();
    static MStatus select(const MObject& object, ListAdjustment listAdjustment = kAddToList);
    static MStatus select(const MDagPath& object, const MObject& component,
                          ListAdjustment listAdjustment = kAddToList);
    static MStatus selectByName(const MString& name, ListAdjustment listAdjustment = kAddToList);
    static MStatus unselect(const MObject& object);
    static MStatus getSelectionListByName(const MString& name, MSelectionList& list);

    /// Executes MEL. With displayEnabled, shows the text and its result. Records nothing for undo if
    /// undoEnabled is false and the call comes from doIt, redoIt or undoIt of an undoable command, which then
    /// has to undo it; otherwise records as if typed. A form with a result fails for a result of another type
    /// and leaves its argument unchanged.
    static MStatus executeCommand(const MString& command, bool displayEnabled = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, MCommandResult& result, bool displayEnabled = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, int& result, bool displayEnabled = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, MIntArray& result, bool displayEnabled = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, double& result, bool displayEnabled = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, MDoubleArray& result, bool displayEnabled = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, MString& result, bool displayEnabled = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, MStringArray& result, bool displayEnabled = false,
                                  bool undoEnabled = false);
    static MString executeCommandStringResult(const MString& command, bool displayEnabled = false,
                                              bool undoEnabled = false, MStatus* ReturnStatus = nullptr);
    /// Executes MEL when the host is next idle.
    static MStatus executeCommandOnIdle(const MString& command, bool displayEnabled = false);

    static bool isUndoing();
    static bool isRedoing();

    static int optionVarIntValue(const MString& name, bool* exists = nullptr);
    static double optionVarDoubleValue(const MString& name, bool* exists = nullptr);
    static MString optionVarStringValue(const MString& name, bool* exists = nullptr);
    /// Returns whether the name is new.
    static bool setOptionVarValue(const MString& name, int value);
    static bool setOptionVarValue(const MString& name, double value);
    static bool setOptionVarValue(const MString& name, const MString& value);
    static bool optionVarExists(const MString& name);
    static bool removeOptionVar(const MString& name);
};
