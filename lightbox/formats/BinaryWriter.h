#pragma once

#include "formats/SceneContent.h"

#include <iosfwd>
#include <string>

namespace lightbox {

class ChunkWriter;
class PreservedContent;
class SceneFiles;
class Timeline;

/// Writes a scene as Lightbox's binary container. docs/lightbox-scene-files.md describes the format.
class BinaryWriter {
public:
    BinaryWriter(const SceneFiles& files, const Timeline& time, std::ostream& out);

    /// Writes the whole file. `name` is the file's name without its folder. Throws FileError when a plug-in
    /// fails to write its value.
    void Write(const SceneContent& content, const std::string& name);

private:
    void WriteHead(const SceneContent& content, const std::string& name);
    void WriteReferences(const SceneContent& content);
    void WriteRequirements(const SceneContent& content);
    void WriteNode(const std::shared_ptr<Node>& node);
    void WriteEdits(const SceneContent& content);
    void WriteDefaults(const SceneContent& content);
    void WriteConnections(const SceneContent& content);
    void WritePreserved();
    /// Appends a node's attributes, the given settings followed by the node's own, and its preserved content.
    void PutBody(ChunkWriter& chunk, const std::shared_ptr<Node>& node,
                 std::vector<PlugSetting> settings = {}) const;
    static void PutSetting(ChunkWriter& chunk, const PlugSetting& setting);
    static void PutAttribute(ChunkWriter& chunk, const Attribute& attribute);

    const SceneFiles& files_;
    const Timeline& time_;
    std::ostream& out_;
    const PreservedContent& preserved_;
};

} // namespace lightbox
