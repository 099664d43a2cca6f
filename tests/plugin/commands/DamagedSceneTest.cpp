// What is left of the drawings of a scene file with a flipped bit or without its end.

#include "core/Frame.h"
#include "plugin/commands/CommandFixture.h"
#include "scene/Output.h"

#include <QBuffer>
#include <QFile>
#include <QSet>

#include <iostream>
#include <random>

namespace vellix {

namespace {

constexpr int DRAWINGS = 12;

/// A picture of noise, whose PNG bytes do not compress.
QImage Noise(std::mt19937& random) {
    QImage image(48, 48, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, y, 0xff000000u | random());
        }
    }
    return image;
}

/// A scene with twelve drawings in two layers, which is damaged and opened again.
class DamagedSceneTest : public CommandFixture {
protected:
    void SetUp() override {
        CommandFixture::SetUp();
        Mel("qmVellixLayer -insert -1 -layerState 0 persp; qmVellixLayer -insert -1 -layerState 0 persp");
        Mel("while (`qmVellixLayer -count persp` > 2) qmVellixLayer -delete 0 persp");
        std::mt19937 random(7);
        for (int drawing = 0; drawing < DRAWINGS; ++drawing) {
            auto* const frame = new Frame(MTime(drawing + 1.0, MTime::uiUnit()));
            frame->SetImage(Noise(random));
            pngs_.append(frame->GetPackedImage());
            pictures_.insert(KeyOf(*frame));
            Node().GetLayers("persp").at(drawing * 2 / DRAWINGS)->InsertFrame(frame);
        }
        ASSERT_EQ(Surviving(), DRAWINGS);
    }
    void TearDown() override {
        Mel("file -f -new");
        CommandFixture::TearDown();
    }

    static QByteArray KeyOf(const Frame& frame) {
        return QByteArray::number(frame.GetTimeValue()) + ' ' + frame.GetPackedImage();
    }
    /// The number of drawings that are there with their time and all their bytes.
    int Surviving() const {
        QSet<QByteArray> found;
        if (BaseNode* const node = BaseNode::GetMaster()) {
            for (const Layer* layer : node->GetLayers("persp")) {
                for (int index = 0; index < layer->FrameCount(); ++index) {
                    found.insert(KeyOf(*layer->GetFrame(index)));
                }
            }
        }
        return found.intersect(pictures_).size();
    }
    QByteArray Saved(const QString& name) {
        Mel("file -rename \"" + folder_.filePath(name) + "\"; file -save");
        QFile file(folder_.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    static bool Succeeds(const QString& line) {
        try {
            lightbox::Host::Get().interpreter().Execute(line.toStdString());
            return true;
        } catch (const lightbox::mel::Error&) {
            return false;
        }
    }
    /// Opens damaged bytes. It has to be an error, and saving over them refused.
    int Open(const QString& name, const QByteArray& bytes, const std::string& what) {
        const QString path = WriteFile(name, bytes);
        EXPECT_FALSE(Succeeds("file -f -open \"" + path + "\"")) << what;
        EXPECT_FALSE(Succeeds("file -save")) << what;
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), bytes) << what;
        return Surviving();
    }
    /// The number of drawings whose stored bytes end before a cut.
    int WholeBefore(const QByteArray& bytes, int cut, bool isText) const {
        int count = 0;
        for (const QByteArray& png : pngs_) {
            const QByteArray stored = isText ? png.toHex() + '"' : png;
            const int at = bytes.indexOf(stored);
            EXPECT_GE(at, 0);
            count += at + stored.size() <= cut ? 1 : 0;
        }
        return count;
    }

    QSet<QByteArray> pictures_;
    QList<QByteArray> pngs_;
};

} // namespace

TEST_F(DamagedSceneTest, OneFlippedBitCostsAtMostOneDrawing) {
    const QByteArray whole = Saved("whole.lbx");
    std::mt19937 random(1);
    int fewest = DRAWINGS;
    int flipsWithLoss = 0;
    constexpr int flips = 200;
    for (int i = 0; i < flips; ++i) {
        const auto bit = static_cast<int>(random() % (static_cast<unsigned>(whole.size()) * 8));
        QByteArray flipped = whole;
        flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ 1 << bit % 8);
        const int surviving = Open("flipped.lbx", flipped, "bit " + std::to_string(bit));
        EXPECT_GE(surviving, DRAWINGS - 1) << "bit " << bit;
        fewest = std::min(fewest, surviving);
        flipsWithLoss += surviving < DRAWINGS ? 1 : 0;
    }
    std::cout << flips << " flipped bits: " << flipsWithLoss << " cost a drawing; at least " << fewest
              << " of " << DRAWINGS << " survive\n";
}

TEST_F(DamagedSceneTest, AFlippedEscapeInALayersNameCostsNothing) {
    Mel(R"(qmVellixLayer -editName "d\" e" 0 persp; qmVellixLayer -editName "g \" (\"" 1 persp)");
    const QByteArray whole = Saved("names.ma");
    const int begin = whole.indexOf("setAttr \".ld\"");
    ASSERT_GE(begin, 0);
    int escapes = 0;
    for (int at = whole.indexOf('\\', begin); at >= 0 && escapes < 3;
         at = whole.indexOf('\\', at + 1), ++escapes) {
        for (int bit = 0; bit < 8; ++bit) {
            QByteArray flipped = whole;
            flipped.replace(at, 1, QByteArray(1, static_cast<char>(whole.at(at) ^ 1 << bit)));
            const std::string what = "escape " + std::to_string(escapes) + ", bit " + std::to_string(bit);
            EXPECT_EQ(Open("flipped.ma", flipped, what), DRAWINGS) << what;
        }
    }
    EXPECT_EQ(escapes, 3);
}

TEST_F(DamagedSceneTest, AFlippedQuotationMarkInTextCostsAtMostOneDrawing) {
    const QByteArray whole = Saved("whole.ma");
    const int begin = whole.indexOf("setAttr \".ld\"");
    const int end = whole.indexOf(";\n", begin);
    ASSERT_GE(begin, 0);
    const auto expect = [&](int at, char letter, int least) {
        QByteArray flipped = whole;
        flipped[at] = letter;
        const std::string what = "byte " + std::to_string(at - begin) + " is " + std::to_string(letter);
        EXPECT_GE(Open("flipped.ma", flipped, what), least) << what;
    };
    int marks = 0;
    for (int at = whole.indexOf('"', begin); at < end && at >= 0; at = whole.indexOf('"', at + 1)) {
        expect(at, static_cast<char>('"' ^ 1 << marks++ % 8), DRAWINGS);
    }
    ASSERT_GT(marks, 2 * DRAWINGS);
    // A digit of a picture becomes a mark.
    std::mt19937 random(3);
    for (int i = 0; i < 40; ++i) {
        const int from = begin + 100 + static_cast<int>(random() % static_cast<unsigned>(end - begin - 200));
        expect(whole.indexOf(i % 2 == 0 ? '2' : 'b', from), '"', DRAWINGS - 1);
    }
}

TEST_F(DamagedSceneTest, ACutCostsNothingBeforeIt) {
    const std::pair<QString, QByteArray> files[] = {{"cut.lbx", Saved("cut.lbx")},
                                                    {"cut.ma", Saved("cut.ma")}};
    for (const auto& [name, whole] : files) {
        std::mt19937 random(2);
        int lost = 0;
        int expected = 0;
        constexpr int cuts = 50;
        for (int i = 0; i < cuts; ++i) {
            // The first bytes tell that it is a scene.
            const int cut = 100 + static_cast<int>(random() % static_cast<unsigned>(whole.size() - 100));
            const int before = WholeBefore(whole, cut, name.endsWith(".ma"));
            const int surviving = Open(name, whole.left(cut), "cut at " + std::to_string(cut));
            EXPECT_GE(surviving, before) << name.toStdString() << " cut at " << cut;
            expected += before;
            lost += std::max(0, before - surviving);
        }
        std::cout << cuts << " cuts of " << name.toStdString() << ": " << lost << " of " << expected
                  << " drawings before the cut are lost\n";
    }
}

} // namespace vellix
