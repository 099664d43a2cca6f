#include "WindowFixture.h"
#include "app/PluginManager.h"
#include "host/entry/PluginMain.h"

#include <QAbstractButton>
#include <QImage>
#include <QMessageBox>
#include <QTimer>

#include <functional>
#include <gmock/gmock.h>

using ::testing::HasSubstr;

/// An import of more pictures than come in without a question, and what can happen while it asks.
class ImportQuestionTest : public WindowFixture {
protected:
    void SetUp() override {
        Show();
        host_->plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
        QImage image(1, 1, QImage::Format_RGBA8888);
        image.fill(Qt::transparent); // is packed quickly
        for (int i = 1; i <= 501; ++i) {
            ASSERT_TRUE(image.save(prefs_.filePath(QString("many.%1.png").arg(i))));
        }
        Run("camera -n shotCam; qmVellixNode; qmVellixLayer -add -n Old -ls 0 persp; qmVellixFrame -insert "
            "persp");
        messages_.clear();
    }
    void TearDown() override { host_->plugins().Unload("vellix2", true); }

    /// Imports, and when it asks calls the function and presses the button.
    void Import(const char* camera, const std::function<void()>& meanwhile, const QString& button) {
        bool hasAsked = false;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box || hasAsked) {
                return;
            }
            hasAsked = true;
            EXPECT_EQ(box->text(), "There are 501 pictures (0 MB). Import all of them?");
            meanwhile();
            for (QAbstractButton* one : box->buttons()) {
                if (one->text() == button) {
                    one->click();
                }
            }
        });
        timer.start(5);
        host_->interpreter().ExecuteReporting("qmVellixImport -camera " + std::string(camera) + " -file \"" +
                                              prefs_.filePath("many.*.png").toStdString() + "\"");
        EXPECT_TRUE(hasAsked);
    }
    int LayerCount(const std::string& camera) {
        return static_cast<int>(Run("qmVellixLayer -count " + camera).AsInt());
    }
    void ExpectOneError(const char* text) {
        int errors = 0;
        for (const std::string& message : messages_) {
            if (message.find("Error:") != std::string::npos) {
                ++errors;
                EXPECT_THAT(message, HasSubstr(text));
            }
        }
        EXPECT_EQ(errors, 1);
    }
};

TEST_F(ImportQuestionTest, CancelChangesNothing) {
    Import(
        "persp", [] {}, "Cancel");
    ExpectOneError("cancelled. Nothing was changed.");
    EXPECT_EQ(LayerCount("persp"), 1);
}

TEST_F(ImportQuestionTest, ACameraThatIsDeletedMeanwhileIsMissed) {
    Import(
        "shotCam1", [this] { Run("delete shotCam1"); }, "Import");
    ExpectOneError("the camera \"shotCam1\" is no longer in the scene. Nothing was changed.");
    EXPECT_EQ(LayerCount("persp"), 1);
    Run("undo");
    EXPECT_NE(host_->scene().Find("shotCam1"), nullptr);
}

TEST_F(ImportQuestionTest, AnotherSceneGetsNothing) {
    Import(
        "persp", [this] { Run("file -force -new"); }, "Import");
    ExpectOneError("another scene was opened meanwhile. Nothing was changed.");
    EXPECT_EQ(Run("qmVellixNode -exists").AsInt(), 0);
}

TEST_F(ImportQuestionTest, WhatHappensMeanwhileIsUndoneAsWell) {
    Import(
        "persp", [this] { Run("qmVellixLayer -delete 0 persp"); }, "Import");
    EXPECT_EQ(Run("qmVellixLayer -queryName 0 persp").AsString(), "many");
    Run("undo");
    EXPECT_EQ(LayerCount("persp"), 1);
    EXPECT_EQ(Run("qmVellixLayer -queryName 0 persp").AsString(), "Old");
    Run("redo");
    EXPECT_EQ(LayerCount("persp"), 1);
    EXPECT_EQ(Run("qmVellixLayer -queryName 0 persp").AsString(), "many");
}
