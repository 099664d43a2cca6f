#pragma once

#include <string>
#include <utility>
#include <vector>

namespace vellix {

/// While one lives, every line that the plug-in has the host execute is kept. It is not executed and counts
/// as done, unless it is asked for too.
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

    /// The innermost one that lives, or null.
    static ExecutedLines* Current();
    void Keep(const std::string& line, bool displayEnabled, bool undoEnabled) {
        m_lines.push_back(line);
        m_plain = m_plain && !displayEnabled && !undoEnabled;
    }
    /// Were all of them executed without asking for their echo or their undo?
    bool ArePlain() const { return m_plain; }

private:
    Mode m_mode;
    ExecutedLines* m_outer;
    std::vector<std::string> m_lines;
    bool m_plain = true;
};

} // namespace vellix
