#pragma once

#include "scene/DataType.h"
#include "scene/NodeType.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace lightbox {

/// The node types and data types, by name and by id.
class TypeRegistry {
public:
    /// Starts with the host's own types.
    TypeRegistry();

    std::shared_ptr<const NodeType> FindNodeType(const std::string& name) const;
    std::shared_ptr<const NodeType> FindNodeType(unsigned id) const;
    std::vector<std::string> NodeTypeNames() const;
    /// Returns false when the name or the id is taken.
    bool AddNodeType(std::shared_ptr<NodeType> type);
    bool RemoveNodeType(const std::string& name);

    std::shared_ptr<const DataType> FindDataType(const std::string& name) const;
    std::shared_ptr<const DataType> FindDataType(unsigned id) const;
    bool AddDataType(const std::shared_ptr<DataType>& type);
    bool RemoveDataType(const std::string& name);
    /// Makes a value with the plug-in's creator; null when that returns null.
    static std::shared_ptr<DataValue> MakeData(const std::shared_ptr<const DataType>& type);

private:
    std::map<std::string, std::shared_ptr<const NodeType>> nodeTypes_;
    std::map<unsigned, std::shared_ptr<const NodeType>> nodeTypesById_;
    std::map<std::string, std::shared_ptr<const DataType>> dataTypes_;
};

/// Adds all of the host's own node types; calls the next two functions.
void AddBuiltinTypes(TypeRegistry& registry);
/// Adds materials and the sets that assign them.
void AddMaterialTypes(TypeRegistry& registry);
/// Adds meshes and the nodes that make polygon primitives.
void AddMeshTypes(TypeRegistry& registry);

} // namespace lightbox
