#pragma once

#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

/// An attribute of one node. Setting a value fails for a locked or connected plug and for a value of another
/// type; numbers are clamped to the attribute's range. Changes are not recorded for undo.
class MPlug {
public:
    MPlug() = default;
    MPlug(const MObject& node, const MObject& attribute);

    bool isNull(MStatus* ReturnStatus = nullptr) const;
    MObject node(MStatus* ReturnStatus = nullptr) const;
    MObject attribute(MStatus* ReturnStatus = nullptr) const;
    /// "node.attribute", with long names.
    MString name(MStatus* ReturnStatus = nullptr) const;
    /// The attribute's short or long name, after the node's name on request.
    MString partialName(bool includeNodeName = false, bool includeNonMandatoryIndices = false,
                        bool includeInstancedIndices = false, bool useAlias = false,
                        bool useFullAttributePath = false, bool useLongNames = false,
                        MStatus* ReturnStatus = nullptr) const;

    bool isLocked(MStatus* ReturnStatus = nullptr) const;
    MStatus setLocked(bool locked);
    bool isKeyable(MStatus* ReturnStatus = nullptr) const;
    MStatus setKeyable(bool keyable);
    bool isChannelBoxFlagSet(MStatus* ReturnStatus = nullptr) const;
    MStatus setChannelBox(bool inChannelBox);

    bool isCompound(MStatus* ReturnStatus = nullptr) const;
    unsigned int numChildren(MStatus* ReturnStatus = nullptr) const;
    MPlug child(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    MPlug parent(MStatus* ReturnStatus = nullptr) const;
    bool isArray(MStatus* ReturnStatus = nullptr) const;
    bool isElement(MStatus* ReturnStatus = nullptr) const;
    unsigned int numElements(MStatus* ReturnStatus = nullptr) const;
    unsigned int logicalIndex(MStatus* ReturnStatus = nullptr) const;
    MPlug elementByLogicalIndex(unsigned int logicalIndex, MStatus* ReturnStatus = nullptr) const;

    bool isConnected(MStatus* ReturnStatus = nullptr) const;
    bool isSource(MStatus* ReturnStatus = nullptr) const;
    bool isDestination(MStatus* ReturnStatus = nullptr) const;
    /// The plug that drives this one, or a null plug.
    MPlug source(MStatus* ReturnStatus = nullptr) const;

    MObject asMObject(MStatus* ReturnStatus = nullptr) const;
    double asDouble(MStatus* ReturnStatus = nullptr) const;
    float asFloat(MStatus* ReturnStatus = nullptr) const;
    int asInt(MStatus* ReturnStatus = nullptr) const;
    short asShort(MStatus* ReturnStatus = nullptr) const;
    bool asBool(MStatus* ReturnStatus = nullptr) const;
    MTime asMTime(MStatus* ReturnStatus = nullptr) const;
    MString asString(MStatus* ReturnStatus = nullptr) const;

    MStatus getValue(MObject& value) const;
    MStatus getValue(double& value) const;
    MStatus getValue(float& value) const;
    MStatus getValue(int& value) const;
    MStatus getValue(short& value) const;
    MStatus getValue(bool& value) const;
    MStatus getValue(MTime& value) const;
    MStatus getValue(MString& value) const;

    MStatus setMObject(const MObject& value);
    /// On success the plug owns the value, which must be of the attribute's data type.
    MStatus setMPxData(MPxData* value);
    MStatus setDouble(double value);
    MStatus setFloat(float value);
    MStatus setInt(int value);
    MStatus setShort(short value);
    MStatus setBool(bool value);
    MStatus setMTime(const MTime& value);
    MStatus setString(const MString& value);

    MStatus setValue(const MObject& value) { return setMObject(value); }
    MStatus setValue(double value) { return setDouble(value); }
    MStatus setValue(float value) { return setFloat(value); }
    MStatus setValue(int value) { return setInt(value); }
    MStatus setValue(short value) { return setShort(value); }
    MStatus setValue(bool value) { return setBool(value); }
    MStatus setValue(const MTime& value) { return setMTime(value); }
    MStatus setValue(const MString& value) { return setString(value); }
    MStatus setValue(const char* value) { return setString(MString(value)); }

    bool operator==(const MPlug& other) const;
    bool operator!=(const MPlug& other) const { return !(*this == other); }

private:
    friend class lightbox::ApiBridge;
    MObject node_;
    MObject attribute_;
    int element_ = -1;
};
