#pragma once

#include <istream>
#include <streambuf>
#include <string_view>

namespace lightbox {

/// An input stream over bytes in memory. It borrows the bytes, which must outlive it.
class MemoryStream : public std::istream {
public:
    explicit MemoryStream(std::string_view bytes)
        : std::istream(nullptr)
        , buffer_(bytes) {
        rdbuf(&buffer_);
    }

private:
    class Buffer : public std::streambuf {
    public:
        explicit Buffer(std::string_view bytes) {
            char* begin = const_cast<char*>(bytes.data());
            setg(begin, begin, begin + bytes.size());
        }

    private:
        pos_type seekoff(off_type offset, std::ios_base::seekdir direction,
                         std::ios_base::openmode) override {
            const off_type base = direction == std::ios_base::beg   ? 0
                                  : direction == std::ios_base::cur ? gptr() - eback()
                                                                    : egptr() - eback();
            const off_type target = base + offset;
            if (target < 0 || target > egptr() - eback()) {
                return pos_type(off_type(-1));
            }
            setg(eback(), eback() + target, egptr());
            return pos_type(target);
        }
        pos_type seekpos(pos_type position, std::ios_base::openmode mode) override {
            return seekoff(off_type(position), std::ios_base::beg, mode);
        }
    };

    Buffer buffer_;
};

} // namespace lightbox
