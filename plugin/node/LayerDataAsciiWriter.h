#pragma once

#include <QByteArray>
#include <QString>

#include <iosfwd>

namespace vellix {

class Frame;
class Layer;
class LayerManager;

/// Writes a drawing as the space-separated tokens of a Maya ASCII scene; docs/pipeline.md has the grammar.
/// Images are PNG bytes in hexadecimal.
class LayerDataAsciiWriter {
public:
    LayerDataAsciiWriter(const LayerManager& layers, std::ostream& out);

    /// Returns false, and logs an error for each, if drawings could not be encoded. Their text is empty then.
    bool Write();

private:
    void WriteCamera(const QString& camera);
    void WriteLayer(const Layer* layer);
    void WriteFrame(const Layer& layer, const Frame* frame);
    void WriteHex(const QByteArray& bytes);
    void WriteString(const QString& text);

    const LayerManager& layers_;
    std::ostream& out_;
    bool isWhole_ = true;
};

} // namespace vellix
