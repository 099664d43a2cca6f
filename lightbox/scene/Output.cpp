#include "scene/Output.h"

#include <cstdio>

namespace lightbox {

void Output::Error(const std::string& text) {
    ++errors_;
    lastError_ = text;
    if (collector_) {
        collector_->shown_.push_back({errors_, text});
    }
    Write(Kind::Error, text);
}

void Output::ForgiveErrors(int count) {
    errors_ = count;
    for (ErrorCollector* collector = collector_; collector; collector = collector->outer_) {
        while (!collector->shown_.empty() && collector->shown_.back().number > count) {
            collector->shown_.pop_back();
        }
    }
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

void Output::Log(Kind kind, const std::string& text) const {
    if (log_) {
        log_(kind, text);
    }
}

void Output::Write(Kind kind, const std::string& text) {
    Log(kind, text);
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

ErrorCollector::ErrorCollector(Output& output)
    : output_(output)
    , outer_(output.collector_) {
    output_.collector_ = this;
}

ErrorCollector::~ErrorCollector() {
    output_.collector_ = outer_;
}

std::vector<std::string> ErrorCollector::Texts() const {
    std::vector<std::string> texts;
    for (const Shown& shown : shown_) {
        texts.push_back(shown.text);
    }
    return texts;
}

} // namespace lightbox
