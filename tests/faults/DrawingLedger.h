#pragma once

#include "core/Identity.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace vellix {

class BaseNode;
class Frame;

/// A drawing at one moment: every layer with its keys, and the hash of each key's pixels.
struct DrawingSnapshot {
    struct Key {
        FrameId id;
        int time;
        QByteArray hash; ///< empty for a picture without a visible pixel
    };
    struct LayerRow {
        LayerId id;
        QString camera;
        QString name;
        bool isVisible;
        bool isActive;
        float opacity;
        int state;
        std::vector<Key> keys;
    };

    std::vector<LayerRow> layers; ///< by camera, then from the bottom up
    QStringList places;           ///< the cameras that have a place, with layers or without, sorted
    QString activeCamera;

    const LayerRow* FindLayer(LayerId id) const;
    const LayerRow* FindLayerOf(FrameId id) const;
    const Key* FindKey(FrameId id) const;
    const LayerRow* ActiveLayer(const QString& camera) const;
    std::vector<const LayerRow*> LayersOf(const QString& camera) const;

    /// What differs from the other drawing, in one sentence; empty when nothing does. Without `identities`
    /// equal layers and keys may be other objects, as in a scene that was read again, and another camera may
    /// be the active one, as after a look through it.
    std::string Difference(const DrawingSnapshot& other, bool identities) const;
};

/// Takes snapshots. Hashes a picture once for each of its keys (Frame::GetPictureKey), and all of them anew
/// after Forget().
class DrawingLedger {
public:
    /// An empty drawing without a node.
    DrawingSnapshot Take(const BaseNode* node);
    void Forget() { hashes_.clear(); }

private:
    QByteArray HashOf(const Frame& frame);

    std::map<qint64, QByteArray> hashes_;
};

/// Names a picture that `before` shows and `after` does not, one of the keys in `mayGo` aside; empty when
/// there is none.
std::string LostPicture(const DrawingSnapshot& before, const DrawingSnapshot& after,
                        const std::set<FrameId>& mayGo);

} // namespace vellix
