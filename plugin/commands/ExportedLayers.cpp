#include "commands/ExportedLayers.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "core/LayerState.h"
#include "exchange/PclxWriter.h"
#include "host/Settings.h"
#include "paint/Composite.h"
#include "paint/PngCodec.h"
#include "paint/PngStructure.h"

#include <maya/MTime.h>

#include <QImage>

#include <algorithm>
#include <new>
#include <utility>

namespace vellix {

namespace {

/// Whether the frame is a static layer's, keyed far before everything else so that it is always shown.
bool IsForAllTimes(const Layer& layer, int frame) {
    return layer.GetState() == LayerState::Static || frame == Settings::defaultStaticFrameTime ||
           frame == Settings::DEFAULT_STATIC_FRAME_TIME;
}

} // namespace

ExportedLayers::ExportedLayers(const LayerManager& layers, const QString& camera, const ExportCanvas& canvas)
    : layers_(layers)
    , camera_(camera)
    , canvas_(canvas) {}

QStringList ExportedLayers::VisibleNames() const {
    QStringList names;
    for (const Layer* layer : layers_.GetLayers(camera_)) {
        if (layer->IsVisible()) {
            names.append(layer->GetName());
        }
    }
    return names;
}

std::set<int> ExportedLayers::KeyFrames(bool hiddenToo) const {
    std::set<int> frames;
    for (const Layer* layer : layers_.GetLayers(camera_)) {
        for (int i = 0; (hiddenToo || layer->IsVisible()) && i < layer->FrameCount(); ++i) {
            frames.insert(layer->GetFrame(i)->GetTimeValue());
        }
    }
    return frames;
}

std::vector<FrameId> ExportedLayers::ShownAt(int frame) const {
    std::vector<FrameId> shown;
    for (const Layer* layer : layers_.GetLayers(camera_)) {
        const Frame* const found = layer->GetFrame(layer->FindFrameIndex(frame));
        shown.push_back(found ? found->GetId() : FrameId::None);
    }
    return shown;
}

bool ExportedLayers::AreSmall(qint64 bytes) const {
    constexpr qint64 many = 1000;
    // A picture that goes out as it is stored can have any size.
    if (canvas_.IsDrawing()) {
        return false;
    }
    // Of the layers, of a background and of all together; packing adds less than a twentieth.
    const qint64 count = layers_.LayerCount(camera_) + 2;
    const qint64 picture = qint64(canvas_.Size().width()) * canvas_.Size().height() * 4 * 21 / 20 + (1 << 16);
    return count < many && count * picture < bytes;
}

LayeredDrawing ExportedLayers::At(int frame) {
    LayeredDrawing drawing = WithBackground(frame);
    for (const Layer* layer : layers_.GetLayers(camera_)) {
        PictureLayer exported = Properties(*layer);
        if (const Frame* shown = layer->GetFrame(layer->FindFrameIndex(frame))) {
            exported.pictures.push_back({frame, Png(*layer, *shown), QPoint()});
        }
        drawing.layers.push_back(std::move(exported));
    }
    return drawing;
}

std::vector<QByteArray> ExportedLayers::VisibleAt(int frame) {
    std::vector<QByteArray> pictures;
    for (const Layer* layer : layers_.GetLayers(camera_)) {
        if (!layer->IsVisible()) {
            continue;
        }
        const Frame* const shown = layer->GetFrame(layer->FindFrameIndex(frame));
        const QImage picture = shown ? shown->PeekImage() : QImage();
        layer->ReportDamage(shown);
        if (shown == nullptr || picture.isNull()) {
            pictures.push_back(EmptyPng());
            continue;
        }
        const QByteArray png = Png(*layer, *shown);
        const PngStructure::Header header = PngStructure::HeaderOf(png);
        // A picture of another size, as other programs leave it in a scene, is shown cut to the drawing.
        const bool fits = QSize(header.width, header.height) == canvas_.Size();
        pictures.push_back(fits ? png : PngCodec::Encoded(canvas_.Place(picture)));
    }
    return pictures;
}

ExportedLayers::Animation ExportedLayers::Between(int first, int last, double rate) {
    Animation animation;
    animation.shift = std::max(0, PclxWriter::FIRST_FRAME - first);
    animation.lastFrame = std::max<int>(PclxWriter::FIRST_FRAME, last + animation.shift);
    animation.drawing = WithBackground(first + animation.shift);
    animation.drawing.rate = rate;
    for (const Layer* layer : layers_.GetLayers(camera_)) {
        PictureLayer exported = Properties(*layer);
        for (int i = std::max(0, layer->FindFrameIndex(first)); i < layer->FrameCount(); ++i) {
            const Frame& frame = *layer->GetFrame(i);
            const int time = frame.GetTimeValue();
            if (time > last) {
                break;
            }
            if (layer->FindFrameIndex(time) == i) { // otherwise another one of the same time is shown
                exported.pictures.push_back(
                    {std::max(time, first) + animation.shift, Png(*layer, frame), QPoint()});
            }
        }
        animation.drawing.layers.push_back(std::move(exported));
    }
    return animation;
}

void ExportedLayers::ExtendToKeys(int& first, int& last) const {
    for (const Layer* layer : layers_.GetLayers(camera_)) {
        for (int i = 0; i < layer->FrameCount(); ++i) {
            const int time = layer->GetFrame(i)->GetTimeValue();
            last = std::max(last, time);
            if (!IsForAllTimes(*layer, time)) {
                first = std::min(first, time);
            }
        }
    }
}

PictureLayer ExportedLayers::Properties(const Layer& layer) const {
    PictureLayer exported;
    exported.name = layer.GetName();
    exported.isVisible = layer.IsVisible();
    return exported; // the opacity is 1: a layer's own one changes no picture
}

LayeredDrawing ExportedLayers::WithBackground(int frame) {
    LayeredDrawing drawing;
    drawing.size = canvas_.Size();
    if (background_.isValid()) {
        QImage paper = composite::OrBadAlloc(QImage(canvas_.Size(), QImage::Format_RGB32));
        paper.fill(background_);
        PictureLayer layer;
        layer.name = QStringLiteral("Background");
        layer.pictures.push_back({frame, PngCodec::Encoded(paper), QPoint()});
        drawing.layers.push_back(std::move(layer));
    }
    return drawing;
}

/// The bytes as they are stored, unless the canvas is another than the drawing's.
QByteArray ExportedLayers::Png(const Layer& layer, const Frame& frame) {
    Encoded& last = encoded_[layer.GetId()];
    const qint64 key = frame.GetPictureKey();
    if (key == 0 && !canvas_.IsDrawing()) {
        return EmptyPng();
    }
    if (key == 0 || key != last.key) {
        if (canvas_.IsDrawing()) {
            last.png = frame.GetPackedImage();
        } else {
            const QImage picture = frame.PeekImage();
            layer.ReportDamage(&frame);
            last.png = picture.isNull() ? EmptyPng() : PngCodec::Encoded(canvas_.Place(picture));
        }
        last.key = key;
    }
    if (last.png.isEmpty()) {
        throw std::bad_alloc();
    }
    return last.png;
}

QByteArray ExportedLayers::EmptyPng() {
    if (empty_.isEmpty()) {
        empty_ = canvas_.IsDrawing() ? Frame(MTime()).GetPackedImage()
                                     : PngCodec::Encoded(canvas_.Place(QImage()));
    }
    return empty_;
}

} // namespace vellix
