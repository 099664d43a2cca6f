#pragma once

#include "paint/Stroke.h"
#include "paint/ToolType.h"

#include <QImage>
#include <QList>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <utility>

/// A plain implementation of the documented arithmetic of the freehand tools: one pixel at a time, and a new
/// grid for every stamp. The real painter must match it exactly.
class ReferencePainter {
public:
    explicit ReferencePainter(QImage& image)
        : image_(image) {}

    unsigned char grid[102][102] = {}; // [column][row]

    void UpdateGridWu(float hardness, float r, float opacity, vellix::ToolType tool) {
        std::memset(grid, 0, sizeof grid);
        if (r == 1.0f) {
            grid[1][1] = grid[1][2] = grid[2][1] = grid[2][2] = static_cast<unsigned char>(opacity * 255);
            return;
        }
        const int q = int(std::round(r * r / std::sqrt(2 * r * r)));
        for (int x = 0; x <= q; ++x) {
            const float y = r * std::sqrt(1 - float(x * x) / (r * r));
            const int fy = int(std::floor(y));
            if (tool == vellix::ToolType::Pencil) {
                const float a = (y - float(fy)) * opacity;
                Outline(x, fy + 1, r, a, tool);
                Outline(x, fy, r, opacity - a, tool);
                Outline(fy + 1, x, r, a, tool);
                Outline(fy, x, r, opacity - a, tool);
            }
            Fill(x, fy, hardness, r, opacity, tool);
            Fill(fy, x, hardness, r, opacity, tool);
        }
    }

    void UpdateBrushGrid(int size, float r, float opacity, vellix::ToolType tool) {
        if (size <= 19) {
            UpdateGridWu(0.0f, r + 1.0f, opacity * 0.4f, tool);
        } else {
            UpdateGridWu(0.0f, r, opacity, tool);
        }
    }

    void DrawFreehand(const QList<vellix::StrokePoint>& points, vellix::ToolType tool) {
        for (int i = 1; i < points.size(); ++i) {
            const vellix::StrokePoint& from = points[i - 1];
            const vellix::StrokePoint& to = points[i];
            if (tool == vellix::ToolType::Brush) {
                BrushSegment(from.position.x(), from.position.y(), to.position.x(), to.position.y(),
                             from.size, from.opacity, to.opacity, i == 1);
            } else {
                Segment(from.position.x(), from.position.y(), to.position.x(), to.position.y(), from.size,
                        from.opacity, to.opacity, tool);
            }
        }
    }

    void Segment(int x0, int y0, int x1, int y1, int size, float o0, float o1, vellix::ToolType tool) {
        const int dx = std::abs(x1 - x0), sx = x1 > x0 ? 1 : -1;
        const int dy = std::abs(y1 - y0), sy = y1 > y0 ? 1 : -1;
        int error = dx > dy ? dx / 2 : -(dy / 2);
        const float step = dx + dy == 0 ? 0.0f : (o1 - o0) / float(dx + dy);
        const int spacing = int(float(size) * 0.1f);
        float a = o0;
        int walked = 0;
        for (int x = x0, y = y0;;) {
            PaintHard(x, y, size, a, tool, spacing <= 1 || walked % spacing == 0, walked == 0);
            ++walked;
            if (x == x1 && y == y1) {
                break;
            }
            const int before = error;
            if (before > -dx) {
                error -= dy;
                x += sx;
                a += step;
            }
            if (before < dy) {
                error += dx;
                y += sy;
                a += step;
            }
        }
    }

    void BrushSegment(int x0, int y0, int x1, int y1, int size, float o0, float o1, bool first) {
        const float d = Distance(x0, y0, x1, y1), r = 0.5f * float(size);
        if (first) {
            UpdateBrushGrid(size, r, o0, vellix::ToolType::Brush);
            AdditiveBrush(x0, y0, r, o0, o0);
        }
        const bool steep = std::abs(y1 - y0) > std::abs(x1 - x0);
        if (steep) {
            std::swap(x0, y0);
            std::swap(x1, y1);
        }
        const int penX = x0, penY = y0;
        const bool backward = x0 > x1;
        if (backward) {
            std::swap(x0, x1);
            std::swap(y0, y1);
        }
        const auto stamp = [&](int major, int minor, float flow, float cap) {
            AdditiveBrush(steep ? minor : major, steep ? major : minor, r, flow, cap);
        };
        const auto end = [&](int major, int minor, float gap, float cap) {
            UpdateBrushGrid(size, r, cap, vellix::ToolType::Brush);
            stamp(major, minor, gap * Rfpart(float(minor)), cap);
            stamp(major, minor + 1, gap * Fpart(float(minor)), cap);
        };
        end(x0, y0, Rfpart(float(x0) + 0.5f), backward ? o1 : o0);
        end(x1, y1, Fpart(float(x1) + 0.5f), backward ? o0 : o1);
        const float gradient = float(y1 - y0) / float(x1 - x0);
        float m = float(y0) + gradient;
        for (int x = x0 + 1; x <= x1 - 1; ++x, m += gradient) {
            float cap = o1;
            if (d > 0 && o1 != o0) {
                cap = o0 + (o1 - o0) * Distance(penX, penY, x, int(m)) / d;
                cap = std::min(std::max(cap, 0.0f), 1.0f);
            }
            UpdateBrushGrid(size, r, cap, vellix::ToolType::Brush);
            stamp(x, int(m), Rfpart(m), cap);
            stamp(x, int(m) + 1, Fpart(m), cap);
        }
    }

private:
    static float Fpart(float x) { return x >= 0 ? x - float(int(x)) : 1 - (x - float(int(x))); }
    static float Rfpart(float x) { return 1 - Fpart(x); }
    static float Distance(int x0, int y0, int x1, int y1) { return float(std::hypot(x1 - x0, y1 - y0)); }

    unsigned char* Alpha(int x, int y) {
        return x >= 0 && x < 1024 && y >= 0 && y < 1024 ? image_.scanLine(y) + 4 * x + 3 : nullptr;
    }

    void Outline(int x, int y, float r, float alpha, vellix::ToolType tool) {
        Mirrored(x, y, tool == vellix::ToolType::Pencil ? r + 1 : r, alpha);
    }

    void Fill(int xmax, int y, float hardness, float r, float opacity, vellix::ToolType tool) {
        for (int i = 0; i <= xmax; ++i) {
            float value = opacity;
            if (tool == vellix::ToolType::Brush) {
                const float d = std::sqrt(float(i * i + y * y));
                float t = 0;
                if (r - hardness > 0) {
                    t = std::min(std::max((d - hardness) / (r - hardness), 0.0f), 1.0f);
                }
                value = (1 - t) * opacity;
            }
            Mirrored(i, y, tool == vellix::ToolType::Pencil ? r + 1 : r, value);
        }
    }

    void Mirrored(int x, int y, float c, float alpha) {
        const float dx = float(x), dy = float(y);
        for (const float column : {c + dx, c - dx}) {
            for (const float row : {c + dy, c - dy}) {
                if (column >= 0 && column < 102 && row >= 0 && row < 102) {
                    grid[int(column)][int(row)] = static_cast<unsigned char>(alpha * 255);
                }
            }
        }
    }

    void PaintHard(int x, int y, int size, float a, vellix::ToolType tool, bool stampHere, bool firstStamp) {
        const bool brush = tool == vellix::ToolType::Brush;
        if (size <= 1 && !brush) {
            unsigned char* alpha = x > 0 ? Alpha(x, y) : nullptr;
            if (alpha) {
                const int value = int(double(a) * 255.0);
                *alpha = tool == vellix::ToolType::Eraser ? 0 : std::max<int>(*alpha, value);
            }
            return;
        }
        if (!stampHere) {
            return;
        }
        const float r = 0.5f * float(size);
        const int half = (size + 1) / 2;
        if (brush && size <= 19) {
            UpdateGridWu(0.0f, r + (size <= 2 ? 1.5f : size == 3 ? 1.25f : 1.0f), 0.4f * a, tool);
        } else {
            UpdateGridWu(0.0f, r, a, tool);
        }
        const int x0 = x - half, x1 = x + half + 1, y0 = y - half, y1 = y + half + 1;
        if (tool == vellix::ToolType::Eraser) {
            Each(x0, y0, x1, y1, [](int old, int g) { return g != 0 ? 0 : old; });
        } else if (brush && !(size <= 19 && firstStamp)) {
            Additive(x0, y0, x1, y1, a, 1.0f);
        } else {
            Each(x0, y0, x1, y1, [](int old, int g) { return std::max(old, g); });
        }
    }

    void AdditiveBrush(int x, int y, float r, float flow, float cap) {
        Additive(int(float(x) - r), int(float(y) - r), int(float(x) + r + 1), int(float(y) + r + 1), cap,
                 flow);
    }

    void Additive(int x0, int y0, int x1, int y1, float cap, float flow) {
        Each(x0, y0, x1, y1, [&](int old, int g) {
            const int n = old + int(float(g) * flow);
            return std::max(old, std::min(int(cap * 255), n));
        });
    }

    template <typename Blend>
    void Each(int x0, int y0, int x1, int y1, Blend blend) {
        for (int x = x0 - 1; x < x1; ++x) {
            for (int y = y0 - 1; y < y1; ++y) {
                if (unsigned char* alpha = Alpha(x, y)) {
                    *alpha = static_cast<unsigned char>(blend(*alpha, grid[x - (x0 - 1)][y - (y0 - 1)]));
                }
            }
        }
    }

    QImage& image_;
};
