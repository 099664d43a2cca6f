#include "shell/MessageLog.h"

#include "mel/Error.h"
#include "mel/Interpreter.h"

#include <cstdio>

namespace lightbox {

MessageLog::MessageLog(Output& output, mel::Interpreter& interpreter)
    : output_(output)
    , interpreter_(interpreter) {
    before_ = output_.SetSink(nullptr);
    output_.SetSink([this](Output::Kind kind, const std::string& text) {
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
    output_.SetSink(before_);
}

bool MessageLog::RunTyped(const QString& text) {
    Q_EMIT Typed(text);
    try {
        const mel::Value result = interpreter_.Execute(text.toStdString());
        if (!result.IsNone() && !(result.IsString() && result.Text().empty())) {
            output_.Result(result.Shown());
        }
        return true;
    } catch (const mel::Error& error) {
        interpreter_.Report(error);
        return false;
    }
}

} // namespace lightbox
