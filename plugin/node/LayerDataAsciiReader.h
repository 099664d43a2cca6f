#pragma once

#include "node/DrawingLoader.h"

#include <maya/MApiNamespace.h>
#include <maya/MStatus.h>

#include <QString>

namespace vellix {

class Layer;
class LayerManager;

/// Reads the tokens that LayerDataAsciiWriter wrote and appends what they hold to a drawing. A token that
/// cannot be read is reported with its number and ends the reading; what was read before it stays.
class LayerDataAsciiReader {
public:
    /// `element` is the next unread token; it moves on by one with each token that is consumed.
    LayerDataAsciiReader(LayerManager& layers, const MArgList& args, unsigned int& element);

    MStatus Read();

private:
    // Each reads one part of the data and returns false, with status_ set, when reading ends there.
    bool ReadHeader(QString& activeCamera, int& cameraCount);
    bool ReadCamera();
    bool ReadLayer(const QString& camera);
    bool ReadLayerHeader(Layer& layer);
    bool ReadFrame(Layer& layer, int index);

    // Each consumes one token and returns whether it could be read.
    bool Take(bool& value);
    bool Take(int& value);
    bool Take(double& value);
    bool Take(MString& value);
    bool Take(QString& value);
    bool Take(MTime& value);
    /// Reports the token that was consumed last.
    bool Fail(const char* message);

    LayerManager& layers_;
    const MArgList& args_;
    unsigned int& element_;
    MStatus status_;
    DrawingLoader loader_;
};

} // namespace vellix
