#include "WindowFixture.h"
#include "app/PluginManager.h"
#include "host/entry/PluginMain.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QTimer>

#include <functional>
#include <stdexcept>

/// The dialogs that export and import, with their options.
class FileDialogOptionsTest : public WindowFixture {
protected:
    void SetUp() override { Begin(); }
    void TearDown() override { host_->plugins().Unload("vellix2", true); }

    void Begin() {
        Show();
        host_->plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
        Run("camera -n shotCam; qmVellixNode; qmVellixLayer -add -n Rough -ls 0 persp; qmVellixFrame -insert "
            "persp; "
            "playbackOptions -min 1 -max 3");
        Run("file -rename \"" + Path("scene.ma") + "\"; file -save");
        messages_.clear();
    }
    std::string Path(const char* name) const { return prefs_.filePath(name).toStdString(); }
    QStringList Written(const char* folder) const {
        return QDir(prefs_.filePath(folder)).entryList(QDir::Files);
    }

    /// Opens the dialog, calls the function and presses the button.
    void InDialog(const char* procedure, const std::function<void(QFileDialog&)>& act, const char* button) {
        bool hasActed = false;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (!dialog || hasActed) {
                return;
            }
            hasActed = true;
            act(*dialog);
            Button(*dialog, button).click();
        });
        timer.start(5);
        host_->interpreter().ExecuteReporting(procedure);
        EXPECT_TRUE(hasActed);
        for (const std::string& message : messages_) {
            EXPECT_EQ(message.find("Error"), std::string::npos) << message;
        }
    }
    template <class Widget>
    static Widget& Find(QFileDialog& dialog, const std::function<bool(Widget&)>& isWanted) {
        for (Widget* one : dialog.findChildren<Widget*>()) {
            if (isWanted(*one)) {
                return *one;
            }
        }
        throw std::runtime_error("not in the dialog");
    }
    static QAbstractButton& Button(QFileDialog& dialog, const QString& text) {
        return Find<QAbstractButton>(dialog, [&](QAbstractButton& one) {
            return one.text().remove(QLatin1Char('&')) == text && one.isVisible();
        });
    }
    static QComboBox& Choice(QFileDialog& dialog, const char* item) {
        return Find<QComboBox>(dialog, [&](QComboBox& one) { return one.findText(item) >= 0; });
    }
    static void Choose(QFileDialog& dialog, const char* item) {
        QComboBox& choice = Choice(dialog, item);
        choice.setCurrentIndex(choice.findText(item));
        choice.activated(choice.currentIndex());
    }
    static void Name(QFileDialog& dialog, const std::string& file) {
        dialog.findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(file));
    }
};

TEST_F(FileDialogOptionsTest, EachNamesWhatItExports) {
    InDialog(
        "qmVxExportFrames",
        [](QFileDialog& dialog) {
            for (const QComboBox* one : dialog.findChildren<QComboBox*>()) {
                for (int i = 0; i < one->count(); ++i) {
                    EXPECT_FALSE(one->itemText(i).contains("Pencil2D")) << one->itemText(i).toStdString();
                }
            }
        },
        "Cancel");
    InDialog(
        "qmVxExportLayers",
        [](QFileDialog& dialog) {
            EXPECT_EQ(Choice(dialog, "From, to").currentText(), "Playback range; in Pencil2D, all keys");
            for (const QCheckBox* one : dialog.findChildren<QCheckBox*>()) {
                EXPECT_FALSE(one->text().contains("sheet")) << one->text().toStdString();
            }
        },
        "Cancel");
}

TEST_F(FileDialogOptionsTest, FramesComeWithAContactSheet) {
    InDialog(
        "qmVxExportFrames",
        [&](QFileDialog& dialog) {
            Button(dialog, "A contact sheet as well").click();
            Choose(dialog, "White");
            Choose(dialog, "From, to");
            QDir(prefs_.path()).mkdir("out");
            Name(dialog, Path("out/walk.png"));
        },
        "Export");
    EXPECT_EQ(Written("out"),
              QStringList({"walk.0001.png", "walk.0002.png", "walk.0003.png", "walk_sheet.png"}));
    EXPECT_FALSE(QImage(prefs_.filePath("out/walk.0001.png")).hasAlphaChannel());
}

TEST_F(FileDialogOptionsTest, OptionsAreThereTheNextTime) {
    QDir(prefs_.path()).mkdir("out");
    Run("qmVellixLayer -add -n Ink -ls 0 shotCam1; qmVellixFrame -insert shotCam1");
    InDialog(
        "qmVxExportLayers",
        [&](QFileDialog& dialog) {
            Choose(dialog, "Black");
            Choose(dialog, "From, to");
            Choose(dialog, "shotCam1");
            Button(dialog, "Only frames with a drawing of their own").click();
            dialog.selectNameFilter("OpenRaster (*.ora)");
            Name(dialog, Path("out/a"));
        },
        "Export");
    EXPECT_EQ(Written("out"), QStringList("a.0001.ora"));
    const auto look = [&](bool isKept) {
        return [this, isKept](QFileDialog& dialog) {
            EXPECT_EQ(Choice(dialog, "Black").currentText(), isKept ? "Black" : "Transparent");
            EXPECT_EQ(Choice(dialog, "From, to").currentIndex(), isKept ? 2 : 0);
            EXPECT_EQ(Choice(dialog, "In use").currentText(), isKept ? "shotCam1" : "In use");
            EXPECT_EQ(static_cast<QCheckBox&>(Button(dialog, "Only frames with a drawing of their own"))
                          .isChecked(),
                      isKept);
        };
    };
    InDialog(
        "qmVxExportFrames",
        [](QFileDialog& dialog) {
            EXPECT_EQ(Choice(dialog, "Black").currentText(), "Transparent") << "each dialog has its own";
        },
        "Cancel");
    InDialog(
        "qmVxExportLayers",
        [&](QFileDialog& dialog) {
            look(true)(dialog);
            EXPECT_EQ(dialog.selectedNameFilter(), "OpenRaster (*.ora)");
            EXPECT_EQ(dialog.directory().dirName(), "out");
            Choose(dialog, "White"); // not kept
        },
        "Cancel");
    // Also the next day. A scene in another folder begins there, and has another camera.
    TearDown();
    Restart();
    Begin();
    InDialog("qmVxExportLayers", look(true), "Cancel");
    Run("file -force -new");
    QDir(prefs_.path()).mkdir("other");
    Run("file -rename \"" + Path("other/scene.ma") + "\"");
    InDialog(
        "qmVxExportLayers",
        [&](QFileDialog& dialog) {
            EXPECT_EQ(dialog.directory().dirName(), "other");
            Button(dialog, "Reset Settings").click();
            look(false)(dialog);
        },
        "Cancel");
    InDialog("qmVxExportLayers", look(false), "Cancel");
}

TEST_F(FileDialogOptionsTest, PicturesComeInAsChosen) {
    InDialog(
        "qmVxExportFrames", [&](QFileDialog& dialog) { Name(dialog, Path("ref.png")); }, "Export");
    for (const char* times : {"first", "again"}) {
        InDialog(
            "qmVxImportPictures",
            [&](QFileDialog& dialog) {
                if (times == std::string("first")) {
                    Choose(dialog, "One after the other");
                    Choose(dialog, "Locked, below the others");
                }
                Name(dialog, "\"ref.0001.png\" \"ref.0002.png\"");
            },
            "Import");
        EXPECT_EQ(Run("qmVellixLayer -queryName 0 persp").AsString(), "ref");
        EXPECT_EQ(Run("qmVellixLayer -queryState 0 persp").AsInt(), 2);
        Run("undo");
        EXPECT_EQ(Run("qmVellixLayer -count persp").AsInt(), 1);
    }
}
