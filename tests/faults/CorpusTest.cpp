#include "app/LightboxHost.h"
#include "faults/FaultFixture.h"
#include "faults/fuzz/Readers.h"

#include <QDir>
#include <QFile>
#include <QStringList>

#include <iostream>

namespace {

/// The first inputs of the fuzzers, and what they found once, go through the readers here too.
class Corpus : public FaultFixture {
protected:
    static void Feed(const char* name, readers::Feed* feed) {
        const QDir folder(QString(VELLIX_SOURCE_FOLDER "/tests/faults/corpus/") + name);
        const QStringList files = folder.entryList(QDir::Files, QDir::Name);
        ASSERT_FALSE(files.isEmpty());
        for (const QString& file : files) {
            std::cout << name << "/" << file.toStdString() << std::endl; // the last line before a crash
            QFile input(folder.filePath(file));
            ASSERT_TRUE(input.open(QIODevice::ReadOnly));
            const QByteArray bytes = input.readAll();
            feed(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                 static_cast<std::size_t>(bytes.size()));
        }
    }
};

TEST_F(Corpus, OfPicturesAndRecordingsIsRead) {
    Feed("png", readers::Png);
    Feed("recording", readers::Recording);
}

TEST_F(Corpus, OfLayeredFilesIsRead) {
    Feed("open_raster", readers::OpenRaster);
    Feed("pclx", readers::Pclx);
}

TEST_F(Corpus, OfDrawingsScenesAndSettingsIsRead) {
    readers::Confine(*host_, false);
    Feed("drawing_ascii", readers::DrawingAscii);
    Feed("drawing_binary", readers::DrawingBinary);
    Feed("settings", readers::Settings);
    Feed("ma", readers::Ma);
    Feed("lbx", readers::Lbx);
}

TEST_F(Corpus, OfScriptsIsRead) {
    readers::Confine(*host_, true);
    Feed("mel", readers::Mel);
}

} // namespace
