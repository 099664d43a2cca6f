#pragma once

#include "paint/ImageSequence.h"

#include <QImage>
#include <QString>
#include <QStringList>

#include <memory>

namespace vellix {

class ContactSheet;
class MovieWriter;
class PngWriter;

/// Writes the exported frames as numbered pictures, a contact sheet and a movie, each of them if requested.
class FrameOutputs {
public:
    FrameOutputs();
    ~FrameOutputs();

    void AddPictures(const QString& pattern);
    /// A sheet for `count` frames.
    void AddContactSheet(const QString& path, int count, const QString& title);
    /// `rate` is in frames per second. Without `isOpaque`, transparent where the format can be.
    void AddMovie(const QString& path, double rate, bool isOpaque);

    /// Whether there is anything to write the frames to.
    bool NeedsImages() const { return sequence_ || sheet_ || movie_; }

    /// Adds the next frame. Returns false once writing has failed.
    bool Write(const QImage& image, int frame);
    /// Completes all outputs or, if not `all` frames were written, only the pictures. Returns the first
    /// error, or an empty string.
    QString Finish(bool all);

    /// The written files: pictures in the order of frames, then the sheet and the movie.
    const QStringList& Files() const { return files_; }

private:
    bool FlushHeld();

    std::unique_ptr<PngWriter> writer_; // for pictures and the sheet
    std::unique_ptr<ImageSequence> sequence_;
    std::unique_ptr<ContactSheet> sheet_;
    std::unique_ptr<MovieWriter> movie_;
    QString sheetPath_;
    QString moviePath_;
    // Consecutive frames with equal images are encoded once, since drawings are often held.
    QImage held_;
    QStringList heldPaths_;
    QStringList files_;
};

} // namespace vellix
