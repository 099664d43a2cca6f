#pragma once

#include <QByteArray>
#include <QString>

#include <ios>
#include <iosfwd>

namespace vellix {

class Layer;
class LayerManager;

/// Reads the bytes that LayerDataBinaryWriter wrote and appends their content to a drawing. A stream that
/// ends early yields its content up to there, and damaged drawings are left out; every loss is logged as an
/// error. When the lengths lead nowhere, the pictures behind the last whole one are found by their
/// signature, if the stream can go back. Memory use is bounded by the bytes that really arrive.
class LayerDataBinaryReader {
public:
    /// `length`: number of bytes of the stream that belong to the data.
    LayerDataBinaryReader(LayerManager& layers, std::istream& in, unsigned int length);

    void Read();

private:
    // Each returns false if the stream ended before its own fields were whole.
    bool ReadCamera();
    bool ReadLayer();
    void ReadFrames(qint32 count);
    /// Notes that everything up to here could be read.
    void NoteWhole();
    /// Reads on behind what is whole. Returns whether anything was found.
    bool ReadRest();
    /// Reads the heads of cameras and layers before a picture.
    void ReadHeads(const QByteArray& bytes);
    void AddLayer(const QString& name, bool visible, float opacity, qint32 state);
    /// Logs how many of its `what` the owner lost, if any.
    static void ReportLoss(const QString& owner, qint32 lost, qint32 count, const char* what);
    template <typename Value>
    Value ReadValue();
    QByteArray ReadBytes();
    QString ReadString();
    bool Fill(char* bytes, qint64 count);

    LayerManager& layers_;
    std::istream& in_;
    qint64 remaining_; ///< bytes that may still be read
    bool ended_ = false;

    QString camera_;
    Layer* layer_ = nullptr; ///< the last one; the drawing owns it
    std::streampos whole_;
    qint64 remainingAfterWhole_ = 0;
};

} // namespace vellix
