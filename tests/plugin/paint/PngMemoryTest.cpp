#include "paint/PngCodec.h"
#include "plugin/paint/PngBytes.h"

#include <QImage>

#include <algorithm>
#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using vellix::PngCodec;
using namespace vellix::png_bytes;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool CAN_MEASURE = false;
#else
constexpr bool CAN_MEASURE = true;
#endif

#ifdef VELLIX_WITH_LIBDEFLATE
constexpr bool IS_SURPLUS_REFUSED = true;
#else
constexpr bool IS_SURPLUS_REFUSED = false; // by Qt
#endif

constexpr int SIDE = 2048;
constexpr qint64 PIXELS = qint64(SIDE) * SIDE;

struct Given {
    const char* name;
    QByteArray bytes;
    qint64 picture; ///< bytes of its pixels
    bool isDecoded;
};

// A zlib stream of one byte again and again, which takes a thousandth of their number.
QByteArray Packed(int count, char byte = '\0') {
    return qCompress(QByteArray(count, byte), 9).mid(4);
}

QByteArray Picture(int depth, int colorType, const QByteArray& stream, int interlace = 0,
                   const QByteArray& before = QByteArray()) {
    return File(
        {Header(SIDE, SIDE, depth, colorType, interlace), before, Chunk("IDAT", stream), Chunk("IEND")});
}

std::vector<Given> MakeGiven() {
    const QByteArray colors = Chunk("PLTE", QByteArray(3 * 256, '\x40'));
    const QByteArray grey = Packed((SIDE + 1) * SIDE);
    QByteArray texts;
    for (int i = 0; i < 40; ++i) {
        texts += Chunk("zTXt", QByteArray("n") + QByteArray::number(i) + QByteArray(2, '\0') +
                                   Packed(6'000'000, 'a'));
    }
    QImage busy(SIDE, SIDE, QImage::Format_RGBA8888);
    quint32 value = 1;
    for (int y = 0; y < SIDE; ++y) {
        auto* row = reinterpret_cast<quint32*>(busy.scanLine(y));
        for (int x = 0; x < SIDE; ++x) {
            row[x] = (value = value * 1664525u + 1013904223u) >> 24;
        }
    }
    QByteArray bands;
    PngCodec::Encode(busy, bands);
    return {
        {"empty", Picture(8, 6, Packed((SIDE * 4 + 1) * SIDE)), PIXELS * 4, true},
        {"in bands", bands, PIXELS * 4, true},
        {"256 MB in the stream", Picture(8, 6, Packed(1 << 28)), PIXELS * 4, !IS_SURPLUS_REFUSED},
        {"a stream of too little", Picture(8, 6, Packed(100'000) + QByteArray(70'000, 'x')), PIXELS * 4,
         false},
        {"grey", Picture(8, 0, grey), PIXELS, true},
        {"a palette", Picture(8, 3, grey, 0, colors), PIXELS, true},
        {"16 bits", Picture(16, 6, Packed((SIDE * 8 + 1) * SIDE)), PIXELS * 8, true},
        {"16 bits, interlaced", Picture(16, 6, Packed(SIDE * SIDE * 9), 1), PIXELS * 8, true},
        {"240 MB of texts", Picture(8, 0, grey, 0, texts), PIXELS, true},
    };
}

constexpr qint64 MEGABYTE = 1 << 20;

// The megabytes that a process of its own takes while it decodes; 255 for more.
qint64 MegabytesToDecode(const QByteArray& packed) {
    const pid_t child = fork();
    if (child == 0) {
        const auto most = [] {
            rusage usage{};
            getrusage(RUSAGE_SELF, &usage);
            return usage.ru_maxrss / 1024;
        };
        const auto before = most();
        QImage image;
        PngCodec::Decode(packed, image);
        _exit(static_cast<int>(std::min(most() - before, 255L)));
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status));
    return WEXITSTATUS(status);
}

} // namespace

TEST(PngMemoryTest, NoMoreThanTheBytesAndOnePicture) {
    if (!CAN_MEASURE) {
        GTEST_SKIP() << "the sanitizers take memory of their own";
    }
    // What is large goes back to the system when it is freed, and no thread keeps memory for the next one.
    mallopt(M_MMAP_THRESHOLD, 64 * 1024);
    mallopt(M_ARENA_MAX, 1);
    // A band for each thread, rows, and the decoders themselves.
    constexpr qint64 beside = 12;
    for (const Given& given : MakeGiven()) {
        SCOPED_TRACE(given.name);
        const qint64 taken = MegabytesToDecode(given.bytes);
        EXPECT_LE(taken, (given.bytes.size() + given.picture) / MEGABYTE + beside);
        QImage image;
        EXPECT_EQ(PngCodec::Decode(given.bytes, image), given.isDecoded);
        EXPECT_EQ(image.sizeInBytes(), given.isDecoded ? given.picture : 0);
        if (given.isDecoded) {
            EXPECT_GE(taken, given.picture / MEGABYTE / 2) << "not all is counted";
        }
    }
}
