#pragma once

#include <map>
#include <string>
#include <variant>
#include <vector>

namespace lightbox {

/// The user's option variables: named values that outlive the session. The constructor reads them from the
/// preference folder, Save() writes them there. A damaged file counts as empty.
class OptionVars {
public:
    using Value = std::variant<int, double, std::string, std::vector<int>, std::vector<double>,
                               std::vector<std::string>>;

    /// With an empty folder, nothing is read or written.
    explicit OptionVars(const std::string& folder);

    bool Has(const std::string& name) const { return values_.count(name) != 0; }
    /// Returns null when there is none.
    const Value* Find(const std::string& name) const;
    void Set(const std::string& name, Value value);
    bool Remove(const std::string& name);
    std::vector<std::string> Names() const;

    /// Writes the file if something changed. If that fails, the old file stays; returns why, else an empty
    /// string.
    std::string Save();

private:
    void Load();

    std::string file_;
    std::map<std::string, Value> values_;
    bool changed_ = false;
};

} // namespace lightbox
