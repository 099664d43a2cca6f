#include "commands/LayerIntake.h"

#include "core/Frame.h"
#include "core/LayerManager.h"
#include "exchange/CanvasFit.h"
#include "node/BaseNode.h"

#include <maya/MTime.h>

#include <QList>

#include <new>
#include <set>
#include <utility>

namespace vellix {

namespace {

std::unique_ptr<Frame> NewFrame(int time, const QByteArray& png) {
    auto frame = std::make_unique<Frame>(MTime());
    frame->SetTimeValue(time);
    frame->SetPackedImage(png);
    return frame;
}

/// Leaves out the pictures that the layer, null for a new one, shows anyway once those before are in it.
void LeaveOutShown(const Layer* layer, std::map<int, QByteArray>& pictures) {
    const QByteArray blank = CanvasFit::Blank();
    const std::pair<const int, QByteArray>* last = nullptr;
    for (auto picture = pictures.begin(); picture != pictures.end();) {
        const Frame* const frame = layer ? layer->GetFrame(layer->FindFrameIndex(picture->first)) : nullptr;
        const bool isLast = last && (!frame || frame->GetTimeValue() <= last->first);
        if (picture->second == (isLast ? last->second : frame ? frame->GetPackedImage() : blank)) {
            picture = pictures.erase(picture);
        } else {
            last = &*picture;
            ++picture;
        }
    }
}

/// Whether the stroke in progress belongs to the drawing that is keyed at this time.
bool IsUnderStroke(const LayerManager& layers, const Layer& layer, int time) {
    const Frame* const frame = layer.GetFrame(layer.FindFrameIndex(time));
    const DrawingId drawing = layers.GetStrokeDrawing();
    return layers.HasActiveStroke() && frame && frame->GetTimeValue() == time &&
           drawing.layer == layer.GetId() && drawing.frame == frame->GetId();
}

/// The topmost layers come last, so that several of one name are taken in their order.
Layer* FindTaker(const LayerManager& layers, const IncomingLayer& incoming, const std::set<LayerId>& taken) {
    for (Layer* layer : layers.GetLayers(incoming.camera)) {
        if (layer->GetName() == incoming.name && taken.count(layer->GetId()) == 0) {
            return layer;
        }
    }
    return nullptr;
}

} // namespace

LayerIntake::LayerIntake() = default;
LayerIntake::~LayerIntake() = default;

bool LayerIntake::Plan(const LayerManager& layers, std::vector<IncomingLayer>& incoming, QString& refusal) {
    std::vector<Layer*> takers;
    std::set<LayerId> taken;
    for (const IncomingLayer& layer : incoming) {
        takers.push_back(layer.joins ? FindTaker(layers, layer, taken) : nullptr);
        if (takers.back()) {
            taken.insert(takers.back()->GetId());
        }
    }
    for (std::size_t i = 0; i < incoming.size(); ++i) {
        if (takers[i]) {
            if (!PlanJoined(layers, *takers[i], incoming[i], refusal)) {
                return false;
            }
            continue;
        }
        // A new layer keeps its place between its neighbours.
        LayerId above = LayerId::None;
        LayerId below = LayerId::None;
        for (std::size_t j = i; j-- > 0 && above == LayerId::None;) {
            if (takers[j] && incoming[j].camera == incoming[i].camera) {
                above = takers[j]->GetId();
            }
        }
        for (std::size_t j = i + 1; j < incoming.size() && above == LayerId::None && below == LayerId::None;
             ++j) {
            if (takers[j] && incoming[j].camera == incoming[i].camera) {
                below = takers[j]->GetId();
            }
        }
        const Layer* const lowest = layers.GetLayer(incoming[i].camera, 0);
        if (incoming[i].isReference && lowest) {
            above = LayerId::None;
            below = lowest->GetId();
        }
        PlanAdded(incoming[i], above, below);
    }
    return true;
}

bool LayerIntake::PlanJoined(const LayerManager& layers, Layer& layer, IncomingLayer& incoming,
                             QString& refusal) {
    if (layer.GetState() == LayerState::Locked) {
        refusal = QString("the layer \"%1\" is locked; unlock it first, or name another with -layer")
                      .arg(layer.GetName());
        return false;
    }
    if (incoming.hasEveryTime) {
        LeaveOutShown(&layer, incoming.pictures);
    }
    if (layers.IsLayerOfStroke(layer.GetId())) {
        refusal = QString("the stroke that made the layer \"%1\" is still being drawn; finish it first")
                      .arg(layer.GetName());
        return false;
    }
    Joined joined{layer.GetId(), std::make_unique<FrameExchange>()};
    for (const auto& picture : incoming.pictures) {
        // The frame that the press has keyed, or the one that it found, which would take the stroke along.
        if (layer.IsBeingDrawn(picture.first) || IsUnderStroke(layers, layer, picture.first)) {
            refusal = QString("a stroke is being drawn on the layer \"%1\" at time %2; finish it first")
                          .arg(layer.GetName())
                          .arg(picture.first);
            return false;
        }
        joined.frames->Put(NewFrame(picture.first, picture.second));
    }
    for (int i = 0; i < layer.FrameCount(); ++i) {
        if (incoming.pictures.count(layer.GetFrame(i)->GetTimeValue()) > 0) {
            joined.frames->TakeOut(layer, *layer.GetFrame(i));
        }
    }
    frameCount_ += static_cast<int>(incoming.pictures.size());
    incoming.pictures.clear();
    joined_.push_back(std::move(joined));
    return true;
}

void LayerIntake::PlanAdded(IncomingLayer& incoming, LayerId above, LayerId below) {
    if (incoming.hasEveryTime) {
        LeaveOutShown(nullptr, incoming.pictures);
    }
    FrameList frames;
    for (const auto& picture : incoming.pictures) {
        frames.push_back(NewFrame(picture.first, picture.second));
    }
    frameCount_ += static_cast<int>(frames.size());
    incoming.pictures.clear();
    Added added{LayerId::None, std::make_unique<Layer>(), CameraHandle(incoming.camera), above, below, {}};
    Layer& layer = *added.layer;
    added.id = layer.GetId();
    layer.PutFrames(frames);
    layer.SetName(incoming.name);
    layer.SetVisible(incoming.isVisible);
    layer.SetOpacity(incoming.opacity);
    layer.SetState(incoming.state);
    added_.push_back(std::move(added));
}

// --- the step ---------------------------------------------------------------------------------------------

bool LayerIntake::Do(BaseNode& node, QString& refusal) {
    const std::shared_ptr<LayerManager> layers = node.GetLayerManager();
    const LayerManager::ChangeScope scope(*layers);
    QList<QString> cameras;
    for (const Added& added : added_) {
        cameras.append(added.camera.Name());
    }
    if (!hasRun_) {
        before_.Remember(node, cameras);
    }
    if (!Exchange(*layers, &FrameExchange::Do, &FrameExchange::Undo, refusal)) {
        return false;
    }
    try {
        PutLayers(*layers);
    } catch (...) {
        QString ignored;
        Exchange(*layers, &FrameExchange::Undo, &FrameExchange::Do, ignored);
        before_.Restore(node);
        throw;
    }
    if (after_) {
        after_->Restore(node);
    } else if (!hasRun_) {
        try {
            after_ = std::make_unique<ActiveLayers>(before_.Now(node));
        } catch (const std::bad_alloc&) {
            after_.reset(); // redo goes by what it finds
        }
    }
    hasRun_ = true;
    return true;
}

bool LayerIntake::Undo(BaseNode& node, QString& refusal) {
    const std::shared_ptr<LayerManager> layers = node.GetLayerManager();
    const LayerManager::ChangeScope scope(*layers);
    for (Added& added : added_) {
        if (!layers->FindLayer(added.id).layer) {
            refusal = QStringLiteral("the layer no longer exists");
            return false;
        }
        added.spot = LayerSpot(*layers, added.id);
    }
    if (!Exchange(*layers, &FrameExchange::Undo, &FrameExchange::Do, refusal)) {
        return false;
    }
    TakeLayers(*layers, added_.size());
    before_.Restore(node);
    return true;
}

/// Exchanges the frames of all layers. Goes back if one cannot.
bool LayerIntake::Exchange(LayerManager& layers, bool (FrameExchange::*step)(Layer&, QString&),
                           bool (FrameExchange::*back)(Layer&, QString&), QString& refusal) {
    std::size_t done = 0;
    const auto goBack = [&] {
        QString ignored;
        while (done-- > 0) {
            (*joined_[done].frames.*back)(*layers.FindLayer(joined_[done].layer).layer, ignored);
        }
    };
    try {
        for (; done < joined_.size(); ++done) {
            Layer* const layer = layers.FindLayer(joined_[done].layer).layer;
            if (!layer) {
                refusal = QStringLiteral("the layer no longer exists");
            }
            if (!layer || !(*joined_[done].frames.*step)(*layer, refusal)) {
                goBack();
                return false;
            }
        }
    } catch (...) {
        goBack();
        throw;
    }
    return true;
}

/// Where a layer goes: -1 for on top.
int LayerIntake::IndexOf(const LayerManager& layers, const Added& added, const QString& camera) const {
    if (hasRun_) {
        return added.spot.GetIndex(layers, camera);
    }
    const LayerPlace above = layers.FindLayer(added.above);
    if (above.layer) {
        int index = above.index + 1;
        // Those that were put there just now come first.
        for (const Added& other : added_) {
            index += !other.layer && other.above == added.above && other.id != added.id ? 1 : 0;
        }
        return index;
    }
    const LayerPlace below = layers.FindLayer(added.below);
    return below.layer ? below.index : -1;
}

void LayerIntake::PutLayers(LayerManager& layers) {
    std::size_t count = 0;
    try {
        for (Added& added : added_) {
            const QString camera = hasRun_ ? added.spot.GetCamera() : added.camera.Name();
            layers.InsertLayer(camera, IndexOf(layers, added, camera), added.layer);
            ++count;
        }
    } catch (...) {
        TakeLayers(layers, count);
        throw;
    }
}

/// Takes so many of the made layers out, from the top down. Needs no memory.
void LayerIntake::TakeLayers(LayerManager& layers, std::size_t count) {
    while (count-- > 0) {
        const LayerPlace place = layers.FindLayer(added_[count].id);
        added_[count].layer = layers.RemoveLayer(place.camera, place.index);
    }
}

} // namespace vellix
