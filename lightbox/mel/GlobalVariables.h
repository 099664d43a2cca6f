#pragma once

#include "mel/Value.h"
#include "scene/NonCopyable.h"

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lightbox::mel {

/// A variable visible in every text. `type` is `Any` for a variable introduced by a command's result, until
/// it gets its first value.
struct GlobalVariable {
    std::string name;
    Type type = Type::Any;
    Value value;
    /// Inside a procedure, a global is initialised only the first time.
    bool isInitialised = false;
};

/// The global variables by name. Their addresses never change.
class GlobalVariables {
public:
    GlobalVariable* Find(std::string_view name) const;
    /// Adds a variable with the default value of its type. The name must be free.
    GlobalVariable& Add(std::string_view name, Type type);
    std::vector<std::string> Names() const;

    /// Removes, on destruction, the variables added during its lifetime, unless Keep() was called: a text
    /// with an error must not leave declarations behind.
    class Trial : NonCopyable {
    public:
        explicit Trial(GlobalVariables& variables);
        ~Trial();
        void Keep() { keep_ = true; }

    private:
        GlobalVariables& variables_;
        bool keep_ = false;
    };

private:
    std::unordered_map<std::string, std::unique_ptr<GlobalVariable>> variables_;
    std::vector<std::string> added_;
    bool onTrial_ = false;
};

} // namespace lightbox::mel
