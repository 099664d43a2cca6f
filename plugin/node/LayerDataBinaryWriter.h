#pragma once

#include <QByteArray>

#include <iosfwd>

namespace vellix {

class Frame;
class Layer;
class LayerManager;

/// Writes a drawing as raw bytes: 32-bit integers and floats in the machine's byte order, booleans as one
/// byte, names (UTF-8) and images (PNG) as a byte count followed by the bytes. A layer or frame that is
/// missing is skipped without a placeholder.
class LayerDataBinaryWriter {
public:
    LayerDataBinaryWriter(const LayerManager& layers, std::ostream& out);

    /// Returns false, and logs an error for each, if drawings could not be encoded. They have no bytes then.
    bool Write();

private:
    void WriteLayer(const Layer& layer);
    void WriteFrame(const Layer& layer, const Frame& frame);
    void WriteBytes(const QByteArray& bytes);
    template <typename Value>
    void WriteValue(Value value);

    const LayerManager& layers_;
    std::ostream& out_;
    bool isWhole_ = true;
};

} // namespace vellix
