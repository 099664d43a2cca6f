#pragma once

#include <QByteArray>

#include <cstddef>
#include <functional>
#include <vector>

namespace vellix {

/// Rows of a PNG that can be read without the rows above them, so that several processors read one picture.
///
/// The deflate stream (RFC 1951) of a band begins and ends with a byte of its own and repeats nothing that
/// lies before the band, and the filter of its first row needs no row above. One after the other, the bands
/// are the stream that every reader expects. A chunk of our own before the pixels tells where they begin. Its
/// name says, by the rules of ISO/IEC 15948, 5.4: it may be left out, it is no registered one, and who
/// changes the pixels has to leave it out. Nothing in it is trusted: PngDecoder reads the stream as a whole
/// if it is wrong.
struct PngBand {
    std::size_t firstRow = 0;
    std::size_t begin = 0; ///< in the zlib stream (RFC 1950)
};

namespace png_bands {

constexpr char CHUNK_TYPE[] = "baND";
/// Before the first band and behind the last one, in a zlib stream.
constexpr std::size_t ZLIB_HEADER_LENGTH = 2;
constexpr std::size_t ZLIB_CHECKSUM_LENGTH = 4;

/// Where bands begin in a picture of `height` rows of `rowBytes`. `changes` is called for some of the rows
/// and returns how many of their bytes do not repeat those of the pixel before. A band has so many of these
/// that it is worth a thread, and lies in fast memory if all of its bytes are such. Most drawings are one
/// band.
std::vector<std::size_t> FirstRows(std::size_t height, std::size_t rowBytes,
                                   const std::function<std::size_t(std::size_t)>& changes);

/// The data of the chunk: for each band but the first one, its first row and its begin, four bytes each.
QByteArray Written(const std::vector<PngBand>& bands);

/// Returns the bands that the data of a chunk names, the first one included; none if they are not in order,
/// not in the picture, or larger than FirstRows() makes them.
std::vector<PngBand> Read(const uchar* data, std::size_t length, std::size_t streamLength, std::size_t height,
                          std::size_t rowBytes);

/// The Adler-32 (RFC 1950) of bytes followed by `length` others, from the checksums of both.
quint32 JoinedChecksum(quint32 first, quint32 second, quint64 length);

} // namespace png_bands
} // namespace vellix
