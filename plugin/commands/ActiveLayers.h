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

    const QString& GetCamera() const { return camera_; }
    int GetIndex() const { return index_; }

private:
    QString camera_;
    int index_ = -1;
    QList<QPair<QString, int>> others_;
};

} // namespace vellix
