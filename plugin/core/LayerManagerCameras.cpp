// LayerManager: cameras that get another name.
#include "core/Compositor.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "core/StrokePainter.h"
#include "host/MayaUtil.h"

#include <QStringList>

#include <algorithm>
#include <utility>

namespace vellix {

namespace {

bool Contains(const std::vector<LayerId>& ids, LayerId id) {
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

} // namespace

void LayerManager::RenameCamera(const QString& from, const QString& to, bool isUndo) {
    if (from == to || from.isEmpty()) {
        return;
    }
    const ChangeScope scope(*this);
    const auto done = std::find_if(renames_.rbegin(), renames_.rend(), [&](const CameraRename& rename) {
        return rename.from == to && rename.to == from;
    });
    // Other than by undo all layers go along, also those that the camera found under its name. Only those
    // that went to another camera of the same name come back.
    if (done != renames_.rend() && (isUndo || done->isShared)) {
        if (done->meetsOthers) {
            Separate(*done);
        } else {
            Join(from, to);
        }
        renames_.erase(done.base() - 1);
    } else {
        renames_.reserve(renames_.size() + 1);
        renames_.push_back(Join(from, to));
    }
    Changed(DocumentChange::Layers | DocumentChange::ActiveLayer | DocumentChange::ActiveCamera);
}

void LayerManager::GiveLayers(const QString& from, const QString& to) {
    if (from == to) {
        return;
    }
    const ChangeScope scope(*this);
    if (LayerCount(to) == 0) {
        RenameStack(from, to);
    } else {
        MoveOnTop(from, to, {});
        SetPlace(from, false);
        FollowCamera(from, to);
    }
    Changed(DocumentChange::Layers | DocumentChange::ActiveLayer | DocumentChange::ActiveCamera);
}

/// Returns what the way back needs to tell whose the layers are. Leaves everything as it is if memory is too
/// short.
LayerManager::CameraRename LayerManager::Join(const QString& from, const QString& to) {
    QStringList cameras;
    MayaUtil::GetCameras(cameras);
    // Cameras with different parents can have the same name. The layers stay with the one that keeps it.
    const bool isFromShared = cameras.contains(from);
    const bool isToShared = cameras.count(to) > 1;
    CameraRename rename;
    rename.from = from;
    rename.to = to;
    rename.isShared = isFromShared || isToShared;
    rename.meetsOthers = rename.isShared || HasPlace(to);
    rename.hadPlace = KeepsPlace(from);
    rename.wasPlaceTaken = KeepsPlace(to);
    rename.residents = GetLayerIds(to);
    rename.activeResident = GetActiveLayerId(to);
    rename.activeMover = GetActiveLayerId(from);
    rename.activeBefore = activeCamera_;
    if (!isFromShared) {
        const bool bothHaveLayers = !rename.residents.empty() && LayerCount(from) > 0;
        if (bothHaveLayers && isToShared) {
            MoveOnTop(from, to, {});
            SetPlace(from, false);
            ActivateOneOf(to, rename.activeMover);
            FollowCamera(from, to);
        } else {
            if (bothHaveLayers) {
                rename.aside = GetUniqueCameraName(to);
                MakeRoom(rename.aside, 0); // nothing below needs memory
                ExchangeStacks(to, rename.aside);
                FollowCamera(to, rename.aside);
            }
            RenameStack(from, to);
        }
    }
    rename.activeAfter = activeCamera_;
    return rename;
}

/// Takes back a rename: `rename.to` is the camera's old name now. Leaves the layers as they are if memory is
/// too short.
void LayerManager::Separate(const CameraRename& rename) {
    // A camera that gets its first layer here becomes the active one for a moment.
    const QString active = activeCamera_ == rename.activeAfter ? rename.activeBefore
                                                               : NameAfterSeparation(activeCamera_, rename);
    const QString previous = NameAfterSeparation(previousActiveCamera_, rename);
    MakeRoom(rename.to, 0);
    MakeRoom(rename.from, 0);
    const bool residentsStay = rename.aside.isEmpty() && LayerCount(rename.to) > 0;
    if (residentsStay || LayerCount(rename.from) > 0) {
        MoveOnTop(rename.to, rename.from, rename.residents);
        ActivateOneOf(rename.from, rename.activeMover);
        ActivateOneOf(rename.to, rename.activeResident);
    } else {
        ExchangeStacks(rename.to, rename.from);
    }
    FollowCamera(rename.to, rename.from);
    if (!rename.aside.isEmpty() && LayerCount(rename.to) == 0) {
        RenameStack(rename.aside, rename.to); // needs no memory: both have a place
    }
    SetPlace(rename.from, rename.hadPlace);
    SetPlace(rename.to, rename.wasPlaceTaken);
    activeCamera_ = active;
    previousActiveCamera_ = previous;
}

QString LayerManager::NameAfterSeparation(const QString& camera, const CameraRename& rename) {
    if (camera == rename.to) {
        return rename.from;
    }
    return !rename.aside.isEmpty() && camera == rename.aside ? rename.to : camera;
}

/// Gives a whole stack another name. Only one of the two has layers.
void LayerManager::RenameStack(const QString& from, const QString& to) {
    if (HasPlace(from)) {
        if (LayerCount(to) == 0) {
            MakeRoom(from, 0);
            MakeRoom(to, 0);
            const bool keepsPlace = KeepsPlace(from) || KeepsPlace(to);
            ExchangeStacks(from, to);
            SetPlace(to, keepsPlace);
        }
        SetPlace(from, false);
    }
    FollowCamera(from, to);
}

/// Exchanges the layers of two cameras for which room was made. Needs no memory.
void LayerManager::ExchangeStacks(const QString& one, const QString& other) {
    compositor_->ExchangeImages(one, other);
    std::swap(stacks_.find(one)->second, stacks_.find(other)->second);
}

/// Moves layers from one stack onto another, in their order, except those that are `staying`.
void LayerManager::MoveOnTop(const QString& from, const QString& to, const std::vector<LayerId>& staying) {
    const std::vector<LayerId> ids = GetLayerIds(from);
    std::size_t moving = 0;
    for (const LayerId id : ids) {
        moving += Contains(staying, id) ? 0 : 1;
    }
    ReserveLayers(to, static_cast<int>(moving));
    for (const LayerId id : ids) {
        if (!Contains(staying, id)) {
            MoveLayer(from, FindLayer(id).index, to, -1);
        }
    }
}

/// Makes the layer active if it is in the camera's stack, else keeps the active one; without one, the
/// topmost.
void LayerManager::ActivateOneOf(const QString& camera, LayerId preferred) {
    const LayerPlace place = FindLayer(preferred);
    if (place.layer && place.camera == camera) {
        SetActiveLayer(camera, place.index, false);
    } else if (GetActiveLayerIndex(camera) < 0 && LayerCount(camera) > 0) {
        SetActiveLayer(camera, LayerCount(camera) - 1, false);
    }
}

void LayerManager::FollowCamera(const QString& from, const QString& to) {
    if (activeCamera_ == from) {
        activeCamera_ = to;
    }
    if (previousActiveCamera_ == from) {
        previousActiveCamera_ = to;
    }
    strokeAdditions_.FollowCamera(from, to);
    masterCacheQueue_.removeAll(from);
    QueueMasterCacheUpdate(to);
}

std::vector<LayerId> LayerManager::GetLayerIds(const QString& camera) const {
    std::vector<LayerId> ids;
    for (const auto& layer : FindLayers(camera)) {
        ids.push_back(layer->GetId());
    }
    return ids;
}

LayerId LayerManager::GetActiveLayerId(const QString& camera) const {
    const Layer* layer = GetActiveLayer(camera);
    return layer ? layer->GetId() : LayerId::None;
}

/// The name with the first number that gives one of no camera and no stack.
QString LayerManager::GetUniqueCameraName(const QString& name) const {
    QStringList taken = GetCameras();
    MayaUtil::GetCameras(taken);
    int number = 1;
    while (taken.contains(name + QString::number(number))) {
        ++number;
    }
    return name + QString::number(number);
}

} // namespace vellix
