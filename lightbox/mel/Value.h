#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

namespace lightbox::mel {

/// The types of the language. `None` is the type of a statement without a value. An expression of type `Any`
/// gets its type only when it runs (the result of a command).
enum class Type : std::uint8_t {
    None,
    Int,
    Float,
    String,
    Vector,
    IntArray,
    FloatArray,
    StringArray,
    VectorArray,
    Matrix,
    Any,
};

/// The type's name in messages and `whatIs`: "int", "string[]" and so on.
const char* TypeName(Type type);
bool IsArray(Type type);
/// An int or a float.
bool IsNumeric(Type type);
/// int -> int[] and back; `None` for a type without such a partner.
Type ArrayOf(Type element);
Type ElementOf(Type array);

struct Vector {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

/// A matrix of a fixed size, stored row by row.
struct Matrix {
    Matrix() = default;
    Matrix(int rowCount, int columnCount);
    double& At(int row, int column) { return cells[static_cast<std::size_t>(row) * columns + column]; }
    double At(int row, int column) const { return cells[static_cast<std::size_t>(row) * columns + column]; }

    int rows = 0;
    int columns = 0;
    std::vector<double> cells;
};

/// A value of the language. Copying is cheap: strings and arrays are shared. A shared string never changes.
/// Arrays are passed by reference, as procedures and commands expect; Detached() makes a copy where the
/// language assigns. Conversions follow the language's rules and throw `Error` where there is none ("Cannot
/// convert data of type string[] to type string.").
class Value {
public:
    using IntArray = std::vector<int>;
    using FloatArray = std::vector<double>;
    using StringArray = std::vector<std::string>;
    using VectorArray = std::vector<Vector>;

    Value() = default;
    /// A boolean becomes an int. (A template, so that pointers do not convert to bool.)
    template <class Bool, std::enable_if_t<std::is_same_v<Bool, bool>, int> = 0>
    Value(Bool value)
        : data_(value ? 1 : 0) {}
    Value(int value)
        : data_(value) {}
    Value(double value)
        : data_(value) {}
    Value(const char* text);
    Value(std::string text);
    Value(std::string_view text);
    Value(const Vector& vector);
    Value(IntArray array);
    Value(FloatArray array);
    Value(StringArray array);
    Value(VectorArray array);
    Value(Matrix matrix);
    /// The initial value of a variable of that type: 0, "", an empty array.
    static Value Default(Type type);

    Type GetType() const { return static_cast<Type>(data_.index()); }
    bool IsNone() const { return GetType() == Type::None; }
    bool IsInt() const { return GetType() == Type::Int; }
    bool IsFloat() const { return GetType() == Type::Float; }
    bool IsString() const { return GetType() == Type::String; }
    bool IsNumber() const { return IsInt() || IsFloat(); }
    bool IsArray() const { return mel::IsArray(GetType()); }

    /// Conversions. A text that does not begin with a number counts as 0.
    int AsInt() const;
    double AsFloat() const;
    bool AsBool() const;
    /// Converts to text: numbers with up to ten significant digits, vectors as "x y z". Throws for arrays.
    std::string AsString() const;
    Vector AsVector() const;
    /// The value converted as for assignment to a variable of `type`.
    Value ConvertedTo(Type type) const;
    /// A copy of the value that shares no array with others.
    Value Detached() const;

    /// Replaces the content of an array or matrix, which others may share, by that of `source`, a value of
    /// the same type.
    void ReplaceContent(Value source);

    /// The text without a copy; only for strings (check `IsString()`). Valid as long as this value.
    const std::string& Text() const;
    /// Appends in place if no other value shares the text. Only for strings.
    void AppendText(std::string_view more);

    /// The shared arrays; only for values of the matching type.
    IntArray& Ints() const;
    FloatArray& Floats() const;
    StringArray& Strings() const;
    VectorArray& Vectors() const;
    Matrix& MatrixData() const;
    /// Number of elements of an array, 1 for any other value, 0 for None.
    std::size_t Size() const;
    /// An element of an array as a value; beyond the end, the element type's default.
    Value Element(std::size_t index) const;

    /// Appends the numbers and texts of an array or vector one by one, in the form that commands take.
    void Flatten(std::vector<Value>& out) const;

    /// The text that `print` writes; an array has one line per element, each with a line break.
    std::string Printed() const;
    /// The text of a result line; array elements are separated by blanks.
    std::string Shown() const;

    int* IntSlot() { return std::get_if<int>(&data_); }
    const int* IntSlot() const { return std::get_if<int>(&data_); }
    double* FloatSlot() { return std::get_if<double>(&data_); }
    const double* FloatSlot() const { return std::get_if<double>(&data_); }
    const Vector* VectorSlot() const { return std::get_if<Vector>(&data_); }

private:
    template <class T>
    using Shared = std::shared_ptr<T>;
    template <class T>
    void TakeContent(Value& source);

    std::variant<std::monostate, int, double, Shared<std::string>, Vector, Shared<IntArray>,
                 Shared<FloatArray>, Shared<StringArray>, Shared<VectorArray>, Shared<Matrix>>
        data_;
};

} // namespace lightbox::mel
