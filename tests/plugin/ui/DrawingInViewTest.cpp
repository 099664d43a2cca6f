#include "node/BaseNode.h"
#include "openmaya/Texture.h"
#include "openmaya/ViewDrawing.h"
#include "plugin/ui/DrawingFixture.h"
#include "scene/CameraView.h"

#include <maya/M3dView.h>
#include <maya/MColor.h>

#include <QPainter>
#include <QRectF>
#include <QTemporaryDir>
#include <qopengl.h>

#include <algorithm>
#include <cmath>

namespace vellix {

namespace {

class DrawingInViewTest : public DrawingFixture {
protected:
    DrawingInViewTest() { Run("qmVellixNode -l -f -c persp"); }

    /// Every other pixel opaque, edges of one pixel, translucent bars: what any blur or shift would change.
    static QImage Drawing() {
        QImage image(1024, 1024, QImage::Format_RGBA8888);
        image.fill(Qt::transparent);
        for (int y = 300; y < 500; ++y) {
            for (int x = 200; x < 400; ++x) {
                if ((x + y) % 2 == 0) {
                    image.setPixelColor(x, y, QColor(255, 120, 0));
                }
            }
        }
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(QRect(500, 320, 200, 60), QColor(20, 60, 240, 128));
        painter.fillRect(QRect(500, 420, 200, 1), QColor(0, 255, 0));
        painter.fillRect(QRect(760, 300, 1, 200), QColor(255, 0, 255, 200));
        return image;
    }
};

} // namespace

// The gate is 1024 pixels wide: what is seen is the drawing over the view without it, pixel for pixel.
TEST_F(DrawingInViewTest, IsTrueToThePixelInBothRenderers) {
    const QImage drawing = Drawing();
    for (const QSize size : {QSize(1024, 576), QSize(1024, 577)}) {
        SizeView(size.width(), size.height());
        for (const auto renderer :
             {lightbox::ViewOptions::Renderer::Viewport2, lightbox::ViewOptions::Renderer::Legacy}) {
            SCOPED_TRACE(::testing::Message() << size.height() << " high, renderer " << int(renderer));
            Use(renderer);
            QImage nothing(1024, 1024, QImage::Format_RGBA8888);
            nothing.fill(Qt::transparent);
            Draw(nothing);
            const QImage before = Grab();
            Draw(drawing);
            const QImage seen = Grab();
            // The first row of the drawing lies (1024 - height) / 2 above the view, halves upward.
            const int above = (1024 - size.height() + 1) / 2;
            int worst = 0;
            for (int y = 0; y < size.height(); ++y) {
                for (int x = 0; x < 1024; ++x) {
                    const QColor over = drawing.pixelColor(x, y + above);
                    const QColor under = before.pixelColor(x, y);
                    const double alpha = over.alphaF();
                    const QColor got = seen.pixelColor(x, y);
                    const auto error = [&](int o, int u, int g) {
                        return static_cast<int>(std::lround(std::abs(o * alpha + u * (1.0 - alpha) - g)));
                    };
                    worst = std::max({worst, error(over.red(), under.red(), got.red()),
                                      error(over.green(), under.green(), got.green()),
                                      error(over.blue(), under.blue(), got.blue())});
                }
            }
            EXPECT_LE(worst, 2);
        }
    }
}

// Each edge of the drawing lies at the same share of the exported picture and of the gate in the view, within
// a pixel.
TEST_F(DrawingInViewTest, AnExportedGateIsWhatTheViewShowsInIt) {
    SizeView(900, 560);
    Use(lightbox::ViewOptions::Renderer::Viewport2);
    QImage drawing(1024, 1024, QImage::Format_RGBA8888);
    drawing.fill(Qt::transparent);
    QPainter(&drawing).fillRect(QRect(400, 430, 300, 200), Qt::red);
    Draw(drawing);
    Run("setAttr defaultResolution.width 640; setAttr defaultResolution.height 320");
    const QTemporaryDir folder;
    const auto boxOf = [](const QImage& image) {
        QRect box;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor c = image.pixelColor(x, y);
                if (c.red() > 190 && c.green() < 65 && c.blue() < 65) {
                    box |= QRect(x, y, 1, 1);
                }
            }
        }
        return QRectF(box);
    };
    for (const int fit : {0, 1, 2, 3}) {
        for (const char* view : {"setAttr perspShape.overscan 1; setAttr perspShape.panZoomEnabled 0",
                                 "setAttr perspShape.overscan 1.4; setAttr perspShape.panZoomEnabled 1;"
                                 "setAttr perspShape.zoom 0.8; setAttr perspShape.horizontalPan 0.1;"
                                 "setAttr perspShape.verticalPan -0.05"}) {
            SCOPED_TRACE(::testing::Message() << "film fit " << fit << ", " << view);
            Run(QString("setAttr perspShape.filmFit %1; %2").arg(fit).arg(view).toStdString());
            Settle(50);
            const QRectF seen = boxOf(Grab());
            const QRectF gate = lightbox::CameraView(*View().Camera(), 900, 560).ResolutionGate();
            const QString path = folder.filePath("gate.png");
            Run(QString("qmVellixExport -camera persp -file \"%1\" -startTime 1 -endTime 1 -renderSize "
                        "-background 90 90 90")
                    .arg(path)
                    .toStdString());
            const QImage picture(path);
            ASSERT_EQ(picture.size(), QSize(640, 320));
            const QRectF exported = boxOf(picture);
            const double scale = gate.width() / 640;
            const double top = 560 - gate.bottom(); // the view counts from its bottom
            const double pixel = std::max(1.0, scale);
            EXPECT_NEAR(seen.left(), gate.left() + exported.left() * scale, pixel);
            EXPECT_NEAR(seen.right(), gate.left() + exported.right() * scale, pixel);
            EXPECT_NEAR(seen.top(), top + exported.top() * scale, pixel);
            EXPECT_NEAR(seen.bottom(), top + exported.bottom() * scale, pixel);
        }
    }
}

TEST_F(DrawingInViewTest, AnImageThatStaysIsBroughtToTheCardOnce) {
    SizeView(640, 480);
    Use(lightbox::ViewOptions::Renderer::Viewport2);
    Draw(Drawing());
    Grab();
    const unsigned uploads = View().UploadCount();
    for (int round = 0; round < 5; ++round) {
        Grab();
    }
    EXPECT_EQ(View().UploadCount(), uploads);
    QImage other = Drawing();
    other.setPixelColor(512, 512, Qt::red);
    Draw(other);
    Grab();
    EXPECT_EQ(View().UploadCount(), uploads + 1);
}

TEST_F(DrawingInViewTest, WhatACommandChangesIsSeenAtOnceAndSoIsItsUndo) {
    SizeView(640, 480);
    Run("qmVellixLayer -add -n Upper -ls 0 persp; qmVellixFrame -insert persp");
    Draw(Drawing());
    Settle(200);
    const auto picturesOf = [this](const char* line) {
        const unsigned before = View().FrameCount();
        Run(line);
        Settle(100);
        return View().FrameCount() - before;
    };
    for (const char* const line :
         {"qmVellixLayer -ev 0 1 persp", "qmVellixLayer -eo 0.5 1 persp", "qmVellixLayer -es 1 1 persp",
          "qmVellixLayer -move 1 0 persp", "qmVellixLayer -newCamera top -move 1 -1 persp",
          "qmVellixLayer -moveAll top persp", "qmVellixLayer -delete 1 persp",
          "qmVellixLayer -deleteAll persp", "qmVellixFrame -clear persp"}) {
        for (const char* const step : {line, "undo", "redo", "undo"}) {
            EXPECT_GE(picturesOf(step), 1U) << step << " of " << line;
        }
    }
    EXPECT_EQ(picturesOf("qmVellixLayer -qn 1 persp"), 0U);

    ASSERT_NE(Node().GetActiveStroke("persp", false), nullptr);
    Run("qmVellixStroke persp"); // the tool that ends the stroke shows it
    Settle(100);
    for (const char* const step : {"undo", "redo"}) {
        EXPECT_GE(picturesOf(step), 1U) << step << " of a stroke";
    }
}

TEST_F(DrawingInViewTest, TheOutlineIsDrawnOverTheDrawing) {
    SizeView(1024, 600);
    Use(lightbox::ViewOptions::Renderer::Viewport2);
    BaseNode::GetMaster()->SetTransformOutline("persp", QPoint(300, 300), QPoint(300, 700), QPoint(600, 700),
                                               QPoint(600, 300));
    const QImage seen = Grab();
    int red = 0;
    for (int y = 0; y < 600; ++y) {
        red += seen.pixelColor(300, y) == QColor(255, 0, 0) ? 1 : 0;
    }
    EXPECT_NEAR(red, 400, 2);
    BaseNode::GetMaster()->ClearTransformOutline();
    EXPECT_NE(Grab().pixelColor(300, 300), QColor(255, 0, 0));
}

// A tool of the legacy viewport draws and takes away again what it drew, without the view being drawn anew.
TEST_F(DrawingInViewTest, XorDrawingAppearsAndDisappears) {
    SizeView(640, 480);
    Use(lightbox::ViewOptions::Renderer::Legacy);
    Draw(Drawing());
    const QImage before = Grab();
    const auto outline = [] {
        M3dView view = M3dView::active3dView();
        view.beginXorDrawing();
        view.setDrawColor(MColor(1.0f, 1.0f, 1.0f));
        glBegin(GL_LINE_LOOP);
        for (const auto& corner : {QPoint(50, 40), QPoint(50, 440), QPoint(600, 440), QPoint(600, 40)}) {
            glVertex2f(static_cast<float>(corner.x()) + 0.5f, static_cast<float>(corner.y()) + 0.5f);
        }
        glEnd();
        view.endXorDrawing();
    };
    const auto seen = [&] { return View().grabFramebuffer().convertToFormat(QImage::Format_RGB32); };
    outline();
    const QImage with = seen();
    const QColor under = before.pixelColor(50, 240);
    EXPECT_EQ(with.pixelColor(50, 240), QColor(255 - under.red(), 255 - under.green(), 255 - under.blue()));
    EXPECT_EQ(with.pixelColor(300, 39),
              QColor(255 - before.pixelColor(300, 39).red(), 255 - before.pixelColor(300, 39).green(),
                     255 - before.pixelColor(300, 39).blue()));
    EXPECT_EQ(with.pixelColor(300, 240), before.pixelColor(300, 240));
    outline();
    EXPECT_EQ(seen(), before);
    Use(lightbox::ViewOptions::Renderer::Viewport2);
    const QImage other = Grab();
    outline();
    EXPECT_EQ(seen(), other) << "nothing of it shows in Viewport 2.0";
}

TEST_F(DrawingInViewTest, TwoNodesHaveTwoTextures) {
    SizeView(640, 480);
    Run("createNode transform -name other; createNode qmVellix -parent other -name otherShape");
    BaseNode* other = BaseNode::GetAll().last();
    ASSERT_FALSE(other->IsMaster());
    other->InsertLayer("persp", 0, QString());
    other->AddFrame("persp");
    const auto list = lightbox::ViewDrawing::Collect(host_->scene(), View(), View().LookThrough());
    ASSERT_EQ(list.size(), 2U);
    EXPECT_NE(list[0].texture->name, list[1].texture->name);
    EXPECT_EQ(list[0].texture->name.rfind("vxpVP2Texture", 0), 0U);
}

} // namespace vellix
