#include "paint/Picture.h"

#include <atomic>

namespace vellix {

qint64 Picture::NewKey() {
    static std::atomic<qint64> last{0};
    return --last;
}

} // namespace vellix
