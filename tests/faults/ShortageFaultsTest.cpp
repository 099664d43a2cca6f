#include "faults/FaultFixture.h"
#include "journeys/Lightbox.h"

#include <QFile>
#include <QProcess>

#include <iostream>
#include <sys/resource.h>
#include <unistd.h>

namespace {

/// Opens a scene where memory or threads run out, then saves it: whatever could not be read, the file keeps
/// it.
class ShortageFaults : public FaultFixture {
protected:
    struct Result {
        bool hangs = false;
        bool crashes = false;
        bool isOpened = false;
        bool isSaved = false;
        QByteArray output;
        QByteArray errors;
    };
    static constexpr int DRAWINGS = 12;
    static constexpr int PATIENCE = 60000; ///< milliseconds

    void SetUp() override {
        ASSERT_TRUE(Run("qmVellixNode -l -ln \"Rough\" -c persp")) << Messages();
        Draw(DRAWINGS);
        for (const char* name : {"whole.ma", "whole.lbx"}) {
            ASSERT_TRUE(Run("file -rename \"" + Path(name) + "\"; file -save")) << Messages();
        }
        drawing_ = DrawingOf("whole.ma");
        ASSERT_GT(drawing_.count("89504e47"), DRAWINGS - 1);
    }

    /// The text of the drawing in a scene.
    QByteArray DrawingOf(const QString& name) {
        QString ascii = name;
        if (name.endsWith(".lbx")) {
            ascii = "converted.ma";
            if (!Run("file -force -open \"" + Path(name) + "\"; file -rename \"" + Path(ascii) +
                     "\"; file -save")) {
                return "unreadable: " + QByteArray::fromStdString(Messages());
            }
        }
        const QByteArray text = Read(ascii);
        const int start = text.indexOf("setAttr \".ld\"");
        return start < 0 ? "no drawing" : text.mid(start, text.indexOf(";\n", start) - start);
    }

    /// `kilobytes`: how much memory the program may take beyond what it has when it is about to open the
    /// scene; negative for any amount.
    Result OpenAndSave(const QString& name, long kilobytes) {
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        // Whoever looks for fonts without memory for it would leave a list without fonts to all programs.
        Write("fonts.conf", "<fontconfig><cachedir>" + Path("fonts").toUtf8() +
                                "</cachedir><include>/etc/fonts/fonts.conf</include></fontconfig>");
        environment.insert("FONTCONFIG_FILE", Path("fonts.conf"));
        program.setProcessEnvironment(environment);
        QFile::remove(Path("go"));
        // Procedures that call one another need more stack than the program has had until then.
        Write("open.mel", (R"(global proc int deep(int $calls) { return $calls > 0 ? deep($calls - 1) : 0; }
            print "ready\n"; while (!`filetest -f ")" +
                           Path("go") + R"("`) {}
            catch(`deep 1000`);
            int $failed = catch(`file -force -open ")" +
                           Path(name) + R"("`);
            print ("opened " + (!$failed) + "\n");
            $failed = catch(`file -save`);
            print ("saved " + (!$failed) + "\n");)")
                              .toUtf8());
        program.start(LIGHTBOX_PROGRAM,
                      {"-batch", "-prefs", folder_.filePath("prefs2"), "-script", Path("open.mel")});
        Result result;
        while (!result.output.contains("ready") && program.waitForReadyRead(PATIENCE)) {
            result.output += program.readAllStandardOutput();
        }
        if (kilobytes >= 0) {
            Limit(program.processId(), kilobytes);
        }
        Write("go", "");
        result.hangs = !program.waitForFinished(PATIENCE);
        if (result.hangs) {
            program.kill();
            program.waitForFinished();
        }
        result.crashes = !result.hangs && program.exitStatus() != QProcess::NormalExit;
        result.output += program.readAllStandardOutput();
        result.isOpened = result.output.contains("opened 1");
        result.isSaved = result.output.contains("saved 1");
        result.errors = program.readAllStandardError();
        return result;
    }

    static void Limit(qint64 process, long kilobytes) {
        QFile status(QString("/proc/%1/statm").arg(process));
        ASSERT_TRUE(status.open(QIODevice::ReadOnly));
        const auto pages = status.readAll().split(' ').first().toULongLong();
        rlimit limit{};
        ASSERT_EQ(prlimit(static_cast<pid_t>(process), RLIMIT_AS, nullptr, &limit), 0);
        limit.rlim_cur = pages * static_cast<rlim_t>(getpagesize()) + static_cast<rlim_t>(kilobytes) * 1024;
        ASSERT_EQ(prlimit(static_cast<pid_t>(process), RLIMIT_AS, &limit, nullptr), 0);
    }

    QByteArray drawing_;
};

TEST_F(ShortageFaults, ShortOfMemoryASceneIsReadWholeOrKeptWhole) {
    std::string met;
    for (const QString suffix : {".ma", ".lbx"}) {
        const QByteArray whole = Read("whole" + suffix);
        int opened = 0;
        constexpr int steps = 30;
        const int stride = IsLongRun() ? 1 : 5;
        for (int step = 0; step < steps; step += stride) {
            SCOPED_TRACE((suffix + ", step " + QString::number(step)).toStdString());
            const QString scene = "scene" + suffix;
            Write(scene, whole);
            const Result result = OpenAndSave(scene, step * step * 128);
            EXPECT_FALSE(result.hangs);
            EXPECT_FALSE(result.crashes) << result.errors.right(600).toStdString();
            const QByteArray left = Read(scene);
            if (left != whole) {
                const QByteArray kept = DrawingOf(scene);
                EXPECT_TRUE(kept == drawing_)
                    << "opened " << result.isOpened << ", saved " << result.isSaved << ", " << kept.size()
                    << " bytes of the drawing's " << drawing_.size();
            }
            opened += result.isOpened;
            met += result.crashes ? 'x' : result.isOpened ? 'o' : '-';
        }
        EXPECT_GT(opened, 0) << "the last steps have memory enough";
        met += ' ';
    }
    std::cout << "opened (o), refused (-), ended (x): " << met << std::endl;
}

TEST_F(ShortageFaults, WithoutNewThreadsASceneIsReadWhole) {
    const Environment preload("LD_PRELOAD", NO_THREADS_LIBRARY);
    for (const QString scene : {"whole.ma", "whole.lbx"}) {
        SCOPED_TRACE(scene.toStdString());
        const Result result = OpenAndSave(scene, -1);
        EXPECT_FALSE(result.hangs);
        EXPECT_FALSE(result.crashes) << result.errors.toStdString();
        EXPECT_TRUE(result.isOpened) << result.errors.toStdString();
        EXPECT_TRUE(result.isSaved) << result.errors.toStdString();
        EXPECT_TRUE(DrawingOf(scene) == drawing_);
    }
}

} // namespace
