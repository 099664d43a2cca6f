#include "scene/PolyPrimitives.h"

#include "scene/MeshBuilder.h"

#include <Imath/ImathQuat.h>
#include <Imath/ImathVec.h>
#include <algorithm>
#include <array>
#include <cmath>

namespace lightbox::poly {

namespace {

using Imath::V2d;
using Imath::V3d;

double Fraction(int step, int steps) {
    return static_cast<double>(step) / steps;
}

/// A vertex on a ring around the y axis. The first vertex lies one step from x towards -z, the last one on x.
V3d OnRing(double radius, double y, int step, int steps) {
    const double angle = 2.0 * M_PI * Fraction(step + 1, steps);
    return {radius * std::cos(angle), y, -radius * std::sin(angle)};
}

/// Adds one side of a cube. `vertexOf` returns the vertex at a column and row; the order is counterclockwise
/// from outside.
template <class VertexOf>
void AddGrid(MeshBuilder& builder, int columns, int rows, const V2d& uvOrigin, const V2d& uvSize,
             const VertexOf& vertexOf) {
    const int firstUv = builder.AddUv(uvOrigin.x, uvOrigin.y);
    for (int i = 1; i < (columns + 1) * (rows + 1); ++i) {
        builder.AddUv(uvOrigin.x + uvSize.x * Fraction(i % (columns + 1), columns),
                      uvOrigin.y + uvSize.y * Fraction(i / (columns + 1), rows));
    }
    const auto uvOf = [&](int column, int row) { return firstUv + row * (columns + 1) + column; };
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            builder.AddFace(
                {vertexOf(column, row), vertexOf(column + 1, row), vertexOf(column + 1, row + 1),
                 vertexOf(column, row + 1)},
                {uvOf(column, row), uvOf(column + 1, row), uvOf(column + 1, row + 1), uvOf(column, row + 1)});
        }
    }
}

/// The vertices of a cube: first rows along x around the outline seen from the side (up the front, over the
/// top, down the back, along the bottom), then the inner vertices of the left and the right side.
class CubeVertices {
public:
    CubeVertices(MeshBuilder& builder, const Cube& cube)
        : cube_(cube)
        , ringLength_(2 * (cube.acrossHeight + cube.acrossDepth)) {
        for (int ring = 0; ring < ringLength_; ++ring) {
            const V2d yz = Outline(ring);
            for (int x = 0; x <= cube.acrossWidth; ++x) {
                builder.AddVertex(Position(Fraction(x, cube.acrossWidth), yz.x, yz.y));
            }
        }
        for (const double x : {1.0, 0.0}) {
            (x > 0.0 ? firstRight_ : firstLeft_) = builder.VertexCount();
            for (int y = 1; y < cube.acrossHeight; ++y) {
                for (int z = 1; z < cube.acrossDepth; ++z) {
                    builder.AddVertex(
                        Position(x, Fraction(y, cube.acrossHeight), 1.0 - Fraction(z, cube.acrossDepth)));
                }
            }
        }
    }

    int RingLength() const { return ringLength_; }
    int OnRing(int x, int ring) const { return (ring % ringLength_) * (cube_.acrossWidth + 1) + x; }
    /// A vertex of the right or left side; z counts from the front to the back.
    int OnSide(bool right, int z, int y) const {
        const int x = right ? cube_.acrossWidth : 0;
        if (z == 0) {
            return OnRing(x, y);
        }
        if (y == cube_.acrossHeight) {
            return OnRing(x, cube_.acrossHeight + z);
        }
        if (z == cube_.acrossDepth) {
            return OnRing(x, 2 * cube_.acrossHeight + cube_.acrossDepth - y);
        }
        if (y == 0) {
            return OnRing(x, ringLength_ - z);
        }
        return (right ? firstRight_ : firstLeft_) + (y - 1) * (cube_.acrossDepth - 1) + z - 1;
    }

private:
    V3d Position(double x, double y, double z) const {
        return {(x - 0.5) * cube_.width, (y - 0.5) * cube_.height, (z - 0.5) * cube_.depth};
    }
    /// The y and z of an outline row, from 0 to 1.
    V2d Outline(int ring) const {
        const int height = cube_.acrossHeight;
        const int depth = cube_.acrossDepth;
        if (ring < height) {
            return {Fraction(ring, height), 1.0};
        }
        if (ring < height + depth) {
            return {1.0, 1.0 - Fraction(ring - height, depth)};
        }
        if (ring < 2 * height + depth) {
            return {1.0 - Fraction(ring - height - depth, height), 0.0};
        }
        return {0.0, Fraction(ring - 2 * height - depth, depth)};
    }

    Cube cube_;
    int ringLength_;
    int firstRight_ = 0;
    int firstLeft_ = 0;
};

void HardenCube(MeshBuilder& builder, const CubeVertices& vertices, const Cube& cube) {
    const int height = cube.acrossHeight;
    const int depth = cube.acrossDepth;
    for (const int ring : {0, height, height + depth, 2 * height + depth}) {
        for (int x = 0; x < cube.acrossWidth; ++x) {
            builder.Harden(vertices.OnRing(x, ring), vertices.OnRing(x + 1, ring));
        }
    }
    for (int ring = 0; ring < vertices.RingLength(); ++ring) {
        for (const int x : {0, cube.acrossWidth}) {
            builder.Harden(vertices.OnRing(x, ring), vertices.OnRing(x, ring + 1));
        }
    }
}

/// A band of faces between two rings, or between a ring and a point. For a point, `upper` is the same vertex
/// at every step.
struct Band {
    int lower;
    int upper;
    double lowerV;
    double upperV;
    bool lowerIsPoint = false;
    bool upperIsPoint = false;
};

void AddBand(MeshBuilder& builder, const Band& band, int around) {
    const auto addRow = [&](bool isPoint, double v) {
        const int first = builder.AddUv(isPoint ? 0.5 / around : 0.0, v);
        for (int i = 1; i < around + (isPoint ? 0 : 1); ++i) {
            builder.AddUv((i + (isPoint ? 0.5 : 0.0)) / around, v);
        }
        return first;
    };
    const int lowerUv = addRow(band.lowerIsPoint, band.lowerV);
    const int upperUv = addRow(band.upperIsPoint, band.upperV);
    for (int i = 0; i < around; ++i) {
        const int next = (i + 1) % around;
        if (band.lowerIsPoint) {
            builder.AddFace({band.lower, band.upper + next, band.upper + i},
                            {lowerUv + i, upperUv + i + 1, upperUv + i});
        } else if (band.upperIsPoint) {
            builder.AddFace({band.lower + i, band.lower + next, band.upper},
                            {lowerUv + i, lowerUv + i + 1, upperUv + i});
        } else {
            builder.AddFace({band.lower + i, band.lower + next, band.upper + next, band.upper + i},
                            {lowerUv + i, lowerUv + i + 1, upperUv + i + 1, upperUv + i});
        }
    }
}

int AddRing(MeshBuilder& builder, double radius, double y, int around) {
    const int first = builder.VertexCount();
    for (int i = 0; i < around; ++i) {
        builder.AddVertex(OnRing(radius, y, i, around));
    }
    return first;
}

/// Adds the flat end of a cylinder or cone: rings inside the outermost one, down to a point. Without rings,
/// one face.
void AddCap(MeshBuilder& builder, const Cylinder& shape, int outline, bool isTop) {
    const double y = isTop ? shape.height * 0.5 : -shape.height * 0.5;
    const auto addFacing = [&](const Band& inner) {
        Band band = inner;
        if (!isTop) {
            std::swap(band.lower, band.upper);
            std::swap(band.lowerV, band.upperV);
            std::swap(band.lowerIsPoint, band.upperIsPoint);
        }
        AddBand(builder, band, shape.around);
    };
    if (shape.onCaps == 0) {
        std::vector<int> face;
        std::vector<int> uvs;
        for (int i = 0; i < shape.around; ++i) {
            const int step = isTop ? i : shape.around - 1 - i;
            const V3d position = OnRing(0.5, 0.0, step, shape.around);
            face.push_back(outline + step);
            uvs.push_back(builder.AddUv(0.5 + position.x, 0.5 - position.z));
        }
        builder.AddFace(face, uvs);
    }
    int outer = outline;
    for (int ring = 1; ring < shape.onCaps; ++ring) {
        const int inner =
            AddRing(builder, shape.radius * (1.0 - Fraction(ring, shape.onCaps)), y, shape.around);
        addFacing({outer, inner, Fraction(ring - 1, shape.onCaps), Fraction(ring, shape.onCaps)});
        outer = inner;
    }
    if (shape.onCaps > 0) {
        addFacing({outer, builder.AddVertex({0.0, y, 0.0}), Fraction(shape.onCaps - 1, shape.onCaps), 1.0,
                   false, true});
    }
    for (int i = 0; i < shape.around; ++i) {
        builder.Harden(outline + i, outline + (i + 1) % shape.around);
    }
}

} // namespace

std::shared_ptr<MeshData> Make(const Cube& wanted) {
    Cube cube = wanted;
    for (int* count : {&cube.acrossWidth, &cube.acrossHeight, &cube.acrossDepth}) {
        *count = std::max(1, *count);
    }
    MeshBuilder builder;
    const CubeVertices vertices(builder, cube);
    // In texture space, front, top, back and bottom are stacked; the sides are beside the front.
    int ring = 0;
    double v = 0.0;
    for (const int rows : {cube.acrossHeight, cube.acrossDepth, cube.acrossHeight, cube.acrossDepth}) {
        AddGrid(builder, cube.acrossWidth, rows, {0.375, v}, {0.25, 0.25},
                [&](int column, int row) { return vertices.OnRing(column, ring + row); });
        ring += rows;
        v += 0.25;
    }
    AddGrid(builder, cube.acrossDepth, cube.acrossHeight, {0.625, 0.0}, {0.25, 0.25},
            [&](int column, int row) { return vertices.OnSide(true, column, row); });
    AddGrid(builder, cube.acrossDepth, cube.acrossHeight, {0.125, 0.0}, {0.25, 0.25},
            [&](int column, int row) { return vertices.OnSide(false, cube.acrossDepth - column, row); });
    HardenCube(builder, vertices, cube);
    return builder.Take();
}

std::shared_ptr<MeshData> Make(const Plane& plane) {
    const int columns = std::max(1, plane.acrossWidth);
    const int rows = std::max(1, plane.acrossHeight);
    MeshBuilder builder;
    for (int row = 0; row <= rows; ++row) {
        for (int column = 0; column <= columns; ++column) {
            builder.AddVertex({(Fraction(column, columns) - 0.5) * plane.width, 0.0,
                               (0.5 - Fraction(row, rows)) * plane.height});
        }
    }
    AddGrid(builder, columns, rows, {0.0, 0.0}, {1.0, 1.0},
            [&](int column, int row) { return row * (columns + 1) + column; });
    return builder.Take();
}

std::shared_ptr<MeshData> Make(const Sphere& sphere) {
    const int around = std::max(3, sphere.around);
    const int along = std::max(3, sphere.along);
    MeshBuilder builder;
    for (int ring = 1; ring < along; ++ring) {
        const double angle = M_PI * Fraction(ring, along);
        AddRing(builder, sphere.radius * std::sin(angle), -sphere.radius * std::cos(angle), around);
    }
    const int south = builder.AddVertex({0.0, -sphere.radius, 0.0});
    const int north = builder.AddVertex({0.0, sphere.radius, 0.0});
    for (int ring = 1; ring < along - 1; ++ring) {
        AddBand(builder,
                {(ring - 1) * around, ring * around, Fraction(ring, along), Fraction(ring + 1, along)},
                around);
    }
    AddBand(builder, {south, 0, 0.0, Fraction(1, along), true, false}, around);
    AddBand(builder, {(along - 2) * around, north, Fraction(along - 1, along), 1.0, false, true}, around);
    return builder.Take();
}

std::shared_ptr<MeshData> Make(const Cylinder& wanted) {
    Cylinder shape = wanted;
    shape.around = std::max(3, shape.around);
    shape.along = std::max(1, shape.along);
    shape.onCaps = std::max(0, shape.onCaps);
    MeshBuilder builder;
    const int lastRing = shape.isCone ? shape.along - 1 : shape.along;
    for (int ring = 0; ring <= lastRing; ++ring) {
        const double fraction = Fraction(ring, shape.along);
        AddRing(builder, shape.isCone ? shape.radius * (1.0 - fraction) : shape.radius,
                (fraction - 0.5) * shape.height, shape.around);
    }
    const int apex = shape.isCone ? builder.AddVertex({0.0, shape.height * 0.5, 0.0}) : -1;
    for (int ring = 0; ring < lastRing; ++ring) {
        AddBand(builder,
                {ring * shape.around, (ring + 1) * shape.around, Fraction(ring, shape.along),
                 Fraction(ring + 1, shape.along)},
                shape.around);
    }
    if (shape.isCone) {
        AddBand(builder, {lastRing * shape.around, apex, Fraction(lastRing, shape.along), 1.0, false, true},
                shape.around);
    }
    AddCap(builder, shape, 0, false);
    if (!shape.isCone) {
        AddCap(builder, shape, lastRing * shape.around, true);
    }
    return builder.Take();
}

void TurnTo(MeshData& mesh, const V3d& axis) {
    const V3d up(0.0, 1.0, 0.0);
    const V3d wanted = axis.normalized();
    if (axis.length() < 1e-10 || (wanted - up).length() < 1e-10) {
        return;
    }
    Imath::Quatd turn;
    turn.setRotation(up, wanted);
    for (Imath::V3f& vertex : mesh.vertices) {
        vertex = Imath::V3f(turn.rotateVector(V3d(vertex)));
    }
}

} // namespace lightbox::poly
