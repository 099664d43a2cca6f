#pragma once

#include "core/LayerManager.h"

#include <maya/MArgList.h>
#include <maya/MStatus.h>

#include <QByteArray>
#include <QColor>
#include <QString>

#include <memory>
#include <string>
#include <vector>

namespace vellix {

class BaseNodeLayerData;

/// Splits the text of a stored drawing into tokens, without quotes and escapes. The last token of a truncated
/// text may be incomplete.
std::vector<std::string> Tokens(const std::string& text);
MArgList ToArguments(const std::vector<std::string>& tokens);

std::string WriteAscii(BaseNodeLayerData& data);
std::string WriteBinary(BaseNodeLayerData& data);
/// Read into a new value.
struct ReadResult {
    std::shared_ptr<LayerManager> layers;
    MStatus status;
    unsigned element; ///< the next token
};
ReadResult ReadAscii(const std::vector<std::string>& tokens);
ReadResult ReadBinary(const std::string& bytes);

/// Returns the PNG bytes of a picture whose upper left quarter has the colour. A different `compression` (0
/// to 100) gives different bytes for the same picture.
QByteArray Png(int width, int height, const QColor& color, int compression = 50);

/// Fills in two cameras with layers and frames of every kind.
void FillDrawing(LayerManager& layers);
/// Fills in three layers and two small frames, for tests that read the drawing hundreds of times.
void FillSmallDrawing(LayerManager& layers);
/// Returns everything that is stored of a drawing as text, pixels included.
std::string Describe(LayerManager& layers);

} // namespace vellix
