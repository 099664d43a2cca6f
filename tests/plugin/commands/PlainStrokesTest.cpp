#include "core/LayerManager.h"
#include "host/Settings.h"
#include "host/ToolOptions.h"
#include "paint/ToolTable.h"
#include "plugin/commands/CommandFixture.h"

#include <QCryptographicHash>
#include <QFontDatabase>
#include <QImage>

namespace vellix {

namespace {

/// Strokes as they are with every switch of the line off: to the bit what they were before there were
/// switches.
class PlainStrokesTest : public CommandFixture {
protected:
    void SetUp() override {
        CommandFixture::SetUp();
        for (const ToolRow& tool : AllTools()) {
            options_.append(Settings::GetToolOptions(tool.type).tabletEnabled);
        }
        Mel("qmVellixLayer -add -n Plain -ls 0 persp");
    }
    void TearDown() override {
        SetPressure(nullptr, false);
        CommandFixture::TearDown();
    }

    /// Switches pressure on or off for all tools that have it; restores the switches without a tool.
    void SetPressure(const ToolRow* only, bool on) {
        int place = 0;
        for (const ToolRow& tool : AllTools()) {
            ToolOptions options = Settings::GetToolOptions(tool.type);
            options.tabletEnabled = only ? on : options_.at(place);
            Settings::SetToolOptions(tool.type, options);
            ++place;
        }
    }

    /// A bend, a corner, a rest and a run out of the image, fast and slow, with light and firm places. Whole
    /// numbers, and quarters of pixels and hundredths of pressure.
    static QString Samples(int seed) {
        QStringList samples;
        int x = 4 * (120 + 9 * (seed % 13));
        int y = 4 * (140 + 11 * (seed % 7));
        for (int i = 0; i < 90; ++i) {
            const int speed = i / 30 == 1 ? 40 : 9 + 60 * (i / 60);
            const int turn = (i * (3 + seed % 5)) % 48;
            x += turn < 24 ? speed : speed / 3 - turn;
            y += turn < 12 ? turn * 2 : turn < 36 ? speed / 2 : -speed;
            const int pressure = i == 40 ? 0 : 3 + (i * 7 + seed * 5) % 98;
            samples.append(
                QString("[%1, %2, %3, %4]").arg(x / 4.0).arg(y / 4.0).arg(pressure / 100.0).arg(8 * i));
        }
        return samples.join(", ");
    }
    /// Draws one stroke on each frame from 1 on, for each size. Returns a digest of their pictures.
    QString Digest(const ToolRow& tool, const QList<int>& sizes) {
        QStringList strokes;
        int frame = 0;
        for (const int size : sizes) {
            const int opacity = frame % 3 == 0 ? 100 : frame % 3 == 1 ? 62 : 17;
            const QString rest =
                QString(
                    R"("tool": "%1", "size": %2, "opacity": %3, "hardness": %4, "text": "Ag\nxyz", "font": "DejaVu Sans")")
                    .arg(tool.word)
                    .arg(size)
                    .arg(opacity)
                    .arg(frame % 2 == 0 ? 100 : 30);
            ++frame;
            const QString at =
                QString(R"({"frame": %1, "color": [%2, 90, 200], )").arg(frame).arg(10 * frame);
            if (tool.type == ToolType::Eraser) { // something to erase, with every opacity
                strokes.append(at + R"("tool": "rectangle", "size": 50, "opacity": 70, "hardness": 100, )"
                                    R"("samples": [[100, 150, 1, 0], [700, 500, 1, 8]]})");
                strokes.append(
                    at + R"("tool": "brush", "size": 100, "opacity": 90, "hardness": 100, "samples": [)" +
                    Samples(frame + 1) + "]}");
            }
            strokes.append(at + rest + R"(, "samples": [)" + Samples(frame) + "]}");
        }
        const QString file = WriteFile(
            "plain.json", R"({"format": "vellix-strokes", "version": 1, "size": 1024, "strokes": [)" +
                              strokes.join(",\n").toUtf8() + "]}");
        Mel(QString("qmVellixReplay -camera persp -file \"%1\"").arg(file));
        QCryptographicHash digest(QCryptographicHash::Sha1);
        for (int i = 1; i <= frame; ++i) {
            const QImage picture = Node().GetLayerManager()->ComposeFrame("persp", i, false);
            for (int y = 0; y < picture.height(); ++y) {
                digest.addData(reinterpret_cast<const char*>(picture.constScanLine(y)), 4 * picture.width());
            }
        }
        Mel("undo");
        return QString::fromLatin1(digest.result().toHex().left(16));
    }

private:
    QList<bool> options_;
};

} // namespace

TEST_F(PlainStrokesTest, AreToThePixelWhatTheyWere) {
    const struct {
        const char* tool;
        bool pressure;
        const char* digest;
    } rows[] = {
        {"pencil", false, "98ad3faada67c90b"},  {"pencil", true, "ba89f4999d382548"},
        {"brush", false, "76798ef4780d0574"},   {"brush", true, "a16e30217afb0dee"},
        {"eraser", false, "5d0610eb47b69b35"},  {"eraser", true, "9a14c5de9ef3da72"},
        {"line", false, "0182fa031bbf884e"},    {"arrow", false, "373d87418ee65b9f"},
        {"ellipse", false, "7c5c8a09e05d73eb"}, {"rectangle", false, "0e325c01a8329cd9"},
        {"text", false, "dc7dbd7be1d29cbd"},
    };
    for (const auto& row : rows) {
        const ToolRow& tool = *FindTool(QString::fromLatin1(row.tool));
        if (tool.kind == ToolKind::Text && !QFontDatabase().families().contains("DejaVu Sans")) {
            continue; // another font has other letters
        }
        SetPressure(&tool, row.pressure);
        const bool isWide = tool.maximumSize == 100;
        EXPECT_EQ(Digest(tool, isWide ? QList<int>{1, 2, 3, 6, 7, 19, 20, 41, 100} : QList<int>{1, 2, 6, 50})
                      .toStdString(),
                  row.digest)
            << row.tool << (row.pressure ? " with pressure" : "");
    }
}

} // namespace vellix
