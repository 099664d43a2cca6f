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

    const QString& GetCamera() const { return m_camera; }
    int GetIndex() const { return m_index; }

private:
    QString m_camera;
    int m_index = -1;
    QList<QPair<QString, int>> m_others; ///< the other cameras and their active layers
};

} // namespace vellix
