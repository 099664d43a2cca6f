#pragma once

#include <QList>
#include <QPair>
#include <QString>

namespace vellix {

class BaseNode;

/// The active camera and the active layers of some cameras at one moment, so that undoing a change of the
/// layers leaves the same layers active as before it.
class ActiveLayers {
public:
    /// Notes the active camera with its active layer, and the active layers of the given cameras.
    void Remember(const BaseNode& node, const QList<QString>& cameras);
    /// Makes them active again, the active camera last.
    void Restore(BaseNode& node) const;

    const QString& GetCamera() const { return m_camera; }
    int GetIndex() const { return m_index; }

private:
    QString m_camera;
    int m_index = -1;
    QList<QPair<QString, int>> m_others;
};

} // namespace vellix
