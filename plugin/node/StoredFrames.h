#pragma once

#include "paint/NonCopyable.h"

#include <maya/MTime.h>

#include <QByteArray>

namespace vellix {

class Layer;

/// Puts the stored drawings of one layer into it, as packed frames. Checks the structure and the checksums of
/// the PNG bytes, and decodes nothing. A drawing whose whole frame is taken moves to the next free one.
class StoredFrames : private NonCopyable {
public:
    /// The layer is borrowed.
    explicit StoredFrames(Layer& layer);
    /// Logs one warning if drawings were moved.
    ~StoredFrames();

    /// `index` is the drawing's position in its layer as stored. Logs an error, and leaves the drawing out,
    /// if the bytes are damaged.
    void Add(int index, const MTime& time, const QByteArray& png);

private:
    int FindFreeFrame(int frame);
    void ReportMoves() const;

    Layer& layer_;
    int moved_ = 0;
    int firstMovedFrom_ = 0;
    int firstMovedTo_ = 0;
    // All whole frames of this range are known to be taken.
    int takenFrom_ = 0;
    int takenTo_ = -1;
};

} // namespace vellix
