#include "paint/PngDeflate.h"

#include "paint/PngHuffman.h"

#include <QtAlgorithms>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstring>
#include <libdeflate.h>

namespace vellix {

namespace {

// The alphabet of RFC 1951, 3.2.5: bytes, the end of a block, and lengths of matches.
constexpr int END_OF_BLOCK = 256;
constexpr int FIRST_LENGTH = 257;
constexpr int SYMBOLS = 286;
constexpr std::size_t MIN_MATCH = 3;
constexpr std::size_t MAX_MATCH = 258;

// Larger blocks would give fewer bytes, but lie in slower memory.
constexpr std::size_t BLOCK_BYTES = 128 * 1024;
// A run looks back as far as a pixel. The distances 1 to 4 have the symbols 0 to 3.
constexpr std::size_t HISTORY = 4;
// Shorter ones are written byte by byte.
constexpr std::size_t MIN_RUN = 4;
// Five words and what is left of a byte fit into 64 bits. Longer words save half a percent of the bytes, and
// take longer to read too.
constexpr int MAX_WORD_BITS = 11;
constexpr int WORDS_AT_ONCE = 5;

constexpr int DISTANCES = 30;
constexpr std::size_t MAX_DISTANCE = 32768;

// What lies far back is found by a hash of its first eight bytes. It is not sought where a run is longer.
constexpr std::size_t HASHED_BYTES = 8;
constexpr int HASH_BITS = 14;
constexpr std::size_t PLACES = 2; // for each hash
// Of a long repetition so much is looked at and remembered.
constexpr std::size_t LOOKED_AT = 24;
// After so many vain searches every second place is searched, after twice as many every third, and so on. A
// search that finds something halves their number. Pictures full of brush strokes repeat nothing, and would
// take twice as long if every place was searched.
constexpr std::size_t PATIENCE = 8;
constexpr std::size_t MAX_STEP = 64;
// Bits, roughly: by measuring drawings and exported pictures.
constexpr int LITERAL_COST = 5;
constexpr int RUN_COST = 2;
constexpr int FAR_COST = 20;

constexpr quint64 ADLER_BASE = 65521;

// Continues the checksum of RFC 1950 over zeros.
quint32 AdlerOfZeros(quint32 adler, quint64 count) {
    const quint64 sum = adler & 0xffff;
    const quint64 sumOfSums = (adler >> 16) + count % ADLER_BASE * sum;
    return quint32(sumOfSums % ADLER_BASE) << 16 | quint32(sum);
}

template <typename Word>
Word Load(const uchar* bytes) {
    Word word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

// Returns how many bytes from `begin` on equal those `distance` before them.
std::size_t RunLength(const uchar* begin, const uchar* end, std::size_t distance) {
    const uchar* at = begin;
    for (; end - at >= 8; at += 8) {
        const quint64 difference = Load<quint64>(at) ^ Load<quint64>(at - distance);
        if (difference != 0) {
            return std::size_t(at - begin) + qCountTrailingZeroBits(qFromLittleEndian(difference)) / 8;
        }
    }
    while (at < end && *at == *(at - distance)) {
        ++at;
    }
    return std::size_t(at - begin);
}

// How the length of a match is written.
struct Length {
    quint16 symbol = 0;
    quint8 extraBits = 0;
    quint8 extra = 0;
};

using LengthTable = std::array<Length, MAX_MATCH + 1>;

LengthTable MakeLengthTable() {
    LengthTable table;
    std::size_t length = MIN_MATCH;
    for (int symbol = FIRST_LENGTH; symbol < SYMBOLS - 1; ++symbol) {
        const int extraBits = std::max((symbol - FIRST_LENGTH) / 4 - 1, 0);
        for (int extra = 0; extra < 1 << extraBits; ++extra) {
            table[length++] = Length{quint16(symbol), quint8(extraBits), quint8(extra)};
        }
    }
    table[MAX_MATCH] = Length{quint16(SYMBOLS - 1), 0, 0};
    return table;
}

const Length& LengthOf(std::size_t match) {
    static const LengthTable table = MakeLengthTable();
    return table[match];
}

// How a distance is written.
struct Distance {
    int symbol;
    int extraBits;
    quint64 extra;

    explicit Distance(std::size_t distance) {
        const auto from0 = quint32(distance - 1);
        const int highest = 31 - int(qCountLeadingZeroBits(from0 | 1));
        extraBits = std::max(highest - 1, 0);
        symbol = int(from0 >> extraBits) + 2 * extraBits;
        extra = from0 & ((1u << extraBits) - 1);
    }
};

// The matches that make up a repetition: longest ones, then one or two others.
struct Matches {
    std::size_t longest = 0;
    std::size_t last[2] = {0, 0}; // bytes; 0 for no match

    explicit Matches(std::size_t repeated) {
        if (repeated >= MAX_MATCH + MIN_MATCH) {
            longest = (repeated - MIN_MATCH) / MAX_MATCH;
            repeated -= longest * MAX_MATCH;
        }
        last[0] = repeated;
        if (repeated > MAX_MATCH) {
            last[0] = repeated - MIN_MATCH;
            last[1] = MIN_MATCH;
        }
    }
};

// The lengths of the words of a block's code, in short, as its header holds them (RFC 1951, 3.2.7).
class LengthList {
public:
    LengthList(const quint8* lengths, std::size_t count) {
        for (std::size_t at = 0; at < count;) {
            const std::size_t same =
                std::size_t(std::find_if(lengths + at, lengths + count,
                                         [&](quint8 length) { return length != lengths[at]; }) -
                            (lengths + at));
            at += lengths[at] == 0 ? AddZeros(same) : AddSame(lengths[at], same);
        }
    }

    struct Item {
        quint8 symbol;
        quint8 extra;
        quint8 extraBits;
    };
    static constexpr int SYMBOLS = 19;
    static constexpr int MAX_BITS = 7;
    static constexpr std::size_t MOST_ITEMS = 286 + 30;

    const Item* begin() const { return items_.data(); }
    const Item* end() const { return items_.data() + size_; }

private:
    // Each returns how many lengths it took.
    std::size_t AddZeros(std::size_t same) {
        if (same < 3) {
            return Add({0, 0, 0}, 1);
        }
        const std::size_t taken = std::min<std::size_t>(same, 138);
        return taken < 11 ? Add({17, quint8(taken - 3), 3}, taken) : Add({18, quint8(taken - 11), 7}, taken);
    }
    std::size_t AddSame(quint8 length, std::size_t same) {
        Add({length, 0, 0}, 1);
        if (same < 4) {
            return 1;
        }
        const std::size_t repeated = std::min<std::size_t>(same - 1, 6);
        return Add({16, quint8(repeated - 3), 2}, repeated) + 1;
    }
    std::size_t Add(const Item& item, std::size_t taken) {
        items_[size_++] = item;
        return taken;
    }

    std::array<Item, MOST_ITEMS> items_;
    std::size_t size_ = 0;
};

// How often a block uses each symbol.
struct Counts {
    std::array<quint32, SYMBOLS> symbols{};
    std::array<quint32, DISTANCES> distances{};

    void AddMatch(std::size_t match, int distanceSymbol, std::size_t times) {
        symbols[LengthOf(match).symbol] += quint32(times);
        distances[std::size_t(distanceSymbol)] += quint32(times);
    }
};

template <std::size_t SIZE>
struct Words {
    std::array<quint8, SIZE> lengths;
    std::array<quint16, SIZE> words;

    explicit Words(const std::array<quint32, SIZE>& counts, int mostBits = MAX_WORD_BITS) {
        png_huffman::MakeLengths(counts.data(), int(SIZE), mostBits, lengths.data());
        png_huffman::MakeWords(lengths.data(), int(SIZE), words.data());
    }
};

} // namespace

struct PngDeflate::Code {
    Words<SYMBOLS> symbols;
    Words<DISTANCES> distances;
    std::size_t blockBytes = 0; // upper bound for what is written with it

    explicit Code(const Counts& counts)
        : symbols(counts.symbols)
        , distances(counts.distances) {
        constexpr int mostExtraBits = 5 + 13; // of a length, of a distance
        constexpr quint64 mostOfHeader = 17 + 3 * LengthList::SYMBOLS + 14 * LengthList::MOST_ITEMS;
        quint64 bits = mostOfHeader;
        for (std::size_t symbol = 0; symbol < SYMBOLS; ++symbol) {
            bits += quint64(counts.symbols[symbol]) * symbols.lengths[symbol];
        }
        for (std::size_t symbol = 0; symbol < DISTANCES; ++symbol) {
            bits += quint64(counts.distances[symbol]) * (distances.lengths[symbol] + mostExtraBits);
        }
        blockBytes = std::size_t(bits / 8 + 1);
    }
};

// Writes into memory of which there must be enough, and eight bytes more.
class PngDeflate::BitWriter {
public:
    BitWriter(uchar* at, quint64 bits, int count)
        : at_(at)
        , bits_(bits)
        , count_(count) {}

    // At most 64 bits between two calls of Flush(), of which it leaves up to 7.
    void Put(quint64 bits, int count) {
        bits_ |= bits << count_;
        count_ += count;
    }
    void Flush() {
        const quint64 word = qToLittleEndian(bits_);
        std::memcpy(at_, &word, sizeof word);
        at_ += count_ >> 3;
        bits_ >>= count_ & ~7;
        count_ &= 7;
    }

    void FillByte() {
        count_ = (count_ + 7) & ~7;
        Flush();
    }

    void PutHeader(const Code& code);
    void PutLiterals(const Code& code, const uchar* bytes, std::size_t count);
    void PutRepeated(const Code& code, std::size_t repeated, std::size_t distance);
    template <std::size_t SIZE>
    void PutWord(const Words<SIZE>& words, std::size_t symbol) {
        Put(words.words[symbol], words.lengths[symbol]);
    }

    uchar* At() const { return at_; }
    quint64 Bits() const { return bits_; }
    int Count() const { return count_; }

private:
    void PutLengths(const LengthList& list);
    void PutMatch(const Code& code, std::size_t match, const Distance& distance) {
        const Length& length = LengthOf(match);
        PutWord(code.symbols, length.symbol);
        Put(length.extra, length.extraBits);
        PutWord(code.distances, std::size_t(distance.symbol));
        Put(distance.extra, distance.extraBits);
        Flush();
    }

    uchar* at_;
    quint64 bits_;
    int count_;
};

// The lengths have a code of their own, whose lengths come first.
void PngDeflate::BitWriter::PutLengths(const LengthList& list) {
    static constexpr quint8 order[] = {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
    std::array<quint32, LengthList::SYMBOLS> counts{};
    for (const LengthList::Item& item : list) {
        ++counts[item.symbol];
    }
    const Words<LengthList::SYMBOLS> words(counts, LengthList::MAX_BITS);
    for (const quint8 symbol : order) {
        Put(words.lengths[symbol], 3);
        Flush();
    }
    for (const LengthList::Item& item : list) {
        PutWord(words, item.symbol);
        Put(item.extra, item.extraBits);
        Flush();
    }
}

void PngDeflate::BitWriter::PutHeader(const Code& code) {
    Put(0, 1); // not the last block
    Put(2, 2); // with a code of its own
    Put(SYMBOLS - FIRST_LENGTH, 5);
    Put(DISTANCES - 1, 5);
    Put(LengthList::SYMBOLS - 4, 4);
    Flush();
    std::array<quint8, SYMBOLS + DISTANCES> lengths;
    std::copy(code.symbols.lengths.begin(), code.symbols.lengths.end(), lengths.begin());
    std::copy(code.distances.lengths.begin(), code.distances.lengths.end(), lengths.begin() + SYMBOLS);
    PutLengths(LengthList(lengths.data(), lengths.size()));
}

void PngDeflate::BitWriter::PutLiterals(const Code& code, const uchar* bytes, std::size_t count) {
    const uchar* const end = bytes + count;
    for (; end - bytes >= WORDS_AT_ONCE; bytes += WORDS_AT_ONCE) {
        for (int i = 0; i < WORDS_AT_ONCE; ++i) {
            PutWord(code.symbols, bytes[i]);
        }
        Flush();
    }
    for (; bytes < end; ++bytes) {
        PutWord(code.symbols, *bytes);
    }
    Flush();
}

void PngDeflate::BitWriter::PutRepeated(const Code& code, std::size_t repeated, std::size_t distance) {
    const Matches matches(repeated);
    const Distance written(distance);
    for (std::size_t i = 0; i < matches.longest; ++i) {
        PutMatch(code, MAX_MATCH, written);
    }
    for (const std::size_t match : matches.last) {
        if (match != 0) {
            PutMatch(code, match, written);
        }
    }
}

PngDeflate::PngDeflate(QByteArray& out, int rowBytes, int pixelBytes)
    : out_(out)
    , rowBytes_(std::size_t(rowBytes))
    , pixelBytes_(std::size_t(pixelBytes))
    , bytes_(HISTORY + BLOCK_BYTES + std::max(rowBytes_, HISTORY))
    , end_(HISTORY)
    , segment_(HISTORY)
    , places_(PLACES << HASH_BITS)
    , written_(std::size_t(out.size())) {}

void PngDeflate::AddRow() {
    const std::size_t begin = end_;
    adler_ = libdeflate_adler32(adler_, NextRow(), rowBytes_);
    end_ += rowBytes_;
    FindTokens(begin, end_);
    isEmpty_ = false;
    if (end_ >= HISTORY + BLOCK_BYTES) {
        WriteBlock();
    }
}

void PngDeflate::AddEmptyRow() {
    Token token;
    token.begin = end_;
    token.literals = isEmpty_ || bytes_[end_ - 1] != 0 ? 1 : 0;
    token.repeated = rowBytes_ - token.literals;
    AddToken(token);
    adler_ = AdlerOfZeros(adler_, rowBytes_);
    std::fill_n(NextRow(), HISTORY, uchar(0));
    end_ += HISTORY;
    BeginSegment(rowBytes_ - HISTORY);
    isEmpty_ = false;
    if (end_ >= HISTORY + BLOCK_BYTES) {
        WriteBlock();
    }
}

// Called where `skipped` bytes of the stream are not in bytes_.
void PngDeflate::BeginSegment(quint64 skipped) {
    segment_ = end_;
    shift_ += skipped;
}

void PngDeflate::FindTokens(std::size_t begin, std::size_t end) {
    std::size_t literals = begin;
    std::size_t nextSearch = begin;
    std::size_t at = isEmpty_ ? begin + pixelBytes_ : begin;
    while (at + MIN_RUN <= end) {
        Match match = FindRun(at, end);
        if (match.length < HASHED_BYTES && at >= nextSearch && at + HASHED_BYTES <= end) {
            const Match far = FindFar(at, end);
            vain_ = far.length == 0 ? vain_ + 1 : vain_ / 2;
            nextSearch = at + 1 + std::min(vain_ / PATIENCE, MAX_STEP);
            if (far.length > match.length) {
                match = far;
                const std::size_t last = at + std::min(far.length, LOOKED_AT) - HASHED_BYTES;
                for (std::size_t inside = at + 1; inside <= last; ++inside) {
                    Remember(Remembered(inside), inside);
                }
            }
        }
        if (match.length == 0) {
            ++at;
            continue;
        }
        Token token;
        token.begin = literals;
        token.literals = at - literals;
        token.repeated = match.length;
        token.distance = match.distance;
        AddToken(token);
        at += match.length;
        literals = at;
    }
    if (literals < end) {
        Token token;
        token.begin = literals;
        token.literals = end - literals;
        AddToken(token);
    }
}

// Returns the longer run of a byte or a pixel, or nothing.
PngDeflate::Match PngDeflate::FindRun(std::size_t at, std::size_t end) const {
    const uchar* bytes = bytes_.data();
    const auto next = Load<quint32>(bytes + at);
    Match run;
    if (next == Load<quint32>(bytes + at - 1)) {
        run.length = RunLength(bytes + at, bytes + end, 1);
    }
    if (next == Load<quint32>(bytes + at - pixelBytes_)) {
        const std::size_t length = RunLength(bytes + at, bytes + end, pixelBytes_);
        if (length > run.length) {
            run.length = length;
            run.distance = pixelBytes_;
        }
    }
    return run;
}

// Returns what lies further back and is worth it, or nothing.
PngDeflate::Match PngDeflate::FindFar(std::size_t at, std::size_t end) {
    Match best;
    std::size_t needed = 0; // bytes; 0 while it is unknown
    quint32* places = Remembered(at);
    for (std::size_t i = 0; i < PLACES; ++i) {
        const std::size_t place = places[i] - shift_;
        const std::size_t distance = at - place;
        if (place < segment_ || place >= at || distance > MAX_DISTANCE ||
            Load<quint64>(bytes_.data() + place) != Load<quint64>(bytes_.data() + at)) {
            continue;
        }
        needed = needed == 0 ? NeededLength(at, end) : needed;
        const std::size_t length = RunLength(bytes_.data() + at, bytes_.data() + end, distance);
        if (length > best.length && length >= needed) {
            best.length = length;
            best.distance = distance;
        }
    }
    Remember(places, at);
    return best;
}

// From how many bytes on a repetition of something far takes fewer bits than single bytes and runs. More than
// there are if that is nowhere near.
std::size_t PngDeflate::NeededLength(std::size_t at, std::size_t end) const {
    const uchar* bytes = bytes_.data();
    const std::size_t last = std::min(end, at + LOOKED_AT);
    int bits = 0;
    bool isInRun = false;
    for (std::size_t i = at; i < last; ++i) {
        const bool isRun = bytes[i] == bytes[i - 1] || bytes[i] == bytes[i - pixelBytes_];
        bits += !isRun ? LITERAL_COST : isInRun ? 0 : RUN_COST;
        if (bits > FAR_COST) {
            return i + 1 - at;
        }
        isInRun = isRun;
    }
    return end + 1 - at;
}

quint32* PngDeflate::Remembered(std::size_t at) {
    const quint64 hash =
        qFromLittleEndian(Load<quint64>(bytes_.data() + at)) * Q_UINT64_C(0x9e3779b97f4a7c15);
    return places_.data() + PLACES * (hash >> (64 - HASH_BITS));
}

void PngDeflate::Remember(quint32* places, std::size_t at) {
    for (std::size_t i = PLACES - 1; i > 0; --i) {
        places[i] = places[i - 1];
    }
    places[0] = quint32(at + shift_);
}

void PngDeflate::AddToken(const Token& token) {
    if (token.literals == 0 && !tokens_.empty() && tokens_.back().repeated != 0 &&
        tokens_.back().distance == token.distance) {
        tokens_.back().repeated += token.repeated;
    } else {
        tokens_.push_back(token);
    }
}

PngDeflate::Code PngDeflate::MakeCode() const {
    Counts counts;
    ++counts.symbols[END_OF_BLOCK];
    ++counts.distances.front(); // a code has two words at least
    ++counts.distances.back();
    for (const Token& token : tokens_) {
        const uchar* literals = bytes_.data() + token.begin;
        for (std::size_t i = 0; i < token.literals; ++i) {
            ++counts.symbols[literals[i]];
        }
        if (token.repeated != 0) {
            const Matches matches(token.repeated);
            const int distance = Distance(token.distance).symbol;
            counts.AddMatch(MAX_MATCH, distance, matches.longest);
            for (const std::size_t match : matches.last) {
                counts.AddMatch(std::max(match, MIN_MATCH), distance, match != 0 ? 1 : 0);
            }
        }
    }
    return Code(counts);
}

void PngDeflate::WriteBlock() {
    const Code code = MakeCode();
    out_.resize(int(written_ + code.blockBytes + sizeof(quint64)));
    BitWriter writer(reinterpret_cast<uchar*>(out_.data()) + written_, bits_, bitCount_);
    writer.PutHeader(code);
    for (const Token& token : tokens_) {
        writer.PutLiterals(code, bytes_.data() + token.begin, token.literals);
        if (token.repeated != 0) {
            writer.PutRepeated(code, token.repeated, token.distance);
        }
    }
    writer.PutWord(code.symbols, END_OF_BLOCK);
    writer.Flush();
    written_ = std::size_t(writer.At() - reinterpret_cast<uchar*>(out_.data()));
    bits_ = writer.Bits();
    bitCount_ = writer.Count();
    std::copy_n(bytes_.begin() + std::ptrdiff_t(end_ - HISTORY), HISTORY, bytes_.begin());
    const quint64 done = end_ - HISTORY;
    end_ = HISTORY;
    BeginSegment(done);
    tokens_.clear();
}

void PngDeflate::Finish(bool isLast) {
    if (!tokens_.empty()) {
        WriteBlock();
    }
    out_.resize(int(written_ + 2 * sizeof(quint64)));
    BitWriter writer(reinterpret_cast<uchar*>(out_.data()) + written_, bits_, bitCount_);
    if (isLast) {
        writer.Put(1, 1); // the last block
        writer.Put(1, 2); // with the fixed code, in which the end is seven zeros
        writer.Put(0, 7);
        writer.FillByte();
    } else {
        writer.Put(0, 1); // not the last block
        writer.Put(0, 2); // of bytes as they are, which begin with a byte: none
        writer.FillByte();
        writer.Put(0xffff0000u, 32); // their number, and its complement
        writer.Flush();
    }
    out_.resize(int(writer.At() - reinterpret_cast<uchar*>(out_.data())));
}

} // namespace vellix
