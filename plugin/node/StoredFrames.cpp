#include "node/StoredFrames.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "host/FrameTime.h"
#include "host/Logger.h"
#include "paint/PngStructure.h"

#include <QBuffer>

#include <limits>
#include <memory>
#include <new>

namespace vellix {

namespace {

/// Returns the message for bytes that are no picture, without its arguments; null for a sound one.
const char* FindFault(QByteArray png) {
    if (!QBuffer(&png).open(QIODevice::ReadOnly)) {
        return "Failed to open draw data buffer: %1 (%2)";
    }
    return PngStructure::IsSound(png) ? nullptr : "Failed to load draw data: %1 (%2)";
}

} // namespace

StoredFrames::StoredFrames(Layer& layer)
    : layer_(layer) {}

StoredFrames::~StoredFrames() {
    try {
        ReportMoves();
    } catch (const std::bad_alloc&) {
        // Then the reading has failed, which is told.
    }
}

bool StoredFrames::Add(const MTime& time, const QByteArray& png) {
    last_ = ToWholeFrames(time);
    return Insert(count_++, time, png);
}

void StoredFrames::AddWithoutTime(const QByteArray& png) {
    strays_.append({count_++, last_, png});
}

void StoredFrames::Finish() {
    for (const Stray& stray : strays_) {
        const int before = layer_.FrameCount();
        const int frame = FindFreeFrame(stray.after);
        Insert(stray.index, FromWholeFrames(frame), stray.png);
        if (layer_.FrameCount() > before) {
            Logger::Error(
                QString("Layer %1: the time of a drawing is damaged. The drawing is at frame %2 now.")
                    .arg(layer_.GetName(), QString::number(frame)));
        }
    }
    strays_.clear();
}

bool StoredFrames::Insert(int index, const MTime& time, const QByteArray& png) {
    if (const char* fault = FindFault(png)) {
        Logger::Error(QString(fault).arg(layer_.GetName(), QString::number(index)));
        return false;
    }
    auto frame = std::make_unique<Frame>(time);
    frame->SetPackedImage(png);
    const int wanted = frame->GetTimeValue();
    if (layer_.FrameExists(wanted)) {
        frame->SetTimeValue(FindFreeFrame(wanted));
        if (moved_++ == 0) {
            firstMovedFrom_ = wanted;
            firstMovedTo_ = frame->GetTimeValue();
        }
    }
    layer_.InsertFrame(frame.release());
    return true;
}

void StoredFrames::ReportMoves() const {
    if (moved_ > 0) {
        Logger::Warning(
            QString("Layer %1: %2 of its drawings stood on the whole frame of another and moved to the "
                    "next free one, the first from frame %3 to %4.")
                .arg(layer_.GetName(), QString::number(moved_), QString::number(firstMovedFrom_),
                     QString::number(firstMovedTo_)));
    }
}

int StoredFrames::FindFreeFrame(int frame) {
    constexpr int last = std::numeric_limits<int>::max();
    if (frame < takenFrom_ || frame > takenTo_) {
        takenFrom_ = takenTo_ = frame;
    }
    while (takenTo_ < last && layer_.FrameExists(takenTo_)) {
        ++takenTo_;
    }
    if (!layer_.FrameExists(takenTo_)) {
        return takenTo_;
    }
    while (layer_.FrameExists(takenFrom_)) { // there is none later
        --takenFrom_;
    }
    return takenFrom_;
}

} // namespace vellix
