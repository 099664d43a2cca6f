#include "formats/ChunkFile.h"

#include "formats/FileError.h"

#include <algorithm>
#include <bitset>
#include <cstring>
#include <ostream>
#include <streambuf>
#include <zlib.h>

namespace lightbox {
namespace {

// As in PNG: a byte with the high bit set, the name, and line breaks of both kinds. A transfer in text mode
// changes these bytes and is noticed at once.
constexpr std::string_view SIGNATURE = "\x89LB2\r\n\x1a\n";
constexpr std::string_view SIGNATURE_1 = "\x89LBX\r\n\x1a\n";
/// Fewer bits than any two signatures or that of a PNG file differ in.
constexpr std::size_t MAX_WRONG_SIGNATURE_BITS = 3;
constexpr std::size_t TYPE_LENGTH = 4;
constexpr std::size_t CHECKED_HEADER_LENGTH = TYPE_LENGTH + 8;
constexpr std::size_t CHECKSUM_LENGTH = 4;
constexpr std::size_t HEADER_LENGTH = CHECKED_HEADER_LENGTH + CHECKSUM_LENGTH;
constexpr std::size_t BLOCK_LENGTH = 4096;
constexpr std::string_view LAST_CHUNK = "DONE";
/// Longer chunks of version 1 are not searched for a wrong bit: the chance to find one that is not it grows
/// with the length.
constexpr std::size_t MAX_REPAIRED_LENGTH = 1 << 24;
/// The search for chunks of version 1 may read the file this many times over.
constexpr std::uint64_t SEARCH_FACTOR = 8;

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

/// The checksum of bytes, or of bytes that follow others with the checksum `before`.
std::uint32_t Checksum(std::string_view bytes, std::uint32_t before = 0) {
    // crc32_z() restarts when it gets null, which empty bytes may hold.
    return bytes.empty() ? before
                         : static_cast<std::uint32_t>(
                               crc32_z(before, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

/// Finds the only wrong bit of `count` bytes and their checksum, which differs by `difference` from the one
/// computed. Returns its index, counted on from the bytes to the checksum; nothing when more is wrong.
/// A CRC is linear: a wrong bit adds what remains of its power of x after division by the polynomial, here in
/// zlib's bit order. Two bits of fewer than 2^29 bytes never add the same.
std::optional<std::size_t> WrongBit(std::uint32_t difference, std::size_t count) {
    constexpr std::uint32_t POLYNOMIAL = 0xedb88320;
    if (difference != 0 && (difference & (difference - 1)) == 0) {
        std::size_t bit = 8 * count;
        for (; difference > 1; difference >>= 1) {
            ++bit;
        }
        return bit;
    }
    std::uint32_t added = 1;
    for (std::size_t bit = 8 * count; bit > 0; --bit) {
        added = (added >> 1) ^ ((added & 1) ? POLYNOMIAL : 0);
        if (added == difference) {
            return bit - 1;
        }
    }
    return std::nullopt;
}

std::size_t BlockCount(std::uint64_t length) {
    return static_cast<std::size_t>(length / BLOCK_LENGTH + (length % BLOCK_LENGTH > 0 ? 1 : 0));
}

std::size_t WrongBits(std::string_view bytes, std::string_view signature) {
    if (bytes.size() < signature.size()) {
        return 8 * signature.size();
    }
    std::size_t count = 0;
    for (std::size_t i = 0; i < signature.size(); ++i) {
        count += std::bitset<8>(static_cast<unsigned char>(bytes[i] ^ signature[i])).count();
    }
    return count;
}

bool IsPrintable(std::string_view type) {
    return std::all_of(type.begin(), type.end(), [](char letter) { return letter > ' ' && letter <= '~'; });
}

std::string AtByte(std::size_t position) {
    return " at byte " + std::to_string(position);
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
    if (!chunk_.isCut && count > rest_.size() / bytesEach) {
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

std::string_view ChunkReader::TextSoFar() {
    const std::uint64_t length = Length();
    return Raw(chunk_.isCut ? std::min<std::uint64_t>(length, rest_.size()) : length);
}

std::string_view ChunkReader::Raw(std::uint64_t length) {
    if (length > rest_.size()) {
        throw FileError("The data ends too early.");
    }
    const std::string_view bytes = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return bytes;
}

bool ChunkReader::ReadDamage() {
    const std::size_t begin = checked_;
    checked_ = chunk_.content.size() - rest_.size();
    return std::any_of(chunk_.damaged.begin(), chunk_.damaged.end(), [&](const Chunk::Range& damaged) {
        return damaged.begin < checked_ && begin < damaged.end;
    });
}

std::string_view ChunkFile::Signature() {
    return SIGNATURE;
}

bool ChunkFile::HasSignature(std::string_view bytes) {
    return WrongBits(bytes, SIGNATURE) <= MAX_WRONG_SIGNATURE_BITS ||
           WrongBits(bytes, SIGNATURE_1) <= MAX_WRONG_SIGNATURE_BITS;
}

bool ChunkFile::HasChunk(std::string_view bytes) {
    return FindHeader(bytes, 0).has_value();
}

void ChunkFile::WriteSignature(std::ostream& out) {
    out << SIGNATURE;
}

void ChunkFile::WriteChunk(std::ostream& out, std::string_view type, std::string_view content) {
    std::string header(type);
    AppendLittleEndian(header, static_cast<std::uint64_t>(content.size()));
    AppendLittleEndian(header, Checksum(header));
    // The checksums come first, so that a file that is cut off still has them.
    for (std::size_t begin = 0; begin < content.size(); begin += BLOCK_LENGTH) {
        AppendLittleEndian(header, Checksum(content.substr(begin, BLOCK_LENGTH)));
    }
    out << header;
    out.write(content.data(), static_cast<std::streamsize>(content.size()));
}

ChunkFile::ChunkFile(std::string& bytes, FaultHandler onFault)
    : bytes_(bytes)
    , onFault_(std::move(onFault))
    , position_(std::min(SIGNATURE.size(), bytes.size()))
    , searchBudget_(SEARCH_FACTOR * bytes.size()) {
    const std::size_t wrongBits = WrongBits(bytes, SIGNATURE);
    const std::size_t wrongBits1 = WrongBits(bytes, SIGNATURE_1);
    isVersion1_ = wrongBits1 < wrongBits && wrongBits1 <= MAX_WRONG_SIGNATURE_BITS;
    if (wrongBits > 0 && wrongBits1 > 0) {
        onFault_("The first bytes of the file are damaged.");
    }
}

std::string_view ChunkFile::Rest(std::size_t position) const {
    return std::string_view(bytes_).substr(std::min(position, bytes_.size()));
}

std::optional<ChunkFile::Header> ChunkFile::HeaderAt(std::string_view bytes, std::size_t position) {
    const std::string_view rest = bytes.substr(std::min(position, bytes.size()));
    if (rest.size() < HEADER_LENGTH || !IsPrintable(rest.substr(0, TYPE_LENGTH)) ||
        FromLittleEndian<std::uint32_t>(rest.substr(CHECKED_HEADER_LENGTH)) !=
            Checksum(rest.substr(0, CHECKED_HEADER_LENGTH))) {
        return std::nullopt;
    }
    return Header{rest.substr(0, TYPE_LENGTH), FromLittleEndian<std::uint64_t>(rest.substr(TYPE_LENGTH))};
}

void ChunkFile::FlipBit(std::size_t bit) {
    bytes_[bit / 8] = static_cast<char>(bytes_[bit / 8] ^ 1 << bit % 8);
    onFault_("One wrong bit" + AtByte(bit / 8) + " was put right.");
}

/// Checks bytes against their checksum and puts a single wrong bit right. Returns false when more is wrong.
bool ChunkFile::CheckOrRepair(std::size_t begin, std::size_t length, std::size_t checksumAt) {
    const std::uint32_t difference =
        FromLittleEndian<std::uint32_t>(Rest(checksumAt)) ^ Checksum(Rest(begin).substr(0, length));
    if (difference == 0) {
        return true;
    }
    const std::optional<std::size_t> wrong = WrongBit(difference, length);
    if (wrong) {
        FlipBit(*wrong < 8 * length ? 8 * begin + *wrong : 8 * (checksumAt - length) + *wrong);
    }
    return wrong.has_value();
}

std::optional<std::size_t> ChunkFile::FindHeader(std::string_view bytes, std::size_t from) {
    for (std::size_t position = from; position + HEADER_LENGTH <= bytes.size(); ++position) {
        if (HeaderAt(bytes, position)) {
            return position;
        }
    }
    return std::nullopt;
}

/// Ends the file where nothing more can be read.
void ChunkFile::Finish() {
    done_ = true;
    onFault_("The file is cut off" + AtByte(bytes_.size()) + ".");
}

/// Goes on at the next chunk when there is one.
bool ChunkFile::SkipTo(const std::optional<std::size_t>& next) {
    if (!next) {
        Finish();
        return false;
    }
    onFault_("The bytes " + std::to_string(position_) + " to " + std::to_string(*next - 1) +
             " are damaged and were not read.");
    position_ = *next;
    return true;
}

std::optional<Chunk> ChunkFile::Next() {
    if (done_) {
        return std::nullopt;
    }
    if (isVersion1_) {
        return NextOfVersion1();
    }
    std::optional<Header> header = HeaderAt(bytes_, position_);
    if (!header && Rest(position_).size() >= HEADER_LENGTH &&
        CheckOrRepair(position_, CHECKED_HEADER_LENGTH, position_ + CHECKED_HEADER_LENGTH)) {
        header = HeaderAt(bytes_, position_);
    }
    if (!header) {
        if (!SkipTo(FindHeader(bytes_, position_))) {
            return std::nullopt;
        }
        header = HeaderAt(bytes_, position_);
    }
    Chunk chunk;
    chunk.type = header->type;
    chunk.position = position_;
    done_ = chunk.type == LAST_CHUNK;
    TakeContent(chunk, header->length);
    return chunk;
}

/// Finds the content of the chunk at the position, and what of it is damaged, and moves behind it.
void ChunkFile::TakeContent(Chunk& chunk, std::uint64_t length) {
    const std::size_t sums = position_ + HEADER_LENGTH;
    std::size_t end = bytes_.size();
    const bool fits =
        length <= bytes_.size() && Rest(sums).size() >= length + BlockCount(length) * CHECKSUM_LENGTH;
    if (fits) {
        end = sums + BlockCount(length) * CHECKSUM_LENGTH + length;
    }
    if (!done_ && (!fits || !HeaderAt(bytes_, end))) {
        // Bytes may be missing before the next chunk.
        const std::optional<std::size_t> next = FindHeader(bytes_, sums);
        chunk.isCut = next ? *next < end : !fits;
        end = chunk.isCut && next ? *next : end;
    }
    const std::size_t begin =
        static_cast<std::size_t>(std::min<std::uint64_t>(end, sums + BlockCount(length) * CHECKSUM_LENGTH));
    chunk.content = Rest(begin).substr(0, end - begin);
    for (std::size_t block = 0; block < chunk.content.size(); block += BLOCK_LENGTH) {
        const auto blockLength =
            static_cast<std::size_t>(std::min<std::uint64_t>(BLOCK_LENGTH, length - block));
        const std::size_t there = std::min(blockLength, chunk.content.size() - block);
        if (there < blockLength ||
            !CheckOrRepair(begin + block, blockLength, sums + block / BLOCK_LENGTH * CHECKSUM_LENGTH)) {
            chunk.damaged.push_back({block, block + there});
        }
    }
    position_ = end;
}

/// The chunk of version 1 at the position, if it is whole.
std::optional<Chunk> ChunkFile::WholeOfVersion1(std::size_t position) const {
    const std::string_view rest = Rest(position);
    if (rest.size() < HEADER_LENGTH || !IsPrintable(rest.substr(0, TYPE_LENGTH))) {
        return std::nullopt;
    }
    const auto length = FromLittleEndian<std::uint64_t>(rest.substr(TYPE_LENGTH));
    if (length > rest.size() - HEADER_LENGTH || DifferenceOfVersion1(position, length) != 0) {
        return std::nullopt;
    }
    return Chunk{
        rest.substr(0, TYPE_LENGTH), rest.substr(CHECKED_HEADER_LENGTH, length), position, {}, false};
}

/// What the stored checksum of a chunk of version 1 differs by. It does not cover the length.
std::uint32_t ChunkFile::DifferenceOfVersion1(std::size_t position, std::size_t length) const {
    const std::string_view rest = Rest(position);
    return FromLittleEndian<std::uint32_t>(rest.substr(CHECKED_HEADER_LENGTH + length)) ^
           Checksum(rest.substr(CHECKED_HEADER_LENGTH, length), Checksum(rest.substr(0, TYPE_LENGTH)));
}

std::optional<std::size_t> ChunkFile::FindOfVersion1(std::size_t from) {
    for (std::size_t position = from; position + HEADER_LENGTH <= bytes_.size(); ++position) {
        const std::string_view rest = Rest(position);
        const auto length = FromLittleEndian<std::uint64_t>(rest.substr(TYPE_LENGTH));
        if (length > rest.size() - HEADER_LENGTH || !IsPrintable(rest.substr(0, TYPE_LENGTH))) {
            continue;
        }
        if (length > searchBudget_) {
            break;
        }
        searchBudget_ -= length;
        if (WholeOfVersion1(position)) {
            return position;
        }
    }
    return std::nullopt;
}

std::optional<Chunk> ChunkFile::NextOfVersion1() {
    std::optional<Chunk> chunk = WholeOfVersion1(position_);
    if (!chunk) {
        const std::optional<std::size_t> next = FindOfVersion1(position_ + HEADER_LENGTH);
        if (Rest(position_).size() >= HEADER_LENGTH) {
            chunk = DamagedOfVersion1(next);
        }
        if (!chunk || !IsPrintable(chunk->type)) {
            return SkipTo(next) ? NextOfVersion1() : std::nullopt;
        }
    }
    position_ += CHECKED_HEADER_LENGTH + chunk->content.size() + CHECKSUM_LENGTH;
    done_ = chunk->type == LAST_CHUNK;
    return chunk;
}

/// The damaged chunk of version 1 at the position. Its length is not checked, so it ends where the next whole
/// one begins.
Chunk ChunkFile::DamagedOfVersion1(const std::optional<std::size_t>& next) {
    const std::string_view rest = Rest(position_);
    const std::size_t length = next ? *next - position_ - HEADER_LENGTH : rest.size() - CHECKED_HEADER_LENGTH;
    Chunk chunk{
        rest.substr(0, TYPE_LENGTH), rest.substr(CHECKED_HEADER_LENGTH, length), position_, {}, !next};
    const std::uint32_t difference = next ? DifferenceOfVersion1(position_, length) : 0;
    const std::optional<std::size_t> wrong = difference != 0 && length <= MAX_REPAIRED_LENGTH
                                                 ? WrongBit(difference, TYPE_LENGTH + length)
                                                 : std::nullopt;
    if (wrong) {
        // The length stands between the type and the rest.
        const std::size_t between = *wrong < 8 * TYPE_LENGTH ? 0 : CHECKED_HEADER_LENGTH - TYPE_LENGTH;
        FlipBit(8 * (position_ + between) + *wrong);
    } else if (!next || difference != 0) {
        chunk.damaged.push_back({0, length});
    } else {
        onFault_("The wrong length of the chunk" + AtByte(position_) + " was put right.");
    }
    return chunk;
}

} // namespace lightbox
