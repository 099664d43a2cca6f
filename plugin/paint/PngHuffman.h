#pragma once

#include <QtGlobal>

namespace vellix {

/// Prefix codes as deflate uses them (RFC 1951, 3.2.2).
namespace png_huffman {

constexpr int MAX_SYMBOLS = 286;

/// Sets the lengths (bits) of a code in which frequent symbols are short and none is longer than `mostBits`.
/// A symbol that does not occur gets 0. At least two symbols must occur, and at most 2 to the power of
/// `mostBits`.
void MakeLengths(const quint32* counts, int symbols, int mostBits, quint8* lengths);

/// Sets the canonical code words of these lengths, turned around as deflate stores them: the first bit of a
/// word is its lowest.
void MakeWords(const quint8* lengths, int symbols, quint16* words);

} // namespace png_huffman
} // namespace vellix
