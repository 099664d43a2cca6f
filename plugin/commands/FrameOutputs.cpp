#include "commands/FrameOutputs.h"

#include "paint/ContactSheet.h"
#include "paint/MovieWriter.h"
#include "paint/PngWriter.h"

namespace vellix {

FrameOutputs::FrameOutputs() = default;
FrameOutputs::~FrameOutputs() = default;

void FrameOutputs::AddPictures(const QString& pattern) {
    sequence_ = std::make_unique<ImageSequence>(pattern);
    writer_ = std::make_unique<PngWriter>();
}

void FrameOutputs::AddContactSheet(const QString& path, int count, const QString& title) {
    sheet_ = std::make_unique<ContactSheet>(count, title);
    sheetPath_ = path;
    if (!writer_) {
        writer_ = std::make_unique<PngWriter>();
    }
}

void FrameOutputs::AddMovie(const QString& path, double rate, bool isOpaque) {
    using Paper = MovieWriter::Paper;
    movie_ = std::make_unique<MovieWriter>(path, rate, isOpaque ? Paper::White : Paper::Transparent);
    moviePath_ = path;
}

bool FrameOutputs::FlushHeld() {
    const bool written = heldPaths_.isEmpty() || writer_->Write(held_, heldPaths_);
    heldPaths_.clear();
    return written;
}

bool FrameOutputs::Write(const QImage& image, int frame) {
    bool going = true;
    if (sequence_) {
        going = image == held_ || FlushHeld();
        held_ = image;
        heldPaths_.append(sequence_->GetPath(frame));
        files_.append(heldPaths_.last());
    }
    if (sheet_) {
        sheet_->Add(image, QString::number(frame));
    }
    return (!movie_ || movie_->Write(image)) && going;
}

QString FrameOutputs::Finish(bool all) {
    FlushHeld();
    if (sheet_ && all) {
        files_.append(sheetPath_);
        writer_->Write(sheet_->GetImage(), {sheetPath_});
    }
    QString fault;
    // A failed movie may be why frames are missing.
    if (movie_) {
        fault = all ? movie_->Finish() : movie_->Fault();
        files_.append(moviePath_);
    }
    const QString pictureFault = writer_ ? writer_->Finish() : QString();
    return pictureFault.isEmpty() ? fault : pictureFault;
}

} // namespace vellix
