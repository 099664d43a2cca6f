#include "exchange/LayeredDrawing.h"

#include <cstddef>

namespace vellix {

int LayeredDrawing::PictureCount() const {
    std::size_t count = 0;
    for (const PictureLayer& layer : layers) {
        count += layer.pictures.size();
    }
    return int(count);
}

qint64 LayeredDrawing::ByteCount() const {
    qint64 count = 0;
    for (const PictureLayer& layer : layers) {
        for (const LayeredPicture& picture : layer.pictures) {
            count += picture.png.size();
        }
    }
    return count;
}

} // namespace vellix
