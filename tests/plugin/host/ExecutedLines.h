#pragma once

#include <string>
#include <utility>
#include <vector>

namespace vellix {

/// While an object exists, it keeps every line that the plug-in executes. With KeepOnly the lines do not
/// reach the host, and count as successful.
class ExecutedLines {
public:
    enum class Mode { KeepOnly, KeepAndExecute };

    explicit ExecutedLines(Mode mode = Mode::KeepOnly);
    ~ExecutedLines();
    ExecutedLines(const ExecutedLines&) = delete;
    ExecutedLines& operator=(const ExecutedLines&) = delete;

    const std::vector<std::string>& Lines() const { return lines_; }
    /// The lines since the last call.
    std::vector<std::string> Take() { return std::exchange(lines_, {}); }
    bool Executes() const { return mode_ == Mode::KeepAndExecute; }

    /// The latest object that exists, or null.
    static ExecutedLines* Current();
    void Keep(const std::string& line, bool displayEnabled, bool undoEnabled) {
        lines_.push_back(line);
        plain_ = plain_ && !displayEnabled && !undoEnabled;
    }
    /// Whether all lines were executed without echo and without undo.
    bool ArePlain() const { return plain_; }

private:
    Mode mode_;
    ExecutedLines* outer_;
    std::vector<std::string> lines_;
    bool plain_ = true;
};

} // namespace vellix
