// rand, gauss and sphrand draw from streams of random numbers; noise and dnoise are functions of a point.

#include "mel/CommandRegistry.h"
#include "mel/Registration.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <string>

namespace lightbox::mel {

namespace {

constexpr double TWO_PI = 2.0 * 3.14159265358979323846;

/// A stream of random numbers. A seed gives the same numbers on every platform.
class RandomNumbers {
public:
    void Seed(int seed) { engine_.seed(static_cast<std::mt19937::result_type>(seed)); }
    /// From 0 up to 1.
    double Next() {
        // Made from 53 random bits, since the library's distributions differ between platforms.
        const double high = engine_() >> 5;
        const double low = engine_() >> 6;
        return (high * 67108864.0 + low) / 9007199254740992.0;
    }
    double Between(double from, double to) { return from + (to - from) * Next(); }
    /// A normal distribution with mean 0 and deviation 1, by the method of Box and Muller.
    double Gauss() { return std::sqrt(-2.0 * std::log(1.0 - Next())) * std::cos(TWO_PI * Next()); }
    /// A point of the unit ball; every part of the ball is as likely as any other of its size.
    Vector InBall() {
        const double z = Between(-1.0, 1.0);
        const double angle = TWO_PI * Next();
        const double around = std::sqrt(1.0 - z * z);
        const double radius = std::cbrt(Next());
        return {radius * around * std::cos(angle), radius * around * std::sin(angle), radius * z};
    }

private:
    std::mt19937 engine_{std::random_device{}()};
};

/// The streams of one interpreter by name; that of "" is used when a call names none.
using RandomStreams = std::map<std::string, RandomNumbers>;

/// The arguments of a call: the name of a stream, which may be missing, then numbers or vectors.
class RandomArguments {
public:
    RandomArguments(const CommandCall& call, RandomStreams& streams, std::size_t maximum)
        : call_(call)
        , first_(call.Object(0).IsString() && call.Objects().size() > 1 ? 1 : 0)
        , numbers_(streams[first_ == 1 ? call.Object(0).Text() : std::string()]) {
        if (Count() > maximum) {
            call.Fail("Wrong number of arguments on call to " + call.Name() + ".");
        }
    }

    RandomNumbers& Numbers() const { return numbers_; }
    std::size_t Count() const { return call_.Objects().size() - first_; }
    const Value& At(std::size_t index) const { return call_.Object(first_ + index); }
    bool IsVector(std::size_t index) const { return At(index).GetType() == Type::Vector; }

private:
    const CommandCall& call_;
    std::size_t first_;
    RandomNumbers& numbers_;
};

/// rand([stream,] [from,] to)
Value Random(CommandCall& call, RandomStreams& streams) {
    const RandomArguments arguments(call, streams, 2);
    RandomNumbers& numbers = arguments.Numbers();
    const bool hasRange = arguments.Count() == 2;
    const Value from = hasRange ? arguments.At(0) : Value(0);
    const Value& to = arguments.At(hasRange ? 1 : 0);
    if (from.GetType() == Type::Vector || to.GetType() == Type::Vector) {
        const Vector a = from.AsVector();
        const Vector b = to.AsVector();
        const double x = numbers.Between(a.x, b.x);
        const double y = numbers.Between(a.y, b.y);
        return Vector{x, y, numbers.Between(a.z, b.z)};
    }
    return numbers.Between(from.AsFloat(), to.AsFloat());
}

/// gauss([stream,] deviation): a number, for a vector of deviations a vector. Two deviations are those of x
/// and y.
Value Normal(CommandCall& call, RandomStreams& streams) {
    const RandomArguments arguments(call, streams, 2);
    RandomNumbers& numbers = arguments.Numbers();
    if (arguments.Count() == 1 && !arguments.IsVector(0)) {
        return numbers.Gauss() * arguments.At(0).AsFloat();
    }
    const Vector deviation = arguments.Count() == 1
                                 ? arguments.At(0).AsVector()
                                 : Vector{arguments.At(0).AsFloat(), arguments.At(1).AsFloat(), 0.0};
    const double x = numbers.Gauss() * deviation.x;
    const double y = numbers.Gauss() * deviation.y;
    return Vector{x, y, numbers.Gauss() * deviation.z};
}

/// sphrand([stream,] radius): a point inside a sphere, or inside an ellipsoid whose radii are a vector.
Value RandomInSphere(CommandCall& call, RandomStreams& streams) {
    const RandomArguments arguments(call, streams, 1);
    const double radius = arguments.IsVector(0) ? 0.0 : arguments.At(0).AsFloat();
    const Vector radii = arguments.IsVector(0) ? arguments.At(0).AsVector() : Vector{radius, radius, radius};
    const Vector point = arguments.Numbers().InBall();
    return Vector{point.x * radii.x, point.y * radii.y, point.z * radii.z};
}

void RegisterRandomStreams(CommandRegistry& registry) {
    const auto streams = std::make_shared<RandomStreams>();
    const auto add = [&](const char* name, unsigned maximum,
                         Value (*function)(CommandCall&, RandomStreams&)) {
        registry.RegisterRaw(name, 1, maximum,
                             [streams, function](CommandCall& call) { return function(call, *streams); });
    };
    add("rand", 3, Random);
    add("gauss", 3, Normal);
    add("sphrand", 2, RandomInSphere);
    add("seed", 2, [](CommandCall& call, RandomStreams& all) {
        const RandomArguments arguments(call, all, 1);
        const int seed = arguments.At(0).AsInt();
        arguments.Numbers().Seed(seed);
        return Value(seed);
    });
    add("delrandstr", 1, [](CommandCall& call, RandomStreams& all) {
        all.erase(call.Object(0).AsString());
        return Value();
    });
}

/// The cell of the lattice that holds a coordinate, and the place in it, from 0 to 1.
struct LatticePlace {
    explicit LatticePlace(double coordinate) {
        if (std::isfinite(coordinate)) {
            const double floor = std::floor(coordinate);
            cell = static_cast<std::int64_t>(std::fmod(floor, 2147483648.0));
            place = coordinate - floor;
        }
    }
    /// Perlin's curve, whose first two derivatives are 0 at both ends.
    double Faded() const { return place * place * place * (place * (place * 6.0 - 15.0) + 10.0); }

    std::int64_t cell = 0;
    double place = 0.0;
};

/// A fixed number for a point of the lattice, with all its bits mixed.
std::uint32_t LatticeHash(std::int64_t x, std::int64_t y, std::int64_t z) {
    std::uint32_t hash = static_cast<std::uint32_t>(x) * 0x9E3779B1u;
    hash = (hash ^ (hash >> 15)) + static_cast<std::uint32_t>(y) * 0x85EBCA77u;
    hash = (hash ^ (hash >> 13)) * 0xC2B2AE3Du + static_cast<std::uint32_t>(z) * 0x27D4EB2Fu;
    hash = (hash ^ (hash >> 16)) * 0x85EBCA6Bu;
    return hash ^ (hash >> 13);
}

/// The dot product of a vector with the gradient at a point of the lattice, one of the twelve from the middle
/// of a cube to its edges.
double AlongGradient(std::uint32_t hash, double x, double y, double z) {
    const std::uint32_t choice = hash % 12;
    const double u = choice < 8 ? x : y;
    const double v = choice < 4 ? y : z;
    return ((choice & 1) != 0 ? -u : u) + ((choice & 2) != 0 ? -v : v);
}

/// Gradient noise, after K. Perlin, "Improving Noise", 2002: smooth, from -1 to 1. The same point always
/// gives the same number.
double NoiseAt(const Vector& point) {
    // The noise is 0 at all points of the lattice. It is moved, since scripts ask at whole numbers.
    const LatticePlace x(point.x + 0.379);
    const LatticePlace y(point.y + 0.241);
    const LatticePlace z(point.z + 0.613);
    double sum = 0.0;
    for (int corner = 0; corner < 8; ++corner) {
        const int right = corner & 1;
        const int up = (corner >> 1) & 1;
        const int front = corner >> 2;
        const double weight = (right ? x.Faded() : 1.0 - x.Faded()) * (up ? y.Faded() : 1.0 - y.Faded()) *
                              (front ? z.Faded() : 1.0 - z.Faded());
        sum += weight * AlongGradient(LatticeHash(x.cell + right, y.cell + up, z.cell + front),
                                      x.place - right, y.place - up, z.place - front);
    }
    // The greatest sum that these gradients can have is a little above 1.
    return std::clamp(sum, -1.0, 1.0);
}

/// The point of noise(x), noise(x, y), noise(x, y, z) and noise(vector).
Vector NoisePoint(const CommandCall& call) {
    if (call.Object(0).GetType() == Type::Vector) {
        if (call.Objects().size() > 1) {
            call.Fail("Wrong number of arguments on call to " + call.Name() + ".");
        }
        return call.Object(0).AsVector();
    }
    const auto coordinate = [&call](std::size_t index) {
        return index < call.Objects().size() ? call.Object(index).AsFloat() : 0.0;
    };
    return {coordinate(0), coordinate(1), coordinate(2)};
}

} // namespace

void RegisterRandomCommands(CommandRegistry& registry) {
    RegisterRandomStreams(registry);
    registry.RegisterRaw("noise", 1, 3, [](CommandCall& call) { return Value(NoiseAt(NoisePoint(call))); });
    // Three noises of the same point, which have nothing to do with each other.
    registry.RegisterRaw("dnoise", 1, 3, [](CommandCall& call) {
        const Vector point = NoisePoint(call);
        return Value(Vector{NoiseAt(point), NoiseAt({point.y + 131.0, point.z + 57.0, point.x + 211.0}),
                            NoiseAt({point.z + 313.0, point.x + 401.0, point.y + 19.0})});
    });
}

} // namespace lightbox::mel
