#include "openmaya/ApiBridge.h"

#include <maya/MFnAttribute.h>

using lightbox::ApiBridge;
using lightbox::Attribute;

namespace {

bool Flag(const MObject& object, bool Attribute::*flag, MStatus* status) {
    const auto attribute = ApiBridge::GetAttribute(object);
    ApiBridge::Report(status, attribute ? MS::kSuccess : MS::kFailure);
    return attribute && (*attribute).*flag;
}

MStatus SetFlag(const MObject& object, bool Attribute::*flag, bool state) {
    const auto attribute = ApiBridge::GetAttribute(object);
    if (!attribute) {
        return MS::kFailure;
    }
    (*attribute).*flag = state;
    return MS::kSuccess;
}

} // namespace

MFnAttribute::MFnAttribute() = default;

MFnAttribute::MFnAttribute(const MObject& object, MStatus* ReturnStatus) {
    ApiBridge::Report(ReturnStatus, MFnBase::setObject(object));
}

MFn::Type MFnAttribute::type() const {
    return MFn::kAttribute;
}

MString MFnAttribute::name(MStatus* ReturnStatus) const {
    const auto attribute = ApiBridge::GetAttribute(object_);
    ApiBridge::Report(ReturnStatus, attribute ? MS::kSuccess : MS::kFailure);
    return attribute ? ApiBridge::Wrap(attribute->LongName()) : MString();
}

MString MFnAttribute::shortName(MStatus* ReturnStatus) const {
    const auto attribute = ApiBridge::GetAttribute(object_);
    ApiBridge::Report(ReturnStatus, attribute ? MS::kSuccess : MS::kFailure);
    return attribute ? ApiBridge::Wrap(attribute->ShortName()) : MString();
}

bool MFnAttribute::isReadable(MStatus* status) const {
    return Flag(object_, &Attribute::readable, status);
}
bool MFnAttribute::isWritable(MStatus* status) const {
    return Flag(object_, &Attribute::writable, status);
}
bool MFnAttribute::isConnectable(MStatus* status) const {
    return Flag(object_, &Attribute::connectable, status);
}
bool MFnAttribute::isStorable(MStatus* status) const {
    return Flag(object_, &Attribute::storable, status);
}
bool MFnAttribute::isKeyable(MStatus* status) const {
    return Flag(object_, &Attribute::keyable, status);
}
bool MFnAttribute::isHidden(MStatus* status) const {
    return Flag(object_, &Attribute::hidden, status);
}
bool MFnAttribute::isChannelBoxFlagSet(MStatus* status) const {
    return Flag(object_, &Attribute::channelBox, status);
}
bool MFnAttribute::isArray(MStatus* status) const {
    return Flag(object_, &Attribute::multi, status);
}
bool MFnAttribute::isDynamic(MStatus* status) const {
    return Flag(object_, &Attribute::dynamic, status);
}

MObject MFnAttribute::parent(MStatus* ReturnStatus) const {
    const auto attribute = ApiBridge::GetAttribute(object_);
    const bool hasParent = attribute && attribute->Parent();
    ApiBridge::Report(ReturnStatus, hasParent ? MS::kSuccess : MS::kNotFound);
    return hasParent ? ApiBridge::Wrap(attribute->Parent()->shared_from_this()) : MObject();
}

MStatus MFnAttribute::setReadable(bool state) {
    return SetFlag(object_, &Attribute::readable, state);
}
MStatus MFnAttribute::setWritable(bool state) {
    return SetFlag(object_, &Attribute::writable, state);
}
MStatus MFnAttribute::setConnectable(bool state) {
    return SetFlag(object_, &Attribute::connectable, state);
}
MStatus MFnAttribute::setStorable(bool state) {
    return SetFlag(object_, &Attribute::storable, state);
}
MStatus MFnAttribute::setKeyable(bool state) {
    return SetFlag(object_, &Attribute::keyable, state);
}
MStatus MFnAttribute::setHidden(bool state) {
    return SetFlag(object_, &Attribute::hidden, state);
}
MStatus MFnAttribute::setChannelBox(bool state) {
    return SetFlag(object_, &Attribute::channelBox, state);
}
MStatus MFnAttribute::setArray(bool state) {
    return SetFlag(object_, &Attribute::multi, state);
}

MStatus MFnAttribute::setNiceNameOverride(const MString& localizedName) {
    const auto attribute = ApiBridge::GetAttribute(object_);
    if (!attribute) {
        return MS::kFailure;
    }
    attribute->niceName = ApiBridge::Text(localizedName);
    return MS::kSuccess;
}
