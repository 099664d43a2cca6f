#include "host/Settings.h"

#include "faults/DiskFault.h"
#include "host/SettingsFile.h"
#include "paint/BrushPreset.h"
#include "paint/PenPressure.h"
#include "paint/ToolType.h"
#include "plugin/PluginTest.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStringList>

#include <algorithm>
#include <gmock/gmock.h>
#include <random>

namespace vellix {

namespace {

class SettingsTest : public PluginTest {
protected:
    SettingsTest() {
        Write("");
        Settings::activeTool = ToolType::Brush;
        Settings::ghostPrevCount = Settings::DEFAULT_GHOSTED_FRAME_COUNT;
        Settings::timelineFrameDisplay = 0;
        Settings::pencilSize = 6;
    }
    ~SettingsTest() override { QFile::remove(Settings::GetUserConfigPath()); }

    static void Write(const QByteArray& text) {
        QFile file(Settings::GetUserConfigPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    static QByteArray Content() {
        QFile file(Settings::GetUserConfigPath());
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }
    static QByteArray Written() {
        Settings::WriteUserConfig();
        return Content();
    }
    static void Read(const QByteArray& group, const QByteArray& line) {
        Write("[" + group + "]\n" + line + "\n");
        Settings::ReadUserConfig();
    }
};

} // namespace

TEST_F(SettingsTest, StoredNumbersAreClampedOrRefused) {
    struct Case {
        const char* group;
        const char* line;
        std::function<int()> value;
        int expected;
    };
    const Case cases[] = {
        {"tools", "pencilSize=0", [] { return Settings::pencilSize; }, 1},
        {"tools", "pencilSize=abc", [] { return Settings::pencilSize; }, 1},
        {"tools", "lineSize=80", [] { return Settings::lineSize; }, 50},
        {"tools", "textSize=150", [] { return Settings::textSize; }, 100},
        {"tools", "brushOpacity=0", [] { return Settings::brushOpacity; }, 1},
        {"tools", "rectangleOpacity=2000000000", [] { return Settings::rectangleOpacity; }, 100},
        {"tools", "ghostPrevCount=0", [] { return Settings::ghostPrevCount; }, 3},
        {"tools", "ghostPrevCount=9", [] { return Settings::ghostPrevCount; }, 9},
        {"tools", "ghostPrevCount=10", [] { return Settings::ghostPrevCount; }, 3},
        {"tools", "activeTool=9", [] { return int(Settings::activeTool); }, 1},
        {"tools", "activeTool=-1", [] { return int(Settings::activeTool); }, 1},
        {"tools", "activeTool=8", [] { return int(Settings::activeTool); }, 8},
        {"preferences", "defaultLayerState=3", [] { return Settings::defaultLayerState; }, 0},
        {"preferences", "timelineFrameDisplay=-1", [] { return Settings::timelineFrameDisplay; }, 0},
        {"preferences", "defaultStaticFrameTime=-5000", [] { return Settings::defaultStaticFrameTime; },
         -5000},
    };
    for (const Case& test : cases) {
        Read(test.group, test.line);
        EXPECT_EQ(test.value(), test.expected) << test.line;
    }
}

TEST_F(SettingsTest, MissingKeysResetOnlyWhatHasAFixedDefault) {
    Settings::activeColor = QColor(1, 2, 3);
    Settings::ghostNext = true;
    Settings::mainMenuName = QStringLiteral("Draw");
    Settings::toolboxGeometry = "old";
    Settings::arrowSize = 17;
    Settings::ghostColorOverride = true;
    Settings::eraserOpacity = 20;
    Settings::brushHardness = 30;
    Settings::eraserHardness = 40;
    Settings::ReadUserConfig();
    EXPECT_EQ(Settings::activeColor, QColor(Qt::cyan));
    EXPECT_FALSE(Settings::ghostNext);
    EXPECT_EQ(Settings::mainMenuName, QStringLiteral("VX2"));
    EXPECT_TRUE(Settings::toolboxGeometry.isEmpty());
    EXPECT_EQ(Settings::arrowSize, 17);
    EXPECT_TRUE(Settings::ghostColorOverride);
    EXPECT_EQ(Settings::eraserOpacity, 100);
    EXPECT_EQ(Settings::brushHardness, 100);
    EXPECT_EQ(Settings::eraserHardness, 100);
    EXPECT_FALSE(Settings::textFontFamily.isEmpty());
    Settings::arrowSize = 6;
    Settings::ghostColorOverride = false;
}

TEST_F(SettingsTest, GroupsAndKeysAreWrittenInTheirOrder) {
    QFile::remove(Settings::GetUserConfigPath());
    QStringList keys;
    for (const QByteArray& line : Written().split('\n')) {
        const QString text = QString::fromUtf8(line).trimmed();
        if (!text.isEmpty()) {
            keys.append(text.section(QLatin1Char('='), 0, 0));
        }
    }
    const QString expected = QStringLiteral(
        "[main] version mainMenuName toolboxGeometry toolOptionsGeometry layerManagerGeometry "
        "colorPaletteGeometry retimingToolGeometry "
        "[tools] activeTool activeColor pencilSize pencilOpacity pencilTabletEnabled brushSize brushOpacity "
        "brushTabletEnabled eraserSize textFontFamily textSize textOpacity lineSize lineOpacity arrowSize "
        "arrowOpacity ellipseSize ellipseOpacity rectangleSize rectangleOpacity ghostPrev ghostNext "
        "ghostPrevCount ghostNextCount ghostColorOverride ghostColorOverridePrev ghostColorOverrideNext "
        "retimeMoveToNextFrame "
        "[preferences] drawToolContextMenu transformToolContextMenu timelineContextMenu "
        "toolboxDrawToolContextMenu toolboxGhostingContextMenu showMainMenuInAnimationSet "
        "disableGhostingDuringPlayback timeControlRangeMoveEnabled ignore2dPanZoom defaultLayerState "
        "automaticallyAddFirstLayer alwaysDisplayNewLayerDialog insertDefaultStaticFrame "
        "defaultStaticFrameTime timelineFrameDisplay timelineFrameColor "
        "[line] smoothCurves stabiliser pencilPressure brushPressure eraserPressure presetKeys preset1 "
        "preset2 "
        "preset3 preset4 preset5 preset6 preset7 preset8 preset9 preset10 "
        "[lightTable] ghostLayers pinnedColor otherLayersOpacity flipAllLayers rollCount rollRate "
        "flipPreviousKey "
        "flipNextKey rollKey");
    EXPECT_EQ(keys.join(QLatin1Char(' ')).toStdString(), expected.toStdString());
}

TEST_F(SettingsTest, PressureAndPresetsAreReadBackAndFaultyOnesAreTheFirst) {
    const QString first = BrushPreset::Defaults().front().ToText();
    BrushPreset& preset = Settings::brushPresets.front();
    preset.name = QString::fromUtf8("F\xC3\xBCr \"Tusche\"; = 1");
    preset.size = 77;
    const QString changed = preset.ToText();
    PenPressure pressure;
    pressure.setsSize = true;
    pressure.size = {10, 20, 30};
    Settings::SetPenPressure(ToolType::Brush, pressure);
    const QByteArray written = Written();
    Settings::SetPenPressure(ToolType::Brush, PenPressure());
    preset = BrushPreset::Defaults().front();
    Settings::ReadUserConfig();
    EXPECT_EQ(preset.ToText(), changed);
    EXPECT_EQ(Settings::GetPenPressure(ToolType::Brush), pressure);
    EXPECT_EQ(Written(), written);
    Read("line", "preset1=brush 500 1 1\nbrushPressure=1 10 20 30");
    EXPECT_EQ(preset.ToText(), first);
    EXPECT_EQ(Settings::GetPenPressure(ToolType::Brush), PenPressure());
}

TEST_F(SettingsTest, WhatIsWrittenIsReadBack) {
    const QString font = QString::fromUtf8("F\xC3\xBCr, \"quoted\" \\ = ; \xE7\xAD\x86");
    const QByteArray geometry("\x01\x00\xFF\n\"", 5);
    Settings::textFontFamily = font;
    Settings::layerManagerGeometry = geometry;
    Settings::activeColor = QColor(10, 20, 30, 40);
    Settings::retimeMoveToNextFrame = true;
    Settings::WriteUserConfig();
    Settings::textFontFamily.clear();
    Settings::layerManagerGeometry.clear();
    Settings::activeColor = QColor();
    Settings::retimeMoveToNextFrame = false;
    Settings::ReadUserConfig();
    EXPECT_EQ(Settings::textFontFamily, font);
    EXPECT_EQ(Settings::layerManagerGeometry, geometry);
    EXPECT_EQ(Settings::activeColor, QColor(10, 20, 30, 40));
    EXPECT_TRUE(Settings::retimeMoveToNextFrame);
    Settings::retimeMoveToNextFrame = false;
}

TEST_F(SettingsTest, NonsenseFilesDoNoHarm) {
    const QByteArray whole = Written();
    std::mt19937 random(7);
    QList<QByteArray> files = {
        QByteArray(100000, '\0'),
        "[tools",
        "]]]][[[[====%%%\\x\n",
        "[tools]\nactiveColor=@Variant(\\0\\0\\0\\t\\x7f\\xff\\xff\\xff)\n",
        "[tools]\nactiveColor=@Variant(\\0\\0\\0G\\x7f\\xff\\xff\\xff)\n",
        "[tools]\nactiveColor=@Variant(\\0\\0\\0\\b\\x7f\\xff\\xff\\xff)\n",
        // The same with the mark spelled in escapes, quotes and continued lines.
        "[tools]\nactiveColor=\\x40V\"ari\"\\\na\\156t(\\0\\0\\0G\\x7f\\xff\\xff\\xff)\n",
        "[tools]\nactiveColor=@Variant(\\0\\0\\0\\x43\\x4c\\xff\\xff\\xff\\xff\\xff\\xff\\xff\\xff\\0\\0)\n",
        "[main]\ntoolboxGeometry=@ByteArray(\\xZZ\nversion=@Invalid()\n",
        "[tools]\nactiveColor=@DateTime(\\0\\0\\0\x47\\xff\\xff\\xff\\xff\\xff\\xff\\xff\\xff\\xff\\xff)\n",
        "[tools]\nactiveColor=@DateTime(\\0\\0\\0\\x47\\0\\x7f\\xff\\xff\\xff\\x7f\\xff\\xff\\xff)\n",
    };
    for (int round = 0; round < 300; ++round) {
        QByteArray damaged = whole;
        for (int change = 0; change < 8; ++change) {
            damaged[int(random() % unsigned(damaged.size()))] = char(random());
        }
        files.append(damaged.left(int(random() % unsigned(damaged.size()))));
        files.append(damaged);
    }
    for (const QByteArray& text : files) {
        Write(text);
        Settings::ReadUserConfig();
        for (int tool = 0; tool < 8; ++tool) {
            const int size = Settings::GetToolSize(ToolType(tool));
            ASSERT_TRUE(size >= 1 && size <= 100) << text.toStdString();
        }
        ASSERT_TRUE(Settings::ghostNextCount >= 1 && Settings::ghostNextCount <= 9);
        ASSERT_TRUE(int(Settings::activeTool) >= 0 && int(Settings::activeTool) <= 8);
    }
}

/// A value of any type that is stored, as often as not with letters that mean something in the file.
QVariant AnyValue(std::mt19937& random) {
    QString text;
    for (auto count = random() % 12; count > 0; --count) {
        const auto kind = random() % 4;
        const auto code = kind == 0 ? random() % 0x20 : kind == 1 ? random() % 0x100 : random() % 0xD800;
        text += kind == 3 ? QChar::fromLatin1("@()\"\\;,= %x09"[random() % 13])
                          : QChar(static_cast<ushort>(code));
    }
    const auto part = [&random] { return static_cast<int>(random() % 256); };
    const QColor color(part(), part(), part(), part());
    const QVariant values[] = {text,  text.toLatin1(), part() - 128,   part() % 2 == 0,
                               color, color.toHsv(),   color.toCmyk(), QColor()};
    return values[random() % 8];
}

TEST_F(SettingsTest, ValuesStandInTheFileAsQSettingsWritesThem) {
    std::mt19937 random(3);
    QVector<QVariant> values;
    for (int i = 0; i < 3000; ++i) {
        values.append(AnyValue(random));
    }
    const QString path = Settings::GetUserConfigPath();
    {
        QFile::remove(path);
        QSettings theirs(path, QSettings::IniFormat);
        for (int i = 0; i < values.size(); ++i) {
            theirs.setValue(QString("g/k%1").arg(i), values[i]);
        }
    }
    const SettingsFile read(path);
    SettingsFile ours(path);
    for (int i = 0; i < values.size(); ++i) {
        const QString key = QString("k%1").arg(i);
        const QVariant value = read.Value("g", key, "missing");
        const bool isNumber = values[i].type() == QVariant::Int || values[i].type() == QVariant::Bool;
        EXPECT_EQ(value, isNumber ? QVariant(values[i].toString()) : values[i])
            << SettingsFile::Encoded(values[i]).toStdString();
        ours.Set("g", key, values[i]);
    }
    // The same lines; only their order is another.
    QList<QByteArray> before = Content().split('\n');
    ASSERT_EQ(ours.Write(), QString());
    QList<QByteArray> after = Content().split('\n');
    std::sort(before.begin(), before.end());
    std::sort(after.begin(), after.end());
    EXPECT_EQ(before, after);
}

TEST_F(SettingsTest, OnlyWhatASettingCanBeIsDecoded) {
    const char object[] = "@Variant(\\0\\0\\0\\x43\\x1\\xff\\xff\\xff\\xff\\0\\0\\0\\0\\0\\0)";
    EXPECT_EQ(SettingsFile::Decoded(object), QVariant(QColor(255, 0, 0)));
    for (const char* text : {"@Variant(\\0\\0\\0\\x43\\x1\\xff)",
                             "@Variant(\\0\\0\\0\\x43\\x9\\xff\\xff\\xff\\xff\\0\\0\\0\\0\\0\\0)",
                             "@DateTime(\\0\\0\\0\\x47\\x7f)", "@Rect(1 2 3 4)", "@Size(1 2)", "@Point(1 2)",
                             "@Variant(", "@"}) {
        EXPECT_EQ(SettingsFile::Decoded(text).type(), QVariant::String) << text;
    }
    EXPECT_EQ(SettingsFile::Decoded(" a \\t; a comment"), QVariant("a \t"));
    EXPECT_EQ(SettingsFile::Decoded("\"a; b\" ; a comment"), QVariant("a; b"));
}

TEST_F(SettingsTest, WhatEditorsDoToTheFileIsRead) {
    Write(
        "\xEF\xBB\xBF[tools]\r\n  pencilSize = \"9\" ; small\r\n[ preferences ]\r\nignore2dPanZoom=true\r\n");
    Settings::ReadUserConfig();
    EXPECT_EQ(Settings::pencilSize, 9);
    EXPECT_TRUE(Settings::ignore2dPanZoom);
    Settings::ignore2dPanZoom = false;
}

TEST_F(SettingsTest, WhatOthersWroteStaysByteForByte) {
    const QByteArray others =
        "[other]\nkey = @DateTime(\\0 \r\n\n  ; a comment\n\xff\xfe no key\nk=\"no end\n";
    Write("; the first line\n[tools]\nmy tool\\x=1 \\\npencilSize=17\n  [main] \nmainMenuName=One\n" +
          others + "[main]\nmainMenuName=Two\n#x=%20\n");
    Settings::ReadUserConfig();
    EXPECT_EQ(Settings::mainMenuName, QStringLiteral("Two"));
    Settings::pencilSize = 18;
    const QByteArray written = Written();
    EXPECT_TRUE(written.startsWith("; the first line\n\n[main]\nversion=1\nmainMenuName=Two\n"))
        << written.toStdString();
    EXPECT_TRUE(written.endsWith('\n' + others)) << written.toStdString();
    for (const char* line : {"\nmy tool\\x=1 \\\n", "\n#x=%20\n", "\npencilSize=18\n"}) {
        EXPECT_EQ(written.count(line), 1) << line;
    }
    for (const char* gone : {"One", "pencilSize=17"}) {
        EXPECT_FALSE(written.contains(gone)) << gone;
    }
    EXPECT_EQ(Written(), written) << "written again";
    Settings::mainMenuName = Settings::DEFAULT_MAIN_MENU_NAME;
}

TEST_F(SettingsTest, NeitherALockNorAFullDiskCostsTheFile) {
    const QString path = Settings::GetUserConfigPath();
    Write("[other]\nkey=1\n");
    QFile lock(path + ".lock");
    ASSERT_TRUE(lock.open(QIODevice::WriteOnly));
    lock.write(QByteArray::number(QCoreApplication::applicationPid()) +
               "\nanother program\nanother machine\n");
    lock.close();
    const QByteArray written = Written();
    EXPECT_TRUE(written.contains("pencilSize=6\n"));
    EXPECT_TRUE(lock.remove());
    {
        const DiskFault fault = DiskFault::Full(QFileInfo(path).path(), 700);
        Settings::pencilSize = 7;
        EXPECT_EQ(Written(), written);
        EXPECT_THAT(Messages(),
                    ::testing::ElementsAre(::testing::HasSubstr("cannot be written: No space left")));
    }
    // What cannot be read is not replaced.
    QFile::remove(path);
    ASSERT_TRUE(QDir().mkpath(path));
    Settings::WriteUserConfig();
    EXPECT_THAT(Messages(), ::testing::ElementsAre(::testing::HasSubstr("The old file cannot be read")));
    EXPECT_TRUE(QDir().rmdir(path));
}

TEST_F(SettingsTest, HardnessAndUnknownTools) {
    Settings::SetToolHardness(ToolType::Brush, -5);
    EXPECT_EQ(Settings::GetToolHardness(ToolType::Brush), 10);
    Settings::SetToolHardness(ToolType::Brush, 5);
    EXPECT_EQ(Settings::GetToolHardness(ToolType::Brush), 5);
    Settings::SetToolHardness(ToolType::Eraser, -5);
    EXPECT_EQ(Settings::GetToolHardness(ToolType::Eraser), 0);
    Settings::SetToolHardness(ToolType::Line, 5);
    EXPECT_EQ(Settings::GetToolHardness(ToolType::Line), 100);
    EXPECT_THAT(Messages(), ::testing::IsEmpty());

    Settings::pencilSize = 33;
    EXPECT_EQ(Settings::GetToolSize(ToolType::Transform), 33);
    Settings::SetToolOpacity(ToolType(12), 50);
    EXPECT_THAT(Messages(), ::testing::ElementsAre("Unknown tool type: 8", "Unknown tool type: 12"));
}

} // namespace vellix
