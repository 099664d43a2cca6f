#include "openmaya/ApiBridge.h"

#include "mel/ArgumentTokens.h"
#include "mel/Value.h"
#include "openmaya/PluginHandle.h"
#include "scene/Host.h"
#include "text/NumberText.h"

#include <maya/MAngle.h>
#include <maya/MDistance.h>

#include <string_view>

namespace lightbox {

namespace {

/// The names of a unit in MEL.
template <class Unit>
struct UnitNames {
    std::string_view shortName;
    std::string_view longName;
    Unit unit;
};

constexpr UnitNames<MAngle::Unit> ANGLE_UNITS[] = {{"deg", "degree", MAngle::kDegrees},
                                                   {"rad", "radian", MAngle::kRadians},
                                                   {"min", "minute", MAngle::kAngMinutes},
                                                   {"sec", "second", MAngle::kAngSeconds}};
constexpr UnitNames<MDistance::Unit> DISTANCE_UNITS[] = {{"mm", "millimeter", MDistance::kMillimeters},
                                                         {"cm", "centimeter", MDistance::kCentimeters},
                                                         {"m", "meter", MDistance::kMeters},
                                                         {"km", "kilometer", MDistance::kKilometers},
                                                         {"in", "inch", MDistance::kInches},
                                                         {"ft", "foot", MDistance::kFeet},
                                                         {"yd", "yard", MDistance::kYards},
                                                         {"mi", "mile", MDistance::kMiles}};

template <class Measure, class Unit, std::size_t Count>
bool ReadMeasure(const mel::Value& value, const UnitNames<Unit> (&units)[Count], Measure& result) {
    double number = 0.0;
    if (mel::ReadDouble(value, number)) {
        result = Measure(number, Measure::uiUnit());
        return true;
    }
    std::string_view rest;
    if (!value.IsString() || !ReadNumber(value.Text(), number, &rest)) {
        return false;
    }
    for (const UnitNames<Unit>& names : units) {
        if (rest == names.shortName || rest == names.longName) {
            result = Measure(number, names.unit);
            return true;
        }
    }
    return false;
}

} // namespace

MObject ApiBridge::Wrap(std::shared_ptr<Object> object) {
    MObject handle;
    handle.handle_ = std::move(object);
    return handle;
}

MDagPath ApiBridge::Wrap(DagNode& node) {
    MDagPath path;
    path.node_ = Wrap(node.Shared());
    return path;
}

MPlug ApiBridge::Wrap(const Plug& plug) {
    MPlug wrapped;
    wrapped.node_ = Wrap(plug.node);
    wrapped.attribute_ = Wrap(plug.attribute);
    wrapped.element_ = plug.element;
    return wrapped;
}

MString ApiBridge::Wrap(std::string text) {
    MString string;
    string.text_ = std::move(text);
    return string;
}

bool ApiBridge::ReadString(const mel::Value& value, MString& result) {
    result = Wrap(value.IsString() ? value.Text() : value.AsString());
    return true;
}

bool ApiBridge::ReadAngle(const mel::Value& value, MAngle& result) {
    return ReadMeasure(value, ANGLE_UNITS, result);
}

bool ApiBridge::ReadDistance(const mel::Value& value, MDistance& result) {
    return ReadMeasure(value, DISTANCE_UNITS, result);
}

UserInterface* ApiBridge::Ui() {
    Host* host = Host::Current();
    return host ? host->ui() : nullptr;
}

std::shared_ptr<Node> ApiBridge::GetNode(const MObject& object) {
    return std::dynamic_pointer_cast<Node>(object.handle_);
}

std::shared_ptr<DagNode> ApiBridge::GetDagNode(const MObject& object) {
    return std::dynamic_pointer_cast<DagNode>(object.handle_);
}

std::shared_ptr<Attribute> ApiBridge::GetAttribute(const MObject& object) {
    return std::dynamic_pointer_cast<Attribute>(object.handle_);
}

std::shared_ptr<DataValue> ApiBridge::GetData(const MObject& object) {
    return std::dynamic_pointer_cast<DataValue>(object.handle_);
}

Plug ApiBridge::GetPlug(const MPlug& plug) {
    return Plug(GetNode(plug.node_), GetAttribute(plug.attribute_), plug.element_);
}

MStatus ApiBridge::Fail(MStatus::MStatusCode code, const std::string& text) {
    MStatus status(code);
    status.text_ = text;
    return status;
}

MObject PluginHandle::MakeObject(Plugin& plugin) {
    return ApiBridge::Wrap(std::make_shared<PluginHandle>(plugin));
}

} // namespace lightbox
