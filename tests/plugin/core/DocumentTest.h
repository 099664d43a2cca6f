#pragma once

#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "paint/Stroke.h"
#include "plugin/PluginTest.h"
#include "plugin/core/PlainComposer.h"

#include <maya/MAnimControl.h>

#include <QPainter>

#include <memory>

namespace vellix {

/// A test with its own layer manager, at frame 1, without ghosts.
class DocumentTest : public PluginTest {
protected:
    DocumentTest() {
        Settings::ghostPrev = Settings::ghostNext = Settings::ghostColorOverride = false;
        Settings::ghostPrevCount = Settings::ghostNextCount = 3;
        Settings::disableGhostingDuringPlayback = true;
        Settings::defaultLayerState = 0;
        ShowTime(1);
    }
    ~DocumentTest() override { MAnimControl::stop(); }

    static MTime At(double frame) { return MTime(frame, MTime::uiUnit()); }

    void ShowTime(int frame) {
        MayaUtil::SetPlaybackTime(frame);
        manager_.OnPlaybackTimeChanged(frame, false);
    }

    /// A drawing of one colour: a soft-edged blob and a translucent bar. The number sets colour and place.
    static QImage Drawing(int number) {
        QImage image = PlainComposer::Blank();
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        const QColor color = QColor::fromHsv(number * 67 % 360, 200, 230);
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawEllipse(QPointF(200.3 + number * 41 % 500, 300.7 + number * 83 % 400), 70, 50);
        QColor faint = color;
        faint.setAlpha(90 + number * 13 % 100);
        painter.fillRect(QRect(100 + number * 29 % 300, 420, 300, 60), faint);
        return image;
    }

    /// Adds a layer on top of the camera's stack, with a drawing at each of the times.
    Layer* AddLayer(const QString& camera, const QList<int>& times) {
        Layer* layer = manager_.GetLayer(camera, manager_.InsertLayer(camera, -1, QString()));
        for (const int time : times) {
            auto frame = std::make_unique<Frame>(At(time));
            frame->SetImage(Drawing(drawings_++));
            layer->InsertFrame(frame.release());
        }
        return layer;
    }

    /// The camera's picture, composed by the plain reference.
    QImage Plain(const QString& camera, const QImage* stroke = nullptr) {
        PlainComposer plain;
        Layer* active = manager_.GetActiveLayer(camera);
        if (active && (Settings::ghostPrev || Settings::ghostNext)) {
            plain.previousCount = Settings::ghostPrev ? Settings::ghostPrevCount : 0;
            plain.nextCount = Settings::ghostNext ? Settings::ghostNextCount : 0;
            for (int k = plain.previousCount; k >= 1; --k) {
                plain.previous.push_back(active->GetImage(-k));
            }
            for (int k = plain.nextCount; k >= 1; --k) {
                plain.next.push_back(active->GetImage(k));
            }
            if (Settings::ghostColorOverride) {
                plain.previousColor = &Settings::ghostColorOverridePrev;
                plain.nextColor = &Settings::ghostColorOverrideNext;
            }
        }
        for (Layer* layer : manager_.GetLayers(camera)) {
            plain.layers.push_back(layer->GetImage(0));
            if (stroke && layer == active) {
                plain.layers.push_back(stroke);
            }
        }
        return plain.Compose();
    }

    /// The largest difference of the composed image from the plain reference, in 255ths. 256 if there is no
    /// image.
    int Error(const QString& camera, const QImage* stroke = nullptr) {
        const QImage* image = manager_.GetFlattenedImage(camera);
        return image ? PlainComposer::Difference(*image, Plain(camera, stroke)) : 256;
    }

    static StrokePoint Point(int x, int y, int size = 30, float opacity = 1.0f) {
        StrokePoint point;
        point.size = size;
        point.opacity = opacity;
        point.position = QPoint(x, y);
        return point;
    }

    /// Begins a stroke of the tool across the middle, not yet painted.
    Stroke* BeginStroke(const QString& camera, ToolType tool, const QColor& color = QColor(10, 120, 240)) {
        Stroke* stroke = manager_.GetActiveStroke(camera, true);
        stroke->tool = tool;
        stroke->color = color;
        stroke->points = {Point(260, 330), Point(420, 360), Point(560, 450, 30, 0.5f)};
        stroke->changed = true;
        return stroke;
    }

    LayerManager manager_;
    const QString camera_ = QStringLiteral("persp");

private:
    int drawings_ = 0;
};

} // namespace vellix
