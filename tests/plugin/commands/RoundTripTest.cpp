#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/MayaUtil.h"
#include "plugin/commands/CommandFixture.h"
#include "plugin/exchange/MadeArchive.h"

#include <maya/MTime.h>

#include <QColor>
#include <QDir>
#include <QFile>
#include <QMap>

namespace vellix {
namespace {

/// Layers that go out, come in and go out again.
class RoundTripTest : public CommandFixture {
protected:
    void SetUp() override {
        CommandFixture::SetUp();
        const QStringList names = {"Rough",
                                   QString::fromUtf8("背景 ü עברית"),
                                   "Rough",
                                   "a \"b\" <&amp;> 'c' \\ {layer}",
                                   QString::fromUtf8("🎨\u0301"),
                                   " "};
        int number = 0;
        for (const QString& name : names) {
            AddLayer("persp", name, {number - 6, 2 + number % 2, 9}, number);
            ++number;
        }
        AddLayer("top", "Rough", {-3, 4}, 30);
        Mel("qmVellixLayer -ev 0 1 persp; currentTime 2; currentTime 1");
    }
    void AddLayer(const QString& camera, const QString& name, const QList<int>& times, int shade) {
        Mel(QString("qmVellixLayer -add -n new -ls 0 %1").arg(camera));
        Layer* const layer = Node().GetLayers(camera).back();
        Mel(QString("qmVellixLayer -en \"%1\" %2 %3")
                .arg(MayaUtil::EscapeString(name))
                .arg(Node().GetLayers(camera).size() - 1)
                .arg(camera));
        ASSERT_EQ(layer->GetName(), name);
        for (const int time : times) {
            Node().AddFrame(camera, MTime(time, MTime::uiUnit()));
            layer->GetFrame(layer->FindFrameIndex(time))
                ->SetPackedImage(MadeArchive::Png(1024, 1024, QColor(7 * shade, 100 + time, 9, 200)));
        }
    }
    void NewScene() { Mel("file -f -new; playbackOptions -min 1 -max 4; currentTime 1; qmVellixNode"); }
    void Export(const QString& camera, const QString& to, int first, int last) {
        Mel(QString("qmVellixExport -camera %1 -layered \"%2\" -startTime %3 -endTime %4")
                .arg(camera, folder_.filePath(to))
                .arg(first)
                .arg(last));
    }
    QString ImportLine(const QString& camera, const QString& from, const QString& more = QString()) const {
        return QString("qmVellixImport -camera %1 -file \"%2\" %3").arg(camera, folder_.filePath(from), more);
    }
    /// The files of a folder.
    QMap<QString, QByteArray> Files(const QString& name) const {
        QMap<QString, QByteArray> files;
        const QDir folder(folder_.filePath(name));
        for (const QString& entry : folder.entryList(QDir::Files)) {
            QFile file(folder.filePath(entry));
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            files[entry] = file.readAll();
        }
        return files;
    }
    /// Layers, keys and pictures, whichever camera and layer is active.
    static QString Layers() {
        QString text;
        for (const QString& camera : {QString("persp"), QString("top")}) {
            for (const Layer* layer : Node().GetLayers(camera)) {
                text += camera + "|" + layer->GetName() + (layer->IsVisible() ? "|" : "|hidden|");
                for (int i = 0; i < layer->FrameCount(); ++i) {
                    text += QString("%1:%2 ")
                                .arg(layer->GetFrame(i)->GetTimeValue())
                                .arg(qHash(layer->GetFrame(i)->GetPackedImage()));
                }
                text += "\n";
            }
        }
        return text;
    }
};

TEST_F(RoundTripTest, PclxIsEqualToTheBit) {
    const QString layers = Layers();
    Export("persp", "out/persp.pclx", -8, 12);
    Export("top", "out/top.pclx", -8, 12);
    // Once more onto the layers themselves: nothing is there that was not.
    ExpectUndoable(ImportLine("persp", "out/persp.pclx", "-startTime 1"));
    Mel(ImportLine("persp", "out/persp.pclx", "-startTime -8"));
    EXPECT_EQ(Layers(), layers);
    NewScene();
    const QStringList lines = {ImportLine("persp", "out/persp.pclx", "-startTime -8"),
                               ImportLine("top", "out/top.pclx", "-startTime -8")};
    ExpectUndoableChain(lines);
    EXPECT_EQ(Layers(), layers);
    Export("persp", "back/persp.pclx", -8, 12);
    Export("top", "back/top.pclx", -8, 12);
    EXPECT_EQ(Files("back"), Files("out"));
    // Without the time of the first frame they stay as they were shifted.
    NewScene();
    Mel(ImportLine("persp", "out/persp.pclx"));
    Mel(ImportLine("top", "out/top.pclx"));
    Export("persp", "shifted/persp.pclx", 1, 21);
    Export("top", "shifted/top.pclx", 1, 21);
    EXPECT_EQ(Files("shifted"), Files("out"));
}

TEST_F(RoundTripTest, OpenRasterIsEqualToTheBit) {
    const QString layers = Layers();
    Export("persp", "out/shot.####.ora", -8, 12);
    Export("top", "out/top.####.ora", -8, 12);
    EXPECT_EQ(Mel(ImportLine("persp", "out/shot.####.ora")).AsInt(), 0) << "all of it is there";
    EXPECT_EQ(Layers(), layers);
    NewScene();
    const QStringList lines = {ImportLine("persp", "out/shot.####.ora"),
                               ImportLine("top", "out/top.####.ora")};
    ExpectUndoableChain(lines);
    EXPECT_EQ(Layers(), layers);
    Export("persp", "back/shot.####.ora", -8, 12);
    Export("top", "back/top.####.ora", -8, 12);
    EXPECT_EQ(Files("back").keys(), Files("out").keys());
    EXPECT_EQ(Files("back"), Files("out"));
}

TEST_F(RoundTripTest, AStaticLayerIsShownAtTheSameFrames) {
    Mel("qmVellixLayer -add -n Paper -ls 1 persp; qmVellixFrame -insert persp");
    Layer* const paper = Node().GetLayers("persp").back();
    ASSERT_EQ(paper->FrameCount(), 1);
    paper->GetFrame(0)->SetPackedImage(MadeArchive::Png(1024, 1024, Qt::white));
    Export("persp", "out/a.####.ora", 1, 5);
    Export("persp", "anim/a.pclx", 1, 5);
    NewScene();
    Mel(ImportLine("persp", "anim/a.pclx"));
    Export("persp", "back/a.####.ora", 1, 5);
    EXPECT_EQ(Files("back"), Files("out"));
    Mel("undo");
    Mel(ImportLine("persp", "out/a.####.ora"));
    Export("persp", "again/a.pclx", 1, 5);
    EXPECT_EQ(Files("again"), Files("anim"));
}

} // namespace
} // namespace vellix
