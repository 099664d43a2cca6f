#pragma once

#include <QStringList>

namespace vellix {

class BaseNode;

/// Follows the cameras of a file that got other names while it was imported or referenced, because of a
/// namespace or a clash: the drawing was stored with the names of the file.
class CamerasRead {
public:
    /// Call after the file was read. `cameras` are the names that its cameras have in the scene.
    static void Follow(BaseNode& drawing, const QStringList& cameras);
    /// The name in the scene of the camera that the file calls `stored`; `stored` itself if it cannot be
    /// told. `drawing` is the name in the scene of the file's drawing node: it got the same prefix.
    static QString NameOf(const QString& stored, const QStringList& cameras, const QString& drawing);
};

} // namespace vellix
