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

/// What the operator makes of operands of these types: `Any` when one of them is, `None` when the operation
/// is illegal.
Type ResultType(Operator op, Type left, Type right);
/// The operation on values; throws Error for illegal types and for a division by zero.
Value Apply(Operator op, const Value& left, const Value& right);
/// The same on numbers. Ints wrap around.
int ApplyInt(Operator op, int left, int right);
double ApplyFloat(Operator op, double left, double right);
bool CompareFloat(Operator op, double left, double right);

Value Negated(const Value& value);

/// Throws: a text or an array of that size is refused rather than allocated.
void CheckTextLength(std::size_t length);
void CheckArraySize(std::size_t count, std::size_t elementBytes);

/// Message for an operation on a type that does not have it.
std::string IllegalOperation(const char* op, Type type);
std::string IllegalOperation(Operator op, Type left, Type right);

} // namespace lightbox::mel
