#include "exchange/ZipWriter.h"

#include "paint/NonCopyable.h"
#include "paint/ScopeExit.h"
#include "paint/WholeFile.h"

#include <cerrno>
#include <cstddef>
#include <memory>
#include <new>
#include <zip.h>

namespace vellix {

namespace {

// APPNOTE 4.3.7, 4.3.12 and 4.3.16: what stands around the members.
constexpr qint64 LOCAL_HEADER_BYTES = 30;
constexpr qint64 DIRECTORY_ENTRY_BYTES = 46;
constexpr qint64 DIRECTORY_END_BYTES = 22;

// The first day that a member can have: 1 January 1980 (4.4.6).
constexpr zip_uint16_t NO_DATE = 0x21;
constexpr zip_uint16_t NO_TIME = 0;

/// Hands libzip's progress on. Exceptions must not reach libzip; one stops the archive.
struct ZipWatch {
    const ZipWriter::Progress& progress;
    bool isStopped;

    static void Tell(zip_t*, double share, void* watch) {
        auto* const self = static_cast<ZipWatch*>(watch);
        try {
            self->isStopped = self->isStopped || !self->progress(share);
        } catch (...) {
            self->isStopped = true;
        }
    }
    static int IsStopped(zip_t*, void* watch) { return static_cast<ZipWatch*>(watch)->isStopped ? 1 : 0; }
};

} // namespace

/// Takes what libzip writes. That goes back to the header of each member once its data stands; so a member
/// waits in memory until it is complete, and the file is written from its beginning to its end.
class ZipWriter::Sink : private NonCopyable {
public:
    explicit Sink(WholeFile& file)
        : file_(file) {
        zip_error_init(&error_);
    }
    ~Sink() { zip_error_fini(&error_); }

    /// A zip_source_callback. Exceptions must not reach libzip.
    static zip_int64_t Handle(void* sink, void* data, zip_uint64_t length, zip_source_cmd_t command) {
        auto* const self = static_cast<Sink*>(sink);
        try {
            return self->Do(data, length, command);
        } catch (const std::bad_alloc&) {
            self->shortOfMemory_ = true;
            return self->Fail(ZIP_ER_MEMORY, ENOMEM);
        }
    }

    bool WasShortOfMemory() const { return shortOfMemory_; }

private:
    zip_int64_t Do(void* data, zip_uint64_t length, zip_source_cmd_t command) {
        switch (command) {
        case ZIP_SOURCE_SUPPORTS:
            return ZIP_SOURCE_SUPPORTS_WRITABLE;
        case ZIP_SOURCE_STAT: // there is nothing yet
        case ZIP_SOURCE_OPEN:
            return Fail(ZIP_ER_READ, ENOENT);
        case ZIP_SOURCE_ERROR:
            return zip_error_to_data(&error_, data, length);
        case ZIP_SOURCE_BEGIN_WRITE:
        case ZIP_SOURCE_ROLLBACK_WRITE:
        case ZIP_SOURCE_REMOVE:
        case ZIP_SOURCE_FREE:
            return 0;
        case ZIP_SOURCE_WRITE:
            return Write(static_cast<const char*>(data), static_cast<qint64>(length));
        case ZIP_SOURCE_TELL_WRITE:
            return flushed_ + position_;
        case ZIP_SOURCE_SEEK_WRITE:
            return Seek(data, length);
        case ZIP_SOURCE_COMMIT_WRITE:
            return Flush() ? 0 : Fail(ZIP_ER_WRITE, EIO);
        default:
            return Fail(ZIP_ER_OPNOTSUPP, 0);
        }
    }

    zip_int64_t Fail(int code, int systemCode) {
        zip_error_set(&error_, code, systemCode);
        return -1;
    }

    zip_int64_t Write(const char* bytes, qint64 count) {
        const qint64 over = qMin<qint64>(pending_.size() - position_, count);
        pending_.replace(int(position_), int(over), bytes, int(over));
        pending_.append(bytes + over, int(count - over));
        position_ += count;
        // Data that cannot be held whole is never reached by Seek: then libzip fails, and with it the
        // archive.
        return pending_.size() < LARGEST_PENDING || Flush() ? count : Fail(ZIP_ER_WRITE, EIO);
    }

    zip_int64_t Seek(void* data, zip_uint64_t length) {
        const zip_int64_t wanted = zip_source_seek_compute_offset(
            static_cast<zip_uint64_t>(flushed_ + position_),
            static_cast<zip_uint64_t>(flushed_ + pending_.size()), data, length, &error_);
        if (wanted < 0) {
            return -1;
        }
        if (wanted < flushed_ || wanted > flushed_ + pending_.size()) {
            return Fail(ZIP_ER_SEEK, EINVAL);
        }
        const bool isMemberDone = position_ < pending_.size() && wanted == flushed_ + pending_.size();
        position_ = wanted - flushed_;
        return !isMemberDone || Flush() ? 0 : Fail(ZIP_ER_WRITE, EIO);
    }

    bool Flush() {
        const bool written = file_.Write(pending_);
        flushed_ += pending_.size();
        pending_.resize(0); // keeps its memory
        position_ = 0;
        return written;
    }

    /// A member is a picture or a text, and fits into a QByteArray with its header.
    static constexpr int LARGEST_PENDING = 0x7f000000;

    WholeFile& file_;
    zip_error_t error_;
    qint64 flushed_ = 0;  // bytes
    QByteArray pending_;  // follows them
    qint64 position_ = 0; // in it
    bool shortOfMemory_ = false;
};

void ZipWriter::Add(const QString& name, const QByteArray& bytes, Packing packing) {
    members_.push_back({name.toUtf8(), bytes, packing});
}

QString ZipWriter::Refusal(qint64 bytesToCome, int membersToCome) const {
    constexpr qint64 nameToCome = 64; // bytes, more than any has
    qint64 bytes = DIRECTORY_END_BYTES + bytesToCome +
                   membersToCome * (LOCAL_HEADER_BYTES + DIRECTORY_ENTRY_BYTES + 2 * nameToCome);
    for (const Member& member : members_) {
        bytes += LOCAL_HEADER_BYTES + DIRECTORY_ENTRY_BYTES + 2LL * member.name.size() + member.bytes.size();
    }
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

bool ZipWriter::AddTo(zip* archive) const {
    for (const Member& member : members_) {
        zip_source_t* const bytes = zip_source_buffer(archive, member.bytes.constData(),
                                                      static_cast<zip_uint64_t>(member.bytes.size()), 0);
        const zip_int64_t index =
            bytes ? zip_file_add(archive, member.name.constData(), bytes, ZIP_FL_ENC_UTF_8) : -1;
        if (index < 0) {
            zip_source_free(bytes);
            return false;
        }
        const auto place = static_cast<zip_uint64_t>(index);
        const auto method = member.packing == Packing::Stored ? ZIP_CM_STORE : ZIP_CM_DEFLATE;
        if (zip_set_file_compression(archive, place, method, 0) != 0 ||
            zip_file_set_dostime(archive, place, NO_TIME, NO_DATE, 0) != 0) {
            return false;
        }
    }
    return true;
}

QString ZipWriter::Write(const QString& path, const Progress& progress) const {
    QString refusal = Refusal();
    if (!refusal.isEmpty()) {
        return refusal;
    }
    WholeFile file(path);
    if (!file.Fault().isEmpty()) {
        return file.Fault();
    }
    Sink sink(file);
    zip_error_t error;
    zip_error_init(&error);
    const ScopeExit ended([&error] { zip_error_fini(&error); });
    zip_source_t* const target = zip_source_function_create(&Sink::Handle, &sink, &error);
    zip_t* const archive = target ? zip_open_from_source(target, ZIP_CREATE | ZIP_TRUNCATE, &error) : nullptr;
    if (!archive) {
        zip_source_free(target);
        return QString::fromUtf8(zip_error_strerror(&error));
    }
    std::unique_ptr<zip_t, void (*)(zip_t*)> open(archive, zip_discard);
    ZipWatch watch{progress, false};
    if (progress) {
        zip_register_progress_callback_with_state(archive, 0.01, &ZipWatch::Tell, nullptr, &watch);
        zip_register_cancel_callback_with_state(archive, &ZipWatch::IsStopped, nullptr, &watch);
    }
    // Until it is closed, the archive only remembers where the bytes are.
    if (!AddTo(archive) || zip_close(archive) != 0) {
        if (sink.WasShortOfMemory()) {
            throw std::bad_alloc();
        }
        return file.Fault().isEmpty() ? QString::fromUtf8(zip_strerror(archive)) : file.Fault();
    }
    static_cast<void>(open.release()); // it is closed
    file.Commit();
    return file.Fault();
}

} // namespace vellix
