#pragma once

#include <string>
#include <vector>

namespace vellix {

/// While one lives, every line that the plug-in has the host execute is kept instead, and counts as done.
class ExecutedLines {
public:
    ExecutedLines();
    ~ExecutedLines();
    ExecutedLines(const ExecutedLines&) = delete;
    ExecutedLines& operator=(const ExecutedLines&) = delete;

    const std::vector<std::string>& Lines() const { return m_lines; }

    /// The one that lives, or null.
    static ExecutedLines* Current();
    void Keep(const std::string& line) { m_lines.push_back(line); }

private:
    std::vector<std::string> m_lines;
};

} // namespace vellix
