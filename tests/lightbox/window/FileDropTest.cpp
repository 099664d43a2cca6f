#include "WindowFixture.h"
#include "app/PluginManager.h"
#include "formats/SceneFiles.h"
#include "host/entry/PluginMain.h"

#include <QDropEvent>
#include <QFile>
#include <QImage>
#include <QMimeData>
#include <QStringList>
#include <QUrl>

#include <gmock/gmock.h>

using ::testing::Contains;
using ::testing::HasSubstr;

class FileDropTest : public WindowFixture {
protected:
    QString Write(const QString& name, const QByteArray& content) {
        QFile file(prefs_.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return file.fileName();
    }
    /// Drags the files over the window and lets them go. False when the window does not want them.
    bool Drop(const QStringList& paths) {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& path : paths) {
            urls.append(QUrl::fromLocalFile(path));
        }
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(200, 200), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                              Qt::NoModifier);
        enter.ignore();
        QApplication::sendEvent(&Window(), &enter);
        if (!enter.isAccepted()) {
            return false;
        }
        QDropEvent drop(QPointF(200, 200), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                        Qt::NoModifier);
        QApplication::sendEvent(&Window(), &drop);
        EXPECT_EQ(drop.dropAction(), Qt::CopyAction) << "the file stays where it is";
        Settle();
        return true;
    }
};

TEST_F(FileDropTest, ScenesAreOpenedAndScriptsRun) {
    Show();
    const QString scene =
        Write("walk \"one\".ma", "//Maya ASCII 2018 scene\ncreateNode transform -n \"hero\";\n");
    const QString script = Write("after.mel", "rename hero heroine;");
    EXPECT_TRUE(Drop({script, scene})) << "the script is for the scene";
    EXPECT_EQ(host_->files().SceneName(), scene.toStdString());
    EXPECT_NE(host_->scene().Find("heroine"), nullptr);
}

TEST_F(FileDropTest, RecordingsAreDrawnAndUndone) {
    Show();
    EXPECT_FALSE(Drop({Write("nobodys.json", "{}")})) << "nobody to draw it";
    host_->plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
    const QString recording = Write(
        "strokes.json", R"({"format": "vellix-strokes", "version": 1, "size": 1024, "strokes": [{"frame": 1,
        "tool": "pencil", "size": 9, "opacity": 90, "hardness": 100, "color": [0, 0, 0],
        "samples": [[300, 512, 0.5, 0], [420, 470, 0.5, 8]]}]})");
    EXPECT_TRUE(Drop({recording}));
    EXPECT_EQ(Run("qmVellixNode -q -camera").AsString(), "persp");
    Run("undo");
    EXPECT_EQ(Run("qmVellixNode -exists").AsInt(), 0);

    EXPECT_TRUE(Drop({Write("broken.json", "{")}));
    EXPECT_THAT(messages_, Contains(HasSubstr("Cannot replay \"")));
    host_->plugins().Unload("vellix2", true);
}

TEST_F(FileDropTest, PicturesComeIntoTheDrawing) {
    Show();
    host_->plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
    QStringList pictures;
    for (const char* name : {"walk.0003.png", "walk.0001.jpg"}) {
        QImage image(64, 36, QImage::Format_RGB32);
        image.fill(Qt::red);
        pictures.append(prefs_.filePath(name));
        ASSERT_TRUE(image.save(pictures.last()));
    }
    EXPECT_TRUE(Drop(pictures));
    EXPECT_EQ(Run("qmVellixLayer -queryName 0 persp").AsString(), "walk");
    Run("currentTime 1; qmVellixFrame -stepForward persp");
    EXPECT_EQ(Run("currentTime -q").AsInt(), 3);
    Run("undo; undo; undo; undo");
    EXPECT_EQ(Run("qmVellixNode -exists").AsInt(), 0);
    EXPECT_TRUE(Drop({Write("none.ora", "no archive")}));
    EXPECT_THAT(messages_, Contains(HasSubstr("none.ora\": it is no archive that can be read")));
    EXPECT_TRUE(Drop({Write("none.mp4", "no movie")}));
    EXPECT_THAT(messages_, Contains(HasSubstr("Cannot import \"")));
    host_->plugins().Unload("vellix2", true);
}

TEST_F(FileDropTest, OtherThingsAreNotTaken) {
    Show();
    const QString scene = Write("a.ma", "//Maya ASCII 2018 scene\n");
    EXPECT_FALSE(Drop({Write("note.txt", "hello")}));
    EXPECT_FALSE(Drop({scene, prefs_.filePath("b.ma")})) << "one scene at a time";
    EXPECT_FALSE(Drop({}));
    EXPECT_EQ(host_->files().SceneName(), "");
}
