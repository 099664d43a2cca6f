#pragma once

#include <QString>

#include <iosfwd>

namespace vellix {

class Frame;
class Layer;
class LayerManager;

/// Writes a drawing as the blank-separated tokens of a Maya ASCII scene. Images are PNG bytes as hexadecimal
/// text.
class LayerDataAsciiWriter {
public:
    LayerDataAsciiWriter(const LayerManager& layers, std::ostream& out);

    void Write();

private:
    void WriteCamera(const QString& camera);
    void WriteLayer(const Layer* layer);
    void WriteFrame(const Frame* frame);
    void WriteString(const QString& text);

    const LayerManager& layers_;
    std::ostream& out_;
};

} // namespace vellix
