#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MStatus.h>

#include <QString>

#include <memory>

namespace vellix {

class LayerManager;
class StoredFrames;

/// Reads the tokens that LayerDataAsciiWriter wrote and appends their content to a drawing. The counts say
/// what comes next. Once a token is unreadable or a count does not fit, the rest is read by its look: a
/// picture is known by its digits, and what is before it is its time or the head of its layer. So a damaged
/// token costs its own drawing, or a head its values, and no more. Every loss is logged as an error.
class LayerDataAsciiReader {
public:
    /// `element` is the index of the next unread token; it advances by one with each token.
    LayerDataAsciiReader(LayerManager& layers, const MArgList& args, unsigned int& element);
    ~LayerDataAsciiReader();

    /// Returns the first failure; then what is whole was read all the same.
    MStatus Read();

private:
    // Each reads one part of the data. Returns false, with part_ at its first token, if the counts are of no
    // use from there on.
    bool ReadHeader(QString& activeCamera, int& cameraCount);
    bool ReadCamera();
    bool ReadLayer();
    bool ReadLayerHead(const QString& name);
    bool ReadFrame();
    /// Reads on without the counts. Returns false if nothing could be read.
    bool ReadRest(unsigned int at);
    /// Uses what is whole of the head of a layer, or of a camera and a layer, that are damaged.
    void ReadDamagedHead(unsigned int at, unsigned int next);
    void TakeFrame();

    // Whether a whole part begins at the token.
    bool IsCameraAt(unsigned int at) const;
    bool IsLayerAt(unsigned int at) const;
    bool IsFrameAt(unsigned int at) const;
    bool IsPartAt(unsigned int at) const;

    void StartCamera(const QString& name, int activeLayer);
    void EndCamera();
    void StartLayer(const QString& name, bool visible, double opacity, int state);
    void EndLayer();

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
    unsigned int part_ = 0; ///< first token of the part that is being read
    MStatus status_;        ///< of the last token
    MStatus failure_;       ///< the first one

    QString camera_;
    int activeLayer_ = -1; ///< of the camera
    std::unique_ptr<StoredFrames> frames_;
};

} // namespace vellix
