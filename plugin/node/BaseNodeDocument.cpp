// BaseNode: operations that forward to the node's layer manager, under the same name.

#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/MayaUtil.h"
#include "host/panels/DialogManager.h"
#include "node/BaseNode.h"
#include "node/OpenText.h"

#include <maya/MTime.h>

#include <QImage>

#include <utility>

namespace vellix {

namespace {

template <typename Result, typename Operation>
Result Ask(const BaseNode& node, Result fallback, Operation operation) {
    const std::shared_ptr<LayerManager> layers = node.GetLayerManager();
    return layers ? Result(operation(*layers)) : std::move(fallback);
}

template <typename Operation>
void Tell(const BaseNode& node, Operation operation) {
    if (const std::shared_ptr<LayerManager> layers = node.GetLayerManager()) {
        operation(*layers);
    }
}

} // namespace

QString BaseNode::GetActiveCamera() const {
    return Ask(*this, QString(), [](LayerManager& layers) { return layers.GetActiveCamera(); });
}

QString BaseNode::GetPreviousActiveCamera() const {
    return Ask(*this, QString(), [](LayerManager& layers) { return layers.GetPreviousActiveCamera(); });
}

void BaseNode::RefreshActiveCamera() {
    if (GetActiveCamera() != MayaUtil::GetActive3dViewCameraName()) {
        OpenText::Commit();
    }
    Tell(*this, [](LayerManager& layers) { layers.RefreshActiveCamera(); });
}

bool BaseNode::LayerExists(const QString& camera, int index) const {
    return Ask(*this, false, [&](LayerManager& layers) { return layers.LayerExists(camera, index); });
}

int BaseNode::LayerCount(const QString& camera) const {
    return Ask(*this, 0, [&](LayerManager& layers) { return layers.LayerCount(camera); });
}

int BaseNode::TotalLayerCount() const {
    return Ask(*this, 0, [](LayerManager& layers) { return layers.TotalLayerCount(); });
}

Layer* BaseNode::GetLayer(const QString& camera, int index) const {
    return Ask<Layer*>(*this, nullptr, [&](LayerManager& layers) { return layers.GetLayer(camera, index); });
}

LayerPlace BaseNode::FindLayer(LayerId id) const {
    return Ask(*this, LayerPlace(), [&](LayerManager& layers) { return layers.FindLayer(id); });
}

QList<Layer*> BaseNode::GetLayers(const QString& camera) const {
    return Ask(*this, QList<Layer*>(), [&](LayerManager& layers) { return layers.GetLayers(camera); });
}

Layer* BaseNode::GetActiveLayer(const QString& camera) const {
    return Ask<Layer*>(*this, nullptr, [&](LayerManager& layers) { return layers.GetActiveLayer(camera); });
}

int BaseNode::GetActiveLayerIndex(const QString& camera) const {
    return Ask(*this, -1, [&](LayerManager& layers) { return layers.GetActiveLayerIndex(camera); });
}

bool BaseNode::SetActiveLayer(const QString& camera, int index, bool makeCameraActive) {
    return Ask(*this, false,
               [&](LayerManager& layers) { return layers.SetActiveLayer(camera, index, makeCameraActive); });
}

void BaseNode::SetLayerName(const QString& camera, int index, const QString& name) {
    Tell(*this, [&](LayerManager& layers) { layers.SetLayerName(camera, index, name); });
}

QString BaseNode::GetLayerName(const QString& camera, int index) const {
    return Ask(*this, QString(), [&](LayerManager& layers) { return layers.GetLayerName(camera, index); });
}

bool BaseNode::IsLayerVisible(const QString& camera, int index) const {
    return Ask(*this, false, [&](LayerManager& layers) { return layers.IsLayerVisible(camera, index); });
}

void BaseNode::SetLayerVisible(const QString& camera, int index, bool visible) {
    Tell(*this, [&](LayerManager& layers) { layers.SetLayerVisible(camera, index, visible); });
}

float BaseNode::GetLayerOpacity(const QString& camera, int index) const {
    return Ask(*this, 0.0f, [&](LayerManager& layers) { return layers.GetLayerOpacity(camera, index); });
}

void BaseNode::SetLayerOpacity(const QString& camera, int index, float opacity) {
    Tell(*this, [&](LayerManager& layers) { layers.SetLayerOpacity(camera, index, opacity); });
}

LayerState BaseNode::GetLayerState(const QString& camera, int index) const {
    return Ask(*this, LayerState::Animated,
               [&](LayerManager& layers) { return layers.GetLayerState(camera, index); });
}

void BaseNode::SetLayerState(const QString& camera, int index, LayerState state) {
    Tell(*this, [&](LayerManager& layers) { layers.SetLayerState(camera, index, state); });
}

int BaseNode::InsertLayer(const QString& camera, int index, const QString& name) {
    return Ask(*this, -1, [&](LayerManager& layers) { return layers.InsertLayer(camera, index, name); });
}

int BaseNode::InsertLayer(const QString& camera, int index, std::unique_ptr<Layer> layer) {
    return Ask(*this, -1,
               [&](LayerManager& layers) { return layers.InsertLayer(camera, index, layer.release()); });
}

std::unique_ptr<Layer> BaseNode::RemoveLayer(const QString& camera, int index) {
    return Ask(*this, std::unique_ptr<Layer>(),
               [&](LayerManager& layers) { return layers.RemoveLayer(camera, index); });
}

void BaseNode::RemoveAllLayers(const QString& camera, std::vector<std::unique_ptr<Layer>>& removed) {
    QList<Layer*> taken;
    Tell(*this, [&](LayerManager& layers) { layers.RemoveAllLayers(camera, taken); });
    for (Layer* layer : taken) {
        removed.emplace_back(layer);
    }
}

int BaseNode::MoveLayer(const QString& camera, int from, int to) {
    return Ask(*this, -1, [&](LayerManager& layers) { return layers.MoveLayer(camera, from, to); });
}

int BaseNode::MoveLayer(const QString& camera, int index, const QString& toCamera, int toIndex) {
    return Ask(*this, -1,
               [&](LayerManager& layers) { return layers.MoveLayer(camera, index, toCamera, toIndex); });
}

bool BaseNode::FrameExists(const QString& camera) const {
    return Ask(*this, false, [&](LayerManager& layers) { return layers.FrameExists(camera); });
}

bool BaseNode::FrameExists(const QString& camera, const MTime& time) const {
    return Ask(*this, false, [&](LayerManager& layers) { return layers.FrameExists(camera, time); });
}

Frame* BaseNode::GetPreviousFrame(const QString& camera, bool wrap) const {
    return Ask<Frame*>(*this, nullptr,
                       [&](LayerManager& layers) { return layers.GetPreviousFrame(camera, wrap); });
}

Frame* BaseNode::GetNextFrame(const QString& camera, bool wrap) const {
    return Ask<Frame*>(*this, nullptr,
                       [&](LayerManager& layers) { return layers.GetNextFrame(camera, wrap); });
}

void BaseNode::GetFrameTimes(const QString& camera, QList<int>& times) const {
    Tell(*this, [&](LayerManager& layers) { layers.GetFrameTimes(camera, times); });
}

void BaseNode::SetFrameTimes(const QString& camera, const QList<int>& times) {
    Tell(*this, [&](LayerManager& layers) { layers.SetFrameTimes(camera, times); });
}

int BaseNode::AddFrame(const QString& camera) {
    return Ask(*this, -1, [&](LayerManager& layers) { return layers.AddFrame(camera); });
}

int BaseNode::AddFrame(const QString& camera, const MTime& time) {
    return Ask(*this, -1, [&](LayerManager& layers) { return layers.AddFrame(camera, time); });
}

int BaseNode::InsertFrame(const QString& camera, std::unique_ptr<Frame> frame) {
    return Ask(*this, -1, [&](LayerManager& layers) { return layers.InsertFrame(camera, frame.release()); });
}

std::unique_ptr<Frame> BaseNode::RemoveFrame(const QString& camera) {
    return Ask(*this, std::unique_ptr<Frame>(),
               [&](LayerManager& layers) { return layers.RemoveFrame(camera); });
}

std::unique_ptr<Frame> BaseNode::RemoveFrame(const QString& camera, const MTime& time) {
    return Ask(*this, std::unique_ptr<Frame>(),
               [&](LayerManager& layers) { return layers.RemoveFrame(camera, time); });
}

void BaseNode::ForceCacheUpdate(const QString& camera, int index) {
    Tell(*this, [&](LayerManager& layers) { layers.ForceCacheUpdate(camera, index); });
}

bool BaseNode::ImageUpdateRequired(const QString& camera) const {
    return Ask(*this, false, [&](LayerManager& layers) { return layers.CacheUpdateRequired(camera); });
}

QImage* BaseNode::GetFinalImage(const QString& camera) {
    return Ask<QImage*>(*this, nullptr,
                        [&](LayerManager& layers) { return layers.GetFlattenedImage(camera); });
}

bool BaseNode::HasActiveStroke() const {
    return Ask(*this, false, [](LayerManager& layers) { return layers.HasActiveStroke(); });
}

Stroke* BaseNode::GetActiveStroke(const QString& camera, bool shape) {
    return Ask<Stroke*>(*this, nullptr,
                        [&](LayerManager& layers) { return layers.GetActiveStroke(camera, shape); });
}

void BaseNode::CancelActiveStroke() {
    Tell(*this, [](LayerManager& layers) { layers.CancelActiveStroke(); });
}

bool BaseNode::CommitActiveStroke(const QString& camera, QByteArray& undo) {
    return Ask(*this, false, [&](LayerManager& layers) { return layers.CommitActiveStroke(camera, undo); });
}

bool BaseNode::UndoStroke(const QString& camera, QByteArray& buffer) {
    return Ask(*this, false, [&](LayerManager& layers) { return layers.UndoStroke(camera, buffer); });
}

bool BaseNode::PasteTransformImageAvailable() const {
    return Ask(*this, false, [](LayerManager& layers) { return layers.PasteTransformImageAvailable(); });
}

void BaseNode::UpdateLayerManagerDialog() {
    Tell(*this, [](LayerManager& layers) { layers.UpdateLayerManagerDialog(); });
}

void BaseNode::ClearLayerManagerDialog() {
    DialogManager::ClearLayerManagerDialog();
}

} // namespace vellix
