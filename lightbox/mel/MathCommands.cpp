#include "mel/CommandRegistry.h"
#include "mel/Registration.h"

#include <algorithm>
#include <cmath>

namespace lightbox::mel {

namespace {

constexpr double PI = 3.14159265358979323846;

using Unary = double (*)(double);

struct UnaryRow {
    const char* name;
    Unary function;
};

double Sign(double x) {
    return x > 0.0 ? 1.0 : x < 0.0 ? -1.0 : 0.0;
}

constexpr UnaryRow UNARY_ROWS[] = {
    {"sin", [](double x) { return std::sin(x); }},
    {"cos", [](double x) { return std::cos(x); }},
    {"tan", [](double x) { return std::tan(x); }},
    {"asin", [](double x) { return std::asin(x); }},
    {"acos", [](double x) { return std::acos(x); }},
    {"atan", [](double x) { return std::atan(x); }},
    {"sind", [](double x) { return std::sin(x * PI / 180.0); }},
    {"cosd", [](double x) { return std::cos(x * PI / 180.0); }},
    {"tand", [](double x) { return std::tan(x * PI / 180.0); }},
    {"asind", [](double x) { return std::asin(x) * 180.0 / PI; }},
    {"acosd", [](double x) { return std::acos(x) * 180.0 / PI; }},
    {"atand", [](double x) { return std::atan(x) * 180.0 / PI; }},
    {"exp", [](double x) { return std::exp(x); }},
    {"floor", [](double x) { return std::floor(x); }},
    {"ceil", [](double x) { return std::ceil(x); }},
    {"trunc", [](double x) { return std::trunc(x); }},
    {"sign", Sign},
    {"deg_to_rad", [](double x) { return x * PI / 180.0; }},
    {"rad_to_deg", [](double x) { return x * 180.0 / PI; }},
};

double Argument(CommandCall& call, std::size_t index) {
    return call.Object(index).AsFloat();
}

Vector VectorArgument(CommandCall& call, std::size_t index) {
    return call.Object(index).AsVector();
}

/// Returns `result`; fails if the argument is outside the function's domain.
double Domain(CommandCall& call, bool isInside, double result) {
    if (!isInside) {
        call.Fail("The argument of \"" + call.Name() + "\" is out of range.");
    }
    return result;
}

Value Absolute(CommandCall& call) {
    const Value& value = call.Object(0);
    if (value.IsInt()) {
        const int number = value.AsInt();
        return number < 0 ? static_cast<int>(0u - static_cast<unsigned>(number)) : number;
    }
    if (const Vector* const v = value.VectorSlot()) {
        return Vector{std::fabs(v->x), std::fabs(v->y), std::fabs(v->z)};
    }
    return std::fabs(value.AsFloat());
}

Value Smaller(CommandCall& call) {
    const Value& a = call.Object(0);
    const Value& b = call.Object(1);
    if (a.IsInt() && b.IsInt()) {
        return std::min(a.AsInt(), b.AsInt());
    }
    return std::min(a.AsFloat(), b.AsFloat());
}

Value Larger(CommandCall& call) {
    const Value& a = call.Object(0);
    const Value& b = call.Object(1);
    if (a.IsInt() && b.IsInt()) {
        return std::max(a.AsInt(), b.AsInt());
    }
    return std::max(a.AsFloat(), b.AsFloat());
}

/// clamp(lowest, highest, value)
Value Clamped(CommandCall& call) {
    const Value& lowest = call.Object(0);
    const Value& highest = call.Object(1);
    const Value& value = call.Object(2);
    if (lowest.IsInt() && highest.IsInt() && value.IsInt()) {
        return std::max(lowest.AsInt(), std::min(highest.AsInt(), value.AsInt()));
    }
    return std::max(lowest.AsFloat(), std::min(highest.AsFloat(), value.AsFloat()));
}

/// The position of a value between two others, from 0 to 1.
double Position(CommandCall& call) {
    const double start = Argument(call, 0);
    const double end = Argument(call, 1);
    const double value = Argument(call, 2);
    if (start == end) {
        return value < start ? 0.0 : 1.0;
    }
    return std::max(0.0, std::min(1.0, (value - start) / (end - start)));
}

Value SmoothStep(CommandCall& call) {
    const double t = Position(call);
    return t * t * (3.0 - 2.0 * t);
}

Value Power(CommandCall& call) {
    const double result = std::pow(Argument(call, 0), Argument(call, 1));
    return Domain(call, !std::isnan(result), result);
}

double Dot(const Vector& a, const Vector& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vector Cross(const Vector& a, const Vector& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Vector Unit(const Vector& v) {
    const double length = std::sqrt(Dot(v, v));
    return length == 0.0 ? Vector() : Vector{v.x / length, v.y / length, v.z / length};
}

/// The angle between two vectors in radians.
Value Angle(CommandCall& call) {
    const Vector a = VectorArgument(call, 0);
    const Vector b = VectorArgument(call, 1);
    const Vector normal = Cross(a, b);
    return std::atan2(std::sqrt(Dot(normal, normal)), Dot(a, b));
}

/// rot(vector, axis, angle in radians), by Rodrigues' formula.
Value Rotated(CommandCall& call) {
    const Vector v = VectorArgument(call, 0);
    const Vector axis = Unit(VectorArgument(call, 1));
    const double cosine = std::cos(Argument(call, 2));
    const double sine = std::sin(Argument(call, 2));
    const Vector side = Cross(axis, v);
    const double along = Dot(axis, v) * (1.0 - cosine);
    return Vector{v.x * cosine + side.x * sine + axis.x * along,
                  v.y * cosine + side.y * sine + axis.y * along,
                  v.z * cosine + side.z * sine + axis.z * along};
}

void RegisterVectors(CommandRegistry& registry) {
    registry.RegisterRaw("dot", 2, 2, [](CommandCall& call) {
        return Value(Dot(VectorArgument(call, 0), VectorArgument(call, 1)));
    });
    registry.RegisterRaw("cross", 2, 2, [](CommandCall& call) {
        return Value(Cross(VectorArgument(call, 0), VectorArgument(call, 1)));
    });
    registry.RegisterRaw("mag", 1, 1, [](CommandCall& call) {
        const Vector v = VectorArgument(call, 0);
        return Value(std::sqrt(Dot(v, v)));
    });
    registry.RegisterRaw("unit", 1, 1,
                         [](CommandCall& call) { return Value(Unit(VectorArgument(call, 0))); });
    registry.RegisterRaw("angle", 2, 2, Angle);
    registry.RegisterRaw("rot", 3, 3, Rotated);
}

} // namespace

void RegisterMathCommands(CommandRegistry& registry) {
    for (const UnaryRow& row : UNARY_ROWS) {
        registry.RegisterRaw(row.name, 1, 1, [function = row.function](CommandCall& call) {
            return Value(function(Argument(call, 0)));
        });
    }
    registry.RegisterRaw("abs", 1, 1, Absolute);
    registry.RegisterRaw("min", 2, 2, Smaller);
    registry.RegisterRaw("max", 2, 2, Larger);
    registry.RegisterRaw("clamp", 3, 3, Clamped);
    registry.RegisterRaw("linstep", 3, 3, [](CommandCall& call) { return Value(Position(call)); });
    registry.RegisterRaw("smoothstep", 3, 3, SmoothStep);
    registry.RegisterRaw("pow", 2, 2, Power);
    registry.RegisterRaw("sqrt", 1, 1, [](CommandCall& call) {
        const double x = Argument(call, 0);
        return Value(Domain(call, x >= 0.0, std::sqrt(x)));
    });
    registry.RegisterRaw("log", 1, 1, [](CommandCall& call) {
        const double x = Argument(call, 0);
        return Value(Domain(call, x > 0.0, std::log(x)));
    });
    registry.RegisterRaw("log10", 1, 1, [](CommandCall& call) {
        const double x = Argument(call, 0);
        return Value(Domain(call, x > 0.0, std::log10(x)));
    });
    registry.RegisterRaw("atan2", 2, 2, [](CommandCall& call) {
        return Value(std::atan2(Argument(call, 0), Argument(call, 1)));
    });
    registry.RegisterRaw("hypot", 2, 2, [](CommandCall& call) {
        return Value(std::hypot(Argument(call, 0), Argument(call, 1)));
    });
    registry.RegisterRaw("fmod", 2, 2, [](CommandCall& call) {
        const double divisor = Argument(call, 1);
        return Value(Domain(call, divisor != 0.0, std::fmod(Argument(call, 0), divisor)));
    });
    RegisterVectors(registry);
}

} // namespace lightbox::mel
