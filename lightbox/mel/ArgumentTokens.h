#pragma once

#include "mel/ArgumentForm.h"
#include "mel/Value.h"

#include <maya/MArgList.h>

#include <string>
#include <string_view>
#include <vector>

namespace lightbox::mel {

struct CallArguments;

/// The arguments of a command or the tokens of an attribute's data: single numbers and texts, with arrays
/// flattened. Texts are shared with their source values, not copied. An MArgList holds one of these.
class ArgumentTokens {
public:
    struct Token {
        Value value;
        ArgumentForm form = ArgumentForm::Computed;
    };

    ArgumentTokens() = default;
    explicit ArgumentTokens(const CallArguments& arguments);
    explicit ArgumentTokens(std::vector<Value> values);

    std::size_t Count() const { return tokens_.size(); }
    const Value& At(std::size_t index) const { return tokens_[index].value; }
    const Token& TokenAt(std::size_t index) const { return tokens_[index]; }
    void Replace(std::size_t index, Value value) { tokens_[index].value = std::move(value); }
    void Add(Value value) { tokens_.push_back({std::move(value), ArgumentForm::Computed}); }

    static MArgList Wrap(ArgumentTokens tokens);
    static const ArgumentTokens& Of(const MArgList& list) { return *list.tokens_; }

private:
    std::vector<Token> tokens_;
};

/// Whether a token looks like a flag: a hyphen followed by a letter.
bool LooksLikeFlag(const Value& value);

/// Convert one argument. Return false for a value of another type. A text that reads as a number is a number.
bool ReadBool(const Value& value, bool& result);
bool ReadInt(const Value& value, int& result);
bool ReadUnsigned(const Value& value, unsigned& result);
bool ReadDouble(const Value& value, double& result);
/// Reads a number in the UI time unit, or a number with its own unit: "2sec", "10film".
bool ReadTime(const Value& value, MTime& result);

} // namespace lightbox::mel
