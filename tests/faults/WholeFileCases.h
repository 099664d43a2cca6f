#pragma once

// What both classes WholeFile promise: that of the plug-in and that of Lightbox. A test program instantiates
// the cases with a Door, which has a type File, and Open(path), Write(file, content), Commit(file) and
// Fault(file).

#include "faults/DiskFault.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

template <class Door>
class WholeFileTest : public ::testing::Test {
protected:
    QString Path(const QString& name = "file.txt") const { return folder_.filePath(name); }
    /// Returns why the file was not written.
    static QString Write(const QString& path, const QByteArray& content) {
        const auto file = Door::Open(path);
        Door::Write(*file, content);
        Door::Commit(*file);
        return Door::Fault(*file);
    }
    static QByteArray Read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }
    QStringList Files() const {
        return QDir(folder_.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    static void Touch(const QString& path) { EXPECT_TRUE(QFile(path).open(QIODevice::WriteOnly)); }
    /// Writes a part of the file in another process, which is then killed.
    static void WriteAndBeKilled(const QString& path) {
        const pid_t child = fork();
        if (child == 0) {
            const auto file = Door::Open(path);
            Door::Write(*file, "half");
            raise(SIGKILL);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status));
    }

    QTemporaryDir folder_;
};

TYPED_TEST_SUITE_P(WholeFileTest);

TYPED_TEST_P(WholeFileTest, AFullDiskLeavesTheOldFileAndSaysSo) {
    const QByteArray old = "the old file";
    const QByteArray content(5000, 'n');
    const auto expectRefused = [&](const QString& what) {
        EXPECT_TRUE(this->Write(this->Path(), content).contains("No space left")) << what.toStdString();
        EXPECT_EQ(this->Read(this->Path()), old) << what.toStdString();
        EXPECT_EQ(this->Files(), QStringList("file.txt")) << what.toStdString();
        // Where there was no file there is none.
        EXPECT_TRUE(this->Write(this->Path("new"), content).contains("No space left")) << what.toStdString();
        EXPECT_EQ(this->Files(), QStringList("file.txt")) << what.toStdString();
    };
    ASSERT_EQ(this->Write(this->Path(), old), QString());
    for (int bytes = 0; bytes < content.size(); bytes += 512) {
        const DiskFault fault = DiskFault::Full(this->folder_.path(), bytes);
        expectRefused(QString("%1 bytes").arg(bytes));
    }
    {
        const DiskFault fault = DiskFault::Sync(this->folder_.path());
        expectRefused("fsync");
    }
    {
        const DiskFault fault = DiskFault::Rename(this->folder_.path());
        expectRefused("rename");
    }
    const DiskFault fault = DiskFault::Full(this->folder_.path(), content.size());
    EXPECT_EQ(this->Write(this->Path(), content), QString());
    EXPECT_EQ(this->Read(this->Path()), content);
}

TYPED_TEST_P(WholeFileTest, AKilledWriterIsCleanedUpAndARunningOneIsNot) {
    // A user's files with names like a temporary one.
    const QStringList others = {".file.txt", ".file.txt.part", "file.txt.part"};
    for (const QString& name : others) {
        this->Touch(this->Path(name));
    }
    const auto running = TypeParam::Open(this->Path());
    TypeParam::Write(*running, "running");
    for (int times = 0; times < 3; ++times) {
        this->WriteAndBeKilled(this->Path());
    }
    EXPECT_GT(this->Files().size(), others.size() + 1);
    EXPECT_EQ(this->Write(this->Path(), "saved"), QString());
    EXPECT_EQ(this->Read(this->Path()), QByteArray("saved"));
    EXPECT_EQ(this->Files().size(), others.size() + 2) << this->Files().join(" ").toStdString();
    // The last one wins.
    EXPECT_TRUE(TypeParam::Commit(*running));
    EXPECT_EQ(this->Read(this->Path()), QByteArray("running"));
    EXPECT_EQ(this->Files().size(), others.size() + 1) << this->Files().join(" ").toStdString();
}

TYPED_TEST_P(WholeFileTest, WithoutACommitTheOldFileStays) {
    this->Write(this->Path(), "old");
    TypeParam::Write(*TypeParam::Open(this->Path()), "new");
    EXPECT_EQ(this->Read(this->Path()), QByteArray("old"));
    EXPECT_EQ(this->Files(), QStringList("file.txt"));
}

TYPED_TEST_P(WholeFileTest, PermissionsAndLinksStay) {
    ASSERT_TRUE(QDir(this->folder_.path()).mkdir("below"));
    const QString target = this->Path("below/target");
    this->Touch(target);
    ASSERT_EQ(chmod(target.toLocal8Bit().constData(), 0640), 0);
    ASSERT_TRUE(QFile::link("below/target", this->Path("link")));
    ASSERT_TRUE(QFile::link("below/missing", this->Path("dangling")));
    for (const char* link : {"link", "dangling"}) {
        EXPECT_EQ(this->Write(this->Path(link), link), QString());
        EXPECT_TRUE(QFileInfo(this->Path(link)).isSymLink());
    }
    EXPECT_EQ(this->Read(target), QByteArray("link"));
    EXPECT_EQ(this->Read(this->Path("below/missing")), QByteArray("dangling"));
    struct stat status;
    ASSERT_EQ(stat(target.toLocal8Bit().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
}

TYPED_TEST_P(WholeFileTest, RefusesWhatItCannotReplace) {
    ASSERT_TRUE(QDir(this->folder_.path()).mkdir("folder"));
    this->Touch(this->Path("file"));
    const struct {
        QString path;
        const char* fault;
    } cases[] = {
        {this->Path("folder"), "It is a folder"},
        {"/dev/null", "It is not a file on a disk"},
        {this->Path("missing/file.txt"), "No such file or directory"},
        {this->Path("file/file.txt"), "Not a directory"},
        {this->Path(QString(256, 'x')), "File name too long"},
        // Can be written, but its folder takes no other file.
        {"/proc/self/comm", "No temporary file can be made beside it"},
    };
    for (const auto& test : cases) {
        const QString fault = this->Write(test.path, "new");
        EXPECT_TRUE(fault.contains(test.fault)) << test.path.toStdString() << ": " << fault.toStdString();
    }
    EXPECT_EQ(this->Files(), QStringList({"file", "folder"}));
    if (geteuid() != 0) { // who may write anything
        QFile(this->Path("file")).setPermissions(QFile::ReadOwner);
        EXPECT_NE(this->Write(this->Path("file"), "new"), QString());
        EXPECT_EQ(this->Read(this->Path("file")), QByteArray());
    }
}

TYPED_TEST_P(WholeFileTest, LongAndForeignNamesAreWritten) {
    for (const QString& name :
         {QString(255, 'x'), QString::fromUtf8("\xe7\xad\x86").repeated(85), QString("%1 #.png")}) {
        EXPECT_EQ(this->Write(this->Path(name), "new"), QString());
        EXPECT_EQ(this->Read(this->Path(name)), QByteArray("new"));
    }
    EXPECT_EQ(this->Files().size(), 3);
}

REGISTER_TYPED_TEST_SUITE_P(WholeFileTest, AFullDiskLeavesTheOldFileAndSaysSo,
                            AKilledWriterIsCleanedUpAndARunningOneIsNot, WithoutACommitTheOldFileStays,
                            PermissionsAndLinksStay, RefusesWhatItCannotReplace,
                            LongAndForeignNamesAreWritten);
