#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MStatus.h>

#include <QString>

namespace vellix {

class Layer;
class LayerManager;
class StoredFrames;

/// Reads the tokens that LayerDataAsciiWriter wrote and appends their content to a drawing. An unreadable
/// token is reported with its number and ends reading; the content before it stays. Every loss is logged as
/// an error.
class LayerDataAsciiReader {
public:
    /// `element` is the index of the next unread token; it advances by one with each token.
    LayerDataAsciiReader(LayerManager& layers, const MArgList& args, unsigned int& element);

    MStatus Read();

private:
    // Each reads one part of the data. Returns false, with status_ set, if reading ends there.
    bool ReadHeader(QString& activeCamera, int& cameraCount);
    bool ReadCamera();
    bool ReadLayer(const QString& camera);
    bool ReadLayerHeader(Layer& layer);
    bool ReadFrame(StoredFrames& frames, int index);

    // Each consumes one token and returns whether it was readable.
    bool Take(bool& value);
    bool Take(int& value);
    bool Take(double& value);
    bool Take(MString& value);
    bool Take(QString& value);
    bool Take(MTime& value);
    /// Reports the last consumed token. Returns false.
    bool Fail(const char* message);

    LayerManager& layers_;
    const MArgList& args_;
    unsigned int& element_;
    MStatus status_;
};

} // namespace vellix
