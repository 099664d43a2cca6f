#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

namespace lightbox {

/// Builds the content of a chunk: little-endian integers, IEEE doubles and length-prefixed texts.
class ChunkWriter {
public:
    void Byte(std::uint8_t value) { bytes_.push_back(static_cast<char>(value)); }
    void Count(std::uint32_t value);
    void Length(std::uint64_t value);
    void Number(double value);
    void Text(std::string_view text);
    /// Appends what the function writes to its stream as a length-prefixed text. Returns the function's
    /// result: false for a failure.
    bool Streamed(const std::function<bool(std::ostream&)>& write);

    const std::string& Bytes() const { return bytes_; }

private:
    std::string bytes_;
};

/// Reads a chunk's content. Reading past the end throws FileError. A damaged count never makes it allocate
/// more than the remaining bytes.
class ChunkReader {
public:
    explicit ChunkReader(std::string_view bytes)
        : rest_(bytes) {}

    std::uint8_t Byte();
    std::uint32_t Count();
    /// Reads a count of items of at least `bytesEach` bytes each. Throws FileError when so many items cannot
    /// fit.
    std::uint32_t CountOf(std::size_t bytesEach);
    std::uint64_t Length();
    double Number();
    std::string_view Text();
    std::string_view Raw(std::uint64_t length);
    bool AtEnd() const { return rest_.empty(); }

private:
    std::string_view rest_;
};

/// One chunk: a four-letter type and its content. Both borrow from the file's bytes.
struct Chunk {
    std::string_view type;
    std::string_view content;
};

/// The outer layer of the binary container: a signature, then chunks of type, length, content and CRC-32. The
/// last chunk is "DONE".
class ChunkFile {
public:
    static std::string_view Signature();
    static bool HasSignature(std::string_view bytes);

    static void WriteSignature(std::ostream& out);
    static void WriteChunk(std::ostream& out, std::string_view type, std::string_view content);

    /// Starts at the first chunk of a file. `bytes` must begin with the signature and outlive this object.
    explicit ChunkFile(std::string_view bytes);
    /// Returns the next chunk, or nothing after the last. Throws FileError when the chunk is cut off or
    /// damaged, and when the file ends without "DONE".
    std::optional<Chunk> Next();

private:
    std::string_view bytes_;
    std::size_t position_ = 0;
    bool done_ = false;
};

} // namespace lightbox
