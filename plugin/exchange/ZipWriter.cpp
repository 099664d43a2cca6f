#include "exchange/ZipWriter.h"

#include "paint/NonCopyable.h"
#include "paint/PngChecksum.h"
#include "paint/WholeFile.h"

#include <QtEndian>

#include <algorithm>
#include <cstddef>
#include <initializer_list>

namespace vellix {

namespace {

// APPNOTE 4.3.7, 4.3.12 and 4.3.16: what stands around the members. Numbers are little-endian.
constexpr qint64 LOCAL_HEADER_BYTES = 30;
constexpr qint64 DIRECTORY_ENTRY_BYTES = 46;
constexpr qint64 DIRECTORY_END_BYTES = 22;
const char LOCAL_HEADER[] = "PK\x03\x04";
const char DIRECTORY_ENTRY[] = "PK\x01\x02";
const char DIRECTORY_END[] = "PK\x05\x06";

constexpr quint16 VERSION = 20;           // 4.4.3: 2.0
constexpr quint16 NAME_IS_UTF8 = 1 << 11; // 4.4.4
constexpr quint16 STORED = 0;             // 4.4.5
constexpr quint16 NO_TIME = 0;            // 4.4.6: midnight
constexpr quint16 NO_DATE = 0x21;         // the first day that there is, 1 January 1980

/// Gathers small pieces, so that the system is called seldom.
class ZipFile : private NonCopyable {
public:
    ZipFile(const QString& path, qint64 bytes, const ZipWriter::Progress& progress)
        : file_(path)
        , progress_(progress)
        , bytes_(bytes) {
        pending_.reserve(static_cast<int>(std::min<qint64>(bytes, LARGEST_PENDING)));
    }

    /// Returns false once anything has failed or the progress was stopped.
    bool Write(const QByteArray& bytes) {
        if (pending_.size() + qint64(bytes.size()) > LARGEST_PENDING && !Flush()) {
            return false;
        }
        if (bytes.size() > LARGEST_PENDING) {
            return WriteNow(bytes);
        }
        pending_ += bytes;
        return true;
    }
    bool Commit() { return Flush() && file_.Commit(); }

    QString Fault() const { return isStopped_ ? QStringLiteral("It was stopped") : file_.Fault(); }

private:
    static constexpr int LARGEST_PENDING = 1 << 20; // a disk takes large pieces best

    bool Flush() {
        const bool isWritten = WriteNow(pending_);
        pending_.resize(0); // keeps its memory
        return isWritten;
    }
    bool WriteNow(const QByteArray& bytes) {
        if (!file_.Write(bytes)) {
            return false;
        }
        written_ += bytes.size();
        const double share = static_cast<double>(written_) / static_cast<double>(bytes_);
        if (progress_ && (share >= told_ + 0.01 || written_ == bytes_)) {
            told_ = share;
            isStopped_ = !progress_(share);
        }
        return !isStopped_;
    }

    WholeFile file_;
    const ZipWriter::Progress& progress_;
    const qint64 bytes_;
    qint64 written_ = 0;
    double told_ = 0.0;
    QByteArray pending_; // follows them
    bool isStopped_ = false;
};

template <class Integer>
QByteArray ToZip(std::initializer_list<Integer> numbers) {
    QByteArray bytes;
    for (const Integer number : numbers) {
        const Integer stored = qToLittleEndian(number);
        bytes.append(reinterpret_cast<const char*>(&stored), sizeof stored);
    }
    return bytes;
}

/// What the header of a member and its entry in the directory have in common.
QByteArray ZipDescription(const QByteArray& name, const QByteArray& bytes) {
    const bool isAscii = std::none_of(name.begin(), name.end(), [](char c) { return uchar(c) > 0x7f; });
    const auto size = static_cast<quint32>(bytes.size());
    const quint32 checksum = PngChecksum(reinterpret_cast<const uchar*>(bytes.constData()), size);
    const auto nameSize = static_cast<quint16>(name.size());
    return ToZip<quint16>({VERSION, isAscii ? quint16(0) : NAME_IS_UTF8, STORED, NO_TIME, NO_DATE}) +
           ToZip<quint32>({checksum, size, size}) + ToZip<quint16>({nameSize, 0});
}

} // namespace

void ZipWriter::Add(const QString& name, const QByteArray& bytes) {
    members_.push_back({name.toUtf8(), bytes});
}

qint64 ZipWriter::Bytes() const {
    qint64 bytes = DIRECTORY_END_BYTES;
    for (const Member& member : members_) {
        bytes += LOCAL_HEADER_BYTES + DIRECTORY_ENTRY_BYTES + 2LL * member.name.size() + member.bytes.size();
    }
    return bytes;
}

QString ZipWriter::Refusal(qint64 bytesToCome, int membersToCome) const {
    constexpr qint64 nameToCome = 64; // bytes, more than any has
    const qint64 bytes =
        Bytes() + bytesToCome + membersToCome * (LOCAL_HEADER_BYTES + DIRECTORY_ENTRY_BYTES + 2 * nameToCome);
    const std::size_t count = members_.size() + static_cast<std::size_t>(membersToCome);
    if (count > std::size_t(MAX_MEMBERS)) {
        return QString("It would have %1 parts; an archive has at most %2").arg(count).arg(MAX_MEMBERS);
    }
    if (bytes > MAX_BYTES) {
        return QString("It would have %1 MB; an archive has at most %2 MB")
            .arg(bytes >> 20)
            .arg(MAX_BYTES >> 20);
    }
    return QString();
}

QString ZipWriter::Write(const QString& path, const Progress& progress) const {
    QString refusal = Refusal();
    if (!refusal.isEmpty()) {
        return refusal;
    }
    ZipFile file(path, Bytes(), progress);
    QByteArray directory;
    qint64 offset = 0;
    for (const Member& member : members_) {
        const QByteArray description = ZipDescription(member.name, member.bytes);
        directory += DIRECTORY_ENTRY + ToZip<quint16>({VERSION}) + description + ToZip<quint16>({0, 0, 0}) +
                     ToZip<quint32>({0, static_cast<quint32>(offset)}) + member.name;
        if (!file.Write(LOCAL_HEADER + description + member.name) || !file.Write(member.bytes)) {
            return file.Fault();
        }
        offset += LOCAL_HEADER_BYTES + member.name.size() + member.bytes.size();
    }
    const auto count = static_cast<quint16>(members_.size());
    directory += DIRECTORY_END + ToZip<quint16>({0, 0, count, count}) +
                 ToZip<quint32>({static_cast<quint32>(directory.size()), static_cast<quint32>(offset)}) +
                 ToZip<quint16>({0});
    if (!file.Write(directory)) {
        return file.Fault();
    }
    file.Commit();
    return file.Fault();
}

} // namespace vellix
