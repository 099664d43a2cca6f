#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace lightbox {

/// One face in the text form of setAttr's type polyFaces: "f 4 0 4 1 -5", holes "h 3 9 10 11" and texture
/// coordinates "mu SET 4 0 1 3 2". Any white space separates the parts. Other parts are kept as text.
class FaceText {
public:
    struct Uvs {
        int set = 0;
        std::vector<int> ids;
        std::string Text() const;
    };

    /// Throws SceneError when the text is not a face.
    explicit FaceText(std::string_view text);

    /// Edge indexes. A negative number -(edge + 1) stands for the edge in reverse direction.
    const std::vector<int>& Edges() const { return edges_; }
    const std::vector<std::vector<int>>& Holes() const { return holes_; }
    const std::vector<Uvs>& UvSets() const { return uvSets_; }
    const std::vector<std::string>& OtherParts() const { return otherParts_; }

    /// Returns "WORD COUNT NUMBER NUMBER ...".
    template <class Iterator>
    static std::string Run(std::string word, Iterator begin, Iterator end) {
        word += " " + std::to_string(end - begin);
        for (; begin != end; ++begin) {
            word += " " + std::to_string(*begin);
        }
        return word;
    }

private:
    std::vector<int> edges_;
    std::vector<std::vector<int>> holes_;
    std::vector<Uvs> uvSets_;
    std::vector<std::string> otherParts_;
};

} // namespace lightbox
