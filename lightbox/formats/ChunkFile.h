#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

/// One chunk of a file: a four-letter type and its content. Both borrow from the file's bytes.
struct Chunk {
    /// A part of the content, from the first byte to behind the last.
    struct Range {
        std::size_t begin = 0;
        std::size_t end = 0;
    };

    std::string_view type;
    std::string_view content;
    std::size_t position = 0;   ///< the chunk's first byte in the file
    std::vector<Range> damaged; ///< the parts whose checksum is wrong or missing, in order
    bool isCut = false;         ///< the content ends too early

    bool IsWhole() const { return damaged.empty() && !isCut; }
};

/// Reads a chunk's content. Reading past the end throws FileError. A damaged count never makes it allocate
/// more than the remaining bytes.
class ChunkReader {
public:
    /// The chunk has to outlive this object.
    explicit ChunkReader(const Chunk& chunk)
        : chunk_(chunk)
        , rest_(chunk.content) {}

    std::uint8_t Byte();
    std::uint32_t Count();
    /// Reads a count of items of at least `bytesEach` bytes each. Throws FileError when so many items cannot
    /// fit into a chunk that is not cut off.
    std::uint32_t CountOf(std::size_t bytesEach);
    std::uint64_t Length();
    double Number();
    std::string_view Text();
    /// Reads a text of a cut chunk as far as it is there.
    std::string_view TextSoFar();
    std::string_view Raw(std::uint64_t length);
    bool AtEnd() const { return rest_.empty(); }
    /// Whether any of the bytes read since the last call is in a damaged part.
    bool ReadDamage();

private:
    const Chunk& chunk_;
    std::string_view rest_;
    std::size_t checked_ = 0; ///< the offset up to which ReadDamage() has answered
};

/// The outer layer of the binary container: a signature, then chunks; the last is "DONE". Every chunk has a
/// checksum of its header and one for each block of its content. So a damaged part is known, a single wrong
/// bit is put right, and reading goes on at the next whole header. Files of version 1 have one checksum for a
/// chunk.
class ChunkFile {
public:
    using FaultHandler = std::function<void(const std::string&)>;

    static std::string_view Signature();
    /// True also for a signature with a few wrong bits.
    static bool HasSignature(std::string_view bytes);
    /// True when there is a whole header of a chunk, wherever it is.
    static bool HasChunk(std::string_view bytes);

    static void WriteSignature(std::ostream& out);
    static void WriteChunk(std::ostream& out, std::string_view type, std::string_view content);

    /// Starts at the first chunk of a file. Puts wrong bits right in `bytes`, which have to outlive this
    /// object and its chunks. `onFault` gets a sentence for each fault of the file outside of chunks.
    ChunkFile(std::string& bytes, FaultHandler onFault);
    /// Returns the next chunk, whole or not, or nothing after the last.
    std::optional<Chunk> Next();

private:
    struct Header {
        std::string_view type;
        std::uint64_t length = 0;
    };

    std::string_view Rest(std::size_t position) const;
    static std::optional<Header> HeaderAt(std::string_view bytes, std::size_t position);
    static std::optional<std::size_t> FindHeader(std::string_view bytes, std::size_t from);
    void TakeContent(Chunk& chunk, std::uint64_t length);
    bool CheckOrRepair(std::size_t begin, std::size_t length, std::size_t checksumAt);
    void FlipBit(std::size_t bit);
    bool SkipTo(const std::optional<std::size_t>& next);
    void Finish();

    std::optional<Chunk> NextOfVersion1();
    std::optional<Chunk> WholeOfVersion1(std::size_t position) const;
    std::optional<std::size_t> FindOfVersion1(std::size_t from);
    Chunk DamagedOfVersion1(const std::optional<std::size_t>& next);
    std::uint32_t DifferenceOfVersion1(std::size_t position, std::size_t length) const;

    std::string& bytes_;
    FaultHandler onFault_;
    std::size_t position_ = 0;
    bool isVersion1_ = false;
    bool done_ = false;
    /// Bytes whose checksums may still be computed in search of chunks of version 1.
    std::uint64_t searchBudget_ = 0;
};

} // namespace lightbox
