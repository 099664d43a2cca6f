#pragma once

#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include <memory>

/// Collects edits of the dependency graph that are done and undone together. createNode() makes a node at
/// once, but doIt() adds it to the scene. undoIt() takes everything back; the next doIt() repeats it with the
/// same node objects. doIt() does edits that were added after the last doIt().
class MDGModifier {
public:
    MDGModifier();
    virtual ~MDGModifier();
    MDGModifier(const MDGModifier&) = delete;
    MDGModifier& operator=(const MDGModifier&) = delete;

    MObject createNode(const MTypeId& typeId, MStatus* ReturnStatus = nullptr);
    MObject createNode(const MString& type, MStatus* ReturnStatus = nullptr);
    MStatus deleteNode(const MObject& node);
    /// doIt() renames the node; a name that is taken gets a number.
    MStatus renameNode(const MObject& node, const MString& newName);
    MStatus connect(const MPlug& source, const MPlug& dest);
    MStatus disconnect(const MPlug& source, const MPlug& dest);
    MStatus newPlugValueBool(const MPlug& plug, bool value);
    MStatus newPlugValueInt(const MPlug& plug, int value);
    MStatus newPlugValueFloat(const MPlug& plug, float value);
    MStatus newPlugValueDouble(const MPlug& plug, double value);
    MStatus newPlugValueMTime(const MPlug& plug, const MTime& value);
    MStatus newPlugValueString(const MPlug& plug, const MString& value);

    /// On failure, takes back what this call has already done.
    MStatus doIt();
    MStatus undoIt();

protected:
    friend class lightbox::ApiBridge;
    struct State;
    std::unique_ptr<State> state_;
};
