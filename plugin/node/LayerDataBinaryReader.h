#pragma once

#include "node/DrawingLoader.h"

#include <QByteArray>
#include <QString>

#include <iosfwd>

namespace vellix {

class LayerManager;

/// Reads the bytes that LayerDataBinaryWriter wrote and appends their content to a drawing. Reports nothing:
/// a stream that ends early yields its content up to there, and drawings that do not decode are skipped.
/// Memory use is bounded by the bytes that really arrive.
class LayerDataBinaryReader {
public:
    /// `length`: number of bytes of the stream that belong to the data.
    LayerDataBinaryReader(LayerManager& layers, std::istream& in, unsigned int length);

    void Read();

private:
    void ReadCamera();
    void ReadLayer(const QString& camera);
    template <typename Value>
    Value ReadValue();
    QByteArray ReadBytes();
    QString ReadString();
    bool Fill(char* bytes, qint64 count);

    LayerManager& layers_;
    std::istream& in_;
    qint64 remaining_; ///< bytes that may still be read
    bool ended_ = false;
    DrawingLoader loader_;
};

} // namespace vellix
