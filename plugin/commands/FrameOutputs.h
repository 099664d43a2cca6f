#pragma once

#include "paint/ImageSequence.h"
#include "paint/PngWriter.h"

#include <QImage>
#include <QString>
#include <QStringList>

#include <memory>

namespace vellix {

class ContactSheet;
class MovieWriter;

/// What an export makes of the frames, of each kind what was asked for: numbered pictures, a contact sheet
/// and a movie.
class FrameOutputs {
public:
    FrameOutputs();
    ~FrameOutputs();

    void AddPictures(const QString& pattern);
    /// A sheet for so many frames.
    void AddContactSheet(const QString& path, int count, const QString& title);
    /// `rate` is in frames a second.
    void AddMovie(const QString& path, double rate);

    /// Takes the next frame on. False once something could not be written.
    bool Write(const QImage& image, int frame);
    /// Completes everything, or, when the frames are not `all` there, only the pictures. Returns what went
    /// wrong first, or an empty string.
    QString Finish(bool all);

    /// What was written, in the order of the frames, then sheet and movie.
    const QStringList& Files() const { return files_; }

private:
    bool FlushHeld();

    PngWriter writer_;
    std::unique_ptr<ImageSequence> sequence_;
    std::unique_ptr<ContactSheet> sheet_;
    std::unique_ptr<MovieWriter> movie_;
    QString sheetPath_;
    QString moviePath_;
    // Frames that look alike one after the other are written as one image: drawings are held.
    QImage held_;
    QStringList heldPaths_;
    QStringList files_;
};

} // namespace vellix
