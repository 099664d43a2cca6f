#include "SceneDump.h"

#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/Timeline.h"

#include <algorithm>
#include <iomanip>
#include <sstream>
#include <vector>

using namespace lightbox;

namespace {

void DumpValue(std::ostream& out, const AttributeValue& value) {
    if (const auto* number = std::get_if<double>(&value)) {
        out << *number;
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        out << '"' << *text << '"';
    } else if (const auto* numbers = std::get_if<std::vector<double>>(&value)) {
        for (const double number : *numbers) {
            out << number << ' ';
        }
    } else if (const auto* texts = std::get_if<std::vector<std::string>>(&value)) {
        for (const std::string& text : *texts) {
            out << '"' << text << "\" ";
        }
    } else if (const auto* data = std::get_if<std::shared_ptr<DataValue>>(&value)) {
        out << data->get();
    }
}

void DumpPlug(std::ostream& out, const Plug& plug) {
    const PlugState* state = plug.node->FindState(*plug.attribute, plug.element);
    if (state && !state->IsDefault()) {
        out << "  " << plug.AttributeName(true) << " set " << state->isSet << " locked " << state->locked
            << " keyable " << state->keyable.value_or(false) << state->keyable.has_value() << " box "
            << state->channelBox.value_or(false) << state->channelBox.has_value() << " = ";
        DumpValue(out, state->value);
        out << '\n';
    }
    for (std::size_t i = 0; i < plug.attribute->Children().size(); ++i) {
        DumpPlug(out, plug.Child(i));
    }
    for (const Plug& element : plug.Elements()) {
        DumpPlug(out, element);
    }
}

void DumpNode(std::ostream& out, Node& node) {
    out << node.Serial() << ' ' << node.Type().Name() << ' ' << node.Name() << ' ' << node.Uuid()
        << " locked " << node.locked << " shared " << node.isShared;
    if (const auto* dag = dynamic_cast<const DagNode*>(&node)) {
        out << ' ' << dag->FullPath() << " at " << dag->IndexInParent();
    }
    out << '\n';
    for (const auto& attribute : node.DynamicAttributes()) {
        out << "  dynamic " << attribute->LongName() << '\n';
    }
    for (const auto& attribute : node.Attributes()) {
        DumpPlug(out, Plug(node.Shared(), attribute));
    }
}

} // namespace

std::string DumpScene(Host& host) {
    std::ostringstream out;
    out << std::setprecision(17);
    for (const auto& node : host.scene().Nodes()) {
        DumpNode(out, *node);
    }
    std::vector<std::string> connections;
    for (const Connection& connection : host.scene().connections().All()) {
        connections.push_back(connection.source.Name() + " -> " + connection.destination.Name());
    }
    // The order in which connections were made has no meaning.
    std::sort(connections.begin(), connections.end());
    for (const std::string& connection : connections) {
        out << connection << '\n';
    }
    for (const auto& node : host.scene().selection().Get()) {
        out << "selected " << Scene::ShownName(*node) << '\n';
    }
    for (const std::string& name : host.scene().Namespaces()) {
        out << "namespace " << name << '\n';
    }
    out << "in namespace " << host.scene().currentNamespace << '\n';
    const Timeline& time = host.time();
    out << "time " << time.CurrentTime() << " unit " << time.Unit() << " playback " << time.MinTime() << ' '
        << time.MaxTime() << " animation " << time.AnimationStart() << ' ' << time.AnimationEnd() << " speed "
        << time.PlaybackSpeed() << " by " << time.PlaybackBy() << '\n';
    return out.str();
}
