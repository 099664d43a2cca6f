#include "paint/PngHuffman.h"

#include <algorithm>
#include <array>

namespace vellix {
namespace png_huffman {

namespace {

constexpr int MAX_BITS = 15;

struct Node {
    quint32 weight = 0;
    int symbol = 0; // of a leaf
    int parent = 0;
    int depth = 0;
};

// Two leaves for each inner node: the leaves by weight, then the inner nodes in the order in which they are
// made, which is by weight too.
using Tree = std::array<Node, 2 * MAX_SYMBOLS>;

int CollectLeaves(const quint32* counts, int symbols, Tree& tree) {
    int leaves = 0;
    for (int symbol = 0; symbol < symbols; ++symbol) {
        if (counts[symbol] != 0) {
            tree[leaves].weight = counts[symbol];
            tree[leaves++].symbol = symbol;
        }
    }
    std::sort(tree.begin(), tree.begin() + leaves, [](const Node& a, const Node& b) {
        return a.weight != b.weight ? a.weight < b.weight : a.symbol < b.symbol;
    });
    return leaves;
}

// Huffman's algorithm with two queues (van Leeuwen, 1976). Returns the depth of the deepest leaf.
int Grow(Tree& tree, int leaves) {
    const int root = 2 * leaves - 2;
    int leaf = 0;
    int inner = leaves;
    for (int made = leaves; made <= root; ++made) {
        tree[made].weight = 0;
        for (int child = 0; child < 2; ++child) {
            const bool takesLeaf =
                leaf < leaves && (inner == made || tree[leaf].weight <= tree[inner].weight);
            Node& taken = tree[takesLeaf ? leaf++ : inner++];
            taken.parent = made;
            tree[made].weight += taken.weight;
        }
    }
    tree[root].depth = 0;
    for (int node = root - 1; node >= 0; --node) {
        tree[node].depth = tree[tree[node].parent].depth + 1;
    }
    return tree[0].depth; // the lightest leaf is among the deepest
}

quint16 Reversed(unsigned word, int bits) {
    unsigned turned = 0;
    for (int bit = 0; bit < bits; ++bit) {
        turned = turned << 1 | (word >> bit & 1);
    }
    return quint16(turned);
}

} // namespace

void MakeLengths(const quint32* counts, int symbols, int mostBits, quint8* lengths) {
    Tree tree;
    const int leaves = CollectLeaves(counts, symbols, tree);
    // Weights that lie closer together make a flatter tree; equal ones make the flattest.
    while (Grow(tree, leaves) > mostBits) {
        for (int leaf = 0; leaf < leaves; ++leaf) {
            tree[leaf].weight = (tree[leaf].weight + 1) / 2;
        }
    }
    std::fill(lengths, lengths + symbols, quint8(0));
    for (int leaf = 0; leaf < leaves; ++leaf) {
        lengths[tree[leaf].symbol] = quint8(tree[leaf].depth);
    }
}

void MakeWords(const quint8* lengths, int symbols, quint16* words) {
    std::array<unsigned, MAX_BITS + 1> ofLength{};
    for (int symbol = 0; symbol < symbols; ++symbol) {
        ++ofLength[lengths[symbol]];
    }
    ofLength[0] = 0;
    std::array<unsigned, MAX_BITS + 2> next{};
    for (int bits = 1; bits <= MAX_BITS; ++bits) {
        next[bits + 1] = (next[bits] + ofLength[bits]) << 1;
    }
    for (int symbol = 0; symbol < symbols; ++symbol) {
        const int bits = lengths[symbol];
        words[symbol] = bits == 0 ? quint16(0) : Reversed(next[bits]++, bits);
    }
}

} // namespace png_huffman
} // namespace vellix
