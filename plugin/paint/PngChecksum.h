#pragma once

#include <QtGlobal>

#include <cstddef>

namespace vellix {

/// The CRC-32 of a PNG chunk's type and data (ISO/IEC 15948, annex D), which is also that of a ZIP archive's
/// members.
quint32 PngChecksum(const uchar* bytes, std::size_t count);

} // namespace vellix
