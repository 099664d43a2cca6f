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

    const std::vector<std::string>& Lines() const { return m_lines; }
    /// The lines since the last call.
    std::vector<std::string> Take() { return std::exchange(m_lines, {}); }
    bool Executes() const { return m_mode == Mode::KeepAndExecute; }

    /// The latest object that exists, or null.
    static ExecutedLines* Current();
    void Keep(const std::string& line, bool displayEnabled, bool undoEnabled) {
        m_lines.push_back(line);
        m_plain = m_plain && !displayEnabled && !undoEnabled;
    }
    /// Whether all lines were executed without echo and without undo.
    bool ArePlain() const { return m_plain; }

private:
    Mode m_mode;
    ExecutedLines* m_outer;
    std::vector<std::string> m_lines;
    bool m_plain = true;
};

} // namespace vellix
