#pragma once

#include "node/DrawingLoader.h"

#include <QByteArray>
#include <QString>

#include <iosfwd>

namespace vellix {

class LayerManager;

/// Reads the bytes that LayerDataBinaryWriter wrote and appends what they hold to a drawing. Nothing is
/// reported: a stream that ends early gives what it held until then, a drawing that cannot be decoded is left
/// out. Memory grows only with the bytes that really come.
class LayerDataBinaryReader {
public:
    /// `length` bytes of the stream belong to the data.
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
