#include "mel/ParsedArguments.h"

#include "mel/Error.h"
#include "text/NumberText.h"

#include <maya/MTime.h>

#include <optional>

namespace lightbox::mel {

namespace {

bool IsQueryFlag(std::string_view name) {
    return name == "q" || name == "query";
}
bool IsEditFlag(std::string_view name) {
    return name == "e" || name == "edit";
}

const char* Expected(MSyntax::MArgType type) {
    switch (type) {
    case MSyntax::kBoolean:
        return "a boolean";
    case MSyntax::kLong:
        return "an int";
    case MSyntax::kUnsigned:
        return "an unsigned int";
    case MSyntax::kTime:
        return "a time";
    case MSyntax::kString:
    case MSyntax::kSelectionItem:
        return "a string";
    default:
        return "a numeric";
    }
}

/// Whether a value is a number, possibly with a unit after it.
bool IsMeasure(const Value& value) {
    double number = 0.0;
    std::string_view rest;
    return value.IsNumber() || (value.IsString() && ReadNumber(value.Text(), number, &rest) &&
                                rest.find_first_not_of("abcdefghijklmnopqrstuvwxyz") == rest.npos);
}

bool Fits(MSyntax::MArgType type, const Value& value) {
    bool boolean = false;
    int integer = 0;
    unsigned natural = 0;
    double number = 0.0;
    MTime time;
    switch (type) {
    case MSyntax::kBoolean:
        return ReadBool(value, boolean);
    case MSyntax::kLong:
        return ReadInt(value, integer);
    case MSyntax::kUnsigned:
        return ReadUnsigned(value, natural);
    case MSyntax::kDouble:
        return ReadDouble(value, number);
    case MSyntax::kTime:
        return ReadTime(value, time);
    case MSyntax::kDistance:
    case MSyntax::kAngle:
        return IsMeasure(value);
    default:
        return value.IsString();
    }
}

} // namespace

ParsedArguments::ParsedArguments(const MSyntax& syntax, ArgumentTokens tokens, bool takesNotFinite)
    : syntax_(SyntaxTable::Share(syntax))
    , tokens_(std::move(tokens))
    , takesNotFinite_(takesNotFinite) {
    FindMode();
    // A mode flag changes how the flags before it are parsed.
    while (!Parse()) {
        uses_.clear();
        objects_.clear();
        commandArguments_.clear();
    }
    CheckObjects();
}

void ParsedArguments::FindMode() {
    for (std::size_t i = 0; i < tokens_.Count(); ++i) {
        if (tokens_.TokenAt(i).form != ArgumentForm::FlagWord) {
            continue;
        }
        const std::string_view name = WithoutHyphen(tokens_.At(i).Text());
        isQuery_ = isQuery_ || (syntax_->canQuery && IsQueryFlag(name));
        isEdit_ = isEdit_ || (syntax_->canEdit && IsEditFlag(name));
    }
}

bool ParsedArguments::BeginsFlag(std::size_t index) const {
    const bool isData = tokens_.TokenAt(index).form == ArgumentForm::Quoted && !objects_.empty();
    return !isData && LooksLikeFlag(tokens_.At(index));
}

bool ParsedArguments::Parse() {
    for (std::size_t i = 0; i < tokens_.Count();) {
        if (!BeginsFlag(i)) {
            AddObject(tokens_.At(i));
            ++i;
        } else if (!ParseFlag(i)) {
            return false;
        }
    }
    return true;
}

/// Returns false when the mode changed.
bool ParsedArguments::ParseFlag(std::size_t& index) {
    const std::string& text = tokens_.At(index).Text();
    const std::string_view name = WithoutHyphen(text);
    if ((syntax_->canQuery && IsQueryFlag(name)) || (syntax_->canEdit && IsEditFlag(name))) {
        bool& mode = IsQueryFlag(name) ? isQuery_ : isEdit_;
        const bool changed = !mode;
        mode = true;
        ++index;
        return !changed;
    }
    bool isAmbiguous = false;
    const SyntaxTable::Flag* const flag = syntax_->FindTyped(name, isAmbiguous);
    if (!flag) {
        throw Error((isAmbiguous ? "Ambiguous flag '" : "Invalid flag '") + text + "'",
                    Error::Kind::InvalidFlag);
    }
    if (!flag->isMultiUse && UseCount(flag->longName) > 0) {
        throw Error("Flag '" + text + "' cannot be used more than once");
    }
    Use use;
    use.flag = flag;
    use.position = index++;
    use.firstArgument = index;
    ParseFlagArguments(use, index);
    uses_.push_back(use);
    return true;
}

void ParsedArguments::ParseFlagArguments(Use& use, std::size_t& index) {
    if (isQuery_ && !use.flag->keepsArgumentsInQuery) {
        return;
    }
    const bool isOptional = isQuery_ && !use.flag->needsArgumentsInQuery;
    for (const MSyntax::MArgType type : use.flag->arguments) {
        if (TakeNotFinite(use, type, index)) {
            ++use.argumentCount;
            ++index;
            continue;
        }
        // Only a bare word is certainly a flag: a quoted text may begin with a hyphen.
        const bool isThere = index < tokens_.Count() && tokens_.TokenAt(index).form != ArgumentForm::FlagWord;
        const bool isNumber = use.flag->takesNumbers && isThere && tokens_.At(index).IsNumber();
        if (!isThere || !(isNumber || Fits(type, tokens_.At(index)))) {
            if (isOptional) {
                return;
            }
            throw Error("Flag '" + tokens_.At(use.position).Text() + "' must be passed " + Expected(type) +
                        (use.flag->arguments.size() > 1
                             ? " argument as number " + std::to_string(use.argumentCount + 1) + " of " +
                                   std::to_string(use.flag->arguments.size())
                             : " argument"));
        }
        ++use.argumentCount;
        ++index;
    }
}

bool ParsedArguments::TakeNotFinite(const Use& use, MSyntax::MArgType type, std::size_t index) {
    const bool isNumber = type == MSyntax::kDouble || type == MSyntax::kLong || type == MSyntax::kUnsigned;
    if (!takesNotFinite_ || !isNumber || index >= tokens_.Count() || !tokens_.At(index).IsString()) {
        return false;
    }
    const std::optional<double> number = NotFiniteNumber(tokens_.At(index).Text());
    if (number && type != MSyntax::kDouble) {
        throw Error("Invalid number '" + tokens_.At(index).Text() + "' of the flag '" +
                        tokens_.At(use.position).Text() + "'",
                    Error::Kind::InvalidFlag);
    }
    if (number) {
        tokens_.Replace(index, Value(*number));
    }
    return number.has_value();
}

void ParsedArguments::AddObject(const Value& value) {
    const std::size_t own = commandArguments_.size();
    if (own < syntax_->arguments.size()) {
        if (!Fits(syntax_->arguments[own], value)) {
            throw Error("Argument " + std::to_string(own + 1) + " must be " +
                        Expected(syntax_->arguments[own]) + " argument");
        }
        commandArguments_.push_back(value);
        return;
    }
    objects_.push_back(value);
}

void ParsedArguments::CheckObjects() const {
    const bool takesNone = syntax_->objectFormat == MSyntax::kNone;
    const std::size_t most = takesNone ? 0 : syntax_->maximumObjects;
    if (objects_.size() > most) {
        throw Error("Too many objects or values.");
    }
    if (!takesNone && !syntax_->usesSelection && objects_.size() < syntax_->minimumObjects) {
        throw Error("Not enough objects or values.");
    }
    if (!isQuery_ && !isEdit_ && commandArguments_.size() < syntax_->arguments.size()) {
        throw Error("Not enough objects or values.");
    }
}

unsigned ParsedArguments::UseCount(std::string_view flag) const {
    const SyntaxTable::Flag* const wanted = syntax_->Find(flag);
    unsigned count = 0;
    for (const Use& use : uses_) {
        count += use.flag == wanted ? 1 : 0;
    }
    return count;
}

const ParsedArguments::Use* ParsedArguments::Find(std::string_view flag, unsigned occurrence) const {
    const SyntaxTable::Flag* const wanted = syntax_->Find(flag);
    for (const Use& use : uses_) {
        if (wanted && use.flag == wanted && occurrence-- == 0) {
            return &use;
        }
    }
    return nullptr;
}

const Value* ParsedArguments::Argument(std::string_view flag, unsigned index, unsigned occurrence) const {
    const Use* const use = Find(flag, occurrence);
    return use && index < use->argumentCount ? &tokens_.At(use->firstArgument + index) : nullptr;
}

} // namespace lightbox::mel
