#pragma once

#include <maya/MFnBase.h>
#include <maya/MPlug.h>
#include <maya/MString.h>
#include <maya/MTypeId.h>

/// Function set of all nodes. Its changes are not recorded for undo; use a modifier or a command for that.
class MFnDependencyNode : public MFnBase {
public:
    MFnDependencyNode();
    explicit MFnDependencyNode(const MObject& object, MStatus* ReturnStatus = nullptr);
    MFn::Type type() const override;

    MObject create(const MTypeId& typeId, MStatus* ReturnStatus = nullptr);
    MObject create(const MTypeId& typeId, const MString& name, MStatus* ReturnStatus = nullptr);
    MObject create(const MString& type, MStatus* ReturnStatus = nullptr);
    MObject create(const MString& type, const MString& name, MStatus* ReturnStatus = nullptr);

    MTypeId typeId(MStatus* ReturnStatus = nullptr) const;
    MString typeName(MStatus* ReturnStatus = nullptr) const;
    MString name(MStatus* ReturnStatus = nullptr) const;
    /// Returns the new name; a name that is taken gets a number.
    MString setName(const MString& name, bool createNamespace = false, MStatus* ReturnStatus = nullptr);
    bool hasUniqueName(MStatus* ReturnStatus = nullptr) const;
    /// The plug-in's object of the node, or null for a node type of the host. The node owns it.
    MPxNode* userNode(MStatus* ReturnStatus = nullptr) const;

    unsigned int attributeCount(MStatus* ReturnStatus = nullptr) const;
    MObject attribute(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    /// Finds an attribute by long or short name; returns a null object when the node has none.
    MObject attribute(const MString& attrName, MStatus* ReturnStatus = nullptr) const;
    bool hasAttribute(const MString& name, MStatus* ReturnStatus = nullptr) const;
    MStatus addAttribute(const MObject& attr);
    MStatus removeAttribute(const MObject& attr);

    MPlug findPlug(const MString& attrName, MStatus* ReturnStatus = nullptr) const;
    MPlug findPlug(const MString& attrName, bool wantNetworkedPlug, MStatus* ReturnStatus = nullptr) const;
    MPlug findPlug(const MObject& attr, MStatus* ReturnStatus = nullptr) const;
    MPlug findPlug(const MObject& attr, bool wantNetworkedPlug, MStatus* ReturnStatus = nullptr) const;

    bool isFromReferencedFile(MStatus* ReturnStatus = nullptr) const;
    bool isDefaultNode(MStatus* ReturnStatus = nullptr) const;
    bool isLocked(MStatus* ReturnStatus = nullptr) const;
    MStatus setLocked(bool locked);
};
