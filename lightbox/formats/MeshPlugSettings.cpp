#include "formats/MeshPlugSettings.h"

#include "formats/FaceText.h"
#include "scene/MeshData.h"
#include "scene/MeshNode.h"
#include "scene/SceneError.h"

#include <Imath/ImathVec.h>
#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <set>

namespace lightbox {
namespace {

using Imath::V2f;
using Imath::V3f;

enum class Part { Vertices, Tweaks, Edges, Faces, Normals, UvSets, None };

/// Elements per statement, as in Maya's files. Lines stay short enough for all readers.
constexpr std::size_t ELEMENTS_PER_STATEMENT = 166;
constexpr std::size_t FACES_PER_STATEMENT = 500;
constexpr int MAX_UV_SETS = 1024;

Part PartOf(const std::string& name) {
    struct Names {
        const char* longName;
        const char* shortName;
        Part part;
    };
    for (const Names& names : {Names{"vrts", "vt", Part::Vertices}, Names{"pnts", "pt", Part::Tweaks},
                               Names{"edge", "ed", Part::Edges}, Names{"face", "fc", Part::Faces},
                               Names{"normals", "n", Part::Normals}, Names{"uvSet", "uvst", Part::UvSets}}) {
        if (name == names.longName || name == names.shortName) {
            return names.part;
        }
    }
    return Part::None;
}

std::string HeadOf(const std::string& path) {
    return path.substr(0, path.find_first_of("[."));
}

/// The parsed path of a geometry attribute: "uvst[0].uvsp[0:13]" or "pt[3].px". -1 stands for no index.
struct Target {
    Part part = Part::None;
    int first = -1;
    int last = -1;
    std::string child;
    int childFirst = -1;
    int childLast = -1;
};

[[noreturn]] void Refuse(const std::string& path, const std::string& why) {
    throw SceneError("The mesh attribute \"" + path + "\" " + why);
}

/// Reads one "name[first:last]" of a path and returns the name. Moves `position` past it and its dot. Leaves
/// `first` and `last` alone when there is no index.
std::string ReadStep(const std::string& path, std::size_t& position, int& first, int& last) {
    const std::size_t end = std::min(path.find('.', position), path.size());
    std::string step = path.substr(position, end - position);
    position = std::min(end + 1, path.size());
    const std::size_t bracket = step.find('[');
    if (bracket == std::string::npos) {
        return step;
    }
    const char* text = step.data() + bracket + 1;
    const char* const stop = step.data() + step.size();
    auto result = std::from_chars(text, stop, first);
    last = first;
    if (result.ec == std::errc() && result.ptr != stop && *result.ptr == ':') {
        result = std::from_chars(result.ptr + 1, stop, last);
    }
    const bool isWhole = result.ec == std::errc() && result.ptr + 1 == stop && *result.ptr == ']';
    if (!isWhole || first < 0 || last < first) {
        Refuse(path, "has an invalid index.");
    }
    return step.substr(0, bracket);
}

Target Parse(const std::string& path) {
    Target target;
    std::size_t position = 0;
    target.part = PartOf(ReadStep(path, position, target.first, target.last));
    if (position < path.size()) {
        target.child = ReadStep(path, position, target.childFirst, target.childLast);
    }
    return target;
}

/// Returns the axis (0 to 2) of a point's child attribute such as "px", "pntx" or "vrtx"; -1 for other names.
int AxisOf(const std::string& child) {
    const std::string name = child.substr(0, child.size() - std::min<std::size_t>(1, child.size()));
    for (const char* known : {"p", "pnt", "v", "vrt", "nx", "nrm", "normal"}) {
        if (name == known && child.back() >= 'x' && child.back() <= 'z') {
            return child.back() - 'x';
        }
    }
    return -1;
}

std::size_t CheckedCount(const PlugSetting& setting, int first, int last, std::size_t perElement) {
    const auto count = static_cast<std::size_t>(static_cast<long long>(last) - first + 1);
    if (first < 0 || setting.numbers.size() != count * perElement) {
        Refuse(setting.path, "takes " + std::to_string(perElement) + " numbers for each element.");
    }
    return count;
}

/// Grows the elements to hold `count` from `first` on. A gap before them is refused.
template <class Elements>
void GrowTo(Elements& elements, const PlugSetting& setting, int first, std::size_t count) {
    const auto begin = static_cast<std::size_t>(first);
    if (begin > elements.size()) {
        Refuse(setting.path, "skips elements before it.");
    }
    elements.resize(std::max(elements.size(), begin + count));
}

void SetPoints(std::vector<V3f>& points, const PlugSetting& setting, const Target& target) {
    if (const int axis = AxisOf(target.child); axis >= 0) {
        if (setting.numbers.size() != 1 || target.first < 0 ||
            static_cast<std::size_t>(target.first) >= points.size()) {
            Refuse(setting.path, "cannot be set.");
        }
        points[static_cast<std::size_t>(target.first)][axis] = static_cast<float>(setting.numbers.front());
        return;
    }
    const std::size_t count = CheckedCount(setting, target.first, target.last, 3);
    GrowTo(points, setting, target.first, count);
    for (std::size_t i = 0; i < count; ++i) {
        const double* numbers = &setting.numbers[i * 3];
        points[static_cast<std::size_t>(target.first) + i] = V3f(
            static_cast<float>(numbers[0]), static_cast<float>(numbers[1]), static_cast<float>(numbers[2]));
    }
}

void SetTweaks(MeshData& mesh, const PlugSetting& setting, const Target& target) {
    if (const int axis = AxisOf(target.child); axis >= 0) {
        if (setting.numbers.size() != 1 || target.first < 0) {
            Refuse(setting.path, "cannot be set.");
        }
        mesh.tweaks.try_emplace(target.first, 0.0f).first->second[axis] =
            static_cast<float>(setting.numbers.front());
        return;
    }
    const std::size_t count = CheckedCount(setting, target.first, target.last, 3);
    for (std::size_t i = 0; i < count; ++i) {
        const double* numbers = &setting.numbers[i * 3];
        mesh.tweaks[target.first + static_cast<int>(i)] = V3f(
            static_cast<float>(numbers[0]), static_cast<float>(numbers[1]), static_cast<float>(numbers[2]));
    }
}

int ToInt(double number) {
    return static_cast<int>(std::clamp(number, -2147483648.0, 2147483647.0));
}

void SetEdges(MeshData& mesh, const PlugSetting& setting, const Target& target) {
    const std::size_t count = CheckedCount(setting, target.first, target.last, 3);
    GrowTo(mesh.edges, setting, target.first, count);
    for (std::size_t i = 0; i < count; ++i) {
        const double* numbers = &setting.numbers[i * 3];
        mesh.edges[static_cast<std::size_t>(target.first) + i] = {ToInt(numbers[0]), ToInt(numbers[1]),
                                                                  ToInt(numbers[2])};
    }
}

MeshData::UvSet& UvSetAt(MeshData& mesh, int index, const std::string& path) {
    if (index < 0 || index >= MAX_UV_SETS) {
        Refuse(path, "has an invalid index.");
    }
    const auto count = static_cast<std::size_t>(index) + 1;
    mesh.uvSets.resize(std::max(mesh.uvSets.size(), count));
    return mesh.uvSets[count - 1];
}

void SetUvs(MeshData& mesh, const PlugSetting& setting, const Target& target) {
    if (target.child == "uvsn" || target.child == "uvSetName") {
        if (setting.texts.size() != 1) {
            Refuse(setting.path, "takes a text.");
        }
        UvSetAt(mesh, target.first, setting.path).name = setting.texts.front();
        return;
    }
    if (target.child != "uvsp" && target.child != "uvSetPoints") {
        Refuse(setting.path, "is not known.");
    }
    const std::size_t count = CheckedCount(setting, target.childFirst, target.childLast, 2);
    std::vector<V2f>& coordinates = UvSetAt(mesh, target.first, setting.path).coordinates;
    GrowTo(coordinates, setting, target.childFirst, count);
    for (std::size_t i = 0; i < count; ++i) {
        coordinates[static_cast<std::size_t>(target.childFirst) + i] =
            V2f(static_cast<float>(setting.numbers[i * 2]), static_cast<float>(setting.numbers[i * 2 + 1]));
    }
}

void AddFaces(MeshData& mesh, const PlugSetting& setting, const Target& target) {
    const auto count = static_cast<std::size_t>(static_cast<long long>(target.last) - target.first + 1);
    if (setting.texts.size() != count || target.first < 0) {
        Refuse(setting.path, "has a range that does not match its number of faces.");
    }
    if (static_cast<std::size_t>(target.first) != mesh.FaceCount()) {
        Refuse(setting.path, "takes only new faces, after the existing ones.");
    }
    // All faces are parsed before the first is added, so a bad one leaves the mesh unchanged.
    const std::vector<FaceText> faces(setting.texts.begin(), setting.texts.end());
    for (const FaceText& face : faces) {
        const std::size_t index = mesh.FaceCount();
        mesh.faceBegins.push_back(mesh.corners.size());
        mesh.corners.insert(mesh.corners.end(), face.Edges().begin(), face.Edges().end());
        MeshData::FaceExtra extra{face.Holes(), {}};
        for (const FaceText::Uvs& uvs : face.UvSets()) {
            const bool isCommon =
                uvs.set >= 0 && uvs.set < MAX_UV_SETS && uvs.ids.size() == face.Edges().size();
            if (!isCommon) {
                extra.otherParts.push_back(uvs.Text());
                continue;
            }
            MeshData::UvSet& set = UvSetAt(mesh, uvs.set, setting.path);
            set.faces.push_back(index);
            set.ids.insert(set.ids.end(), uvs.ids.begin(), uvs.ids.end());
        }
        extra.otherParts.insert(extra.otherParts.end(), face.OtherParts().begin(), face.OtherParts().end());
        if (!extra.holes.empty() || !extra.otherParts.empty()) {
            mesh.faceExtras.emplace(index, std::move(extra));
        }
    }
}

/// Returns the double whose shortest decimal text is that of the float.
double ShortestDecimal(float number) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text - 1, number).ptr;
    *end = '\0';
    return std::strtod(text, nullptr);
}

template <std::size_t N, class NumberOf>
void CollectRun(std::vector<PlugSetting>& settings, const std::string& name, std::size_t first,
                std::size_t count, const char* type, const NumberOf& numberOf) {
    for (std::size_t begin = 0; begin < count; begin += ELEMENTS_PER_STATEMENT) {
        const std::size_t end = std::min(count, begin + ELEMENTS_PER_STATEMENT);
        PlugSetting setting;
        setting.path = name + "[" + std::to_string(first + begin);
        setting.path += end - begin > 1 ? ":" + std::to_string(first + end - 1) + "]" : "]";
        if (begin == 0 && count > 1) {
            setting.size = static_cast<unsigned>(count);
        }
        setting.hasValue = true;
        setting.type = type;
        for (std::size_t i = begin; i < end; ++i) {
            for (std::size_t part = 0; part < N; ++part) {
                setting.numbers.push_back(numberOf(i, static_cast<int>(part)));
            }
        }
        settings.push_back(std::move(setting));
    }
}

void CollectUvSets(std::vector<PlugSetting>& settings, const MeshData& mesh) {
    for (std::size_t index = 0; index < mesh.uvSets.size(); ++index) {
        const MeshData::UvSet& set = mesh.uvSets[index];
        const std::string path = "uvst[" + std::to_string(index) + "].";
        if (!set.name.empty()) {
            PlugSetting name;
            name.path = path + "uvsn";
            name.hasValue = true;
            name.type = "string";
            name.texts = {set.name};
            settings.push_back(std::move(name));
        }
        CollectRun<2>(settings, path + "uvsp", 0, set.coordinates.size(), "float2",
                      [&](std::size_t i, int part) { return ShortestDecimal(set.coordinates[i][part]); });
    }
}

void CollectTweaks(std::vector<PlugSetting>& settings, const MeshData& mesh) {
    auto begin = mesh.tweaks.begin();
    while (begin != mesh.tweaks.end()) {
        std::vector<V3f> run{begin->second};
        auto end = std::next(begin);
        while (end != mesh.tweaks.end() && end->first - begin->first == static_cast<int>(run.size())) {
            run.push_back(end->second);
            ++end;
        }
        CollectRun<3>(settings, "pt", static_cast<std::size_t>(begin->first), run.size(), "float3",
                      [&](std::size_t i, int axis) { return ShortestDecimal(run[i][axis]); });
        begin = end;
    }
}

void CollectFaces(std::vector<PlugSetting>& settings, const MeshData& mesh) {
    struct Cursor {
        std::size_t face = 0;
        std::size_t id = 0;
    };
    std::vector<Cursor> cursors(mesh.uvSets.size());
    for (std::size_t begin = 0; begin < mesh.FaceCount(); begin += FACES_PER_STATEMENT) {
        const std::size_t end = std::min(mesh.FaceCount(), begin + FACES_PER_STATEMENT);
        PlugSetting setting;
        setting.path = "fc[" + std::to_string(begin);
        setting.path += end - begin > 1 ? ":" + std::to_string(end - 1) + "]" : "]";
        if (begin == 0 && mesh.FaceCount() > 1) {
            setting.size = static_cast<unsigned>(mesh.FaceCount());
        }
        setting.hasValue = true;
        setting.type = "polyFaces";
        for (std::size_t face = begin; face < end; ++face) {
            const auto first = mesh.corners.begin() + static_cast<std::ptrdiff_t>(mesh.FaceBegin(face));
            const std::size_t count = mesh.FaceEnd(face) - mesh.FaceBegin(face);
            std::string text = FaceText::Run("f", first, first + static_cast<std::ptrdiff_t>(count));
            const auto extra = mesh.faceExtras.find(face);
            if (extra != mesh.faceExtras.end()) {
                for (const std::vector<int>& hole : extra->second.holes) {
                    text += "\n" + FaceText::Run("h", hole.begin(), hole.end());
                }
            }
            for (std::size_t set = 0; set < cursors.size(); ++set) {
                Cursor& at = cursors[set];
                const MeshData::UvSet& uvs = mesh.uvSets[set];
                if (at.face < uvs.faces.size() && uvs.faces[at.face] == face) {
                    const auto id = uvs.ids.begin() + static_cast<std::ptrdiff_t>(at.id);
                    text += "\n" + FaceText::Run("mu " + std::to_string(set), id,
                                                 id + static_cast<std::ptrdiff_t>(count));
                    ++at.face;
                    at.id += count;
                }
            }
            if (extra != mesh.faceExtras.end()) {
                for (const std::string& kept : extra->second.otherParts) {
                    text += "\n" + kept;
                }
            }
            setting.texts.push_back(std::move(text));
        }
        settings.push_back(std::move(setting));
    }
}

} // namespace

bool MeshPlugSettings::Handles(const Node& node, const std::string& path) {
    return MeshNode::Is(node) && PartOf(HeadOf(path)) != Part::None;
}

bool MeshPlugSettings::IsLength(const std::string& path) {
    const Part part = PartOf(HeadOf(path));
    return part == Part::Vertices || part == Part::Tweaks;
}

bool MeshPlugSettings::IsCarriedAlong(const Node& node, const std::string& path) {
    static const std::set<std::string> names{"cd",   "creaseData",
                                             "cvd",  "creaseVertexData",
                                             "pd",   "pinData",
                                             "hfd",  "holeFaceData",
                                             "bnr",  "covm",
                                             "cdvm", "colorPerVertex",
                                             "clst", "colorSet",
                                             "iog",  "instObjGroups",
                                             "ciog", "compInstObjGroups",
                                             "pv",   "uvPivot",
                                             "gtag", "componentTags"};
    const std::string head = HeadOf(path);
    return MeshNode::Is(node) && names.count(head) > 0;
}

void MeshPlugSettings::Change(MeshData& mesh, const PlugSetting& setting) {
    if (!setting.hasValue) {
        return;
    }
    const Target target = Parse(setting.path);
    switch (target.part) {
    case Part::Vertices:
        SetPoints(mesh.vertices, setting, target);
        break;
    case Part::Normals:
        SetPoints(mesh.normals, setting, target);
        break;
    case Part::Tweaks:
        SetTweaks(mesh, setting, target);
        break;
    case Part::Edges:
        SetEdges(mesh, setting, target);
        break;
    case Part::UvSets:
        SetUvs(mesh, setting, target);
        break;
    default:
        AddFaces(mesh, setting, target);
    }
}

std::vector<double> MeshPlugSettings::Numbers(const MeshData& mesh, const std::string& path,
                                              std::size_t& count) {
    const Target target = Parse(path);
    std::vector<double> numbers;
    const auto addPoints = [&](const auto& points, int first, int last, int size) {
        count = points.size();
        for (int i = first; first >= 0 && i <= last && static_cast<std::size_t>(i) < points.size(); ++i) {
            for (int part = 0; part < size; ++part) {
                numbers.push_back(ShortestDecimal(points[static_cast<std::size_t>(i)][part]));
            }
        }
    };
    switch (target.part) {
    case Part::Vertices:
        addPoints(mesh.vertices, target.first, target.last, 3);
        break;
    case Part::Normals:
        addPoints(mesh.normals, target.first, target.last, 3);
        break;
    case Part::UvSets:
        count = mesh.uvSets.size();
        if (target.first >= 0 && static_cast<std::size_t>(target.first) < mesh.uvSets.size()) {
            addPoints(mesh.uvSets[static_cast<std::size_t>(target.first)].coordinates, target.childFirst,
                      target.childLast, 2);
        }
        break;
    case Part::Tweaks:
        count = mesh.tweaks.size();
        for (auto tweak = mesh.tweaks.lower_bound(target.first);
             target.first >= 0 && tweak != mesh.tweaks.end() && tweak->first <= target.last; ++tweak) {
            numbers.insert(numbers.end(), {ShortestDecimal(tweak->second.x), ShortestDecimal(tweak->second.y),
                                           ShortestDecimal(tweak->second.z)});
        }
        break;
    case Part::Edges:
        count = mesh.edges.size();
        for (int i = target.first;
             i >= 0 && i <= target.last && static_cast<std::size_t>(i) < mesh.edges.size(); ++i) {
            const MeshData::Edge& edge = mesh.edges[static_cast<std::size_t>(i)];
            numbers.insert(numbers.end(), {static_cast<double>(edge.start), static_cast<double>(edge.end),
                                           static_cast<double>(edge.smooth)});
        }
        break;
    default:
        count = mesh.FaceCount();
    }
    if (const int axis = AxisOf(target.child); axis >= 0 && numbers.size() == 3) {
        return {numbers[static_cast<std::size_t>(axis)]};
    }
    return numbers;
}

std::vector<PlugSetting> MeshPlugSettings::Collect(const MeshData& mesh) {
    std::vector<PlugSetting> settings;
    CollectUvSets(settings, mesh);
    CollectTweaks(settings, mesh);
    CollectRun<3>(settings, "vt", 0, mesh.vertices.size(), "",
                  [&](std::size_t i, int axis) { return ShortestDecimal(mesh.vertices[i][axis]); });
    CollectRun<3>(settings, "ed", 0, mesh.edges.size(), "", [&](std::size_t i, int part) {
        const MeshData::Edge& edge = mesh.edges[i];
        return static_cast<double>(part == 0 ? edge.start : part == 1 ? edge.end : edge.smooth);
    });
    CollectRun<3>(settings, "n", 0, mesh.normals.size(), "float3",
                  [&](std::size_t i, int axis) { return ShortestDecimal(mesh.normals[i][axis]); });
    CollectFaces(settings, mesh);
    return settings;
}

} // namespace lightbox
