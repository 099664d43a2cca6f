#include "exchange/ZipReader.h"

#include "plugin/exchange/MadeArchive.h"

#include <QTemporaryDir>
#include <QtEndian>

#include <cstring>

namespace vellix {
namespace {

QString FaultOf(const std::vector<MadeArchive::Member>& members) {
    return ZipReader(MadeArchive::Of(members).Bytes()).Fault();
}

/// Overwrites the size of the only member, in its own header and in the list.
QByteArray WithSize(QByteArray bytes, quint32 size) {
    for (const auto& place : {std::make_pair("PK\3\4", 22), std::make_pair("PK\1\2", 24)}) {
        const int at = bytes.indexOf(QByteArray(place.first, 4));
        qToLittleEndian(size, bytes.data() + at + place.second);
    }
    return bytes;
}

TEST(ZipReaderTest, ReadsMembersUpToALimit) {
    const QByteArray text(5000000, 'x');
    ZipReader reader(
        MadeArchive({{"a/one", "first"}, {QString::fromUtf8("räume/二"), text}, {"empty", ""}}).Bytes());
    ASSERT_EQ(reader.Fault(), "");
    QByteArray bytes;
    EXPECT_TRUE(reader.Read("a/one", 5, bytes));
    EXPECT_EQ(bytes, "first");
    EXPECT_TRUE(reader.Read(QString::fromUtf8("räume/二"), text.size(), bytes));
    EXPECT_EQ(bytes, text);
    EXPECT_TRUE(reader.Read("empty", 0, bytes));
    EXPECT_EQ(bytes.size(), 0);
    EXPECT_FALSE(reader.Read("a/one", 4, bytes));
    EXPECT_EQ(reader.Fault(), "its member \"a/one\" is too large: 5 bytes");
}

TEST(ZipReaderTest, RefusesWhatLeadsOutIsDoubleOrEncrypted) {
    for (const char* name : {"../up", "a/../../up", "/root", "a\\..\\..\\up", "C:/drive"}) {
        EXPECT_EQ(FaultOf({{name, "x"}}), QString("its member \"%1\" leads out of the archive").arg(name));
    }
    EXPECT_EQ(FaultOf({{"a..b/..c", "x"}}), "");
    EXPECT_EQ(FaultOf({{"secret", "x", true}}),
              "its member \"secret\" is encrypted; save it without a password");
    QByteArray doubled = MadeArchive({{"one", "x"}, {"two", "y"}}).Bytes();
    for (int at = doubled.indexOf("two"); at >= 0; at = doubled.indexOf("two")) {
        std::memcpy(doubled.data() + at, "one", 3);
    }
    EXPECT_EQ(ZipReader(doubled).Fault(), "it has two members of the name \"one\"");
    EXPECT_TRUE(ZipReader(QByteArray("no archive")).Fault().startsWith("it is no archive"));
    EXPECT_TRUE(ZipReader(QString("/nowhere.ora")).Fault().startsWith("it cannot be read"));
}

// The archive says of its members what it likes.
TEST(ZipReaderTest, SizesThatAreNotTrueAreFound) {
    const QByteArray bomb = MadeArchive({{"bomb", QByteArray(100 << 20, 0)}}).Bytes();
    ASSERT_LT(bomb.size(), 1 << 20);
    QByteArray bytes;
    for (const quint32 told : {10U, 3000000000U}) {
        ZipReader reader(WithSize(bomb, told));
        ASSERT_EQ(reader.Fault(), "");
        EXPECT_FALSE(reader.Read("bomb", 1 << 20, bytes)) << told;
        EXPECT_NE(reader.Fault(), "") << told;
    }
    EXPECT_EQ(bytes.size(), 0);
    QByteArray damaged = MadeArchive({{"text", "abcdefghijklmnopqrstuvwxyz0123456789"}}).Bytes();
    damaged[50] = static_cast<char>(damaged[50] ^ 1);
    ZipReader reader(damaged);
    EXPECT_FALSE(reader.Read("text", 1000, bytes));
    EXPECT_TRUE(reader.Fault().startsWith("its member \"text\" is damaged")) << reader.Fault().toStdString();
}

} // namespace
} // namespace vellix
