#include "mel/GlobalVariables.h"

#include <algorithm>

namespace lightbox::mel {

GlobalVariable* GlobalVariables::Find(std::string_view name) const {
    const auto found = variables_.find(std::string(name));
    return found == variables_.end() ? nullptr : found->second.get();
}

GlobalVariable& GlobalVariables::Add(std::string_view name, Type type) {
    auto variable = std::make_unique<GlobalVariable>();
    variable->name = std::string(name);
    variable->type = type;
    variable->value = Value::Default(type);
    GlobalVariable& added = *variable;
    variables_[added.name] = std::move(variable);
    if (onTrial_) {
        added_.push_back(added.name);
    }
    return added;
}

std::vector<std::string> GlobalVariables::Names() const {
    std::vector<std::string> names;
    for (const auto& variable : variables_) {
        names.push_back(variable.first);
    }
    std::sort(names.begin(), names.end());
    return names;
}

GlobalVariables::Trial::Trial(GlobalVariables& variables)
    : variables_(variables) {
    variables_.added_.clear();
    variables_.onTrial_ = true;
}

GlobalVariables::Trial::~Trial() {
    if (!keep_) {
        for (const std::string& name : variables_.added_) {
            variables_.variables_.erase(name);
        }
    }
    variables_.onTrial_ = false;
    variables_.added_.clear();
}

} // namespace lightbox::mel
