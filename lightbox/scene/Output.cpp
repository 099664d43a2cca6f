#include "scene/Output.h"

#include <cstdio>

namespace lightbox {

void Output::Error(const std::string& text) {
    ++errors_;
    lastError_ = text;
    Write(Kind::Error, text);
}

Output::Sink Output::SetSink(Sink sink) {
    Sink before = std::move(sink_);
    sink_ = std::move(sink);
    return before;
}

std::string Output::Worded(Kind kind, const std::string& text) {
    switch (kind) {
    case Kind::Print:
        return text;
    case Kind::Result:
        return "// Result: " + text + " //\n";
    case Kind::Warning:
        return "// Warning: " + text + " //\n";
    case Kind::Error:
        return "// Error: " + text + " //\n";
    case Kind::Info:
        return "// " + text + " //\n";
    case Kind::Progress:
        break;
    }
    return text + "\n";
}

void Output::Write(Kind kind, const std::string& text) {
    if (log_) {
        log_(kind, text);
    }
    if (sink_) {
        // A copy, so that the sink may replace itself.
        const Sink sink = sink_;
        sink(kind, text);
        return;
    }
    const std::string line = Worded(kind, text);
    std::FILE* stream = kind == Kind::Print ? stdout : stderr;
    std::fwrite(line.data(), 1, line.size(), stream);
    std::fflush(stream);
}

} // namespace lightbox
