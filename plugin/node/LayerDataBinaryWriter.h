#pragma once

#include <QByteArray>

#include <iosfwd>

namespace vellix {

class Layer;
class LayerManager;

/// Writes a drawing as raw bytes: 32-bit integers and floats in the machine's byte order, booleans as one
/// byte, names (UTF-8) and images (PNG) as a byte count and the bytes. What cannot be had is left out without
/// a mark.
class LayerDataBinaryWriter {
public:
    LayerDataBinaryWriter(const LayerManager& layers, std::ostream& out);

    void Write();

private:
    void WriteLayer(const Layer& layer);
    void WriteBytes(const QByteArray& bytes);
    template <typename Value>
    void WriteValue(Value value);

    const LayerManager& layers_;
    std::ostream& out_;
};

} // namespace vellix
