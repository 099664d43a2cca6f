#include "shell/MessageLog.h"

#include "mel/Error.h"
#include "mel/Interpreter.h"
#include "scene/Host.h"

#include <cstdio>

namespace lightbox {

MessageLog::MessageLog(Host& host)
    : host_(host) {
    before_ = host_.output().SetSink(nullptr);
    host_.output().SetSink([this](Output::Kind kind, const std::string& text) {
        if (before_) {
            before_(kind, text);
        } else {
            const std::string line = Output::Worded(kind, text);
            std::FILE* const stream = kind == Output::Kind::Print ? stdout : stderr;
            std::fwrite(line.data(), 1, line.size(), stream);
            std::fflush(stream);
        }
        Q_EMIT Said(kind, QString::fromStdString(Output::Worded(kind, text)));
    });
}

MessageLog::~MessageLog() {
    host_.output().SetSink(before_);
}

bool MessageLog::RunTyped(const QString& text) {
    Q_EMIT Typed(text);
    try {
        const mel::Value result = host_.interpreter().Execute(text.toStdString());
        if (!result.IsNone() && !(result.IsString() && result.Text().empty())) {
            host_.output().Result(result.Shown());
        }
        return true;
    } catch (const mel::Error& error) {
        host_.interpreter().Report(error);
        return false;
    }
}

} // namespace lightbox
