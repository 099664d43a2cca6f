#include <maya/MTypeId.h>

#include <ios>
#include <ostream>

std::ostream& operator<<(std::ostream& os, const MTypeId& id) {
    const std::ios_base::fmtflags flags = os.flags();
    os << "0x" << std::hex << id.id();
    os.flags(flags);
    return os;
}
