#include "mel/VariableExpressions.h"

#include "mel/Error.h"
#include "mel/Operations.h"
#include "mel/Runtime.h"

namespace lightbox::mel {

namespace {

[[noreturn]] void NoArray(Type type) {
    throw Error(std::string("A variable of type ") + TypeName(type) + " has no elements.");
}

template <class T>
T& GrownElement(std::vector<T>& array, std::size_t index) {
    if (index >= array.size()) {
        CheckArraySize(index + 1, sizeof(T));
        array.resize(index + 1);
    }
    return array[index];
}

} // namespace

Value VariableReference::Load() const {
    if (!isElement_) {
        return slot_.IsNone() ? Value::Default(type_) : slot_;
    }
    return slot_.GetType() == Type::Matrix ? Value(slot_.MatrixData().cells[index_]) : slot_.Element(index_);
}

void VariableReference::Store(Runtime& runtime, Value value) const {
    if (isElement_) {
        StoreElement(runtime, value);
    } else {
        StoreWhole(runtime, std::move(value));
    }
}

void VariableReference::StoreWhole(Runtime& runtime, Value value) const {
    Type type = global_ ? global_->type : type_;
    if (type == Type::Any) {
        type = slot_.IsNone() ? value.GetType() : slot_.GetType();
    }
    if (type == Type::None) {
        throw Error("Cannot assign a value: the right side has none.");
    }
    value = runtime.Converted(std::move(value), type);
    if (global_ && global_->type == Type::Any) {
        global_->type = type;
    }
    if (slot_.GetType() == type) {
        slot_.ReplaceContent(std::move(value));
    } else {
        slot_ = value.Detached();
    }
}

void VariableReference::StoreElement(Runtime& runtime, const Value& value) const {
    switch (slot_.GetType()) {
    case Type::Matrix:
        slot_.MatrixData().cells[index_] = value.AsFloat();
        break;
    case Type::IntArray:
        GrownElement(slot_.Ints(), index_) = runtime.Converted(value, Type::Int).AsInt();
        break;
    case Type::FloatArray:
        GrownElement(slot_.Floats(), index_) = runtime.Converted(value, Type::Float).AsFloat();
        break;
    case Type::StringArray:
        GrownElement(slot_.Strings(), index_) = value.AsString();
        break;
    case Type::VectorArray:
        GrownElement(slot_.Vectors(), index_) = value.AsVector();
        break;
    case Type::None: {
        // Assigning the first element to an undeclared variable makes it an array.
        const Type arrayType = ArrayOf(value.GetType());
        if (arrayType == Type::None) {
            NoArray(value.GetType());
        }
        slot_ = Value::Default(arrayType);
        StoreElement(runtime, value);
        break;
    }
    default:
        NoArray(slot_.GetType());
    }
}

Value VariableExpression::Evaluate(CallFrame& frame) const {
    Value& slot = Slot(frame);
    if (slot.IsNone() && type != Type::Any) {
        slot = Value::Default(type);
    }
    return slot;
}

int VariableExpression::EvaluateInt(CallFrame& frame) const {
    const int* number = Slot(frame).IntSlot();
    return number ? *number : Evaluate(frame).AsInt();
}

double VariableExpression::EvaluateFloat(CallFrame& frame) const {
    const double* number = Slot(frame).FloatSlot();
    return number ? *number : Evaluate(frame).AsFloat();
}

bool VariableExpression::EvaluateTruth(CallFrame& frame) const {
    const int* number = Slot(frame).IntSlot();
    return number ? *number != 0 : Evaluate(frame).AsBool();
}

ElementExpression::ElementExpression(std::unique_ptr<VariableExpression> variable, ExpressionPtr index)
    : Target(variable->offset, variable->type == Type::Any ? Type::Any : ElementOf(variable->type))
    , variable_(std::move(variable))
    , index_(std::move(index)) {
    Contains(*index_);
}

std::size_t ElementExpression::Index(CallFrame& frame) const {
    const int index = index_->EvaluateInt(frame);
    if (index < 0) {
        Mark(frame);
        throw Error("The array index " + std::to_string(index) + " is out of range.");
    }
    return static_cast<std::size_t>(index);
}

Value ElementExpression::Evaluate(CallFrame& frame) const {
    const std::size_t index = Index(frame);
    const Value& array = variable_->Slot(frame);
    if (!array.IsArray()) {
        if (array.IsNone()) {
            return Value::Default(type);
        }
        NoArray(array.GetType());
    }
    return array.Element(index);
}

int ElementExpression::EvaluateInt(CallFrame& frame) const {
    if (type != Type::Int || variable_->Slot(frame).GetType() != Type::IntArray) {
        return Evaluate(frame).AsInt();
    }
    const std::size_t index = Index(frame);
    const Value::IntArray& array = variable_->Slot(frame).Ints();
    return index < array.size() ? array[index] : 0;
}

double ElementExpression::EvaluateFloat(CallFrame& frame) const {
    if (type != Type::Float || variable_->Slot(frame).GetType() != Type::FloatArray) {
        return Evaluate(frame).AsFloat();
    }
    const std::size_t index = Index(frame);
    const Value::FloatArray& array = variable_->Slot(frame).Floats();
    return index < array.size() ? array[index] : 0.0;
}

VariableReference ElementExpression::Locate(CallFrame& frame) const {
    const std::size_t index = Index(frame);
    Value& slot = variable_->Slot(frame);
    if (slot.IsNone() && variable_->type != Type::Any) {
        slot = Value::Default(variable_->type);
    }
    if (!slot.IsNone() && !slot.IsArray()) {
        NoArray(slot.GetType());
    }
    return VariableReference(slot, index, type);
}

CellExpression::CellExpression(std::unique_ptr<VariableExpression> variable, ExpressionPtr row,
                               ExpressionPtr column)
    : Target(variable->offset, Type::Float)
    , variable_(std::move(variable))
    , row_(std::move(row))
    , column_(std::move(column)) {
    Contains(*row_);
    Contains(*column_);
}

std::size_t CellExpression::Index(CallFrame& frame, const Value& value) const {
    if (value.GetType() != Type::Matrix) {
        throw Error(std::string("A variable of type ") + TypeName(value.GetType()) + " has no cells.");
    }
    const int row = row_->EvaluateInt(frame);
    const int column = column_->EvaluateInt(frame);
    const Matrix& matrix = value.MatrixData();
    if (row < 0 || row >= matrix.rows || column < 0 || column >= matrix.columns) {
        Mark(frame);
        throw Error("The matrix index [" + std::to_string(row) + "][" + std::to_string(column) +
                    "] is out of range.");
    }
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(matrix.columns) +
           static_cast<std::size_t>(column);
}

double CellExpression::EvaluateFloat(CallFrame& frame) const {
    // The index expressions may run anything, so keep the matrix alive.
    const Value matrix = variable_->Evaluate(frame);
    const std::size_t index = Index(frame, matrix);
    return matrix.MatrixData().cells.at(index);
}

VariableReference CellExpression::Locate(CallFrame& frame) const {
    Value& slot = variable_->Slot(frame);
    const std::size_t index = Index(frame, Value(slot));
    if (slot.GetType() != Type::Matrix || index >= slot.MatrixData().cells.size()) {
        throw Error("The matrix changed while its index was computed.");
    }
    return VariableReference(slot, index, Type::Float);
}

ComponentExpression::ComponentExpression(std::uint32_t sourceOffset, ExpressionPtr vector, char component)
    : Expression(sourceOffset, Type::Float)
    , vector_(std::move(vector))
    , component_(component) {
    Contains(*vector_);
}

double ComponentExpression::EvaluateFloat(CallFrame& frame) const {
    const Value value = vector_->Evaluate(frame);
    const Vector* const vector = value.VectorSlot();
    if (!vector) {
        Mark(frame);
        throw Error(std::string("A value of type ") + TypeName(value.GetType()) + " has no component \"" +
                    component_ + "\".");
    }
    return component_ == 'x' ? vector->x : component_ == 'y' ? vector->y : vector->z;
}

} // namespace lightbox::mel
