#pragma once

#include "commands/ActiveLayers.h"
#include "commands/PlaybackTimeScope.h"
#include "commands/StrokeCommit.h"

#include <QColor>
#include <QString>

#include <memory>

namespace vellix {

class BaseNode;
enum class ToolType : qint32;
struct RecordedStroke;
struct Stroke;

/// Draws recorded strokes on the active layer of a camera, as the draw tool does: what it needs to draw is
/// made, its samples go through the same smoothing, and the finished stroke is committed in the same way.
/// While it lives the tool settings are the recording's and the playback time moves; afterwards both are the
/// user's again.
class StrokePlayer {
public:
    /// The node is borrowed.
    StrokePlayer(BaseNode& node, const QString& camera);
    ~StrokePlayer();
    StrokePlayer(const StrokePlayer&) = delete;
    StrokePlayer& operator=(const StrokePlayer&) = delete;

    /// Draws the stroke at a frame. Null, with the reason logged and nothing changed, when the layer cannot
    /// be drawn on.
    std::unique_ptr<StrokeCommit> Draw(const RecordedStroke& recorded, int frame);

private:
    Stroke* Begin(const RecordedStroke& recorded, int& layerAdded, bool& frameAdded);
    static void Feed(Stroke& stroke, const RecordedStroke& recorded);
    void TakeBack(const ActiveLayers& before, int layerAdded, bool frameAdded);

    BaseNode& m_node;
    QString m_camera;
    PlaybackTimeScope m_time;

    // The user's settings, for the time afterwards.
    ToolType m_activeTool;
    QColor m_activeColor;
    bool m_tabletEraserEnabled;
};

} // namespace vellix
