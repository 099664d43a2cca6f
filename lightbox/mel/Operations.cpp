#include "mel/Operations.h"

#include "mel/Error.h"

#include <cmath>
#include <limits>

namespace lightbox::mel {

namespace {

constexpr std::size_t MAX_TEXT_LENGTH = std::size_t{1} << 28;
constexpr std::size_t MAX_ARRAY_BYTES = std::size_t{1} << 28;

bool IsScalar(Type type) {
    return IsNumeric(type) || type == Type::String || type == Type::Vector;
}

/// The operand type to report for an illegal operation.
Type OffendingType(Operator op, Type left, Type right) {
    if (!IsScalar(left) || (left == Type::String && op != Operator::Add)) {
        return left;
    }
    if (!IsScalar(right) || (right == Type::String && op != Operator::Add)) {
        return right;
    }
    return left == Type::Vector ? right : left;
}

Value ApplyVector(Operator op, const Vector& a, const Vector& b) {
    switch (op) {
    case Operator::Add:
        return Vector{a.x + b.x, a.y + b.y, a.z + b.z};
    case Operator::Subtract:
        return Vector{a.x - b.x, a.y - b.y, a.z - b.z};
    case Operator::Multiply:
        return a.x * b.x + a.y * b.y + a.z * b.z;
    case Operator::Cross:
        return Vector{a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
    default:
        return Vector{ApplyFloat(op, a.x, b.x), ApplyFloat(op, a.y, b.y), ApplyFloat(op, a.z, b.z)};
    }
}

Value ApplyVectorAndNumber(Operator op, const Value& left, const Value& right) {
    if (op == Operator::Multiply) {
        const bool vectorFirst = left.GetType() == Type::Vector;
        const Vector v = (vectorFirst ? left : right).AsVector();
        const double factor = (vectorFirst ? right : left).AsFloat();
        return Vector{v.x * factor, v.y * factor, v.z * factor};
    }
    return ApplyVector(op, left.AsVector(), right.AsVector());
}

bool SameVectors(const Vector& a, const Vector& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

bool CompareOrder(Operator op, int order) {
    return CompareFloat(op, order, 0.0);
}

Value Compare(Operator op, const Value& left, const Value& right) {
    const Type a = left.GetType();
    const Type b = right.GetType();
    if (a == Type::String && b == Type::String) {
        return CompareOrder(op, left.Text().compare(right.Text()));
    }
    if (a == Type::String || b == Type::String) {
        return CompareOrder(op, left.AsString().compare(right.AsString()));
    }
    const bool isEquality = op == Operator::Equal || op == Operator::NotEqual;
    if (isEquality && (a == Type::Vector || b == Type::Vector)) {
        return SameVectors(left.AsVector(), right.AsVector()) == (op == Operator::Equal);
    }
    // Vectors compare by length.
    return CompareFloat(op, left.AsFloat(), right.AsFloat());
}

Value MultiplyMatrices(const Matrix& a, const Matrix& b) {
    if (a.columns != b.rows) {
        throw Error("The sizes of the matrices do not fit the operation \"*\".");
    }
    Matrix product(a.rows, b.columns);
    for (int row = 0; row < a.rows; ++row) {
        for (int column = 0; column < b.columns; ++column) {
            for (int i = 0; i < a.columns; ++i) {
                product.At(row, column) += a.At(row, i) * b.At(i, column);
            }
        }
    }
    return product;
}

Value ApplyMatrix(Operator op, const Value& left, const Value& right) {
    const bool bothMatrices = left.GetType() == right.GetType();
    if (op == Operator::Multiply && bothMatrices) {
        return MultiplyMatrices(left.MatrixData(), right.MatrixData());
    }
    if (op == Operator::Multiply) {
        const bool matrixFirst = left.GetType() == Type::Matrix;
        Matrix scaled = (matrixFirst ? left : right).MatrixData();
        const double factor = (matrixFirst ? right : left).AsFloat();
        for (double& cell : scaled.cells) {
            cell *= factor;
        }
        return scaled;
    }
    Matrix sum = left.MatrixData();
    const Matrix& other = right.MatrixData();
    if (sum.rows != other.rows || sum.columns != other.columns) {
        throw Error(std::string("The sizes of the matrices do not fit the operation \"") + OperatorText(op) +
                    "\".");
    }
    for (std::size_t i = 0; i < sum.cells.size(); ++i) {
        sum.cells[i] = ApplyFloat(op, sum.cells[i], other.cells[i]);
    }
    return sum;
}

Type MatrixResult(Operator op, Type left, Type right) {
    const bool both = left == right;
    if (op == Operator::Multiply) {
        return both || IsNumeric(left) || IsNumeric(right) ? Type::Matrix : Type::None;
    }
    return both && (op == Operator::Add || op == Operator::Subtract) ? Type::Matrix : Type::None;
}

} // namespace

const char* OperatorText(Operator op) {
    static constexpr const char* texts[] = {"+", "-", "*", "/", "%", "^", "<", "<=", ">", ">=", "==", "!="};
    return texts[static_cast<int>(op)];
}

bool IsComparison(Operator op) {
    return op >= Operator::Less;
}

Type ResultType(Operator op, Type left, Type right) {
    if (left == Type::Any || right == Type::Any) {
        return IsComparison(op) ? Type::Int : Type::Any;
    }
    if (left == Type::Matrix || right == Type::Matrix) {
        return MatrixResult(op, left, right);
    }
    if (!IsScalar(left) || !IsScalar(right)) {
        return Type::None;
    }
    if (IsComparison(op)) {
        return Type::Int;
    }
    if (left == Type::String || right == Type::String) {
        return op == Operator::Add ? Type::String : Type::None;
    }
    if (left == Type::Vector && right == Type::Vector && op == Operator::Multiply) {
        return Type::Float;
    }
    if (left == Type::Vector || right == Type::Vector) {
        return Type::Vector;
    }
    if (op == Operator::Cross) {
        return Type::None;
    }
    return left == Type::Int && right == Type::Int ? Type::Int : Type::Float;
}

Value Apply(Operator op, const Value& left, const Value& right) {
    const Type a = left.GetType();
    const Type b = right.GetType();
    const Type result = ResultType(op, a, b);
    if (result == Type::None) {
        throw Error(IllegalOperation(op, a, b));
    }
    if (IsComparison(op)) {
        return Compare(op, left, right);
    }
    switch (result) {
    case Type::Int:
        return ApplyInt(op, left.AsInt(), right.AsInt());
    case Type::String: {
        std::string text = left.AsString();
        const std::string more = right.AsString();
        CheckTextLength(text.size() + more.size());
        return text += more;
    }
    case Type::Matrix:
        return ApplyMatrix(op, left, right);
    case Type::Vector:
        return a == b ? ApplyVector(op, left.AsVector(), right.AsVector())
                      : ApplyVectorAndNumber(op, left, right);
    default:
        if (a == Type::Vector) {
            return ApplyVector(op, left.AsVector(), right.AsVector());
        }
        return ApplyFloat(op, left.AsFloat(), right.AsFloat());
    }
}

int ApplyInt(Operator op, int left, int right) {
    const auto a = static_cast<unsigned>(left);
    const auto b = static_cast<unsigned>(right);
    switch (op) {
    case Operator::Add:
        return static_cast<int>(a + b);
    case Operator::Subtract:
        return static_cast<int>(a - b);
    case Operator::Multiply:
        return static_cast<int>(a * b);
    case Operator::Divide:
    case Operator::Remainder:
        if (right == 0) {
            throw Error("Division by zero.");
        }
        if (right == -1) {
            // The lowest int has no positive counterpart.
            return op == Operator::Divide ? static_cast<int>(0u - a) : 0;
        }
        return op == Operator::Divide ? left / right : left % right;
    case Operator::Less:
        return left < right;
    case Operator::LessEqual:
        return left <= right;
    case Operator::Greater:
        return left > right;
    case Operator::GreaterEqual:
        return left >= right;
    case Operator::Equal:
        return left == right;
    case Operator::NotEqual:
        return left != right;
    case Operator::Cross:
        break;
    }
    throw Error(IllegalOperation(OperatorText(op), Type::Int));
}

double ApplyFloat(Operator op, double left, double right) {
    switch (op) {
    case Operator::Add:
        return left + right;
    case Operator::Subtract:
        return left - right;
    case Operator::Multiply:
        return left * right;
    case Operator::Divide:
    case Operator::Remainder:
        if (right == 0.0) {
            throw Error("Division by zero.");
        }
        return op == Operator::Divide ? left / right : std::fmod(left, right);
    default:
        break;
    }
    throw Error(IllegalOperation(OperatorText(op), Type::Float));
}

bool CompareFloat(Operator op, double left, double right) {
    switch (op) {
    case Operator::Less:
        return left < right;
    case Operator::LessEqual:
        return left <= right;
    case Operator::Greater:
        return left > right;
    case Operator::GreaterEqual:
        return left >= right;
    case Operator::NotEqual:
        return left != right;
    default:
        return left == right;
    }
}

Value Negated(const Value& value) {
    switch (value.GetType()) {
    case Type::Int:
        return ApplyInt(Operator::Subtract, 0, value.AsInt());
    case Type::Float:
        return -value.AsFloat();
    case Type::Vector:
        return ApplyVector(Operator::Subtract, Vector(), value.AsVector());
    case Type::Matrix:
        return ApplyMatrix(Operator::Multiply, value, -1.0);
    default:
        throw Error(IllegalOperation("-", value.GetType()));
    }
}

void CheckTextLength(std::size_t length) {
    if (length > MAX_TEXT_LENGTH) {
        throw Error("The string is too long.");
    }
}

void CheckArraySize(std::size_t count, std::size_t elementBytes) {
    if (count > MAX_ARRAY_BYTES / elementBytes) {
        throw Error("The array is too large.");
    }
}

std::string IllegalOperation(const char* op, Type type) {
    return std::string("Illegal operation \"") + op + "\" on data of type " + TypeName(type) + ".";
}

std::string IllegalOperation(Operator op, Type left, Type right) {
    return IllegalOperation(OperatorText(op), OffendingType(op, left, right));
}

} // namespace lightbox::mel
