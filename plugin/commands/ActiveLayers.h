#pragma once

#include <QList>
#include <QPair>
#include <QString>

namespace vellix {

class BaseNode;

/// Remembers the active camera and the active layers of some cameras, so that undoing a change of layers
/// makes the same ones active again.
class ActiveLayers {
public:
    /// Stores the active camera with its active layer, and the active layers of the given cameras.
    void Remember(const BaseNode& node, const QList<QString>& cameras);
    /// Makes the stored layers active again, that of the active camera last.
    void Restore(BaseNode& node) const;

    const QString& GetCamera() const { return camera_; }
    int GetIndex() const { return index_; }

private:
    QString camera_;
    int index_ = -1;
    QList<QPair<QString, int>> others_; ///< the other cameras and their active layers
};

} // namespace vellix
