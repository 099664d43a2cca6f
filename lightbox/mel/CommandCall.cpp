#include "mel/CommandCall.h"

#include "mel/ArgumentTokens.h"
#include "mel/Error.h"
#include "mel/Interpreter.h"
#include "mel/ParsedArguments.h"
#include "scene/Host.h"
#include "scene/Output.h"
#include "text/NumberText.h"

namespace lightbox::mel {

Host& CommandCall::GetHost() const {
    return interpreter_.GetHost();
}

bool CommandCall::IsQuery() const {
    return parsed_ && parsed_->IsQuery();
}

bool CommandCall::IsEdit() const {
    return parsed_ && parsed_->IsEdit();
}

bool CommandCall::Has(const char* flag) const {
    return parsed_ && parsed_->Find(flag) != nullptr;
}

unsigned CommandCall::UseCount(const char* flag) const {
    return parsed_ ? parsed_->UseCount(flag) : 0;
}

const Value& CommandCall::Argument(const char* flag, unsigned index, unsigned use) const {
    const Value* const value = parsed_ ? parsed_->Argument(flag, index, use) : nullptr;
    if (!value) {
        Fail(std::string("Flag '") + flag + "' must be passed an argument");
    }
    return *value;
}

bool CommandCall::Bool(const char* flag, unsigned index, unsigned use) const {
    bool result = false;
    if (!ReadBool(Argument(flag, index, use), result)) {
        Fail(std::string("Flag '") + flag + "' must be passed a boolean argument");
    }
    return result;
}

int CommandCall::Int(const char* flag, unsigned index, unsigned use) const {
    int result = 0;
    if (!ReadInt(Argument(flag, index, use), result)) {
        Fail(std::string("Flag '") + flag + "' must be passed an int argument");
    }
    return result;
}

double CommandCall::Float(const char* flag, unsigned index, unsigned use) const {
    double result = 0.0;
    const Value& value = Argument(flag, index, use);
    // A number may have a unit after it.
    if (!ReadDouble(value, result) && !(value.IsString() && ReadNumber(value.Text(), result))) {
        Fail(std::string("Flag '") + flag + "' must be passed a numeric argument");
    }
    return result;
}

const std::string& CommandCall::String(const char* flag, unsigned index, unsigned use) const {
    const Value& value = Argument(flag, index, use);
    if (!value.IsString()) {
        Fail(std::string("Flag '") + flag + "' must be passed a string argument");
    }
    return value.Text();
}

int CommandCall::IntOr(const char* flag, int fallback) const {
    return parsed_ && parsed_->Argument(flag, 0) ? Int(flag) : fallback;
}

double CommandCall::FloatOr(const char* flag, double fallback) const {
    return parsed_ && parsed_->Argument(flag, 0) ? Float(flag) : fallback;
}

std::string CommandCall::StringOr(const char* flag, const std::string& fallback) const {
    return parsed_ && parsed_->Argument(flag, 0) ? String(flag) : fallback;
}

const std::vector<Value>& CommandCall::Objects() const {
    return arguments_;
}

std::vector<std::string> CommandCall::ObjectNames() const {
    std::vector<std::string> names;
    names.reserve(arguments_.size());
    for (const Value& object : arguments_) {
        names.push_back(object.AsString());
    }
    return names;
}

const Value& CommandCall::Object(std::size_t index) const {
    if (index >= arguments_.size()) {
        Fail("Not enough objects or values.");
    }
    return arguments_[index];
}

void CommandCall::Warn(const std::string& message) const {
    GetHost().output().Warning(message);
}

Value CommandCall::Answer(std::initializer_list<std::pair<const char*, Value>> answers) const {
    for (const auto& [flag, answer] : answers) {
        if (Has(flag)) {
            return answer;
        }
    }
    Fail("Nothing was asked for.");
}

void CommandCall::Fail(const std::string& message) const {
    throw Error(message);
}

} // namespace lightbox::mel
