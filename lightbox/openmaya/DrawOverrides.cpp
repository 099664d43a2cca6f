#include "openmaya/DrawOverrides.h"

#include "openmaya/ApiBridge.h"
#include "scene/DagNode.h"

#include <QString>
#include <QStringList>

namespace lightbox {

DrawOverrides& DrawOverrides::Get() {
    static DrawOverrides overrides;
    return overrides;
}

bool DrawOverrides::Register(const std::string& classification, const std::string& registrant,
                             MHWRender::MDrawRegistry::DrawOverrideCreator creator) {
    return !classification.empty() && !registrant.empty() && creator &&
           registrations_.try_emplace(classification, Registration{registrant, creator}).second;
}

bool DrawOverrides::Deregister(const std::string& classification, const std::string& registrant) {
    const auto found = registrations_.find(classification);
    if (found == registrations_.end() || found->second.registrant != registrant) {
        return false;
    }
    for (auto& view : instances_) {
        auto& ofView = view.second;
        for (auto instance = ofView.begin(); instance != ofView.end();) {
            instance =
                instance->second.registrant == registrant ? ofView.erase(instance) : std::next(instance);
        }
    }
    registrations_.erase(found);
    return true;
}

std::vector<std::string> DrawOverrides::Registrants() const {
    std::vector<std::string> registrants;
    for (const auto& registration : registrations_) {
        registrants.push_back(registration.second.registrant);
    }
    return registrants;
}

void DrawOverrides::DeregisterAll(const std::string& registrant) {
    const std::map<std::string, Registration> registrations = registrations_;
    for (const auto& registration : registrations) {
        if (registration.second.registrant == registrant) {
            Deregister(registration.first, registrant);
        }
    }
}

const DrawOverrides::Registration* DrawOverrides::Find(const NodeType& type) const {
    if (type.classification.empty()) {
        return nullptr;
    }
    // A type may have several classifications, separated by colons.
    for (const QString& one : QString::fromStdString(type.classification).split(QLatin1Char(':'))) {
        const auto found = registrations_.find(one.toStdString());
        if (found != registrations_.end()) {
            return &found->second;
        }
    }
    return nullptr;
}

DrawOverrides::Instance* DrawOverrides::For(const View& view, DagNode& node) {
    auto& ofView = instances_[&view];
    const auto known = ofView.find(&node);
    if (known != ofView.end()) {
        return &known->second;
    }
    const Registration* registration = Find(node.Type());
    std::unique_ptr<MHWRender::MPxDrawOverride> drawOverride(
        registration ? registration->creator(ApiBridge::Wrap(node.Shared())) : nullptr);
    if (!drawOverride) {
        return nullptr;
    }
    return &ofView
                .emplace(&node,
                         Instance{node.Shared(), registration->registrant, std::move(drawOverride), nullptr})
                .first->second;
}

void DrawOverrides::ForgetGoneNodes(const View& view) {
    auto& ofView = instances_[&view];
    for (auto instance = ofView.begin(); instance != ofView.end();) {
        const std::shared_ptr<Node> node = instance->second.node.lock();
        instance = node && node->InScene() ? std::next(instance) : ofView.erase(instance);
    }
}

} // namespace lightbox
