#pragma once

#include "mel/Value.h"

namespace lightbox::mel {

enum class Operator {
    Add,
    Subtract,
    Multiply,
    Divide,
    Remainder,
    Cross,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Equal,
    NotEqual
};

const char* OperatorText(Operator op);
bool IsComparison(Operator op);

/// The type of the operation's result: `Any` if an operand has that type, `None` if the operation is illegal.
Type ResultType(Operator op, Type left, Type right);
/// Applies the operator to values; throws Error for illegal types and for division by zero.
Value Apply(Operator op, const Value& left, const Value& right);
/// The same for numbers. Ints wrap around.
int ApplyInt(Operator op, int left, int right);
double ApplyFloat(Operator op, double left, double right);
bool CompareFloat(Operator op, double left, double right);

Value Negated(const Value& value);

/// Throw Error when a text or an array is too large to allocate.
void CheckTextLength(std::size_t length);
void CheckArraySize(std::size_t count, std::size_t elementBytes);

/// The error message for an operation that a type does not have.
std::string IllegalOperation(const char* op, Type type);
std::string IllegalOperation(Operator op, Type left, Type right);

} // namespace lightbox::mel
