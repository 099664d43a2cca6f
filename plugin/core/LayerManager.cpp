#include "core/LayerManager.h"

#include "core/Compositor.h"
#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LightTable.h"
#include "core/StrokePainter.h"
#include "host/Guarded.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "host/panels/DialogManager.h"

#include <algorithm>

namespace vellix {

namespace {

DocumentListener* g_listener = nullptr;

} // namespace

LayerManager::LayerManager()
    : stroke_(std::make_unique<StrokePainter>())
    , compositor_(std::make_unique<Compositor>())
    , lightTable_(std::make_unique<LightTable>()) {}

LayerManager::~LayerManager() = default;

void LayerManager::SetListener(DocumentListener* listener) {
    g_listener = listener;
}

LayerManager::ChangeScope::ChangeScope(LayerManager& document)
    : document_(document) {
    ++document_.changeScopes_;
}

LayerManager::ChangeScope::~ChangeScope() {
    --document_.changeScopes_;
    document_.NotifyListener();
}

void LayerManager::Changed(DocumentChanges changes) {
    const DocumentChanges seenOnly = DocumentChange::Ghosting | DocumentChange::Flip;
    if ((changes & ~seenOnly) && lightTable_->IsFlipped()) {
        lightTable_->EndFlip(); // what comes next has to be seen
        changes |= DocumentChange::Flip;
    }
    changes_ |= changes;
    NotifyListener();
}

void LayerManager::NotifyListener() {
    if (changeScopes_ > 0 || !changes_) {
        return;
    }
    const DocumentChanges changes = changes_;
    changes_ = DocumentChange::None;
    if (g_listener) {
        // A change that was made does not fail because a view could not follow it.
        RunGuarded("Refreshing the views", [&] { g_listener->OnDocumentChanged(*this, changes); });
    }
}

bool LayerManager::IsMaster() const {
    return master_;
}

void LayerManager::MakeMaster() {
    master_ = true;
}

void LayerManager::ResignMaster() {
    master_ = false;
}

std::shared_ptr<LayerManager> LayerManager::Clone() const {
    auto clone = std::make_shared<LayerManager>();
    const ChangeScope scope(*clone);
    for (const QString& camera : GetCameras()) {
        clone->SetPlace(camera, true);
        for (const auto& layer : FindLayers(camera)) {
            clone->InsertLayer(camera, -1, layer->Copy().release());
        }
        clone->SetActiveLayer(camera, GetActiveLayerIndex(camera), false);
    }
    clone->activeCamera_ = activeCamera_;
    clone->changes_ = DocumentChange::None; // nobody knows it yet
    return clone;
}

QString LayerManager::GetActiveCamera() const {
    return activeCamera_;
}

QString LayerManager::GetPreviousActiveCamera() const {
    return previousActiveCamera_;
}

QStringList LayerManager::GetCameras() const {
    QStringList cameras;
    for (const auto& entry : stacks_) {
        if (HasPlace(entry.first)) {
            cameras.append(entry.first);
        }
    }
    return cameras;
}

bool LayerManager::HasPlace(const QString& camera) const {
    return KeepsPlace(camera) || LayerCount(camera) > 0;
}

bool LayerManager::KeepsPlace(const QString& camera) const {
    const auto found = stacks_.find(camera);
    return found != stacks_.end() && found->second.keepsPlace;
}

void LayerManager::SetPlace(const QString& camera, bool hasPlace) {
    const LayerList& layers = FindLayers(camera);
    const bool keepsPlace = hasPlace || std::any_of(layers.begin(), layers.end(), [this](const auto& layer) {
                                return !IsLayerOfStroke(layer->GetId());
                            });
    if (layers.empty()) {
        compositor_->RemoveCamera(camera);
    }
    if (keepsPlace || !layers.empty()) {
        stacks_[camera].keepsPlace = keepsPlace;
    } else {
        stacks_.erase(camera);
    }
}

void LayerManager::SetActiveCamera(const QString& camera) {
    if (camera != activeCamera_) {
        previousActiveCamera_ = activeCamera_;
        activeCamera_ = camera;
        Changed(DocumentChange::ActiveCamera);
    }
}

void LayerManager::RefreshActiveCamera() {
    const QString camera = MayaUtil::GetActive3dViewCameraName();
    if (!camera.isEmpty()) {
        SetActiveCamera(camera);
    }
}

int LayerManager::LayerCount(const QString& camera) const {
    return int(FindLayers(camera).size());
}

int LayerManager::TotalLayerCount() const {
    int count = 0;
    for (const auto& entry : stacks_) {
        count += static_cast<int>(entry.second.layers.size());
    }
    return count;
}

bool LayerManager::LayerExists(const QString& camera, int index) const {
    return index >= 0 && index < LayerCount(camera);
}

bool LayerManager::LayerNameExists(const QString& name) const {
    return std::any_of(stacks_.begin(), stacks_.end(), [&name](const std::pair<const QString, Stack>& entry) {
        return std::any_of(entry.second.layers.begin(), entry.second.layers.end(),
                           [&name](const std::unique_ptr<Layer>& layer) { return layer->GetName() == name; });
    });
}

QString LayerManager::GetUniqueLayerName(const QString& name) const {
    QString candidate = name.isEmpty() ? Settings::DEFAULT_LAYER_NAME : name;
    for (int n = 1; LayerNameExists(candidate); ++n) {
        candidate = QStringLiteral("%1 %2").arg(Settings::DEFAULT_LAYER_NAME).arg(n);
    }
    return candidate;
}

Layer* LayerManager::GetLayer(const QString& camera, int index) const {
    return LayerExists(camera, index) ? FindLayers(camera)[static_cast<std::size_t>(index)].get() : nullptr;
}

LayerPlace LayerManager::FindLayer(LayerId id) const {
    LayerPlace place;
    for (const auto& entry : stacks_) {
        for (std::size_t i = 0; i < entry.second.layers.size(); ++i) {
            if (entry.second.layers[i]->GetId() == id) {
                place.camera = entry.first;
                place.index = static_cast<int>(i);
                place.layer = entry.second.layers[i].get();
                return place;
            }
        }
    }
    return place;
}

QList<Layer*> LayerManager::GetLayers(const QString& camera) const {
    QList<Layer*> layers;
    for (const auto& layer : FindLayers(camera)) {
        layers.append(layer.get());
    }
    return layers;
}

int LayerManager::GetActiveLayerIndex(const QString& camera) const {
    const LayerList& layers = FindLayers(camera);
    const auto active = std::find_if(layers.begin(), layers.end(),
                                     [](const std::unique_ptr<Layer>& layer) { return layer->IsActive(); });
    return active == layers.end() ? -1 : static_cast<int>(active - layers.begin());
}

Layer* LayerManager::GetActiveLayer(const QString& camera) const {
    return GetLayer(camera, GetActiveLayerIndex(camera));
}

bool LayerManager::SetActiveLayer(const QString& camera, int index, bool makeCameraActive) {
    if (index != -1 && !LayerExists(camera, index)) {
        Logger::Error(QStringLiteral("Invalid layer index: %1").arg(index));
        return false;
    }
    const ChangeScope scope(*this);
    if (Settings::ghostPrev || Settings::ghostNext || Settings::otherLayersOpacity < 100) {
        // Ghosts belong to the active layer, and the others are dimmed, so the images of both cameras change.
        if (!activeCamera_.isEmpty()) {
            QueueMasterCacheUpdate(activeCamera_);
        }
        QueueMasterCacheUpdate(camera);
    }
    const LayerList& layers = FindLayers(camera);
    for (std::size_t i = 0; i < layers.size(); ++i) {
        layers[i]->SetActive(static_cast<int>(i) == index);
    }
    Changed(DocumentChange::ActiveLayer);
    if (makeCameraActive) {
        SetActiveCamera(camera);
    }
    return true;
}

QString LayerManager::GetLayerName(const QString& camera, int index) const {
    const Layer* layer = GetLayer(camera, index);
    return layer ? layer->GetName() : QString();
}

void LayerManager::SetLayerName(const QString& camera, int index, const QString& name) {
    if (Layer* layer = GetLayer(camera, index)) {
        layer->SetName(name);
    }
}

bool LayerManager::IsLayerVisible(const QString& camera, int index) const {
    const Layer* layer = GetLayer(camera, index);
    return layer != nullptr && layer->IsVisible();
}

void LayerManager::SetLayerVisible(const QString& camera, int index, bool visible) {
    if (Layer* layer = GetLayer(camera, index)) {
        layer->SetVisible(visible);
    }
}

float LayerManager::GetLayerOpacity(const QString& camera, int index) const {
    const Layer* layer = GetLayer(camera, index);
    return layer ? layer->GetOpacity() : 0.0f;
}

void LayerManager::SetLayerOpacity(const QString& camera, int index, float opacity) {
    if (Layer* layer = GetLayer(camera, index)) {
        layer->SetOpacity(opacity);
    }
}

LayerState LayerManager::GetLayerState(const QString& camera, int index) const {
    const Layer* layer = GetLayer(camera, index);
    return layer ? layer->GetState() : LayerState::Animated;
}

void LayerManager::SetLayerState(const QString& camera, int index, LayerState state) {
    if (Layer* layer = GetLayer(camera, index)) {
        layer->SetState(state);
    }
}

int LayerManager::InsertLayer(const QString& camera, int index, Layer* layer) {
    std::unique_ptr<Layer> owned(layer);
    return InsertLayer(camera, index, owned);
}

int LayerManager::InsertLayer(const QString& camera, int index, std::unique_ptr<Layer>& layer) {
    if (!layer) {
        return -1;
    }
    const ChangeScope scope(*this);
    Stack& stack = MakeRoom(camera, 1); // nothing below needs memory
    LayerList& layers = stack.layers;
    layer->SetChangeCallback([this](DocumentChange change) { Changed(change); });
    const bool wasActive = layer->IsActive();
    stack.keepsPlace = stack.keepsPlace || !IsLayerOfStroke(layer->GetId());
    const int at =
        index >= 0 && index < static_cast<int>(layers.size()) ? index : static_cast<int>(layers.size());
    layers.insert(layers.begin() + at, std::move(layer));
    QueueMasterCacheUpdate(camera);
    if (layers.size() == 1) {
        SetActiveLayer(camera, 0, true);
    } else if (wasActive) {
        SetActiveLayer(camera, at, false);
    }
    Changed(DocumentChange::Layers);
    return at;
}

int LayerManager::InsertLayer(const QString& camera, int index, const QString& name) {
    auto layer = std::make_unique<Layer>();
    layer->SetName(GetUniqueLayerName(name));
    layer->SetState(static_cast<LayerState>(Settings::defaultLayerState));
    return InsertLayer(camera, index, layer.release());
}

/// Makes room for layers that are inserted next. A camera that has none yet then has an empty stack and a
/// composed image.
LayerManager::Stack& LayerManager::MakeRoom(const QString& camera, int count) {
    Stack& stack = stacks_[camera];
    try {
        stack.layers.reserve(stack.layers.size() + static_cast<std::size_t>(count));
        compositor_->AddCamera(camera);
    } catch (...) {
        SetPlace(camera, stack.keepsPlace);
        throw;
    }
    return stack;
}

void LayerManager::ReserveLayers(const QString& camera, int count) {
    if (count > 0) {
        MakeRoom(camera, count);
    }
}

int LayerManager::MoveLayer(const QString& camera, int from, int to) {
    if (!LayerExists(camera, from) || !LayerExists(camera, to)) {
        return -1;
    }
    const auto first = stacks_[camera].layers.begin();
    if (from < to) {
        std::rotate(first + from, first + from + 1, first + to + 1);
    } else {
        std::rotate(first + to, first + from, first + from + 1);
    }
    QueueMasterCacheUpdate(camera);
    Changed(DocumentChange::Layers);
    return to;
}

int LayerManager::MoveLayer(const QString& camera, int index, const QString& toCamera, int toIndex) {
    if (camera == toCamera) {
        return MoveLayer(camera, index, LayerExists(camera, toIndex) ? toIndex : LayerCount(camera) - 1);
    }
    if (!LayerExists(camera, index)) {
        return -1;
    }
    const ChangeScope scope(*this);
    MakeRoom(toCamera, 1);
    std::unique_ptr<Layer> layer = DetachLayer(camera, index);
    layer->SetActive(false);
    return InsertLayer(toCamera, toIndex, layer);
}

std::unique_ptr<Layer> LayerManager::RemoveLayer(const QString& camera, int index) {
    const ChangeScope scope(*this);
    std::unique_ptr<Layer> layer = DetachLayer(camera, index);
    if (layer) {
        layer->DropProvisionalFrame();
    }
    return layer;
}

std::unique_ptr<Layer> LayerManager::DetachLayer(const QString& camera, int index) {
    if (!LayerExists(camera, index)) {
        return nullptr;
    }
    const ChangeScope scope(*this);
    LayerList& layers = stacks_[camera].layers;
    std::unique_ptr<Layer> layer = std::move(layers[static_cast<std::size_t>(index)]);
    layer->SetChangeCallback(nullptr);
    layers.erase(layers.begin() + index);
    QueueMasterCacheUpdate(camera);
    if (layers.empty()) {
        OnLastLayerRemoved(camera);
    } else if (layer->IsActive()) {
        SetActiveLayer(camera, std::max(index - 1, 0), false);
    }
    Changed(DocumentChange::Layers);
    return layer;
}

void LayerManager::RemoveAllLayers(const QString& camera, QList<Layer*>& removed) {
    const auto found = stacks_.find(camera);
    if (found == stacks_.end() || found->second.layers.empty()) {
        return;
    }
    const ChangeScope scope(*this);
    LayerList& layers = found->second.layers;
    removed.reserve(removed.size() + static_cast<int>(layers.size()));
    for (auto& layer : layers) {
        layer->SetChangeCallback(nullptr);
        layer->DropProvisionalFrame();
        removed.append(layer.release());
    }
    layers.clear();
    QueueMasterCacheUpdate(camera);
    OnLastLayerRemoved(camera);
    Changed(DocumentChange::Layers);
}

void LayerManager::DeleteAllLayers(bool updatePanel) {
    CancelActiveStroke();
    for (const auto& entry : stacks_) {
        compositor_->RemoveCamera(entry.first);
    }
    stacks_.clear();
    masterCacheQueue_.clear();
    if (updatePanel) {
        Changed(DocumentChange::Layers);
    }
}

void LayerManager::UpdateLayerManagerDialog() {
    if (!master_ || !DialogManager::HasLayerManagerDialog()) {
        return;
    }
    QStringList cameras;
    MayaUtil::GetCameras(cameras);
    QList<LayerManagerRow> rows;
    for (const auto& entry : stacks_) {
        const bool cameraExists = cameras.contains(entry.first);
        for (const auto& layer : entry.second.layers) {
            rows.append({entry.first, layer->GetName(), layer->IsVisible(), layer->GetState(), cameraExists,
                         static_cast<quint64>(layer->GetId()), lightTable_->IsMarked(layer->GetId())});
        }
    }
    DialogManager::FillLayerManagerDialog(rows, activeCamera_, GetActiveLayerIndex(activeCamera_));
}

const LayerManager::LayerList& LayerManager::FindLayers(const QString& camera) const {
    static const LayerList none;
    const auto found = stacks_.find(camera);
    return found == stacks_.end() ? none : found->second.layers;
}

void LayerManager::OnLastLayerRemoved(const QString& camera) {
    compositor_->RemoveCamera(camera);
    SetActiveLayer(camera, -1, false);
}

} // namespace vellix
