#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace lightbox {

class Attribute;
class ChunkReader;
struct Chunk;
class Node;
class ReferenceList;
class Scene;
class SceneBuilder;
struct PlugSetting;

/// Reads Lightbox's binary container and passes its content to the SceneBuilder, which resolves the names.
/// Of a damaged file everything is read whose checksums are right, and each thing that is left out is a
/// fault. A plug-in's value is read even if it is damaged: the plug-in can tell what of it is whole.
class BinaryReader {
public:
    BinaryReader(Scene& scene, ReferenceList& references, SceneBuilder& builder)
        : scene_(scene)
        , references_(references)
        , builder_(builder) {}

    /// Puts single wrong bits right in `bytes`.
    void Read(std::string& bytes);

private:
    void ReadChunk(const Chunk& chunk);
    void ReadContent(const Chunk& chunk, ChunkReader& content);
    void ReadHead(ChunkReader& content);
    void ReadReference(ChunkReader& content);
    void ReadRequirement(ChunkReader& content);
    void ReadNode(ChunkReader& content);
    void ReadExisting(ChunkReader& content);
    void ReadConnection(ChunkReader& content, bool isBroken);
    void ReadBody(ChunkReader& content, const std::shared_ptr<Node>& node);
    void ReadSetting(ChunkReader& content, const std::shared_ptr<Node>& node);
    void ReadStatement(ChunkReader& content);
    void ReadValue(ChunkReader& content, const std::shared_ptr<Node>& node);
    std::shared_ptr<Attribute> ReadAttribute(ChunkReader& content, int depth);
    /// Whether what was read since the last call is damaged, which is reported.
    bool IsDamaged(ChunkReader& content, const std::string& what);

    /// Stores a setting. A setting of an unknown attribute or of a null node is kept as text; other faults
    /// are reported.
    void ApplyOrKeep(const std::shared_ptr<Node>& node, const PlugSetting& setting);
    /// Stores a value that a plug-in's data type reads from bytes. Keeps the bytes of an unknown data type,
    /// and the value of an unknown attribute or of a null node.
    void ApplyBytes(const std::shared_ptr<Node>& node, const PlugSetting& setting, std::string_view bytes);
    /// Keeps a dynamic attribute of the current node as the statements that add it.
    void KeepAttribute(const Attribute& attribute);

    Scene& scene_;
    ReferenceList& references_;
    SceneBuilder& builder_;
};

} // namespace lightbox
