#include "formats/ChunkFile.h"

#include "formats/FileError.h"

#include <cstring>
#include <ostream>
#include <streambuf>
#include <zlib.h>

namespace lightbox {
namespace {

// As in PNG: a byte with the high bit set, the name, and line breaks of both kinds. A transfer in text mode
// changes these bytes and is noticed at once.
constexpr char SIGNATURE[] = "\x89LBX\r\n\x1a\n";
constexpr std::size_t SIGNATURE_LENGTH = sizeof(SIGNATURE) - 1;
constexpr std::size_t TYPE_LENGTH = 4;
constexpr std::size_t HEADER_LENGTH = TYPE_LENGTH + 8;
constexpr std::size_t CHECKSUM_LENGTH = 4;
constexpr std::string_view LAST_CHUNK = "DONE";

template <class Integer>
void AppendLittleEndian(std::string& bytes, Integer value) {
    for (std::size_t i = 0; i < sizeof(Integer); ++i) {
        bytes.push_back(static_cast<char>(value >> (8 * i) & 0xff));
    }
}

/// A stream buffer that appends to a string.
class AppendBuffer : public std::streambuf {
public:
    explicit AppendBuffer(std::string& bytes)
        : bytes_(bytes) {}

protected:
    int_type overflow(int_type character) override {
        if (!traits_type::eq_int_type(character, traits_type::eof())) {
            bytes_.push_back(traits_type::to_char_type(character));
        }
        return traits_type::not_eof(character);
    }
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        bytes_.append(bytes, static_cast<std::size_t>(count));
        return count;
    }

private:
    std::string& bytes_;
};

template <class Integer>
Integer FromLittleEndian(std::string_view bytes) {
    Integer value = 0;
    for (std::size_t i = 0; i < sizeof(Integer); ++i) {
        value |= static_cast<Integer>(static_cast<unsigned char>(bytes[i])) << (8 * i);
    }
    return value;
}

std::uint32_t Checksum(std::string_view type, std::string_view content) {
    uLong sum = 0;
    for (const std::string_view part : {type, content}) {
        // crc32_z() restarts when it gets null, which an empty part may hold.
        sum = part.empty() ? sum : crc32_z(sum, reinterpret_cast<const Bytef*>(part.data()), part.size());
    }
    return static_cast<std::uint32_t>(sum);
}

} // namespace

void ChunkWriter::Count(std::uint32_t value) {
    AppendLittleEndian(bytes_, value);
}

void ChunkWriter::Length(std::uint64_t value) {
    AppendLittleEndian(bytes_, value);
}

void ChunkWriter::Number(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    AppendLittleEndian(bytes_, bits);
}

void ChunkWriter::Text(std::string_view text) {
    Length(text.size());
    bytes_.append(text);
}

bool ChunkWriter::Streamed(const std::function<bool(std::ostream&)>& write) {
    const std::size_t start = bytes_.size();
    Length(0);
    AppendBuffer buffer(bytes_);
    std::ostream stream(&buffer);
    const bool isWritten = write(stream) && stream;
    std::string length;
    AppendLittleEndian(length, static_cast<std::uint64_t>(bytes_.size() - start - sizeof(std::uint64_t)));
    bytes_.replace(start, length.size(), length);
    return isWritten;
}

std::uint8_t ChunkReader::Byte() {
    return static_cast<std::uint8_t>(Raw(1)[0]);
}

std::uint32_t ChunkReader::Count() {
    return FromLittleEndian<std::uint32_t>(Raw(4));
}

std::uint32_t ChunkReader::CountOf(std::size_t bytesEach) {
    const std::uint32_t count = Count();
    if (count > rest_.size() / bytesEach) {
        throw FileError("A count is larger than the data that follows it.");
    }
    return count;
}

std::uint64_t ChunkReader::Length() {
    return FromLittleEndian<std::uint64_t>(Raw(8));
}

double ChunkReader::Number() {
    const std::uint64_t bits = FromLittleEndian<std::uint64_t>(Raw(8));
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

std::string_view ChunkReader::Text() {
    return Raw(Length());
}

std::string_view ChunkReader::Raw(std::uint64_t length) {
    if (length > rest_.size()) {
        throw FileError("The data ends too early.");
    }
    const std::string_view bytes = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return bytes;
}

std::string_view ChunkFile::Signature() {
    return {SIGNATURE, SIGNATURE_LENGTH};
}

bool ChunkFile::HasSignature(std::string_view bytes) {
    return bytes.substr(0, SIGNATURE_LENGTH) == Signature();
}

void ChunkFile::WriteSignature(std::ostream& out) {
    out.write(SIGNATURE, SIGNATURE_LENGTH);
}

void ChunkFile::WriteChunk(std::ostream& out, std::string_view type, std::string_view content) {
    std::string header(type);
    AppendLittleEndian(header, static_cast<std::uint64_t>(content.size()));
    std::string checksum;
    AppendLittleEndian(checksum, Checksum(type, content));
    out << header;
    out.write(content.data(), static_cast<std::streamsize>(content.size()));
    out << checksum;
}

ChunkFile::ChunkFile(std::string_view bytes)
    : bytes_(bytes)
    , position_(SIGNATURE_LENGTH) {}

std::optional<Chunk> ChunkFile::Next() {
    if (done_) {
        return std::nullopt;
    }
    const std::string where = " at byte " + std::to_string(position_) + ".";
    const std::string_view rest = bytes_.substr(std::min(position_, bytes_.size()));
    if (rest.size() < HEADER_LENGTH + CHECKSUM_LENGTH) {
        throw FileError("The file is cut off" + where);
    }
    const std::uint64_t length = FromLittleEndian<std::uint64_t>(rest.substr(TYPE_LENGTH));
    if (length > rest.size() - HEADER_LENGTH - CHECKSUM_LENGTH) {
        throw FileError("The file is cut off, or damaged," + where);
    }
    const Chunk chunk{rest.substr(0, TYPE_LENGTH), rest.substr(HEADER_LENGTH, length)};
    const auto sum = FromLittleEndian<std::uint32_t>(rest.substr(HEADER_LENGTH + length));
    if (sum != Checksum(chunk.type, chunk.content)) {
        throw FileError("The file is damaged" + where);
    }
    position_ += HEADER_LENGTH + length + CHECKSUM_LENGTH;
    done_ = chunk.type == LAST_CHUNK;
    return chunk;
}

} // namespace lightbox
