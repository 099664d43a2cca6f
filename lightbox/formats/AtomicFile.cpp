#include "formats/AtomicFile.h"

#include "formats/FileError.h"

namespace lightbox {
namespace {

constexpr std::size_t BUFFER_SIZE = 1 << 16;

} // namespace

AtomicFile::Buffer::Buffer(QSaveFile& file)
    : file_(file)
    , pending_(BUFFER_SIZE) {
    setp(pending_.data(), pending_.data() + pending_.size());
}

bool AtomicFile::Buffer::Drain() {
    const auto count = pptr() - pbase();
    const bool written = file_.write(pbase(), count) == count;
    setp(pending_.data(), pending_.data() + pending_.size());
    return written;
}

AtomicFile::Buffer::int_type AtomicFile::Buffer::overflow(int_type character) {
    if (!Drain()) {
        return traits_type::eof();
    }
    if (!traits_type::eq_int_type(character, traits_type::eof())) {
        sputc(traits_type::to_char_type(character));
    }
    return traits_type::not_eof(character);
}

std::streamsize AtomicFile::Buffer::xsputn(const char* bytes, std::streamsize count) {
    if (count <= epptr() - pptr()) {
        return std::streambuf::xsputn(bytes, count);
    }
    // A drawing's images come as large blocks. They bypass the buffer, which saves a copy.
    return Drain() && file_.write(bytes, count) == count ? count : 0;
}

int AtomicFile::Buffer::sync() {
    return Drain() ? 0 : -1;
}

AtomicFile::AtomicFile(const std::string& path)
    : file_(QString::fromStdString(path))
    , buffer_(file_)
    , stream_(&buffer_) {
    if (!file_.open(QIODevice::WriteOnly)) {
        throw FileError("Could not write \"" + path + "\": " + file_.errorString().toStdString() + ".");
    }
}

void AtomicFile::Commit() {
    stream_.flush();
    if (!stream_ || !file_.commit()) {
        const std::string reason = file_.errorString().toStdString();
        file_.cancelWriting();
        throw FileError("Could not write \"" + file_.fileName().toStdString() + "\": " + reason + ".");
    }
}

} // namespace lightbox
