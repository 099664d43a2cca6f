#include "paint/PngChecksum.h"

#ifdef VELLIX_WITH_LIBDEFLATE
#include <libdeflate.h>
#else
#include <array>
#endif

namespace vellix {

#ifdef VELLIX_WITH_LIBDEFLATE

quint32 PngChecksum(const uchar* bytes, std::size_t count) {
    return libdeflate_crc32(0, bytes, count);
}

#else

namespace {

using CrcTable = std::array<quint32, 256>;

CrcTable MakeCrcTable() {
    CrcTable table;
    for (quint32 n = 0; n < 256; ++n) {
        quint32 c = n;
        for (int bit = 0; bit < 8; ++bit) {
            c = (c & 1) != 0 ? 0xedb88320u ^ (c >> 1) : c >> 1;
        }
        table[n] = c;
    }
    return table;
}

} // namespace

quint32 PngChecksum(const uchar* bytes, std::size_t count) {
    static const CrcTable table = MakeCrcTable();
    quint32 c = 0xffffffffu;
    for (std::size_t i = 0; i < count; ++i) {
        c = table[(c ^ bytes[i]) & 0xff] ^ (c >> 8);
    }
    return c ^ 0xffffffffu;
}

#endif

} // namespace vellix
