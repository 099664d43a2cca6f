#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

namespace lightbox {

/// Builds the content of a chunk: little-endian integers, IEEE doubles, and texts with their length before
/// them.
class ChunkWriter {
public:
    void Byte(std::uint8_t value) { bytes_.push_back(static_cast<char>(value)); }
    void Count(std::uint32_t value);
    void Length(std::uint64_t value);
    void Number(double value);
    void Text(std::string_view text);
    /// What a function writes into a stream, as a text with its length before it. False when the function
    /// says so.
    bool Streamed(const std::function<bool(std::ostream&)>& write);

    const std::string& Bytes() const { return bytes_; }

private:
    std::string bytes_;
};

/// Takes a chunk's content apart. Reading beyond the end throws FileError; no count makes it allocate more
/// than the bytes that remain.
class ChunkReader {
public:
    explicit ChunkReader(std::string_view bytes)
        : rest_(bytes) {}

    std::uint8_t Byte();
    std::uint32_t Count();
    /// A count of items that take at least `bytesEach` bytes; more than could be there throws.
    std::uint32_t CountOf(std::size_t bytesEach);
    std::uint64_t Length();
    double Number();
    std::string_view Text();
    std::string_view Raw(std::uint64_t length);
    bool AtEnd() const { return rest_.empty(); }

private:
    std::string_view rest_;
};

/// One chunk: a four-letter type and its content, which borrows from the file's bytes.
struct Chunk {
    std::string_view type;
    std::string_view content;
};

/// The outer layer of the binary container: a signature, then chunks of type, length, content and CRC-32, the
/// last of them "DONE".
class ChunkFile {
public:
    static std::string_view Signature();
    static bool HasSignature(std::string_view bytes);

    static void WriteSignature(std::ostream& out);
    static void WriteChunk(std::ostream& out, std::string_view type, std::string_view content);

    /// Walks over the chunks of a whole file that has the signature.
    explicit ChunkFile(std::string_view bytes);
    /// The next chunk, or nothing after the last. Throws FileError at a chunk that is cut off or damaged, and
    /// when the file ends without its "DONE".
    std::optional<Chunk> Next();

private:
    std::string_view bytes_;
    std::size_t position_ = 0;
    bool done_ = false;
};

} // namespace lightbox
