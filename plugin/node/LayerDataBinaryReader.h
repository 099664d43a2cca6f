#pragma once

#include <QByteArray>
#include <QString>

#include <iosfwd>

namespace vellix {

class Layer;
class LayerManager;

/// Reads the bytes that LayerDataBinaryWriter wrote and appends their content to a drawing. A stream that
/// ends early yields its content up to there, and damaged drawings are left out; every loss is logged as an
/// error. Memory use is bounded by the bytes that really arrive.
class LayerDataBinaryReader {
public:
    /// `length`: number of bytes of the stream that belong to the data.
    LayerDataBinaryReader(LayerManager& layers, std::istream& in, unsigned int length);

    void Read();

private:
    // Each returns false if the stream ended before its own fields were whole.
    bool ReadCamera();
    bool ReadLayer(const QString& camera);
    void ReadFrames(Layer& layer, qint32 count);
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
};

} // namespace vellix
