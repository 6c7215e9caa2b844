// SPDX-License-Identifier: MIT
#include "ygconfig/drawing/Tree.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

constexpr std::size_t columnsPerLevel = 3;
constexpr std::size_t gap = 2;
/// A label that ends further right than this does not move the column of details.
constexpr std::size_t widestLabel = 40;
/// What text has at least beside the branches.
constexpr std::size_t leastText = 20;

class Drawing {
public:
    Drawing(std::span<const Branch> roots, const Paint& paint, Output& output)
        : paint_(paint), widestLabel_(std::min(widestLabel, paint.columns() / 2)), output_(output) {
        for (const Branch& root : roots)
            measure(root, 0);
    }

    void draw(const Branch& branch, const std::string& lead, const std::string& below,
              std::size_t level) {
        const std::size_t start = level * columnsPerLevel;
        const bool hasChildren = !branch.children.empty() || branch.later.count > 0;
        // What a branch continues with stands beside the line to its children.
        const std::string beside = paint_(Tone::quiet, below + (hasChildren ? "│" : " "));
        std::string line = paint_(Tone::quiet, lead);
        std::size_t width = start;
        for (const std::string& part :
             folded(paint_(branch.tone, branch.label), spaceFrom(start))) {
            if (width > start) {
                output_.add(line + '\n');
                line = beside;
            }
            line += width > start ? part.substr(1) : part;
            width = start + shownWidth(part);
        }
        if (branch.details.empty()) {
            output_.add(line + '\n');
        } else {
            std::size_t column = column_ + gap;
            if (width > column_ && width + gap + branch.details.width() <= paint_.columns()) {
                column = width + gap;
            } else if (width > column_) {
                column = std::max(column, start + columnsPerLevel);
                output_.add(line + '\n');
                line = beside;
                width = start + 1;
            }
            for (const std::string& part : branch.details.lines(spaceFrom(column))) {
                output_.add(line.append(column - width, ' ') + part + '\n');
                line = beside;
                width = start + 1;
            }
        }
        forEachChild(branch, [&](const Branch& child, bool isLast) {
            draw(child, below + (isLast ? "└─ " : "├─ "), below + (isLast ? "   " : "│  "),
                 level + 1);
        });
    }

private:
    template <class Visit>
    static void forEachChild(const Branch& branch, Visit visit) {
        std::size_t left = branch.children.size() + branch.later.count;
        for (const Branch& child : branch.children)
            visit(child, --left == 0);
        for (std::size_t i = 0; i < branch.later.count; ++i)
            visit(branch.later.make(i), --left == 0);
    }

    static std::size_t widthOf(const Branch& branch, std::size_t level) {
        return level * columnsPerLevel + displayWidth(branch.label);
    }

    std::size_t spaceFrom(std::size_t column) const {
        return std::max(leastText, paint_.columns() - std::min(column, paint_.columns()));
    }

    void measure(const Branch& branch, std::size_t level) {
        const std::size_t width = widthOf(branch, level);
        if (!branch.details.empty() && width <= widestLabel_)
            column_ = std::max(column_, width);
        forEachChild(branch, [&](const Branch& child, bool) { measure(child, level + 1); });
    }

    const Paint& paint_;
    const std::size_t widestLabel_;
    std::size_t column_ = 0;
    Output& output_;
};

void draw(std::span<const Branch> roots, const Paint& paint, Output& output) {
    Drawing drawing(roots, paint, output);
    for (const Branch& root : roots)
        drawing.draw(root, "", "", 0);
}

}  // namespace

void drawTree(const Branch& root, const Paint& paint, Output& output) {
    draw({&root, 1}, paint, output);
}

std::string drawTree(const Branch& root, const Paint& paint) {
    return drawTrees({&root, 1}, paint);
}

std::string drawTrees(std::span<const Branch> roots, const Paint& paint) {
    std::string lines;
    const Sink sink = [&](std::string_view piece) { lines += piece; };
    Output output(sink);
    draw(roots, paint, output);
    output.flush();
    return lines;
}

}  // namespace yg::tool
