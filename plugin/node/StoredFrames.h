#pragma once

#include "paint/NonCopyable.h"

#include <maya/MTime.h>

#include <QByteArray>
#include <QList>

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

    /// Adds the next drawing. Logs an error, leaves the drawing out and returns false if the bytes are
    /// damaged.
    bool Add(const MTime& time, const QByteArray& png);
    /// The same for a drawing whose time is lost. It gets a free frame behind the one before it, once all
    /// others have theirs: in Finish().
    void AddWithoutTime(const QByteArray& png);
    /// Logs where the drawings without a time are now.
    void Finish();

private:
    struct Stray {
        int index; ///< the drawing's position in its layer as stored
        int after; ///< frame of the drawing before it
        QByteArray png;
    };

    bool Insert(int index, const MTime& time, const QByteArray& png);
    int FindFreeFrame(int frame);
    void ReportMoves() const;

    Layer& layer_;
    int count_ = 0; ///< of the drawings so far, with those that were left out
    int last_ = 1;  ///< frame of the last one with a time
    QList<Stray> strays_;
    int moved_ = 0;
    int firstMovedFrom_ = 0;
    int firstMovedTo_ = 0;
    // All whole frames of this range are known to be taken.
    int takenFrom_ = 0;
    int takenTo_ = -1;
};

} // namespace vellix
