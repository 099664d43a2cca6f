#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace lightbox {

class Attribute;
class ChunkReader;
struct Chunk;
class FileReader;
class Host;
class Node;

/// Takes Lightbox's binary container apart and hands what is in it to the reader of the file, which knows the
/// names. A chunk that is damaged ends the reading there; what came before stays.
class BinaryReader {
public:
    BinaryReader(Host& host, FileReader& reader)
        : host_(host)
        , reader_(reader) {}

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

    Host& host_;
    FileReader& reader_;
};

} // namespace lightbox
