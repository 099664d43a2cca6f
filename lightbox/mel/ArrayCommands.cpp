#include "mel/CommandRegistry.h"
#include "mel/Operations.h"
#include "mel/Registration.h"
#include "text/TextUtil.h"

#include <algorithm>
#include <unordered_set>

namespace lightbox::mel {

namespace {

using Strings = Value::StringArray;

/// The array argument itself: changes to it reach the caller's variable.
Strings& StringsArgument(CommandCall& call, std::size_t index) {
    const Value& value = call.Object(index);
    if (value.GetType() != Type::StringArray) {
        call.Fail("Argument " + std::to_string(index + 1) + " of \"" + call.Name() +
                  "\" has to be an array of strings.");
    }
    return value.Strings();
}

Value Clear(CommandCall& call) {
    const Value& array = call.Object(0);
    if (!array.IsArray()) {
        call.Fail("Only an array can be cleared.");
    }
    Value shared = array;
    shared.ReplaceContent(Value::Default(array.GetType()));
    return Value();
}

Value Size(CommandCall& call) {
    const Value& value = call.Object(0);
    return static_cast<int>(value.IsString() ? CharacterCount(value.Text()) : value.Size());
}

Value Sorted(CommandCall& call) {
    Value sorted = call.Object(0).Detached();
    switch (sorted.GetType()) {
    case Type::IntArray:
        std::sort(sorted.Ints().begin(), sorted.Ints().end());
        break;
    case Type::FloatArray:
        // NaN sorts to the end, so that the order is well defined.
        std::sort(sorted.Floats().begin(), sorted.Floats().end(),
                  [](double a, double b) { return a == a && (b != b || a < b); });
        break;
    case Type::StringArray:
        std::sort(sorted.Strings().begin(), sorted.Strings().end());
        break;
    default:
        call.Fail("Only an array of ints, floats or strings can be sorted.");
    }
    return sorted;
}

Value WithoutDuplicates(CommandCall& call) {
    std::unordered_set<std::string> seen;
    Strings kept;
    for (const std::string& text : StringsArgument(call, 0)) {
        if (seen.insert(text).second) {
            kept.push_back(text);
        }
    }
    return kept;
}

/// stringArrayRemove(items, list)
Value Remove(CommandCall& call) {
    const Strings& items = StringsArgument(call, 0);
    const std::unordered_set<std::string> unwanted(items.begin(), items.end());
    Strings kept;
    for (const std::string& text : StringsArgument(call, 1)) {
        if (unwanted.count(text) == 0) {
            kept.push_back(text);
        }
    }
    return kept;
}

/// The index of the first such item from `start` on, or -1.
template <class T>
int FindFrom(const std::vector<T>& list, const T& item, int start) {
    const auto first = list.begin() + std::clamp(start, 0, static_cast<int>(list.size()));
    const auto found = std::find(first, list.end(), item);
    return found == list.end() ? -1 : static_cast<int>(found - list.begin());
}

/// stringArrayFind(item, start, list): the index, or -1.
Value Find(CommandCall& call) {
    return FindFrom(StringsArgument(call, 2), call.Object(0).AsString(), call.Object(1).AsInt());
}

/// stringArrayInsertAtIndex(index, list, item): 1 when it was inserted.
Value InsertAt(CommandCall& call) {
    Strings& list = StringsArgument(call, 1);
    const int index = call.Object(0).AsInt();
    if (index < 0 || static_cast<std::size_t>(index) > list.size()) {
        return 0;
    }
    list.insert(list.begin() + index, call.Object(2).AsString());
    return 1;
}

/// stringArrayRemoveAtIndex(index, list): 1 when it was removed.
Value RemoveAt(CommandCall& call) {
    Strings& list = StringsArgument(call, 1);
    const int index = call.Object(0).AsInt();
    if (index < 0 || static_cast<std::size_t>(index) >= list.size()) {
        return 0;
    }
    list.erase(list.begin() + index);
    return 1;
}

Value WithPrefix(CommandCall& call) {
    Strings list = StringsArgument(call, 0);
    for (std::string& text : list) {
        text.insert(0, call.Object(1).AsString());
    }
    return list;
}

/// appendStringArray(list, more, count): appends up to `count` elements.
Value Append(CommandCall& call) {
    Strings& list = StringsArgument(call, 0);
    const Strings more = StringsArgument(call, 1);
    const auto count = std::min(more.size(), static_cast<std::size_t>(std::max(0, call.Object(2).AsInt())));
    CheckArraySize(list.size() + count, sizeof(std::string));
    list.insert(list.end(), more.begin(), more.begin() + static_cast<std::ptrdiff_t>(count));
    return Value();
}

Value Concatenated(CommandCall& call) {
    Strings list = StringsArgument(call, 0);
    const Strings& more = StringsArgument(call, 1);
    CheckArraySize(list.size() + more.size(), sizeof(std::string));
    list.insert(list.end(), more.begin(), more.end());
    return list;
}

int CountOf(const Strings& list, const std::string& item) {
    return static_cast<int>(std::count(list.begin(), list.end(), item));
}

Value::IntArray IntsArgument(CommandCall& call, std::size_t index) {
    return call.Object(index).ConvertedTo(Type::IntArray).Ints();
}

/// intArrayFind(item, start, list): the index, or -1.
Value FindInt(CommandCall& call) {
    return FindFrom(IntsArgument(call, 2), call.Object(0).AsInt(), call.Object(1).AsInt());
}

void RegisterNumberArrays(CommandRegistry& registry) {
    registry.RegisterRaw("intArrayContains", 2, 2, [](CommandCall& call) {
        const Value::IntArray list = IntsArgument(call, 1);
        return Value(std::find(list.begin(), list.end(), call.Object(0).AsInt()) != list.end());
    });
    registry.RegisterRaw("intArrayCount", 2, 2, [](CommandCall& call) {
        const Value::IntArray list = IntsArgument(call, 1);
        return Value(static_cast<int>(std::count(list.begin(), list.end(), call.Object(0).AsInt())));
    });
    registry.RegisterRaw("intArrayFind", 3, 3, FindInt);
    registry.RegisterRaw("floatArrayContains", 2, 2, [](CommandCall& call) {
        const Value list = call.Object(1).ConvertedTo(Type::FloatArray);
        const double item = call.Object(0).AsFloat();
        return Value(std::find(list.Floats().begin(), list.Floats().end(), item) != list.Floats().end());
    });
}

} // namespace

void RegisterArrayCommands(CommandRegistry& registry) {
    registry.RegisterRaw("clear", 1, 1, Clear);
    registry.RegisterRaw("size", 1, 1, Size);
    registry.RegisterRaw("sort", 1, 1, Sorted);
    registry.RegisterRaw("stringArrayContains", 2, 2, [](CommandCall& call) {
        return Value(CountOf(StringsArgument(call, 1), call.Object(0).AsString()) > 0);
    });
    registry.RegisterRaw("stringArrayCount", 2, 2, [](CommandCall& call) {
        return Value(CountOf(StringsArgument(call, 1), call.Object(0).AsString()));
    });
    registry.RegisterRaw("stringArrayToString", 2, 2, [](CommandCall& call) {
        return Value(Joined(StringsArgument(call, 0), call.Object(1).AsString()));
    });
    registry.RegisterRaw("stringToStringArray", 2, 2, [](CommandCall& call) {
        return Value(Tokens(call.Object(0).AsString(), call.Object(1).AsString()));
    });
    registry.RegisterRaw("stringArrayCatenate", 2, 2, Concatenated);
    registry.RegisterRaw("stringArrayRemove", 2, 2, Remove);
    registry.RegisterRaw("stringArrayRemoveDuplicates", 1, 1, WithoutDuplicates);
    registry.RegisterRaw("stringArrayFind", 3, 3, Find);
    registry.RegisterRaw("stringArrayInsertAtIndex", 3, 3, InsertAt);
    registry.RegisterRaw("stringArrayRemoveAtIndex", 2, 2, RemoveAt);
    registry.RegisterRaw("stringArrayAddPrefix", 2, 2, WithPrefix);
    registry.RegisterRaw("appendStringArray", 3, 3, Append);
    RegisterNumberArrays(registry);
}

} // namespace lightbox::mel
