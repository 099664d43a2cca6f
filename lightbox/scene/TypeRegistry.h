#pragma once

#include "scene/DataType.h"
#include "scene/NodeType.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace lightbox {

/// The node types and data types by name and by id.
class TypeRegistry {
public:
    /// Holds the host's own types.
    TypeRegistry();

    std::shared_ptr<const NodeType> FindNodeType(const std::string& name) const;
    std::shared_ptr<const NodeType> FindNodeType(unsigned id) const;
    std::vector<std::string> NodeTypeNames() const;
    /// False when the name or the id is taken.
    bool AddNodeType(std::shared_ptr<NodeType> type);
    bool RemoveNodeType(const std::string& name);

    std::shared_ptr<const DataType> FindDataType(const std::string& name) const;
    std::shared_ptr<const DataType> FindDataType(unsigned id) const;
    bool AddDataType(const std::shared_ptr<DataType>& type);
    bool RemoveDataType(const std::string& name);
    /// A new value from the plug-in's creator; null when that yields none.
    static std::shared_ptr<DataValue> MakeData(const std::shared_ptr<const DataType>& type);

private:
    std::map<std::string, std::shared_ptr<const NodeType>> nodeTypes_;
    std::map<unsigned, std::shared_ptr<const NodeType>> nodeTypesById_;
    std::map<std::string, std::shared_ptr<const DataType>> dataTypes_;
};

/// Adds the host's own node types, those of the next two among them.
void AddBuiltinTypes(TypeRegistry& registry);
/// Materials, and the sets that assign them.
void AddMaterialTypes(TypeRegistry& registry);
/// Meshes, and the nodes that make polygon primitives.
void AddMeshTypes(TypeRegistry& registry);

} // namespace lightbox
