#include "mel/Value.h"

#include "mel/Error.h"
#include "text/NumberText.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

namespace lightbox::mel {

namespace {

int ToInt(double number) {
    if (std::isnan(number)) {
        return 0;
    }
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(std::max(number, lowest), highest));
}

double Length(const Vector& v) {
    return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}

[[noreturn]] void NoConversion(Type from, Type to) {
    throw Error(std::string("Cannot convert data of type ") + TypeName(from) + " to type " + TypeName(to) +
                ".");
}

std::string VectorText(const Vector& v) {
    return NumberText(v.x) + " " + NumberText(v.y) + " " + NumberText(v.z);
}

std::string MatrixText(const Matrix& matrix, const char* cellEnd, const char* rowEnd) {
    std::string text;
    for (int row = 0; row < matrix.rows; ++row) {
        for (int column = 0; column < matrix.columns; ++column) {
            text += NumberText(matrix.At(row, column));
            text += column + 1 < matrix.columns ? cellEnd : "";
        }
        text += row + 1 < matrix.rows ? rowEnd : "";
    }
    return text;
}

Vector TextVector(std::string_view text) {
    Vector vector;
    for (double* part : {&vector.x, &vector.y, &vector.z}) {
        if (!ReadNumber(text, *part, &text)) {
            *part = 0.0;
        }
    }
    return vector;
}

template <class To, class From>
std::vector<To> NumbersAs(const std::vector<From>& numbers) {
    std::vector<To> converted;
    converted.reserve(numbers.size());
    for (const From number : numbers) {
        if constexpr (std::is_same_v<To, int>) {
            converted.push_back(ToInt(number));
        } else {
            converted.push_back(number);
        }
    }
    return converted;
}

Value::StringArray TextsOf(const Value& array) {
    Value::StringArray texts;
    texts.reserve(array.Size());
    for (std::size_t i = 0; i < array.Size(); ++i) {
        texts.push_back(array.Element(i).AsString());
    }
    return texts;
}

} // namespace

const char* TypeName(Type type) {
    static constexpr const char* names[] = {"void",    "int",      "float",    "string", "vector", "int[]",
                                            "float[]", "string[]", "vector[]", "matrix", "any"};
    return names[static_cast<int>(type)];
}

bool IsArray(Type type) {
    return type >= Type::IntArray && type <= Type::VectorArray;
}

bool IsNumeric(Type type) {
    return type == Type::Int || type == Type::Float;
}

Type ArrayOf(Type element) {
    const bool hasArray = element >= Type::Int && element <= Type::Vector;
    return hasArray ? static_cast<Type>(static_cast<int>(element) + 4) : Type::None;
}

Type ElementOf(Type array) {
    return IsArray(array) ? static_cast<Type>(static_cast<int>(array) - 4) : Type::None;
}

Matrix::Matrix(int rowCount, int columnCount)
    : rows(rowCount)
    , columns(columnCount)
    , cells(static_cast<std::size_t>(rowCount) * columnCount, 0.0) {}

Value::Value(const char* text)
    : data_(std::make_shared<std::string>(text)) {}
Value::Value(std::string text)
    : data_(std::make_shared<std::string>(std::move(text))) {}
Value::Value(std::string_view text)
    : data_(std::make_shared<std::string>(text)) {}
Value::Value(const Vector& vector)
    : data_(vector) {}
Value::Value(IntArray array)
    : data_(std::make_shared<IntArray>(std::move(array))) {}
Value::Value(FloatArray array)
    : data_(std::make_shared<FloatArray>(std::move(array))) {}
Value::Value(StringArray array)
    : data_(std::make_shared<StringArray>(std::move(array))) {}
Value::Value(VectorArray array)
    : data_(std::make_shared<VectorArray>(std::move(array))) {}
Value::Value(Matrix matrix)
    : data_(std::make_shared<Matrix>(std::move(matrix))) {}

Value Value::Default(Type type) {
    switch (type) {
    case Type::Int:
        return Value(0);
    case Type::Float:
        return Value(0.0);
    case Type::String:
        return Value(std::string());
    case Type::Vector:
        return Value(Vector());
    case Type::IntArray:
        return Value(IntArray());
    case Type::FloatArray:
        return Value(FloatArray());
    case Type::StringArray:
        return Value(StringArray());
    case Type::VectorArray:
        return Value(VectorArray());
    case Type::Matrix:
        return Value(Matrix());
    case Type::None:
    case Type::Any:
        break;
    }
    return Value();
}

int Value::AsInt() const {
    switch (GetType()) {
    case Type::Int:
        return *IntSlot();
    case Type::Float:
    case Type::String:
    case Type::Vector:
        return ToInt(AsFloat());
    default:
        NoConversion(GetType(), Type::Int);
    }
}

double Value::AsFloat() const {
    switch (GetType()) {
    case Type::Int:
        return *IntSlot();
    case Type::Float:
        return *FloatSlot();
    case Type::String: {
        double number = 0.0;
        return ReadNumber(Text(), number) ? number : 0.0;
    }
    case Type::Vector:
        return Length(*VectorSlot());
    default:
        NoConversion(GetType(), Type::Float);
    }
}

bool Value::AsBool() const {
    if (const int* number = IntSlot()) {
        return *number != 0;
    }
    if (IsString()) {
        const std::string& text = Text();
        return text == "true" || text == "on" || text == "yes" || AsFloat() != 0.0;
    }
    return AsFloat() != 0.0;
}

std::string Value::AsString() const {
    switch (GetType()) {
    case Type::Int:
        return std::to_string(*IntSlot());
    case Type::Float:
        return NumberText(*FloatSlot());
    case Type::String:
        return Text();
    case Type::Vector:
        return VectorText(*VectorSlot());
    default:
        NoConversion(GetType(), Type::String);
    }
}

Vector Value::AsVector() const {
    switch (GetType()) {
    case Type::Vector:
        return *VectorSlot();
    case Type::Int:
    case Type::Float: {
        const double number = AsFloat();
        return {number, number, number};
    }
    case Type::String:
        return TextVector(Text());
    case Type::IntArray:
        if (Ints().size() == 3) {
            return {static_cast<double>(Ints()[0]), static_cast<double>(Ints()[1]),
                    static_cast<double>(Ints()[2])};
        }
        break;
    case Type::FloatArray:
        if (Floats().size() == 3) {
            return {Floats()[0], Floats()[1], Floats()[2]};
        }
        break;
    default:
        break;
    }
    NoConversion(GetType(), Type::Vector);
}

Value Value::ConvertedTo(Type type) const {
    const Type own = GetType();
    if (own == type || type == Type::Any) {
        return *this;
    }
    switch (type) {
    case Type::Int:
        return AsInt();
    case Type::Float:
        return AsFloat();
    case Type::String:
        return AsString();
    case Type::Vector:
        return AsVector();
    case Type::IntArray:
        if (own == Type::FloatArray) {
            return NumbersAs<int>(Floats());
        }
        break;
    case Type::StringArray:
        if (own == Type::IntArray || own == Type::FloatArray) {
            return TextsOf(*this);
        }
        break;
    case Type::FloatArray:
        if (own == Type::IntArray) {
            return NumbersAs<double>(Ints());
        }
        if (const Vector* vector = VectorSlot()) {
            return FloatArray{vector->x, vector->y, vector->z};
        }
        break;
    default:
        break;
    }
    if (mel::IsArray(own) && mel::IsArray(type) && Size() == 0) {
        return Default(type);
    }
    NoConversion(own, type);
}

Value Value::Detached() const {
    switch (GetType()) {
    case Type::IntArray:
        return Value(IntArray(Ints()));
    case Type::FloatArray:
        return Value(FloatArray(Floats()));
    case Type::StringArray:
        return Value(StringArray(Strings()));
    case Type::VectorArray:
        return Value(VectorArray(Vectors()));
    case Type::Matrix:
        return Value(Matrix(MatrixData()));
    default:
        return *this;
    }
}

template <class T>
void Value::TakeContent(Value& source) {
    auto& from = std::get<Shared<T>>(source.data_);
    auto& to = std::get<Shared<T>>(data_);
    if (from == to) {
        return;
    }
    if (from.use_count() == 1) {
        *to = std::move(*from);
    } else {
        *to = *from;
    }
}

void Value::ReplaceContent(Value source) {
    switch (GetType()) {
    case Type::IntArray:
        return TakeContent<IntArray>(source);
    case Type::FloatArray:
        return TakeContent<FloatArray>(source);
    case Type::StringArray:
        return TakeContent<StringArray>(source);
    case Type::VectorArray:
        return TakeContent<VectorArray>(source);
    case Type::Matrix:
        return TakeContent<Matrix>(source);
    default:
        *this = std::move(source);
    }
}

const std::string& Value::Text() const {
    return *std::get<Shared<std::string>>(data_);
}

void Value::AppendText(std::string_view more) {
    auto& text = std::get<Shared<std::string>>(data_);
    if (text.use_count() == 1) {
        text->append(more);
        return;
    }
    auto longer = std::make_shared<std::string>();
    longer->reserve(text->size() + more.size());
    longer->append(*text).append(more);
    text = std::move(longer);
}

Value::IntArray& Value::Ints() const {
    return *std::get<Shared<IntArray>>(data_);
}
Value::FloatArray& Value::Floats() const {
    return *std::get<Shared<FloatArray>>(data_);
}
Value::StringArray& Value::Strings() const {
    return *std::get<Shared<StringArray>>(data_);
}
Value::VectorArray& Value::Vectors() const {
    return *std::get<Shared<VectorArray>>(data_);
}
Matrix& Value::MatrixData() const {
    return *std::get<Shared<Matrix>>(data_);
}

std::size_t Value::Size() const {
    switch (GetType()) {
    case Type::None:
        return 0;
    case Type::IntArray:
        return Ints().size();
    case Type::FloatArray:
        return Floats().size();
    case Type::StringArray:
        return Strings().size();
    case Type::VectorArray:
        return Vectors().size();
    default:
        return 1;
    }
}

Value Value::Element(std::size_t index) const {
    if (index >= Size()) {
        return Default(ElementOf(GetType()));
    }
    switch (GetType()) {
    case Type::IntArray:
        return Ints()[index];
    case Type::FloatArray:
        return Floats()[index];
    case Type::StringArray:
        return Strings()[index];
    case Type::VectorArray:
        return Vectors()[index];
    default:
        return *this;
    }
}

void Value::Flatten(std::vector<Value>& out) const {
    if (const Vector* vector = VectorSlot()) {
        out.insert(out.end(), {vector->x, vector->y, vector->z});
    } else if (GetType() == Type::Matrix) {
        out.insert(out.end(), MatrixData().cells.begin(), MatrixData().cells.end());
    } else if (IsArray()) {
        out.reserve(out.size() + Size());
        for (std::size_t i = 0; i < Size(); ++i) {
            Element(i).Flatten(out);
        }
    } else if (!IsNone()) {
        out.push_back(*this);
    }
}

std::string Value::Printed() const {
    if (GetType() == Type::Matrix) {
        return MatrixText(MatrixData(), " ", "\n") + "\n";
    }
    if (!IsArray()) {
        return IsNone() ? std::string() : AsString();
    }
    std::string text;
    for (std::size_t i = 0; i < Size(); ++i) {
        text += Element(i).AsString();
        text += '\n';
    }
    return text;
}

std::string Value::Shown() const {
    if (const Vector* v = VectorSlot()) {
        return "<<" + NumberText(v->x) + ", " + NumberText(v->y) + ", " + NumberText(v->z) + ">>";
    }
    if (GetType() == Type::Matrix) {
        return "<<" + MatrixText(MatrixData(), ", ", "; ") + ">>";
    }
    if (!IsArray()) {
        return IsNone() ? std::string() : AsString();
    }
    std::string text;
    for (std::size_t i = 0; i < Size(); ++i) {
        text += i > 0 ? " " : "";
        text += Element(i).Shown();
    }
    return text;
}

} // namespace lightbox::mel
