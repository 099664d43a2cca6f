#include "commands/FrameOutputs.h"

#include "paint/ContactSheet.h"
#include "paint/MovieWriter.h"

namespace vellix {

FrameOutputs::FrameOutputs() = default;
FrameOutputs::~FrameOutputs() = default;

void FrameOutputs::AddPictures(const QString& pattern) {
    m_sequence = std::make_unique<ImageSequence>(pattern);
}

void FrameOutputs::AddContactSheet(const QString& path, int count, const QString& title) {
    m_sheet = std::make_unique<ContactSheet>(count, title);
    m_sheetPath = path;
}

void FrameOutputs::AddMovie(const QString& path, double rate) {
    m_movie = std::make_unique<MovieWriter>(path, rate);
    m_moviePath = path;
}

bool FrameOutputs::FlushHeld() {
    const bool written = m_heldPaths.isEmpty() || m_writer.Write(m_held, m_heldPaths);
    m_heldPaths.clear();
    return written;
}

bool FrameOutputs::Write(const QImage& image, int frame) {
    bool going = true;
    if (m_sequence) {
        going = image == m_held || FlushHeld();
        m_held = image;
        m_heldPaths.append(m_sequence->GetPath(frame));
        m_files.append(m_heldPaths.last());
    }
    if (m_sheet) {
        m_sheet->Add(image, QString::number(frame));
    }
    return (!m_movie || m_movie->Write(image)) && going;
}

QString FrameOutputs::Finish(bool all) {
    FlushHeld();
    if (m_sheet && all) {
        m_files.append(m_sheetPath);
        m_writer.Write(m_sheet->GetImage(), {m_sheetPath});
    }
    QString fault;
    // A failed movie may be why frames are missing.
    if (m_movie) {
        fault = all ? m_movie->Finish() : m_movie->Fault();
        m_files.append(m_moviePath);
    }
    const QString pictureFault = m_writer.Finish();
    return pictureFault.isEmpty() ? fault : pictureFault;
}

} // namespace vellix
