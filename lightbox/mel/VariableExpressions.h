#pragma once

#include "mel/Expression.h"
#include "mel/GlobalVariables.h"

#include <string>

namespace lightbox::mel {

/// A reference to a variable or element, looked up once for an operation such as `+=`. Valid only until other
/// code runs.
class VariableReference {
public:
    /// A whole variable. `type` is the declared type, `Any` for a variable that takes the type of its first
    /// value; `global` is null for a local variable.
    VariableReference(Value& slot, Type type, GlobalVariable* global)
        : slot_(slot)
        , type_(type)
        , global_(global) {}
    /// An element of the array in the slot, or a cell of the matrix.
    VariableReference(Value& slot, std::size_t index, Type elementType)
        : slot_(slot)
        , type_(elementType)
        , index_(index)
        , isElement_(true) {}

    Value Load() const;
    /// Converts the value to the reference's type. An array grows to hold the element.
    void Store(Runtime& runtime, Value value) const;

private:
    void StoreWhole(Runtime& runtime, Value value) const;
    void StoreElement(Runtime& runtime, const Value& value) const;

    Value& slot_;
    Type type_;
    GlobalVariable* global_ = nullptr;
    std::size_t index_ = 0;
    bool isElement_ = false;
};

/// An expression that can be assigned to.
class Target : public Expression {
public:
    using Expression::Expression;
    virtual VariableReference Locate(CallFrame& frame) const = 0;
};

using TargetPtr = std::unique_ptr<Target>;

/// The storage of a variable: a slot number for a local one, an entry for a global one.
struct VariablePlace {
    Type type = Type::Any;
    GlobalVariable* global = nullptr;
    int slot = 0;
};

class VariableExpression final : public Target {
public:
    VariableExpression(std::uint32_t offset, const VariablePlace& place)
        : Target(offset, place.type)
        , global_(place.global)
        , slot_(place.slot) {}

    Value& Slot(CallFrame& frame) const { return global_ ? global_->value : frame.variables[slot_]; }
    GlobalVariable* Global() const { return global_; }

    Value Evaluate(CallFrame& frame) const override;
    int EvaluateInt(CallFrame& frame) const override;
    double EvaluateFloat(CallFrame& frame) const override;
    bool EvaluateTruth(CallFrame& frame) const override;
    void Run(CallFrame&) const override {}
    VariableReference Locate(CallFrame& frame) const override {
        return VariableReference(Slot(frame), type, global_);
    }

private:
    GlobalVariable* global_;
    int slot_;
};

/// $array[index]
class ElementExpression final : public Target {
public:
    ElementExpression(std::unique_ptr<VariableExpression> variable, ExpressionPtr index);

    Value Evaluate(CallFrame& frame) const override;
    int EvaluateInt(CallFrame& frame) const override;
    double EvaluateFloat(CallFrame& frame) const override;
    VariableReference Locate(CallFrame& frame) const override;

private:
    std::size_t Index(CallFrame& frame) const;

    std::unique_ptr<VariableExpression> variable_;
    ExpressionPtr index_;
};

/// $matrix[row][column]
class CellExpression final : public Target {
public:
    CellExpression(std::unique_ptr<VariableExpression> variable, ExpressionPtr row, ExpressionPtr column);

    Value Evaluate(CallFrame& frame) const override { return EvaluateFloat(frame); }
    double EvaluateFloat(CallFrame& frame) const override;
    VariableReference Locate(CallFrame& frame) const override;

private:
    std::size_t Index(CallFrame& frame, const Value& matrix) const;

    std::unique_ptr<VariableExpression> variable_;
    ExpressionPtr row_;
    ExpressionPtr column_;
};

/// $vector.x and the like; read-only.
class ComponentExpression final : public Expression {
public:
    ComponentExpression(std::uint32_t offset, ExpressionPtr vector, char component);

    Value Evaluate(CallFrame& frame) const override { return EvaluateFloat(frame); }
    double EvaluateFloat(CallFrame& frame) const override;

private:
    ExpressionPtr vector_;
    char component_;
};

} // namespace lightbox::mel
