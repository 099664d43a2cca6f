#pragma once

#include "formats/PreservedContent.h"
#include "formats/SceneContent.h"

#include <iosfwd>
#include <string>

namespace lightbox {

class SceneFiles;
class Timeline;

/// Writes a scene as Maya ASCII, in Maya's order of statements.
class AsciiWriter {
public:
    AsciiWriter(const SceneFiles& files, const Timeline& time, std::ostream& out);

    /// Writes the whole file. `name` is the file's name without its folder; the header and the last line show
    /// it. Throws FileError when Maya ASCII cannot express something in the scene.
    void Write(const SceneContent& content, const std::string& name);
    /// Writes the statements inside one node's block, each indented on its own line.
    void WriteNodeBody(const std::shared_ptr<Node>& node);

private:
    void WriteHead(const SceneContent& content, const std::string& name);
    void WriteReferences(const SceneContent& content);
    void WriteRequirements(const SceneContent& content);
    void WriteNode(const std::shared_ptr<Node>& node);
    void WriteSceneScript();
    void WriteEdits(const SceneContent& content);
    void WriteDefaults(const SceneContent& content);
    void WriteConnections(const SceneContent& content);
    /// Writes what is kept, but for the attributes.
    void WritePreserved(const PreservedContent::NodeContent& kept);
    /// Writes the kept statements that add attributes, or the others.
    void WriteStatements(const PreservedContent::NodeContent& kept, bool areAttributes);
    static std::string NameOf(const Node& node);
    static std::string PlugName(const Plug& plug);

    const SceneFiles& files_;
    const Timeline& time_;
    std::ostream& out_;
    const PreservedContent& preserved_;
};

} // namespace lightbox
