#pragma once

#include "mel/ArgumentForm.h"
#include "mel/Value.h"

#include <maya/MArgList.h>

#include <string>
#include <string_view>
#include <vector>

namespace lightbox::mel {

struct CallArguments;

/// The arguments of a command or the tokens of an attribute's data: numbers and texts one by one, arrays
/// taken apart. Texts are shared with the values they came from, not copied. It is what an MArgList holds.
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
    void Add(Value value) { tokens_.push_back({std::move(value), ArgumentForm::Computed}); }

    static MArgList Wrap(ArgumentTokens tokens);
    static const ArgumentTokens& Of(const MArgList& list) { return *list.tokens_; }

private:
    std::vector<Token> tokens_;
};

/// The text of a token that is a flag where one may stand: a hyphen and a letter.
bool LooksLikeFlag(const Value& value);

/// Conversions of one argument; false when it is of another kind. Texts that read as numbers are numbers.
bool ReadBool(const Value& value, bool& result);
bool ReadInt(const Value& value, int& result);
bool ReadUnsigned(const Value& value, unsigned& result);
bool ReadDouble(const Value& value, double& result);
/// A number in the UI unit, or a number with its unit: "2sec", "10film".
bool ReadTime(const Value& value, MTime& result);

} // namespace lightbox::mel
