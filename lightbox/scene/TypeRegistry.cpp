#include "scene/TypeRegistry.h"

#include "scene/DataValue.h"

namespace lightbox {

TypeRegistry::TypeRegistry() {
    AddBuiltinTypes(*this);
}

std::shared_ptr<const NodeType> TypeRegistry::FindNodeType(const std::string& name) const {
    const auto found = nodeTypes_.find(name);
    return found == nodeTypes_.end() ? nullptr : found->second;
}

std::shared_ptr<const NodeType> TypeRegistry::FindNodeType(unsigned id) const {
    const auto found = nodeTypesById_.find(id);
    return found == nodeTypesById_.end() ? nullptr : found->second;
}

std::vector<std::string> TypeRegistry::NodeTypeNames() const {
    std::vector<std::string> names;
    for (const auto& type : nodeTypes_) {
        if (!type.second->isAbstract) {
            names.push_back(type.first);
        }
    }
    return names;
}

bool TypeRegistry::AddNodeType(std::shared_ptr<NodeType> type) {
    if (nodeTypes_.count(type->Name()) != 0 || (type->id != 0 && nodeTypesById_.count(type->id) != 0)) {
        return false;
    }
    if (type->id != 0) {
        nodeTypesById_[type->id] = type;
    }
    const std::string name = type->Name();
    nodeTypes_[name] = std::move(type);
    return true;
}

bool TypeRegistry::RemoveNodeType(const std::string& name) {
    const auto found = nodeTypes_.find(name);
    if (found == nodeTypes_.end()) {
        return false;
    }
    if (found->second->id != 0) {
        nodeTypesById_.erase(found->second->id);
    }
    nodeTypes_.erase(found);
    return true;
}

std::shared_ptr<const DataType> TypeRegistry::FindDataType(const std::string& name) const {
    const auto found = dataTypes_.find(name);
    return found == dataTypes_.end() ? nullptr : found->second;
}

std::shared_ptr<const DataType> TypeRegistry::FindDataType(unsigned id) const {
    for (const auto& type : dataTypes_) {
        if (type.second->id == id) {
            return type.second;
        }
    }
    return nullptr;
}

bool TypeRegistry::AddDataType(const std::shared_ptr<DataType>& type) {
    if (FindDataType(type->id)) {
        return false;
    }
    return dataTypes_.try_emplace(type->name, type).second;
}

bool TypeRegistry::RemoveDataType(const std::string& name) {
    return dataTypes_.erase(name) != 0;
}

std::shared_ptr<DataValue> TypeRegistry::MakeData(const std::shared_ptr<const DataType>& type) {
    std::unique_ptr<MPxData> data(static_cast<MPxData*>(type->creator()));
    return data ? std::make_shared<DataValue>(type, std::move(data)) : nullptr;
}

} // namespace lightbox
