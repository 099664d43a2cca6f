#include "mel/VariableScope.h"

namespace lightbox::mel {

void VariableScope::OpenProcedure() {
    outerBlocks_.swap(blocks_);
    outerSlots_ = slots_;
    slots_ = 0;
    procedure_ = true;
    OpenBlock();
}

void VariableScope::CloseProcedure() {
    blocks_.clear();
    blocks_.swap(outerBlocks_);
    slots_ = outerSlots_;
    procedure_ = false;
}

std::optional<VariablePlace> VariableScope::Find(std::string_view name) const {
    for (auto block = blocks_.rbegin(); block != blocks_.rend(); ++block) {
        const auto found = block->find(name);
        if (found != block->end()) {
            return found->second;
        }
    }
    if (!procedure_) {
        if (GlobalVariable* const global = globals_.Find(name)) {
            return VariablePlace{global->type, global, 0};
        }
    }
    return std::nullopt;
}

std::optional<VariableScope::Declared> VariableScope::Declare(std::string_view name, Type type) {
    if (blocks_.empty()) {
        return DeclareGlobal(name, type);
    }
    Block& block = blocks_.back();
    const auto found = block.find(name);
    if (found != block.end()) {
        if (found->second.type != type) {
            return std::nullopt;
        }
        return Declared{found->second, true};
    }
    const VariablePlace place{type, nullptr, slots_++};
    block.emplace(name, place);
    return Declared{place, false};
}

std::optional<VariableScope::Declared> VariableScope::DeclareGlobal(std::string_view name, Type type) {
    GlobalVariable* global = globals_.Find(name);
    const bool exists = global != nullptr;
    if (exists && global->type == Type::Any && type != Type::Any && global->value.IsNone()) {
        global->type = type;
        global->value = Value::Default(type);
    }
    if (exists && global->type != type) {
        return std::nullopt;
    }
    if (!exists) {
        global = &globals_.Add(name, type);
    }
    const VariablePlace place{type, global, 0};
    if (!blocks_.empty()) {
        blocks_.back().insert_or_assign(std::string(name), place);
    }
    return Declared{place, exists};
}

} // namespace lightbox::mel
