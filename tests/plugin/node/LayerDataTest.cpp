#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "node/BaseNodeLayerData.h"
#include "plugin/PluginTest.h"
#include "plugin/ShortOfMemory.h"
#include "plugin/node/LayerDataText.h"
#include "plugin/paint/PngBytes.h"

#include <QBuffer>
#include <QImage>

#include <algorithm>
#include <array>
#include <cstring>
#include <gmock/gmock.h>
#include <limits>
#include <memory>
#include <set>
#include <sstream>
#include <utility>

namespace vellix {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

class LayerDataTest : public PluginTest {
protected:
    LayerDataTest() {
        data_.CreateLayerManager();
        FillSmallDrawing(*data_.GetLayerManager());
    }

    LayerManager& Drawing() { return *data_.GetLayerManager(); }
    /// The text of a drawing with one layer and these frame tokens.
    static std::vector<std::string> OneLayer(const std::vector<std::string>& frames) {
        std::vector<std::string> tokens = {"1", "0", "persp", "1", "persp", "1", "0", "Ink"};
        tokens.push_back(std::to_string(frames.size() / 2));
        tokens.insert(tokens.end(), {"1", "1", "0"});
        tokens.insert(tokens.end(), frames.begin(), frames.end());
        return tokens;
    }

    /// The same in the binary form.
    static std::string OneLayerBytes(const std::vector<std::pair<int, QByteArray>>& frames);

    BaseNodeLayerData data_;
};

std::multiset<QByteArray> PicturesOf(const LayerManager& layers) {
    std::multiset<QByteArray> found;
    for (const QString& camera : layers.GetCameras()) {
        for (const Layer* layer : layers.GetLayers(camera)) {
            for (int i = 0; i < layer->FrameCount(); ++i) {
                found.insert(layer->GetFrame(i)->GetPackedImage());
            }
        }
    }
    return found;
}

std::string Hex(const QByteArray& bytes) {
    return bytes.toHex().toStdString();
}

/// The largest picture that is read, of that colour in its left upper quarter.
QByteArray LargestPng(const QColor& color) {
    QImage image(8192, 8192, QImage::Format_Indexed8);
    image.setColorTable({qRgba(0, 0, 0, 0), color.rgba()});
    image.fill(0);
    for (int row = 0; row < 4096; ++row) {
        std::memset(image.scanLine(row), 1, 4096);
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

/// The bytes of a binary drawing, built field by field.
class Bytes {
public:
    Bytes& Int(qint32 value) { return Raw(&value, sizeof(value)); }
    Bytes& Byte(quint8 value) { return Raw(&value, sizeof(value)); }
    Bytes& Float(float value) { return Raw(&value, sizeof(value)); }
    Bytes& Text(const std::string& text) { return Int(qint32(text.size())).Raw(text.data(), text.size()); }
    operator std::string() const { return bytes_; }

private:
    Bytes& Raw(const void* data, size_t size) {
        bytes_.append(static_cast<const char*>(data), size);
        return *this;
    }
    std::string bytes_;
};

std::string LayerDataTest::OneLayerBytes(const std::vector<std::pair<int, QByteArray>>& frames) {
    Bytes bytes;
    bytes.Int(1).Byte(0).Text("persp").Int(1).Text("persp").Int(1).Int(0).Text("Ink");
    bytes.Int(qint32(frames.size())).Byte(1).Float(1.0f).Int(0);
    for (const auto& frame : frames) {
        bytes.Int(frame.first).Text(frame.second.toStdString());
    }
    return bytes;
}

} // namespace

TEST_F(LayerDataTest, BothFormsBringEverythingBack) {
    BaseNodeLayerData data;
    data.CreateLayerManager();
    FillDrawing(*data.GetLayerManager());
    data.GetLayerManager()->MakeMaster();
    const std::string drawn = Describe(*data.GetLayerManager());
    const ReadResult ascii = ReadAscii(Tokens(WriteAscii(data)));
    EXPECT_TRUE(ascii.status);
    EXPECT_EQ(Describe(*ascii.layers), drawn);
    const ReadResult binary = ReadBinary(WriteBinary(data));
    EXPECT_TRUE(binary.status);
    EXPECT_EQ(Describe(*binary.layers), drawn);
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(LayerDataTest, TextHasItsTokensInOrder) {
    BaseNodeLayerData empty;
    empty.CreateLayerManager();
    EXPECT_EQ(WriteAscii(empty), "1 0 \"\" 0\n\t\t");

    LayerManager& layers = *empty.GetLayerManager();
    layers.InsertLayer(PERSP, -1, QStringLiteral("Ink"));
    layers.SetLayerOpacity(PERSP, 0, 1.0f / 3.0f);
    auto* frame = new Frame(MTime(7.0, MTime::uiUnit()));
    const QByteArray png = Png(1024, 1024, Qt::red);
    frame->SetPackedImage(png);
    layers.GetLayer(PERSP, 0)->InsertFrame(frame);
    EXPECT_EQ(WriteAscii(empty), "1 0 \"persp\" 1\n\t\t\"persp\" 1 0\n\t\t\"Ink\" 1 1 0.333333 0\n\t\t7 \"" +
                                     Hex(png) + "\"\n\t\t");
}

TEST_F(LayerDataTest, WithoutADrawingNothingIsWritten) {
    BaseNodeLayerData none;
    std::ostringstream out;
    EXPECT_EQ(none.writeASCII(out), MS::kFailure);
    EXPECT_EQ(out.str(), "-1");
    out.str("");
    EXPECT_EQ(none.writeBinary(out), MS::kFailure);
    EXPECT_EQ(out.str(), "");
    out.setstate(std::ios::badbit);
    EXPECT_EQ(data_.writeBinary(out), MS::kFailure);
    EXPECT_EQ(data_.writeASCII(out), MS::kFailure);
}

TEST_F(LayerDataTest, PackedBytesArePassedOnAsTheyWere) {
    // Encoding the picture again would give other bytes than these, which are hardly compressed.
    const QByteArray png = Png(1024, 1024, Qt::green, 12);
    const std::vector<std::string> tokens = OneLayer({"1", Hex(png)});
    BaseNodeLayerData data;
    unsigned element = 0;
    ASSERT_TRUE(data.readASCII(ToArguments(tokens), element));
    EXPECT_EQ(element, tokens.size());
    EXPECT_EQ(Tokens(WriteAscii(data)), tokens);
    const ReadResult again = ReadBinary(WriteBinary(data));
    EXPECT_EQ(again.layers->GetLayer(PERSP, 0)->GetFrame(0)->GetPackedImage(), png);
}

TEST_F(LayerDataTest, ACameraWhoseLastLayerWentKeepsItsPlace) {
    Drawing().SetPlace("side", true);
    const std::string text = WriteAscii(data_);
    EXPECT_THAT(text, HasSubstr("\n\t\t\"side\" 0 -1\n\t\t"));
    BaseNodeLayerData again;
    unsigned element = 0;
    ASSERT_TRUE(again.readASCII(ToArguments(Tokens(text)), element));
    EXPECT_EQ(WriteAscii(again), text);
    EXPECT_EQ(ReadBinary(WriteBinary(data_)).layers->GetCameras(), Drawing().GetCameras());
}

TEST_F(LayerDataTest, CopiesShareTheDrawing) {
    BaseNodeLayerData copy;
    copy.copy(data_);
    copy.GetLayerManager()->InsertLayer(PERSP, -1, QStringLiteral("Added"));
    EXPECT_EQ(Drawing().LayerCount(PERSP), 3);
}

TEST_F(LayerDataTest, ReadingAppends) {
    unsigned element = 0;
    ASSERT_TRUE(data_.readASCII(ToArguments(OneLayer({})), element));
    EXPECT_EQ(Drawing().GetLayerName(PERSP, 2), QStringLiteral("Ink"));
}

TEST_F(LayerDataTest, BadTokensAreNamedAndTheRestIsRead) {
    struct Case {
        size_t token;
        const char* value;
        const char* message;
        bool success;
        int rest; ///< the token from which the counts were of no use; 0 for none
    };
    const Case cases[] = {
        {0, "0", "Invalid version", false, 0},
        {0, "-7", "Invalid version", false, 0},
        {0, "x", nullptr, true, 0},
        {1, "x", "Failed to get master (1)", false, 0},
        {3, "x", "Invalid layer count (3)", false, 4},
        {3, "0", nullptr, true, 4},
        {3, "-2", nullptr, true, 4},
        {5, "x", "Invalid layer count (5)", false, 4},
        {6, "x", "Invalid active layer index (6)", false, 4},
        {6, "-1", nullptr, true, 0},
        {8, "x", "Invalid frame count (8)", false, 7},
        {9, "x", "Invalid layer visibility (9)", false, 7},
        {10, "x", "Invalid opacity (10)", false, 7},
        {11, "x", "Invalid layer state (11)", false, 7},
        {11, "3", "Invalid layer state (11)", true, 0},
        {11, "-1", "Invalid layer state (11)", true, 0},
        {12, "x", "Invalid frame time (12)", false, 0},
        {18, "3", "Invalid layer state (18)", true, 0},
    };
    const QByteArray png = Png(1024, 1024, Qt::red);
    const std::vector<std::string> whole = {"1",   "0", "top", "1",      "persp", "2", "1", "Ink", "1", "1",
                                            "0.5", "0", "4",   Hex(png), "Set",   "0", "1", "1",   "2"};
    for (const Case& test : cases) {
        SCOPED_TRACE(std::to_string(test.token) + " = " + test.value);
        std::vector<std::string> tokens = whole;
        tokens[test.token] = test.value;
        const ReadResult read = ReadAscii(tokens);
        EXPECT_EQ(bool(read.status), test.success);
        ASSERT_EQ(read.layers->LayerCount(PERSP), 2);
        EXPECT_EQ(read.layers->GetLayer(PERSP, 0)->GetFrame(0)->GetPackedImage(), png);
        EXPECT_EQ(read.layers->GetActiveCamera(), QStringLiteral("top"));
        std::vector<std::string> expected;
        if (test.message) {
            expected.emplace_back(test.message);
        }
        if (test.rest > 0) {
            expected.push_back("The stored drawing is damaged at value " + std::to_string(test.rest) +
                               ". What is whole after it was read.");
        } else if (test.token == 12) {
            expected.emplace_back(
                "Layer Ink: the time of a drawing is damaged. The drawing is at frame 1 now.");
        }
        EXPECT_EQ(Messages(), expected);
    }
    EXPECT_EQ(ReadAscii({}).status, MS::kFailure);
}

// A token that is changed, missing or two.
TEST_F(LayerDataTest, ADamagedTokenCostsNoOtherPicture) {
    BaseNodeLayerData data;
    data.CreateLayerManager();
    FillDrawing(*data.GetLayerManager());
    const std::vector<std::string> whole = Tokens(WriteAscii(data));
    const std::multiset<QByteArray> all = PicturesOf(*data.GetLayerManager());
    for (size_t token = 0; token < whole.size(); ++token) {
        for (const char* const change : {"x", "", "0", "7", "-1", "missing", "twice"}) {
            SCOPED_TRACE(std::to_string(token) + ", " + whole[token].substr(0, 20) + ": " + change);
            std::vector<std::string> tokens = whole;
            const auto there = tokens.begin() + static_cast<long>(token);
            if (change == std::string("missing")) {
                tokens.erase(there);
            } else if (change == std::string("twice")) {
                tokens.insert(there, whole[token]);
            } else {
                *there = change;
            }
            const ReadResult read = ReadAscii(tokens);
            std::multiset<QByteArray> expected = all;
            const bool isPicture = whole[token].size() > 100;
            if (isPicture && change != std::string("twice")) {
                expected.erase(expected.find(QByteArray::fromHex(QByteArray::fromStdString(whole[token]))));
            }
            const std::multiset<QByteArray> found = PicturesOf(*read.layers);
            EXPECT_TRUE(std::includes(found.begin(), found.end(), expected.begin(), expected.end()))
                << found.size() << " of " << expected.size();
            if (isPicture) {
                EXPECT_THAT(Messages(), Not(IsEmpty()));
            }
            Messages();
        }
    }
}

// Some bytes in a row, as a bad block of a disk leaves them.
TEST_F(LayerDataTest, DamagedBytesCostTheirOwnPicturesOnly) {
    BaseNodeLayerData data;
    data.CreateLayerManager();
    FillDrawing(*data.GetLayerManager());
    const std::string whole = WriteBinary(data);
    const std::multiset<QByteArray> all = PicturesOf(*data.GetLayerManager());
    const size_t first = whole.find("\x89PNG");
    for (const char with : {'\0', '\xff', 'a'}) {
        for (size_t at = first - 8; at + 16 < whole.size(); at += 5) {
            std::string bytes = whole;
            bytes.replace(at, 16, 16, with);
            size_t damaged = 0;
            for (const QByteArray& png : all) {
                damaged += bytes.find(png.toStdString()) == std::string::npos ? 1 : 0;
            }
            const ReadResult read = ReadBinary(bytes);
            EXPECT_GE(PicturesOf(*read.layers).size() + damaged, all.size()) << at << " with " << int(with);
            Messages();
        }
    }
}

TEST_F(LayerDataTest, AStateThatIsNoneCountsAsAnimatedInTheBinaryForm) {
    for (const qint32 state : {3, -1, 2000000000}) {
        const ReadResult read = ReadBinary(Bytes()
                                               .Int(0)
                                               .Byte(0)
                                               .Text("persp")
                                               .Int(1)
                                               .Text("persp")
                                               .Int(1)
                                               .Int(0)
                                               .Text("Ink")
                                               .Int(0)
                                               .Byte(1)
                                               .Float(1.0f)
                                               .Int(state));
        EXPECT_TRUE(read.status);
        EXPECT_EQ(read.layers->LayerCount(PERSP), 1);
        EXPECT_EQ(read.layers->GetLayerState(PERSP, 0), LayerState::Animated);
        EXPECT_THAT(Messages(), ElementsAre("Layer Ink has the unknown state " + std::to_string(state) +
                                            ", and is read as an animated one."));
    }
}

TEST_F(LayerDataTest, UnknownLayersAreSkipped) {
    const ReadResult read = ReadAscii({"1", "0", "", "1", "persp", "3", "0", "Ink", "0", "1", "1", "0",
                                       "UNKNOWN", "-1", "Set", "0", "1", "1", "0"});
    EXPECT_TRUE(read.status);
    EXPECT_EQ(read.layers->LayerCount(PERSP), 2);
    EXPECT_THAT(Messages(), ElementsAre("Skipping invalid layer"));
}

TEST_F(LayerDataTest, TextCutAtEveryToken) {
    const std::vector<std::string> whole = Tokens(WriteAscii(data_));
    for (size_t count = 1; count < whole.size(); ++count) {
        const ReadResult read = ReadAscii({whole.begin(), whole.begin() + long(count)});
        EXPECT_FALSE(read.status) << count;
        const std::vector<std::string> messages = Messages();
        ASSERT_EQ(messages.size(), 1u) << count;
        EXPECT_THAT(messages[0], ::testing::EndsWith(" (" + std::to_string(read.element - 1) + ")"));
    }
}

TEST_F(LayerDataTest, BothFormsCutAtEvery97thByte) {
    const std::string text = WriteAscii(data_);
    for (size_t size = 97; size < text.size(); size += 97) {
        const ReadResult read = ReadAscii(Tokens(text.substr(0, size)));
        // Only a cut inside the last token leaves a text that can be read, with a picture that cannot.
        EXPECT_FALSE(Messages().empty()) << size;
        EXPECT_TRUE(!read.status || read.layers->TotalLayerCount() == 3) << size;
    }
    const std::string bytes = WriteBinary(data_);
    int layers = 0;
    for (size_t size = 1; size < bytes.size(); size += 97) {
        const ReadResult read = ReadBinary(bytes.substr(0, size));
        EXPECT_TRUE(read.status) << size;
        EXPECT_THAT(Messages(), Not(IsEmpty())) << size;
        EXPECT_GE(read.layers->TotalLayerCount(), layers) << size;
        layers = read.layers->TotalLayerCount();
    }
    EXPECT_EQ(layers, 3);
    EXPECT_EQ(ReadBinary("").status, MS::kFailure);
}

TEST_F(LayerDataTest, CountsOfBillionsEndWithTheData) {
    const std::string many = "2000000000";
    for (const size_t token : {3u, 5u, 8u}) {
        std::vector<std::string> tokens = OneLayer({"1", Hex(Png(1024, 1024, Qt::red))});
        tokens[token] = many;
        EXPECT_FALSE(ReadAscii(tokens).status) << token;
    }
    Messages();
    const auto stored = [](qint32 nameSize, qint32 cameras, qint32 layers, qint32 frames, qint32 imageSize) {
        return std::string(Bytes().Int(1).Byte(1).Int(nameSize)) + "persp" +
               std::string(Bytes().Int(cameras).Text("persp").Int(layers).Int(0)) +
               std::string(Bytes().Text("Ink").Int(frames).Byte(1).Float(1.0f).Int(0).Int(4).Int(imageSize));
    };
    for (const qint32 count : {2000000000, -2000000000}) {
        EXPECT_TRUE(ReadBinary(stored(count, 1, 1, 1, 0)).status);
        EXPECT_TRUE(ReadBinary(stored(5, count, 1, 1, 0)).status);
        EXPECT_TRUE(ReadBinary(stored(5, 1, count, 1, 0)).status);
        EXPECT_TRUE(ReadBinary(stored(5, 1, 1, count, 0)).status);
        Messages();
        const ReadResult read = ReadBinary(stored(5, 1, 1, 1, count));
        EXPECT_EQ(read.layers->LayerCount(PERSP), 1);
        EXPECT_EQ(read.layers->GetLayer(PERSP, 0)->FrameCount(), 0);
        EXPECT_THAT(Messages(), Not(IsEmpty())) << count;
    }
}

TEST_F(LayerDataTest, TheBinaryReaderNamesWhatACutCost) {
    const QByteArray png = Png(1024, 1024, Qt::red);
    BaseNodeLayerData data;
    data.CreateLayerManager();
    LayerManager& layers = *data.GetLayerManager();
    for (const char* camera : {"persp", "top"}) {
        for (const char* name : {"Ink", "Set"}) {
            auto layer = std::make_unique<Layer>();
            layer->SetName(QString(camera) + name);
            for (const int time : {1, 2, 3}) {
                auto frame = std::make_unique<Frame>(MTime(time, MTime::uiUnit()));
                frame->SetPackedImage(png);
                layer->InsertFrame(frame.release());
            }
            layers.InsertLayer(camera, -1, layer.release());
        }
    }
    const std::string whole = WriteBinary(data);
    const auto after = [&whole](const char* text) { return whole.find(text) + std::strlen(text); };
    const size_t fields = 4 + 1 + 4 + 4; // frame count, visible, opacity, state
    const size_t frame = 4 + 4 + size_t(png.size());
    const char* const noTop = "The stored drawing is cut short. It lost 1 of 2 cameras.";
    const struct {
        size_t size;
        std::vector<std::string> messages;
        int layers;
        int frames; ///< of the last layer
    } cases[] = {
        {6, {"The stored drawing is cut short before its first camera."}, 0, 0},
        {after("perspInk") + fields + 2 * frame + 50,
         {"The stored drawing is cut short. Layer perspInk lost 1 of 3 drawings.",
          "The stored drawing is cut short. Camera persp lost 1 of 2 layers.", noTop},
         1,
         2},
        {after("perspSet") + 5,
         {"The stored drawing is cut short. Camera persp lost 1 of 2 layers.", noTop},
         1,
         3},
        {after("perspSet") + fields + 3 * frame + 2, {noTop}, 2, 3},
        {whole.size() - frame, {"The stored drawing is cut short. Layer topSet lost 1 of 3 drawings."}, 4, 2},
    };
    for (const auto& test : cases) {
        const ReadResult read = ReadBinary(whole.substr(0, test.size));
        EXPECT_EQ(Messages(), test.messages) << test.size;
        EXPECT_EQ(read.layers->TotalLayerCount(), test.layers) << test.size;
        if (test.layers > 0) {
            const QString camera = test.layers > 2 ? QStringLiteral("top") : PERSP;
            const Layer* last = read.layers->GetLayer(camera, read.layers->LayerCount(camera) - 1);
            EXPECT_EQ(last->FrameCount(), test.frames) << test.size;
        }
    }
    ReadBinary(whole + "abc");
    EXPECT_THAT(Messages(), ElementsAre("3 bytes after the end of the drawing could not be read."));
}

TEST_F(LayerDataTest, DataEndsWhereTheHostSaysSo) {
    const std::string bytes = WriteBinary(data_);
    BaseNodeLayerData data;
    std::istringstream in(bytes + "what follows in the file");
    ASSERT_TRUE(data.readBinary(in, unsigned(bytes.size())));
    EXPECT_EQ(size_t(in.tellg()), bytes.size());
}

TEST_F(LayerDataTest, PicturesThatAreNoneAreSkippedWithAMessage) {
    const QByteArray good = Png(1024, 1024, Qt::blue);
    QByteArray damaged = good;
    damaged[damaged.size() / 2] = char(damaged[damaged.size() / 2] ^ 0x55);
    const ReadResult read = ReadAscii(
        OneLayer({"1", "", "2", Hex(good), "3", "no hex at all", "4", Hex("GIF89a"), "5", Hex(damaged), "6",
                  Hex(good.left(good.size() / 2)), "7", Hex(good), "8", Hex(Png(8193, 1, Qt::red))}));
    EXPECT_TRUE(read.status);
    QList<int> times;
    read.layers->GetLayer(PERSP, 0)->GetFrameTimes(times);
    EXPECT_EQ(times, (QList<int>{2, 7}));
    EXPECT_THAT(Messages(),
                ElementsAre("Failed to load draw data: Ink (0)", "Failed to load draw data: Ink (2)",
                            "Failed to load draw data: Ink (3)", "Failed to load draw data: Ink (4)",
                            "Failed to load draw data: Ink (5)", "Failed to load draw data: Ink (7)"));
}

TEST_F(LayerDataTest, PicturesAreCheckedWithoutDecodingAndKeptAsTheyAre) {
    using namespace png_bytes;
    const QByteArray sound = Png(1024, 1024, Qt::red);
    QByteArray flipped = sound;
    flipped[flipped.size() / 2] = char(flipped[flipped.size() / 2] ^ 1);
    const QRgb red = qRgb(255, 0, 0);
    const QByteArray header = Header(1024, 1024, 8, 6);
    QByteArray noise; // hardly compressed
    for (quint32 i = 0; i < 9999; ++i) {
        noise.append(char(i * i * 2654435761u >> 24));
    }
    QByteArray rows = noise;
    rows[0] = rows[4097] = rows[2 * 4097] = 0; // the filter bytes
    const struct {
        const char* what;
        QByteArray png;
        bool isRead;
        QRgb corner; ///< the left upper pixel that is shown
    } cases[] = {
        {"layer", sound, true, red},
        {"nothing", QByteArray(), false, 0},
        {"cut", sound.left(sound.size() - 20), false, 0},
        {"checksum", flipped, false, 0},
        {"structure", File({header, Chunk("IEND")}), false, 0},
        {"not inflating", NotInflating(), true, 0},
        {"unknown filters", File({header, Pixels(noise), Chunk("IEND")}), true, 0},
        {"too few rows", File({header, Pixels(rows), Chunk("IEND")}), true, 0},
        {"other size", Png(600, 2000, Qt::red), true, red},
        {"palette", OnePixel(8, 3, QByteArray("\0\0", 2)), true, red},
        {"gray", OnePixel(8, 0, QByteArray("\0\xff", 2)), true, qRgb(255, 255, 255)},
        {"16 bits", OnePixel(16, 2, QByteArray("\0\xff\xff\0\0\0\0", 7)), true, red},
        {"interlaced", OnePixel(8, 2, QByteArray("\0\xff\0\0", 4), 1), true, red},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        const std::vector<std::string> tokens = OneLayer({"4", Hex(test.png), "5", Hex(sound)});
        const std::string bytes = OneLayerBytes({{4, test.png}, {5, sound}});
        BaseNodeLayerData ascii;
        unsigned element = 0;
        EXPECT_TRUE(ascii.readASCII(ToArguments(tokens), element));
        const std::vector<std::string> messages = Messages();
        BaseNodeLayerData binary;
        std::istringstream in(bytes);
        EXPECT_TRUE(binary.readBinary(in, unsigned(bytes.size())));
        EXPECT_EQ(Messages(), messages);
        for (BaseNodeLayerData* data : {&ascii, &binary}) {
            const Layer* layer = data->GetLayerManager()->GetLayer(PERSP, 0);
            if (!test.isRead) {
                EXPECT_THAT(messages, ElementsAre("Failed to load draw data: Ink (0)"));
                EXPECT_EQ(layer->FrameCount(), 1);
                continue;
            }
            EXPECT_THAT(messages, IsEmpty());
            ASSERT_EQ(layer->FrameCount(), 2);
            const Frame* frame = layer->GetFrame(0);
            EXPECT_FALSE(frame->IsUnpacked());
            const QImage shown = frame->PeekImage();
            EXPECT_EQ(shown.isNull() ? 0 : shown.pixel(0, 0), test.corner);
            EXPECT_EQ(Tokens(WriteAscii(*data)), tokens);
            EXPECT_EQ(WriteBinary(*data), bytes);
        }
    }
}

TEST_F(LayerDataTest, ADrawingWhoseFrameIsTakenMovesToTheNextFreeOne) {
    const auto keys = [](const ReadResult& read) {
        QList<int> times;
        for (int i = 0; i < read.layers->GetLayer(PERSP, 0)->FrameCount(); ++i) {
            times.append(read.layers->GetLayer(PERSP, 0)->GetFrame(i)->GetTimeValue());
        }
        return times;
    };
    const std::string png = Hex(Png(1024, 1024, Qt::red));
    const int last = std::numeric_limits<int>::max();
    struct Case {
        std::vector<double> stored;
        QList<int> read;
        const char* warning;
    };
    const Case cases[] = {
        {{0.5, 1, 1.5, 2, 9},
         {0, 1, 2, 3, 9},
         "Layer Ink: 2 of its drawings stood on the whole frame of another "
         "and moved to the next free one, the first from frame 1 to 2."},
        {{-0.5, 0.5},
         {0, 1},
         "Layer Ink: 1 of its drawings stood on the whole frame of another and moved to the "
         "next free one, the first from frame 0 to 1."},
        {{1, 2, 3.9}, {1, 2, 3}, nullptr},
        {{1e12, 1e12, 1e12},
         {last - 2, last - 1, last},
         "Layer Ink: 2 of its drawings stood on the whole frame of "
         "another and moved to the next free one, the first from "
         "frame 2147483647 to 2147483646."},
    };
    for (const Case& test : cases) {
        std::vector<std::string> frames;
        for (const double time : test.stored) {
            frames.insert(frames.end(), {std::to_string(time), png});
        }
        EXPECT_EQ(keys(ReadAscii(OneLayer(frames))), test.read);
        EXPECT_THAT(Messages(),
                    test.warning ? std::vector<std::string>{test.warning} : std::vector<std::string>{});
    }
    const QByteArray bytes = Png(1024, 1024, Qt::red);
    EXPECT_EQ(keys(ReadBinary(OneLayerBytes({{7, bytes}, {7, bytes}, {7, bytes}, {-1, bytes}}))),
              (QList<int>{-1, 7, 8, 9}));
    EXPECT_THAT(Messages(), ElementsAre(StartsWith("Layer Ink: 2 of its drawings")));

    // Thousands on one frame take no longer than thousands on their own.
    const std::string small = Hex(png_bytes::OnePixel(8, 0, QByteArray("\0\0", 2)));
    std::vector<std::string> many;
    for (int i = 0; i < 20000; ++i) {
        many.insert(many.end(), {"1", small});
    }
    EXPECT_EQ(ReadAscii(OneLayer(many)).layers->GetLayer(PERSP, 0)->FrameCount(), 20000);
}

TEST_F(LayerDataTest, ALackOfMemoryIsAFailureAndNotADamage) {
    BaseNodeLayerData data;
    data.CreateLayerManager();
    FillDrawing(*data.GetLayerManager());
    Frame* changed = data.GetLayerManager()->GetLayer(PERSP, 0)->GetFrame(0);
    changed->GetImage().setPixel(3, 3, qRgba(1, 2, 3, 4));
    const std::string drawn = Describe(*data.GetLayerManager());
    const std::string bytes = OneLayerBytes({{1, Png(1024, 1024, Qt::red)}, {2, QByteArray(8 << 20, 'x')}});
    const MArgList arguments = ToArguments(OneLayer({"1", std::string(8 << 20, '0')}));
    BaseNodeLayerData ascii;
    BaseNodeLayerData binary;
    std::istringstream in(bytes);
    std::ostringstream out;
    MStatus statuses[4];
    auto room = std::make_unique<std::array<char, 512 << 10>>(); // for the first picture, which is small
    {
        const ShortOfMemory scope;
        if (!scope.IsShort()) {
            GTEST_SKIP() << "memory cannot be limited here";
        }
        room.reset();
        unsigned element = 0;
        statuses[0] = ascii.readASCII(arguments, element);
        statuses[1] = binary.readBinary(in, unsigned(bytes.size()));
    }
    {
        const ShortOfMemory scope;
        statuses[2] = data.writeASCII(out);
        statuses[3] = data.writeBinary(out);
    }
    for (const MStatus& status : statuses) {
        EXPECT_EQ(status, MS::kFailure) << &status - statuses;
    }
    std::vector<std::string> messages = Messages();
    // Said as well when even the message finds too little.
    const auto isOfWriting = [](const std::string& message) {
        return message.find("Out of memory: Writing the drawing failed.") == 0;
    };
    messages.erase(std::remove_if(messages.begin(), messages.end(), isOfWriting), messages.end());
    EXPECT_THAT(messages, ElementsAre(StartsWith("Out of memory: Reading the drawing failed."),
                                      StartsWith("Out of memory: Reading the drawing failed."),
                                      HasSubstr("layer Rough at frame 1 cannot be encoded"),
                                      HasSubstr("layer Rough at frame 1 cannot be encoded")));
    EXPECT_EQ(binary.GetLayerManager()->GetLayer(PERSP, 0)->FrameCount(), 1)
        << "what was read before is kept";
    EXPECT_EQ(Describe(*data.GetLayerManager()), drawn);
}

TEST_F(LayerDataTest, BadPicturesAreReportedBeforeTheTokenThatEndsTheReading) {
    std::vector<std::string> tokens = OneLayer({"1", "00", "2", "00", "3", "00"});
    tokens.erase(tokens.end() - 1);
    ReadAscii(tokens);
    EXPECT_THAT(Messages(), ElementsAre("Failed to load draw data: Ink (0)",
                                        "Failed to load draw data: Ink (1)", "Invalid draw data (17)"));
}

TEST_F(LayerDataTest, PicturesOfAnotherSizeArePlacedAtTheTopLeft) {
    const QColor color(200, 100, 50, 255);
    const ReadResult read = ReadAscii(
        OneLayer({"1", Hex(Png(1, 1, color)), "2", Hex(LargestPng(color)), "3", Hex(Png(600, 2000, color))}));
    ASSERT_TRUE(read.status);
    EXPECT_THAT(Messages(), IsEmpty());
    const Layer* layer = read.layers->GetLayer(PERSP, 0);
    ASSERT_EQ(layer->FrameCount(), 3);
    const QPoint lastInside[] = {{0, 0}, {1023, 1023}, {299, 999}};
    const QPoint firstOutside[] = {{1, 0}, {-1, -1}, {300, 999}};
    for (int index = 0; index < 3; ++index) {
        const QImage& image = layer->GetFrame(index)->GetImage();
        EXPECT_EQ(image.size(), QSize(1024, 1024));
        EXPECT_EQ(image.format(), QImage::Format_RGBA8888);
        EXPECT_EQ(image.pixelColor(lastInside[index]), color);
        if (firstOutside[index].x() >= 0) {
            EXPECT_EQ(image.pixelColor(firstOutside[index]).alpha(), 0);
        }
    }
}

TEST_F(LayerDataTest, NamesOfEveryKindSurvive) {
    const std::vector<std::string> names = {
        "UNKNOWN",
        "say \"hi\"",
        "back\\slash\\n",
        "two\nlines\r\n",
        " blanks  and\ttabs ",
        "{};$x`ls`|a:b",
        "\xE7\xAD\x86 \xF0\x9F\x96\x8C \xD9\x82\xD9\x84\xD9\x85",
        "%1 %2",
        "//",
        "-1",
        std::string(5000, 'x'),
    };
    BaseNodeLayerData data;
    data.CreateLayerManager();
    for (const std::string& name : names) {
        data.GetLayerManager()->InsertLayer(QString::fromStdString(name), -1, QString::fromStdString(name));
    }
    const std::string drawn = Describe(*data.GetLayerManager());
    EXPECT_EQ(Describe(*ReadAscii(Tokens(WriteAscii(data))).layers), drawn);
    EXPECT_EQ(Describe(*ReadBinary(WriteBinary(data)).layers), drawn);

    // A text ends at a NUL, and nothing after it is lost or shifted.
    BaseNodeLayerData nul;
    nul.CreateLayerManager();
    nul.GetLayerManager()->InsertLayer(PERSP, -1, QString(QLatin1String("ab\0cd", 5)));
    nul.GetLayerManager()->InsertLayer(PERSP, -1, QStringLiteral("next"));
    for (const ReadResult& read : {ReadAscii(Tokens(WriteAscii(nul))), ReadBinary(WriteBinary(nul))}) {
        EXPECT_TRUE(read.status);
        EXPECT_EQ(read.layers->GetLayerName(PERSP, 0), QStringLiteral("ab"));
        EXPECT_EQ(read.layers->GetLayerName(PERSP, 1), QStringLiteral("next"));
    }
}

TEST_F(LayerDataTest, TimesSurviveAChangeOfUnitAsTheirFormSays) {
    const MTime::Unit unit = MTime::uiUnit();
    const std::string bytes = WriteBinary(data_);
    const std::string text = WriteAscii(data_);
    MTime::setUIUnit(MTime::kSeconds);
    for (const ReadResult& read : {ReadBinary(bytes), ReadAscii(Tokens(text))}) {
        EXPECT_EQ(read.layers->GetLayer(QStringLiteral("top"), 0)->GetFrame(0)->GetTimeValue(), 7);
    }
    MTime::setUIUnit(unit);
}

} // namespace vellix
