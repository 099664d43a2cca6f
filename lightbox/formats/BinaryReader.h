#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace lightbox {

class Attribute;
class ChunkReader;
struct Chunk;
class Host;
class Node;
class SceneBuilder;
struct PlugSetting;

/// Takes Lightbox's binary container apart and hands what is in it to the builder of the scene, which knows
/// the names. A chunk that is damaged ends the reading there; what came before stays.
class BinaryReader {
public:
    BinaryReader(Host& host, SceneBuilder& builder)
        : host_(host)
        , builder_(builder) {}

    void Read(std::string_view bytes);

private:
    void ReadChunk(const Chunk& chunk);
    void ReadHead(ChunkReader& content);
    void ReadReference(ChunkReader& content);
    void ReadRequirement(ChunkReader& content);
    void ReadNode(ChunkReader& content);
    void ReadExisting(ChunkReader& content);
    void ReadConnection(ChunkReader& content, bool isBroken);
    void ReadBody(ChunkReader& content, const std::shared_ptr<Node>& node);
    void ReadSetting(ChunkReader& content, const std::shared_ptr<Node>& node);
    std::shared_ptr<Attribute> ReadAttribute(ChunkReader& content, int depth);

    /// Stores a setting; what is unknown is kept, as with a null node, and other faults are reported.
    void ApplyOrKeep(const std::shared_ptr<Node>& node, const PlugSetting& setting);
    /// Stores a value that a plug-in's data type reads from bytes; without the plug-in the bytes are kept.
    void ApplyBytes(const std::shared_ptr<Node>& node, const PlugSetting& setting, std::string_view bytes);
    /// Keeps a dynamic attribute of the current node, as the statements that add it.
    void KeepAttribute(const Attribute& attribute);

    Host& host_;
    SceneBuilder& builder_;
};

} // namespace lightbox
