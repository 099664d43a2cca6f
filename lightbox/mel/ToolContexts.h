#pragma once

#include <map>
#include <string>

namespace lightbox::mel {

/// The tool contexts by name, and which one is current. Context commands of plug-ins add theirs.
class ToolContexts {
public:
    bool Exists(const std::string& name) const { return classes_.count(name) != 0; }
    /// The command that made it, or what kind it is.
    std::string ClassOf(const std::string& name) const {
        const auto found = classes_.find(name);
        return found == classes_.end() ? std::string() : found->second;
    }
    void Add(const std::string& name, const std::string& contextClass) { classes_[name] = contextClass; }
    /// A current one that goes leaves the selection tool current.
    void Remove(const std::string& name) {
        classes_.erase(name);
        if (current_ == name) {
            current_ = SelectionTool;
        }
    }

    const std::string& Current() const { return current_; }
    void SetCurrent(const std::string& name) { current_ = name; }

private:
    static constexpr const char* SelectionTool = "selectSuperContext";

    std::map<std::string, std::string> classes_{{SelectionTool, "select"},
                                                {"moveSuperContext", "manipMove"},
                                                {"RotateSuperContext", "manipRotate"},
                                                {"scaleSuperContext", "manipScale"}};
    std::string current_ = SelectionTool;
};

} // namespace lightbox::mel
