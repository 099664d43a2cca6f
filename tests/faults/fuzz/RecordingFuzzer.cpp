// Recordings of pen strokes.
#include "paint/StrokeRecording.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vellix::StrokeRecording recording;
    QString error;
    const QByteArray json(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const bool isRead = recording.Parse(json, error);
    if (isRead != error.isEmpty() || (!isRead && !recording.GetStrokes().isEmpty())) {
        std::abort(); // all of it or nothing, and then an error
    }
    for (const vellix::RecordedStroke& stroke : recording.GetStrokes()) {
        if (stroke.samples.isEmpty()) {
            std::abort();
        }
    }
    return 0;
}
