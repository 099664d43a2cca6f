// The part of Scene that handles names: finds nodes and plugs by name, and keeps names unique.

#include "scene/Scene.h"
#include "scene/SceneError.h"

#include <algorithm>
#include <cctype>

namespace lightbox {

namespace {

std::vector<std::string> SplitPath(const std::string& path) {
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find('|', begin), path.size());
        parts.push_back(path.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

/// A name without the root namespace: ":a" becomes "a".
std::string WithoutRoot(const std::string& name) {
    return !name.empty() && name[0] == ':' ? name.substr(1) : name;
}

/// Whether a pattern with * and ? matches a name. Neither matches a colon.
bool Matches(const char* pattern, const char* name) {
    for (; *pattern; ++pattern, ++name) {
        if (*pattern == '*') {
            for (; *pattern == '*'; ++pattern) {
            }
            for (const char* rest = name;; ++rest) {
                if (Matches(pattern, rest)) {
                    return true;
                }
                if (!*rest || *rest == ':') {
                    return false;
                }
            }
        }
        if (*pattern == '?' ? (!*name || *name == ':') : *pattern != *name) {
            return false;
        }
    }
    return !*name;
}

/// Whether a path leads to the node. `equal` compares a part of the path with a name.
template <typename Equal>
bool EndsPath(const Node& node, const std::vector<std::string>& parts, const Equal& equal) {
    const auto* dag = dynamic_cast<const DagNode*>(&node);
    if (!dag) {
        return parts.size() == 1 && equal(WithoutRoot(parts.front()), node.Name());
    }
    for (auto part = parts.rbegin(); part != parts.rend(); ++part) {
        const bool isRoot = part + 1 == parts.rend() && part->empty() && parts.size() > 1;
        if (isRoot) {
            return !dag || dag->IsWorld();
        }
        if (!dag || dag->IsWorld() || !equal(WithoutRoot(*part), dag->Name())) {
            return false;
        }
        dag = dag->Parent();
    }
    return true;
}

/// The name with illegal characters replaced by underscores; empty when nothing is left.
std::string LegalName(const std::string& wanted) {
    std::string name;
    for (const char c : wanted) {
        const auto byte = static_cast<unsigned char>(c);
        const bool startsPart = name.empty() || name.back() == ':';
        if (c == ':') {
            if (!startsPart) {
                name += c;
            }
        } else if (byte < 0x80 && (std::isalpha(byte) || c == '_')) {
            name += c;
        } else if (byte < 0x80 && std::isdigit(byte)) {
            name += startsPart ? std::string("_") + c : std::string(1, c);
        } else if ((byte & 0xc0) != 0x80) { // UTF-8 continuation bytes add nothing
            name += '_';
        }
    }
    while (!name.empty() && name.back() == ':') {
        name.pop_back();
    }
    return name;
}

/// Cuts the number off the end of a name and returns it; -1 when there is none.
long long TakeNumber(std::string& name) {
    std::size_t end = name.size();
    // Longer numbers do not count as a counter.
    while (end > 0 && name.size() - end < 9 && std::isdigit(static_cast<unsigned char>(name[end - 1]))) {
        --end;
    }
    if (end == name.size()) {
        return -1;
    }
    const long long number = std::stoll(name.substr(end));
    name.resize(end);
    return number;
}

/// A part of a plug path: attribute name and index.
struct AttributePart {
    std::string name;
    int index = -1;
    bool isValid = true;
};

AttributePart ParsePart(const std::string& text) {
    AttributePart part;
    const std::size_t bracket = text.find('[');
    part.name = text.substr(0, bracket);
    if (bracket == std::string::npos) {
        return part;
    }
    const std::string digits = text.substr(bracket + 1, text.size() - bracket - 2);
    part.isValid =
        text.back() == ']' && !digits.empty() && digits.size() < 10 &&
        std::all_of(digits.begin(), digits.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
    part.index = part.isValid ? std::stoi(digits) : -1;
    return part;
}

} // namespace

bool Scene::MatchesName(const std::string& pattern, const std::string& name) {
    return Matches(pattern.c_str(), name.c_str());
}

std::string Scene::NamespaceOf(const std::string& name) {
    const std::size_t colon = name.rfind(':');
    return colon == std::string::npos ? std::string() : name.substr(0, colon);
}

std::string Scene::WithoutNamespace(const std::string& name) {
    const std::size_t colon = name.rfind(':');
    return colon == std::string::npos ? name : name.substr(colon + 1);
}

std::vector<std::shared_ptr<Node>> Scene::FindAll(const std::string& path) const {
    const std::vector<std::string> parts = SplitPath(path);
    const auto found = byName_.find(WithoutRoot(parts.back()));
    std::vector<std::shared_ptr<Node>> nodes;
    if (found != byName_.end()) {
        for (Node* node : found->second) {
            if (EndsPath(*node, parts, std::equal_to<std::string>())) {
                nodes.push_back(node->Shared());
            }
        }
    }
    return nodes;
}

std::shared_ptr<Node> Scene::Find(const std::string& path) const {
    const std::vector<std::shared_ptr<Node>> nodes = FindAll(path);
    return nodes.size() == 1 ? nodes.front() : nullptr;
}

std::vector<std::shared_ptr<Node>> Scene::Matching(const std::string& pattern) const {
    if (pattern.find_first_of("*?") == std::string::npos) {
        return FindAll(pattern);
    }
    const std::vector<std::string> parts = SplitPath(pattern);
    std::vector<std::shared_ptr<Node>> nodes;
    for (const auto& entry : nodes_) {
        if (EndsPath(*entry.second, parts, [](const std::string& part, const std::string& name) {
                return MatchesName(part, name);
            })) {
            nodes.push_back(entry.second);
        }
    }
    return nodes;
}

Plug Scene::FindPlug(const std::string& text) const {
    const std::size_t dot = text.find('.');
    if (dot == std::string::npos || dot == 0) {
        throw SceneError("No attribute was specified: " + text);
    }
    const std::string nodeName = text.substr(0, dot);
    const std::vector<std::shared_ptr<Node>> nodes = FindAll(nodeName);
    if (nodes.empty()) {
        throw SceneError("No object matches name: " + text);
    }
    if (nodes.size() > 1) {
        throw SceneError("More than one object matches name: " + nodeName);
    }
    const std::shared_ptr<Node>& node = nodes.front();
    Plug plug;
    for (std::size_t begin = dot + 1; begin <= text.size();) {
        const std::size_t end = std::min(text.find('.', begin), text.size());
        const AttributePart part = ParsePart(text.substr(begin, end - begin));
        const std::shared_ptr<Attribute> attribute = part.isValid ? node->FindAttribute(part.name) : nullptr;
        const bool belongs = attribute && (!plug || attribute->Parent() == plug.attribute.get());
        if (!belongs || (part.index >= 0 && !attribute->multi)) {
            throw SceneError("No object matches name: " + text);
        }
        plug = Plug(node, attribute, part.index >= 0 ? part.index : plug.element);
        begin = end + 1;
    }
    return plug;
}

bool Scene::HasPlug(const std::string& text) const {
    try {
        return static_cast<bool>(FindPlug(text));
    } catch (const SceneError&) {
        return false;
    }
}

std::string Scene::ShownName(const Node& node) {
    const auto* dag = dynamic_cast<const DagNode*>(&node);
    return dag ? dag->PartialPath() : node.Name();
}

std::string Scene::FreeName(const std::string& wanted, const Node& node, const DagNode* parent) const {
    std::string name = LegalName(wanted);
    if (name.empty()) {
        return FreeDefaultName(node.Type());
    }
    if (!currentNamespace.empty() && wanted[0] != ':' && NamespaceOf(name).empty() && !node.InScene() &&
        node.Name().empty()) {
        name = currentNamespace + ":" + name;
    }
    const bool isDag = node.Type().IsDag();
    const auto isFree = [&](const std::string& candidate) {
        const auto found = byName_.find(candidate);
        return found == byName_.end() ||
               std::all_of(found->second.begin(), found->second.end(), [&](const Node* other) {
                   const auto* otherDag = dynamic_cast<const DagNode*>(other);
                   return other == &node || (isDag && otherDag && otherDag->Parent() != parent);
               });
    };
    const bool wantsNumber = wanted.back() == '#';
    if (wantsNumber) {
        name.pop_back();
    } else if (isFree(name)) {
        return name;
    }
    long long number = wantsNumber ? -1 : TakeNumber(name);
    do {
        number = number < 0 ? 1 : number + 1;
    } while (!isFree(name + std::to_string(number)));
    return name + std::to_string(number);
}

std::string Scene::FreeDefaultName(const NodeType& type) const {
    std::string base = type.defaultName.empty() ? type.Name() : type.defaultName;
    if (!currentNamespace.empty()) {
        base = currentNamespace + ":" + base;
    }
    return FreeNumberedName(base);
}

std::string Scene::FreeNumberedName(const std::string& base) const {
    long long& number = lowestFree_.try_emplace(base, 1).first->second;
    while (IsNameTaken(base + std::to_string(number))) {
        ++number;
    }
    return base + std::to_string(number);
}

void Scene::Unname(Node& node) {
    const auto found = byName_.find(node.Name());
    if (found == byName_.end()) {
        return;
    }
    std::string base = node.Name();
    const long long number = TakeNumber(base); // nothing below needs memory
    std::vector<Node*>& nodes = found->second;
    nodes.erase(std::remove(nodes.begin(), nodes.end(), &node), nodes.end());
    if (!nodes.empty()) {
        return;
    }
    byName_.erase(found);
    const auto lowest = lowestFree_.find(base);
    if (number > 0 && lowest != lowestFree_.end()) {
        lowest->second = std::min(lowest->second, number);
    }
}

bool Scene::AddNamespace(const std::string& name) {
    const std::string parent = NamespaceOf(name);
    if (!parent.empty()) {
        AddNamespace(parent);
    }
    return namespaces_.insert(name).second;
}

bool Scene::RemoveNamespace(const std::string& name) {
    const std::string below = name + ":";
    const auto isBelow = [&](const std::string& other) { return other.compare(0, below.size(), below) == 0; };
    const bool isUsed =
        std::any_of(namespaces_.begin(), namespaces_.end(), isBelow) ||
        std::any_of(byName_.begin(), byName_.end(), [&](const auto& entry) { return isBelow(entry.first); });
    return !isUsed && namespaces_.erase(name) != 0;
}

} // namespace lightbox
