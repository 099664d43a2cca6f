#pragma once

#include "mel/Value.h"
#include "scene/NonCopyable.h"

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lightbox::mel {

/// A variable that every text sees. `type` is `Any` until the first value of a variable that was introduced
/// by a command's result.
struct GlobalVariable {
    std::string name;
    Type type = Type::Any;
    Value value;
    /// A global's initial value inside a procedure counts only once.
    bool isInitialised = false;
};

/// The global variables by name. Their addresses never change.
class GlobalVariables {
public:
    GlobalVariable* Find(std::string_view name) const;
    /// A new variable with its type's default. There must be none of that name.
    GlobalVariable& Add(std::string_view name, Type type);
    std::vector<std::string> Names() const;

    /// Forgets the variables that were added since it was made, unless Keep() is called: the declarations of
    /// a text that turns out to be wrong must not stay.
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
