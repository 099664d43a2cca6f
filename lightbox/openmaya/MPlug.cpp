#include "openmaya/ApiBridge.h"
#include "scene/DataType.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "text/NumberText.h"

#include <maya/MPlug.h>
#include <maya/MTime.h>

#include <algorithm>
#include <cmath>
#include <limits>

using lightbox::ApiBridge;
using lightbox::AttributeKind;
using lightbox::AttributeValue;
using lightbox::Plug;

namespace {

constexpr double DEGREES_PER_RADIAN = 180.0 / M_PI;

MStatus NullPlug() {
    return ApiBridge::Fail(MS::kFailure, "The plug is null");
}

/// Reports whether the plug is null.
Plug ReportedPlug(const MPlug& plug, MStatus* status) {
    Plug found = ApiBridge::GetPlug(plug);
    ApiBridge::Report(status, found ? MS::kSuccess : NullPlug());
    return found;
}

/// The API uses its own units: radians, not the degrees that the user sees.
double ToApi(const Plug& plug, double number) {
    return plug.attribute->Kind() == AttributeKind::Angle ? number / DEGREES_PER_RADIAN : number;
}

double FromApi(const Plug& plug, double number) {
    return plug.attribute->Kind() == AttributeKind::Angle ? number * DEGREES_PER_RADIAN : number;
}

double ReadNumber(const MPlug& plug, MStatus* status) {
    const Plug source = ApiBridge::GetPlug(plug);
    if (!source) {
        ApiBridge::Report(status, NullPlug());
        return 0.0;
    }
    const AttributeValue value = source.Get();
    const double* number = std::get_if<double>(&value);
    ApiBridge::Report(status, number ? MStatus(MS::kSuccess)
                                     : ApiBridge::Fail(MS::kFailure, "The attribute does not hold a number"));
    return number ? ToApi(source, *number) : 0.0;
}

template <typename T>
T ReadInteger(const MPlug& plug, MStatus* status) {
    const double number = std::trunc(ReadNumber(plug, status));
    const double least = std::numeric_limits<T>::min();
    const double most = std::numeric_limits<T>::max();
    return static_cast<T>(number < least ? least : number > most ? most : number);
}

MStatus Store(const MPlug& plug, const AttributeValue& value) {
    const Plug target = ApiBridge::GetPlug(plug);
    if (!target) {
        return NullPlug();
    }
    if (target.Set(value)) {
        return MS::kSuccess;
    }
    const std::string reason = target.WhyNotSettable();
    return reason.empty()
               ? ApiBridge::Fail(MS::kInvalidParameter, "The attribute cannot hold a value of that type")
               : ApiBridge::Fail(MS::kFailure, reason);
}

MStatus StoreNumber(const MPlug& plug, double number) {
    const Plug target = ApiBridge::GetPlug(plug);
    return target ? Store(plug, FromApi(target, number)) : NullPlug();
}

template <typename Edit>
MStatus Change(const MPlug& plug, const Edit& edit) {
    const Plug target = ApiBridge::GetPlug(plug);
    if (!target) {
        return NullPlug();
    }
    const lightbox::PlugState* before = target.node->FindState(*target.attribute, target.element);
    lightbox::PlugState state = before ? *before : lightbox::PlugState();
    edit(state);
    target.node->SetState(*target.attribute, target.element, state);
    return MS::kSuccess;
}

template <typename T>
MStatus Read(T& target, T (MPlug::*read)(MStatus*) const, const MPlug& plug) {
    MStatus status;
    T value = (plug.*read)(&status);
    if (status) {
        target = std::move(value);
    }
    return status;
}

} // namespace

MPlug::MPlug(const MObject& node, const MObject& attribute)
    : node_(node)
    , attribute_(attribute) {}

bool MPlug::isNull(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
    return !ApiBridge::GetPlug(*this);
}

MObject MPlug::node(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, node_.isNull() ? MS::kFailure : MS::kSuccess);
    return node_;
}

MObject MPlug::attribute(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, attribute_.isNull() ? MS::kFailure : MS::kSuccess);
    return attribute_;
}

MString MPlug::name(MStatus* ReturnStatus) const {
    const Plug plug = ReportedPlug(*this, ReturnStatus);
    return plug ? ApiBridge::Wrap(plug.Name()) : MString();
}

MString MPlug::partialName(bool includeNodeName, bool, bool, bool, bool useFullAttributePath,
                           bool useLongNames, MStatus* ReturnStatus) const {
    const Plug plug = ReportedPlug(*this, ReturnStatus);
    if (!plug) {
        return MString();
    }
    return ApiBridge::Wrap(includeNodeName ? plug.Name(useLongNames, useFullAttributePath)
                                           : plug.AttributeName(useLongNames, useFullAttributePath));
}

bool MPlug::isLocked(MStatus* ReturnStatus) const {
    const Plug plug = ReportedPlug(*this, ReturnStatus);
    return plug && plug.IsLocked();
}

MStatus MPlug::setLocked(bool locked) {
    return Change(*this, [locked](lightbox::PlugState& state) { state.locked = locked; });
}

bool MPlug::isKeyable(MStatus* ReturnStatus) const {
    const Plug plug = ReportedPlug(*this, ReturnStatus);
    return plug && plug.IsKeyable();
}

MStatus MPlug::setKeyable(bool keyable) {
    return Change(*this, [keyable](lightbox::PlugState& state) { state.keyable = keyable; });
}

bool MPlug::isChannelBoxFlagSet(MStatus* ReturnStatus) const {
    const Plug plug = ReportedPlug(*this, ReturnStatus);
    return plug && plug.IsInChannelBox();
}

MStatus MPlug::setChannelBox(bool inChannelBox) {
    return Change(*this, [inChannelBox](lightbox::PlugState& state) { state.channelBox = inChannelBox; });
}

bool MPlug::isCompound(MStatus* ReturnStatus) const {
    const Plug plug = ReportedPlug(*this, ReturnStatus);
    return plug && plug.attribute->IsCompound();
}

unsigned int MPlug::numChildren(MStatus* ReturnStatus) const {
    const Plug plug = ReportedPlug(*this, ReturnStatus);
    return plug ? static_cast<unsigned int>(plug.attribute->Children().size()) : 0;
}

MPlug MPlug::child(unsigned int index, MStatus* ReturnStatus) const {
    const Plug plug = ApiBridge::GetPlug(*this);
    const Plug child = plug ? plug.Child(index) : Plug();
    ApiBridge::Report(ReturnStatus, child ? MS::kSuccess : MS::kInvalidParameter);
    return child ? ApiBridge::Wrap(child) : MPlug();
}

MPlug MPlug::parent(MStatus* ReturnStatus) const {
    const Plug plug = ApiBridge::GetPlug(*this);
    const Plug parent = plug ? plug.Parent() : Plug();
    ApiBridge::Report(ReturnStatus, parent ? MS::kSuccess : MS::kFailure);
    return parent ? ApiBridge::Wrap(parent) : MPlug();
}

bool MPlug::isArray(MStatus* ReturnStatus) const {
    const Plug plug = ReportedPlug(*this, ReturnStatus);
    return plug && plug.IsArray();
}

bool MPlug::isElement(MStatus* ReturnStatus) const {
    const Plug plug = ReportedPlug(*this, ReturnStatus);
    return plug && plug.attribute->multi && plug.element >= 0;
}

unsigned int MPlug::numElements(MStatus* ReturnStatus) const {
    const Plug plug = ApiBridge::GetPlug(*this);
    ApiBridge::Report(ReturnStatus, plug && plug.IsArray() ? MS::kSuccess : MS::kFailure);
    return plug ? static_cast<unsigned int>(plug.Elements().size()) : 0;
}

unsigned int MPlug::logicalIndex(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, element_ >= 0 ? MS::kSuccess : MS::kFailure);
    return element_ >= 0 ? static_cast<unsigned int>(element_) : 0;
}

MPlug MPlug::elementByLogicalIndex(unsigned int logicalIndex, MStatus* ReturnStatus) const {
    const Plug plug = ApiBridge::GetPlug(*this);
    const bool isIndex = logicalIndex <= static_cast<unsigned int>(std::numeric_limits<int>::max());
    const Plug element = plug && isIndex ? plug.Element(static_cast<int>(logicalIndex)) : Plug();
    ApiBridge::Report(ReturnStatus, element ? MS::kSuccess : MS::kFailure);
    return element ? ApiBridge::Wrap(element) : MPlug();
}

bool MPlug::isConnected(MStatus* ReturnStatus) const {
    return isSource(ReturnStatus) || isDestination(ReturnStatus);
}

bool MPlug::isSource(MStatus* ReturnStatus) const {
    const Plug plug = ReportedPlug(*this, ReturnStatus);
    return plug && plug.node->InScene() && !plug.node->InScene()->connections().DestinationsOf(plug).empty();
}

bool MPlug::isDestination(MStatus* ReturnStatus) const {
    return !source(ReturnStatus).node_.isNull();
}

MPlug MPlug::source(MStatus* ReturnStatus) const {
    const Plug plug = ReportedPlug(*this, ReturnStatus);
    const Plug source =
        plug && plug.node->InScene() ? plug.node->InScene()->connections().SourceOf(plug) : Plug();
    return source ? ApiBridge::Wrap(source) : MPlug();
}

MObject MPlug::asMObject(MStatus* ReturnStatus) const {
    const Plug plug = ApiBridge::GetPlug(*this);
    const std::shared_ptr<lightbox::DataValue> data = plug ? plug.Data() : nullptr;
    ApiBridge::Report(ReturnStatus,
                      data ? MStatus(MS::kSuccess)
                           : ApiBridge::Fail(MS::kFailure, "The attribute does not hold a data value"));
    return ApiBridge::Wrap(data);
}

double MPlug::asDouble(MStatus* ReturnStatus) const {
    return ReadNumber(*this, ReturnStatus);
}

float MPlug::asFloat(MStatus* ReturnStatus) const {
    constexpr double most = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(ReadNumber(*this, ReturnStatus), -most, most));
}

int MPlug::asInt(MStatus* ReturnStatus) const {
    return ReadInteger<int>(*this, ReturnStatus);
}

short MPlug::asShort(MStatus* ReturnStatus) const {
    return ReadInteger<short>(*this, ReturnStatus);
}

bool MPlug::asBool(MStatus* ReturnStatus) const {
    return ReadNumber(*this, ReturnStatus) != 0.0;
}

MTime MPlug::asMTime(MStatus* ReturnStatus) const {
    return MTime(ReadNumber(*this, ReturnStatus), MTime::uiUnit());
}

MString MPlug::asString(MStatus* ReturnStatus) const {
    const Plug plug = ApiBridge::GetPlug(*this);
    const bool isText = plug && plug.attribute->Kind() == AttributeKind::String;
    ApiBridge::Report(ReturnStatus,
                      isText ? MStatus(MS::kSuccess)
                             : ApiBridge::Fail(MS::kFailure, "The attribute does not hold a text"));
    return isText ? ApiBridge::Wrap(plug.Text()) : MString();
}

MStatus MPlug::getValue(MObject& value) const {
    return Read(value, &MPlug::asMObject, *this);
}
MStatus MPlug::getValue(double& value) const {
    return Read(value, &MPlug::asDouble, *this);
}
MStatus MPlug::getValue(float& value) const {
    return Read(value, &MPlug::asFloat, *this);
}
MStatus MPlug::getValue(int& value) const {
    return Read(value, &MPlug::asInt, *this);
}
MStatus MPlug::getValue(short& value) const {
    return Read(value, &MPlug::asShort, *this);
}
MStatus MPlug::getValue(bool& value) const {
    return Read(value, &MPlug::asBool, *this);
}
MStatus MPlug::getValue(MTime& value) const {
    return Read(value, &MPlug::asMTime, *this);
}
MStatus MPlug::getValue(MString& value) const {
    return Read(value, &MPlug::asString, *this);
}

MStatus MPlug::setMObject(const MObject& value) {
    const std::shared_ptr<lightbox::DataValue> data = ApiBridge::GetData(value);
    return data ? Store(*this, data)
                : ApiBridge::Fail(MS::kInvalidParameter, "The object is not a data value");
}

MStatus MPlug::setMPxData(MPxData* value) {
    const Plug plug = ApiBridge::GetPlug(*this);
    if (!plug || !value) {
        return plug ? MStatus(MS::kInvalidParameter) : NullPlug();
    }
    const auto type = lightbox::Host::Get().scene().types().FindDataType(value->typeId().id());
    if (!type || plug.attribute->Kind() != AttributeKind::PluginData ||
        plug.attribute->dataTypeId != type->id) {
        return ApiBridge::Fail(MS::kInvalidParameter, "The value is not of the attribute's data type");
    }
    const std::string reason = plug.WhyNotSettable();
    if (!reason.empty()) {
        return ApiBridge::Fail(MS::kFailure, reason);
    }
    plug.Store(std::make_shared<lightbox::DataValue>(type, std::unique_ptr<MPxData>(value)));
    return MS::kSuccess;
}

MStatus MPlug::setDouble(double value) {
    return StoreNumber(*this, value);
}
MStatus MPlug::setFloat(float value) {
    return StoreNumber(*this, static_cast<double>(value));
}
MStatus MPlug::setInt(int value) {
    return StoreNumber(*this, value);
}
MStatus MPlug::setShort(short value) {
    return StoreNumber(*this, value);
}
MStatus MPlug::setBool(bool value) {
    return StoreNumber(*this, value ? 1.0 : 0.0);
}
MStatus MPlug::setMTime(const MTime& value) {
    return StoreNumber(*this, value.as(MTime::uiUnit()));
}
MStatus MPlug::setString(const MString& value) {
    return Store(*this, ApiBridge::Text(value));
}

bool MPlug::operator==(const MPlug& other) const {
    return node_ == other.node_ && attribute_ == other.attribute_ && element_ == other.element_;
}
