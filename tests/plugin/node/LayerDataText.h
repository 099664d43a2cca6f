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

/// The tokens of a stored drawing's text, without quotes and escapes; a text that is cut short gives what is
/// whole of its last token.
std::vector<std::string> Tokens(const std::string& text);
MArgList ToArguments(const std::vector<std::string>& tokens);

std::string WriteAscii(BaseNodeLayerData& data);
std::string WriteBinary(BaseNodeLayerData& data);
/// Reads into a value of its own.
struct ReadResult {
    std::shared_ptr<LayerManager> layers;
    MStatus status;
    unsigned element; ///< the next token
};
ReadResult ReadAscii(const std::vector<std::string>& tokens);
ReadResult ReadBinary(const std::string& bytes);

/// PNG bytes of a picture that is that colour in its left upper quarter; `compression` is 0 to 100, so that
/// the same picture has other bytes.
QByteArray Png(int width, int height, const QColor& color, int compression = 50);

/// Two cameras with layers and frames of every kind.
void FillDrawing(LayerManager& layers);
/// Three layers and two frames of few bytes, for reading it hundreds of times.
void FillSmallDrawing(LayerManager& layers);
/// Everything that is stored of a drawing, pixels included, as text that can be compared.
std::string Describe(LayerManager& layers);

} // namespace vellix
