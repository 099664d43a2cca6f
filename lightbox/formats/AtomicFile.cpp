#include "formats/AtomicFile.h"

#include "formats/FileError.h"

namespace lightbox {
namespace {

constexpr std::size_t BUFFER_SIZE = 1 << 16;

} // namespace

AtomicFile::Buffer::Buffer(WholeFile& file)
    : file_(file)
    , pending_(BUFFER_SIZE) {
    setp(pending_.data(), pending_.data() + pending_.size());
}

bool AtomicFile::Buffer::Drain() {
    const bool written = file_.Write(pbase(), static_cast<std::size_t>(pptr() - pbase()));
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
    return Drain() && file_.Write(bytes, static_cast<std::size_t>(count)) ? count : 0;
}

int AtomicFile::Buffer::sync() {
    return Drain() ? 0 : -1;
}

AtomicFile::AtomicFile(const std::string& path)
    : path_(path)
    , file_(path)
    , buffer_(file_)
    , stream_(&buffer_) {
    CheckFault();
}

void AtomicFile::CheckFault() const {
    if (!file_.Fault().empty()) {
        throw FileError("Could not write \"" + path_ + "\": " + file_.Fault() + ".");
    }
}

void AtomicFile::Commit() {
    stream_.flush();
    CheckFault();
    if (!stream_) {
        throw FileError("Could not write \"" + path_ + "\": a part of the content could not be written.");
    }
    file_.Commit();
    CheckFault();
}

} // namespace lightbox
