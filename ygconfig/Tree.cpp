// SPDX-License-Identifier: MIT
#include "ygconfig/Tree.h"

#include <algorithm>
#include <cstddef>

#include "ygconfig/Display.h"

namespace yg::tool {

namespace {

constexpr std::size_t columnsPerLevel = 3;
constexpr std::size_t gap = 2;
/// A label that ends further right than this does not move the column of details.
constexpr std::size_t widestLabel = 40;

class Drawing {
public:
    Drawing(std::span<const Branch> roots, const Paint& paint) : paint_(paint) {
        for (const Branch& root : roots)
            measure(root, 0);
    }

    void draw(const Branch& branch, const std::string& lead, const std::string& below,
              std::size_t level) {
        std::string line = paint_(Tone::quiet, lead) + paint_(branch.tone, branch.label);
        if (!branch.details.empty()) {
            const std::size_t width = widthOf(branch, level);
            line.append(std::max(column_, width) - width + gap, ' ');
            line += branch.details;
        }
        lines_ += line + '\n';
        for (const Branch& child : branch.children) {
            const bool isLast = &child == &branch.children.back();
            draw(child, below + (isLast ? "└─ " : "├─ "), below + (isLast ? "   " : "│  "),
                 level + 1);
        }
    }

    std::string lines() && { return std::move(lines_); }

private:
    static std::size_t widthOf(const Branch& branch, std::size_t level) {
        return level * columnsPerLevel + displayWidth(branch.label);
    }

    void measure(const Branch& branch, std::size_t level) {
        const std::size_t width = widthOf(branch, level);
        if (!branch.details.empty() && width <= widestLabel)
            column_ = std::max(column_, width);
        for (const Branch& child : branch.children)
            measure(child, level + 1);
    }

    const Paint& paint_;
    std::size_t column_ = 0;
    std::string lines_;
};

}  // namespace

std::string drawTree(const Branch& root, const Paint& paint) {
    return drawTrees({&root, 1}, paint);
}

std::string drawTrees(std::span<const Branch> roots, const Paint& paint) {
    Drawing drawing(roots, paint);
    for (const Branch& root : roots)
        drawing.draw(root, "", "", 0);
    return std::move(drawing).lines();
}

}  // namespace yg::tool
