#include "mel/LiteralExpressions.h"

#include "mel/Error.h"
#include "mel/SourceText.h"

namespace lightbox::mel {

namespace {

/// The type that can hold both: text over vector over float over int.
Type WiderType(Type a, Type b) {
    if (a == Type::String || b == Type::String) {
        return Type::String;
    }
    return std::max(a, b);
}

bool CanBeElement(Type type) {
    return ArrayOf(type) != Type::None;
}

Value ArrayFrom(const std::vector<Value>& values) {
    Type element = Type::Int;
    for (const Value& value : values) {
        if (!CanBeElement(value.GetType())) {
            throw Error(std::string("Cannot convert data of type ") + TypeName(value.GetType()) +
                        " to an element of an array.");
        }
        element = WiderType(element, value.GetType());
    }
    Value array = Value::Default(ArrayOf(element));
    for (const Value& value : values) {
        switch (element) {
        case Type::Float:
            array.Floats().push_back(value.AsFloat());
            break;
        case Type::String:
            array.Strings().push_back(value.AsString());
            break;
        case Type::Vector:
            array.Vectors().push_back(value.AsVector());
            break;
        default:
            array.Ints().push_back(value.AsInt());
        }
    }
    return array;
}

} // namespace

JoinedWordExpression::JoinedWordExpression(std::uint32_t sourceOffset, ExpressionList parts)
    : Expression(sourceOffset, Type::String)
    , parts_(std::move(parts)) {
    for (const ExpressionPtr& part : parts_) {
        Contains(*part);
    }
}

Value JoinedWordExpression::Evaluate(CallFrame& frame) const {
    std::string word;
    for (const ExpressionPtr& part : parts_) {
        word += part->Evaluate(frame).AsString();
    }
    return Value(std::move(word));
}

Value TextExpression::Evaluate(CallFrame&) const {
    return hasEscapes_ ? Value(Unescaped(literal_)) : Value(literal_);
}

VectorExpression::VectorExpression(std::uint32_t offset, ExpressionPtr x, ExpressionPtr y, ExpressionPtr z)
    : Expression(offset, Type::Vector)
    , x_(std::move(x))
    , y_(std::move(y))
    , z_(std::move(z)) {
    Contains(*x_);
    Contains(*y_);
    Contains(*z_);
}

Value VectorExpression::Evaluate(CallFrame& frame) const {
    const double x = x_->EvaluateFloat(frame);
    const double y = y_->EvaluateFloat(frame);
    return Vector{x, y, z_->EvaluateFloat(frame)};
}

MatrixExpression::MatrixExpression(std::uint32_t offset, std::vector<ExpressionList> rows)
    : Expression(offset, Type::Matrix)
    , rows_(std::move(rows)) {
    for (const ExpressionList& row : rows_) {
        for (const ExpressionPtr& cell : row) {
            Contains(*cell);
        }
    }
}

Value MatrixExpression::Evaluate(CallFrame& frame) const {
    Matrix matrix(static_cast<int>(rows_.size()), static_cast<int>(rows_.front().size()));
    for (int row = 0; row < matrix.rows; ++row) {
        for (int column = 0; column < matrix.columns; ++column) {
            matrix.At(row, column) =
                rows_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)]->EvaluateFloat(frame);
        }
    }
    return matrix;
}

ArrayExpression::ArrayExpression(std::uint32_t offset, ExpressionList elements)
    : Expression(offset, CommonType(elements))
    , elements_(std::move(elements)) {
    for (const ExpressionPtr& element : elements_) {
        Contains(*element);
    }
}

Type ArrayExpression::CommonType(const ExpressionList& elements) {
    Type common = Type::Int;
    for (const ExpressionPtr& element : elements) {
        if (!CanBeElement(element->type)) {
            return Type::Any;
        }
        common = WiderType(common, element->type);
    }
    return elements.empty() ? Type::Any : ArrayOf(common);
}

Value ArrayExpression::Evaluate(CallFrame& frame) const {
    std::vector<Value> values;
    values.reserve(elements_.size());
    for (const ExpressionPtr& element : elements_) {
        values.push_back(element->Evaluate(frame));
    }
    return ArrayFrom(values);
}

} // namespace lightbox::mel
