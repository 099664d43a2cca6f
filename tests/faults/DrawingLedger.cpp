#include "faults/DrawingLedger.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "node/BaseNode.h"

#include <QCryptographicHash>
#include <QImage>

#include <algorithm>

namespace vellix {

namespace {

std::string Described(const DrawingSnapshot::LayerRow& layer) {
    return layer.camera.toStdString() + "/" + layer.name.toStdString();
}

std::string Described(const DrawingSnapshot::LayerRow& layer, const DrawingSnapshot::Key& key) {
    return Described(layer) + " at " + std::to_string(key.time);
}

std::string LayerDifference(const DrawingSnapshot::LayerRow& a, const DrawingSnapshot::LayerRow& b,
                            bool identities) {
    if (a.camera != b.camera || a.name != b.name || (identities && a.id != b.id)) {
        return "layer " + Described(a) + " is " + Described(b);
    }
    if (a.isVisible != b.isVisible || a.opacity != b.opacity || a.state != b.state) {
        return "the settings of " + Described(a);
    }
    if (a.isActive != b.isActive) {
        return "whether " + Described(a) + " is active";
    }
    for (std::size_t i = 0; i < std::max(a.keys.size(), b.keys.size()); ++i) {
        if (i >= a.keys.size()) {
            return "a key less: " + Described(b, b.keys[i]);
        }
        if (i >= b.keys.size()) {
            return "a key more: " + Described(a, a.keys[i]);
        }
        if (a.keys[i].time != b.keys[i].time || (identities && a.keys[i].id != b.keys[i].id)) {
            return "key " + Described(a, a.keys[i]) + " is " + Described(b, b.keys[i]);
        }
        if (a.keys[i].hash != b.keys[i].hash) {
            return "the picture of " + Described(a, a.keys[i]) +
                   (a.keys[i].hash.isEmpty() ? " is blank" : "");
        }
    }
    return {};
}

} // namespace

const DrawingSnapshot::LayerRow* DrawingSnapshot::FindLayer(LayerId id) const {
    const auto found =
        std::find_if(layers.begin(), layers.end(), [=](const auto& row) { return row.id == id; });
    return found == layers.end() ? nullptr : &*found;
}

const DrawingSnapshot::LayerRow* DrawingSnapshot::FindLayerOf(FrameId id) const {
    for (const LayerRow& layer : layers) {
        for (const Key& key : layer.keys) {
            if (key.id == id) {
                return &layer;
            }
        }
    }
    return nullptr;
}

const DrawingSnapshot::Key* DrawingSnapshot::FindKey(FrameId id) const {
    if (const LayerRow* layer = FindLayerOf(id)) {
        return &*std::find_if(layer->keys.begin(), layer->keys.end(),
                              [=](const Key& key) { return key.id == id; });
    }
    return nullptr;
}

const DrawingSnapshot::LayerRow* DrawingSnapshot::ActiveLayer(const QString& camera) const {
    for (const LayerRow& layer : layers) {
        if (layer.camera == camera && layer.isActive) {
            return &layer;
        }
    }
    return nullptr;
}

std::vector<const DrawingSnapshot::LayerRow*> DrawingSnapshot::LayersOf(const QString& camera) const {
    std::vector<const LayerRow*> rows;
    for (const LayerRow& layer : layers) {
        if (layer.camera == camera) {
            rows.push_back(&layer);
        }
    }
    return rows;
}

std::string DrawingSnapshot::Difference(const DrawingSnapshot& other, bool identities) const {
    for (std::size_t i = 0; i < std::max(layers.size(), other.layers.size()); ++i) {
        if (i >= layers.size()) {
            return "layer " + Described(other.layers[i]) + " is missing";
        }
        if (i >= other.layers.size()) {
            return "layer " + Described(layers[i]) + " is too much";
        }
        std::string difference = LayerDifference(layers[i], other.layers[i], identities);
        if (!difference.empty()) {
            return difference;
        }
    }
    if (places != other.places) {
        return "the cameras' places: " + places.join(" ").toStdString() + ", not " +
               other.places.join(" ").toStdString();
    }
    if (identities && activeCamera != other.activeCamera) {
        return "the active camera: " + activeCamera.toStdString() + ", not " +
               other.activeCamera.toStdString();
    }
    return {};
}

DrawingSnapshot DrawingLedger::Take(const BaseNode* node) {
    DrawingSnapshot snapshot;
    const auto document = node ? node->GetLayerManager() : nullptr;
    if (!document) {
        return snapshot;
    }
    snapshot.places = document->GetCameras();
    snapshot.places.sort();
    snapshot.activeCamera = document->GetActiveCamera();
    for (const QString& camera : snapshot.places) {
        for (const Layer* layer : document->GetLayers(camera)) {
            DrawingSnapshot::LayerRow row{layer->GetId(),
                                          camera,
                                          layer->GetName(),
                                          layer->IsVisible(),
                                          layer->IsActive(),
                                          layer->GetOpacity(),
                                          static_cast<int>(layer->GetState()),
                                          {}};
            for (int i = 0; i < layer->FrameCount(); ++i) {
                const Frame& frame = *layer->GetFrame(i);
                row.keys.push_back({frame.GetId(), frame.GetTimeValue(), HashOf(frame)});
            }
            snapshot.layers.push_back(row);
        }
    }
    return snapshot;
}

QByteArray DrawingLedger::HashOf(const Frame& frame) {
    const qint64 key = frame.GetPictureKey();
    const auto known = hashes_.find(key);
    if (known != hashes_.end()) {
        return known->second;
    }
    QByteArray hash;
    const QImage image = frame.PeekImage().convertToFormat(QImage::Format_RGBA8888);
    const auto size = static_cast<std::size_t>(image.sizeInBytes());
    const uchar* const bytes = image.constBits();
    if (std::any_of(bytes, bytes + size, [](uchar byte) { return byte != 0; })) {
        QCryptographicHash md4(QCryptographicHash::Md4);
        md4.addData(reinterpret_cast<const char*>(bytes), static_cast<int>(size));
        hash = md4.result();
    }
    hashes_[key] = hash;
    return hash;
}

std::string LostPicture(const DrawingSnapshot& before, const DrawingSnapshot& after,
                        const std::set<FrameId>& mayGo) {
    std::multiset<QByteArray> left;
    for (const auto& layer : after.layers) {
        for (const auto& key : layer.keys) {
            left.insert(key.hash);
        }
    }
    for (const auto& layer : before.layers) {
        for (const auto& key : layer.keys) {
            if (key.hash.isEmpty() || mayGo.count(key.id) > 0) {
                continue;
            }
            const auto found = left.find(key.hash);
            if (found == left.end()) {
                return Described(layer, key);
            }
            left.erase(found);
        }
    }
    return {};
}

} // namespace vellix
