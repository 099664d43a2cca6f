#pragma once

#include <QByteArray>

#include <cstddef>
#include <vector>

namespace vellix {

/// Writes filtered rows of a PNG, all of them or those of a band (PngBand), as a deflate stream (RFC 1951).
///
/// Filtered rows of drawings are mostly runs: of one byte, above all of 0, and of one pixel. So runs are
/// looked for first, and empty rows cost next to nothing. What lies further back counts only where it saves
/// more bits than it costs.
///
/// An encoder for any data looks at all the zeros of a picture that is nearly empty, as most drawings are:
/// libdeflate at level 2 takes five times as long for a sparse drawing, and four times for handwriting, at
/// 0.87 and 0.98 of the bytes (bench/RESULTS.md). Its streams cannot be joined, so that empty rows cannot be
/// written without it. Without what lies far back, exported frames would take 1.5 times the bytes.
class PngDeflate {
public:
    /// Appends to `out`, which it borrows until Finish(). A row has `rowBytes` bytes, a pixel 3 or 4. All
    /// functions throw std::bad_alloc when memory is short.
    PngDeflate(QByteArray& out, int rowBytes, int pixelBytes);

    /// Where the next row is to be written.
    uchar* NextRow() { return bytes_.data() + end_; }
    /// Takes the row that was written there.
    void AddRow();
    /// Takes a row of zeros. Need not be written.
    void AddEmptyRow();
    /// Writes what is left, up to the end of a byte: the last call. Behind it, another stream may go on
    /// unless this is the last one.
    void Finish(bool isLast);
    /// The Adler-32 (RFC 1950) of all rows.
    quint32 Checksum() const { return adler_; }

private:
    // Bytes that are written one by one, then some that repeat those `distance` before them.
    struct Token {
        std::size_t begin = 0; // of the single bytes, in bytes_
        std::size_t literals = 0;
        std::size_t repeated = 0;
        std::size_t distance = 1;
    };
    struct Match {
        std::size_t length = 0;
        std::size_t distance = 1;
    };
    struct Code;
    class BitWriter;

    void FindTokens(std::size_t begin, std::size_t end);
    Match FindRun(std::size_t at, std::size_t end) const;
    Match FindFar(std::size_t at, std::size_t end);
    std::size_t NeededLength(std::size_t at, std::size_t end) const;
    quint32* Remembered(std::size_t at);
    void Remember(quint32* places, std::size_t at);
    void BeginSegment(quint64 skipped);
    void AddToken(const Token& token);
    void WriteBlock();
    Code MakeCode() const;

    QByteArray& out_;
    const std::size_t rowBytes_;
    const std::size_t pixelBytes_;
    quint32 adler_ = 1;
    bool isEmpty_ = true; // nothing was added yet

    // The bytes that the tokens refer to. They begin with the last ones of the block before, and an empty row
    // leaves four zeros, so that the bytes before a row are always those of the stream.
    std::vector<uchar> bytes_;
    std::size_t end_;
    std::vector<Token> tokens_;

    // Bytes between which nothing was left out, from segment_ on. places_ has two places in the stream for
    // each hash of eight bytes: the last ones where they stood. Not all of them lie in the segment.
    std::size_t segment_;
    quint64 shift_ = 0; // from a place in bytes_ to one in the stream
    std::vector<quint32> places_;
    std::size_t vain_ = 0; // searches in vain lately

    std::size_t written_; // bytes of `out_`
    quint64 bits_ = 0;    // that do not fill a byte yet
    int bitCount_ = 0;
};

} // namespace vellix
