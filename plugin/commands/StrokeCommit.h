#pragma once

#include <maya/MTime.h>

#include <QByteArray>
#include <QString>

namespace vellix {

class BaseNode;

/// One stroke painted into the drawing, and the way back: the layer and the frame that the stroke added, and
/// the image of the frame on the other side of the change, as PNG bytes. The image is exchanged, never
/// copied.
class StrokeCommit {
public:
    /// `layerAdded`: index of the layer that was added for this stroke, negative for none. `frameAdded`: a
    /// frame was.
    StrokeCommit(QString camera, int layerAdded, bool frameAdded);

    /// Paints the active stroke. False when the camera has no active layer or there is no stroke.
    bool Commit(BaseNode& node);
    bool Undo(BaseNode& node);
    bool Redo(BaseNode& node);

private:
    QByteArray m_image;
    QString m_camera;
    QString m_previousCamera;
    int m_previousActiveLayer = -1;
    int m_addedLayer = -1;
    bool m_frameAdded = false;
    MTime m_frameTime;
};

} // namespace vellix
