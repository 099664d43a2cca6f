#include "formats/PlugSetting.h"

#include <map>

namespace lightbox {
namespace {

int Lookup(const std::map<std::string, int>& table, const std::string& key) {
    const auto found = table.find(key);
    return found == table.end() ? 0 : found->second;
}

} // namespace

int NumberCountOfType(const std::string& type) {
    static const std::map<std::string, int> counts{
        {"short2", 2},  {"short3", 3},  {"long2", 2},   {"long3", 3},   {"float2", 2},    {"float3", 3},
        {"double2", 2}, {"double3", 3}, {"double4", 4}, {"matrix", 16}, {"fltMatrix", 16}};
    return Lookup(counts, type);
}

int NumbersPerItemOfType(const std::string& type) {
    static const std::map<std::string, int> counts{
        {"doubleArray", 1}, {"floatArray", 1}, {"Int32Array", 1}, {"vectorArray", 3}, {"pointArray", 4}};
    return Lookup(counts, type);
}

} // namespace lightbox
