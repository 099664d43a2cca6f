// The settings that are written soon after they change, and not only at the end.
#include "host/SettingsWriter.h"

#include "plugin/ui/DialogFixture.h"

#include <QElapsedTimer>
#include <QFile>

namespace vellix {

namespace {

class SettingsWriterTest : public DialogFixture {
protected:
    ~SettingsWriterTest() override {
        SettingsWriter::Stop();
        Run("qmVellixUtil -e -flipNextKey none");
        QFile file(Settings::GetUserConfigPath());
        file.open(QIODevice::WriteOnly);
        file.write(first_);
        file.close();
        Settings::ReadUserConfig();
        SettingsWriter::Stop();
    }

    static QByteArray File() {
        QFile file(Settings::GetUserConfigPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static bool Has(const QByteArray& line, int milliseconds = 4000) {
        QElapsedTimer timer;
        timer.start();
        while (!File().contains(line) && timer.elapsed() < milliseconds) {
            Settle(20);
        }
        return File().contains(line);
    }

    static QByteArray WrittenNow() {
        Settings::WriteUserConfig();
        return File();
    }

    const QByteArray first_ = WrittenNow();
};

} // namespace

TEST_F(SettingsWriterTest, WhatTookTroubleIsWrittenSoon) {
    const struct {
        const char* line;
        const char* inFile;
    } rows[] = {
        {"-savePreset 2 \"My own brush\"", "My own brush"},
        {"-e -presetName 3 \"Another name\"", "Another name"},
        {"-e -presetKeys 1", "presetKeys=true"},
        {"-e -smoothCurves 1", "smoothCurves=true"},
        {"-e -stabiliser 37", "stabiliser=37"},
        {"-e -brushSizePressure 1 12 34 56", "12 34 56"},
        {"-e -eraserOpacityPressure 13 35 57", "13 35 57"},
        {"-e -ghostLayers 2", "ghostLayers=2"},
        {"-e -pinnedColor 1 2 3", "pinnedColor=@"},
        {"-e -otherLayersOpacity 41", "otherLayersOpacity=41"},
        {"-e -flipAllLayers 1", "flipAllLayers=true"},
        {"-e -rollCount 7", "rollCount=7"},
        {"-e -rollRate 23", "rollRate=23"},
        {"-e -flipNextKey \"F6\"", "flipNextKey=F6"},
    };
    for (const auto& row : rows) {
        QFile::remove(Settings::GetUserConfigPath());
        Run(std::string("qmVellixUtil ") + row.line);
        EXPECT_FALSE(QFile::exists(Settings::GetUserConfigPath())) << row.line << ", when it rests";
        EXPECT_TRUE(Has(row.inFile)) << row.line;
    }
    QFile::remove(Settings::GetUserConfigPath());
    Run("qmVellixUtil -preset 2");
    EXPECT_TRUE(Has("My own brush"));

    // A refusal writes nothing, and neither does a colour that is only tried.
    QFile::remove(Settings::GetUserConfigPath());
    Run("catch(`qmVellixUtil -savePreset 11 \"None\"`); qmVellixUtil -e -drawColor 1 2 3");
    EXPECT_FALSE(Has("activeColor", 1500));
}

TEST_F(SettingsWriterTest, NothingIsWrittenOnceThePluginIsGone) {
    Run("qmVellixUtil -e -stabiliser 38");
    host_->plugins().Unload("vellix2", true);
    EXPECT_TRUE(File().contains("stabiliser=38")) << "at the end";
    const QString path = Settings::GetUserConfigPath();
    QFile::remove(path);
    Settle(1500);
    EXPECT_FALSE(QFile::exists(path));
    Load();
}

} // namespace vellix
