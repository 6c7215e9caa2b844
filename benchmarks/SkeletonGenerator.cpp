// SPDX-License-Identifier: MIT
#include "benchmarks/SkeletonGenerator.h"

#include <fstream>
#include <random>
#include <string_view>
#include <vector>

namespace yg::benchmarks {

namespace {

/// One XML file in the making. The generator's own numbers, because the standard's distributions
/// differ from library to library.
class Writer {
public:
    explicit Writer(std::uint32_t seed) : random_(seed) {}

    std::size_t size() const { return text_.size(); }
    const std::string& text() const { return text_; }

    std::size_t below(std::size_t count) { return random_() % count; }
    bool oftenAs(std::size_t percent) { return below(100) < percent; }

    void line(std::size_t level, const std::string& text) {
        text_.append(4 * level, ' ');
        text_ += text;
        text_ += '\n';
    }

    void panel(std::size_t level, std::size_t depth, std::string_view tag, std::string_view name) {
        line(level, "<" + std::string(tag) + panelAttributes(name) + ">");
        const std::size_t panels = depth == 0 ? 0 : 1 + below(3);
        for (std::size_t i = 0; i < panels; ++i) {
            if (oftenAs(8))
                line(level + 1, "<reuse_panel name=\"reuse_" + number(below(12)) + "\"/>");
            else if (oftenAs(6))
                line(level + 1, "<magic_panels name=\"group_" + number(below(8)) + "\"/>");
            else
                panel(level + 1, depth - 1, "panel", {});
        }
        const std::size_t elements = depth == 0 ? 1 + below(3) : below(2);
        for (std::size_t i = 0; i < elements; ++i)
            element(level + 1);
        line(level, "</" + std::string(tag) + ">");
    }

private:
    std::string number(std::size_t value) { return std::to_string(value); }

    std::string view() {
        static constexpr std::string_view views[] = {
            "kline_view", "trend_view", "depth_view", "ticks_view", "quote_list", "news_list",
            "行情列表",   "分时走势",   "委托明细",   "资金流向",   "公司资料",   "期权链",
            "rank_view",  "nav_bar",    "status_bar", "trade_form"};
        return std::string(views[below(std::size(views))]);
    }

    std::string panelAttributes(std::string_view name) {
        std::string attributes =
            " name=\"" + (name.empty() ? view() + "_" + number(counter_++) : std::string(name)) +
            "\"";
        if (oftenAs(55))
            attributes += " split_scale=\"0." + number(1 + below(9)) + "\"";
        if (oftenAs(30))
            attributes += " fix_size=\"" + number(20 + below(400)) + "\"";
        if (oftenAs(55))
            attributes += " vertical=\"true\"";
        if (oftenAs(45))
            attributes += " is_dis_split_space=\"true\"";
        if (oftenAs(20))
            attributes += " min_size=\"" + number(100 + below(200)) + "\"";
        if (oftenAs(10))
            attributes += " max_size=\"" + number(400 + below(400)) + "\"";
        if (oftenAs(10))
            attributes += " is_scroll_view=\"true\" scroll_size=\"" + number(below(900)) + "\"";
        if (oftenAs(12))
            attributes += " is_border_radius=\"true\"";
        if (oftenAs(8))
            attributes += " display_border=\"left,bottom\"";
        if (oftenAs(5))
            attributes += " switch_expand_panel=\"" + view() + "\" foldPosition=\"right\"";
        if (oftenAs(4))
            attributes += " excute_command_info=\"open_" + view() + "\"";
        return attributes;
    }

    void element(std::size_t level) {
        std::string attributes = " name=\"" + view() + "\"";
        if (oftenAs(70))
            attributes += " param=\"type=" + number(below(20)) + ";code=SH60" +
                          number(1000 + below(9000)) + "\"";
        if (oftenAs(15))
            attributes += " property=\"header=always;rows=" + number(below(60)) + "\"";
        if (oftenAs(80))
            attributes += " uuid=\"" + view() + "." + number(counter_++) + "\"";
        if (oftenAs(60))
            attributes += " event=\"" + view() + "_events\"";
        if (oftenAs(35))
            attributes += " event_dispatch_dest=\"" + view() + ";" + view() + "\"";
        if (oftenAs(20))
            attributes += " event_dispatch_src=\"" + view() + "\"";
        if (oftenAs(8))
            attributes += " is_first_responder=\"true\"";
        if (oftenAs(8))
            attributes += " always_recv_event=\"true\"";
        line(level, "<element" + attributes + "/>");
    }

    std::mt19937 random_;
    std::string text_;
    std::size_t counter_ = 0;
};

constexpr std::string_view declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";

std::string styles(std::uint32_t seed, std::size_t bytes, std::string_view prefix) {
    Writer writer(seed);
    writer.line(0, std::string(declaration));
    writer.line(0, "<styles default_style=\"" + std::string(prefix) + "0\">");
    for (std::size_t i = 0; i == 0 || writer.size() < bytes; ++i) {
        writer.line(1, "<style name=\"" + std::string(prefix) + std::to_string(i) + "\" layer=\"" +
                           std::to_string(i % 4) + "\" focus=\"main\">");
        const std::size_t panels = 1 + writer.below(3);
        for (std::size_t p = 0; p < panels; ++p)
            writer.panel(2, 1 + writer.below(4), "panel", {});
        writer.line(2, "<magic_panels name=\"group_" + std::to_string(i % 8) + "\"/>");
        writer.line(1, "</style>");
    }
    writer.line(0, "</styles>");
    return writer.text();
}

std::string magicPanels(std::uint32_t seed, std::size_t bytes) {
    Writer writer(seed);
    writer.line(0, std::string(declaration));
    writer.line(0, "<magic>");
    for (std::size_t group = 0; group < 8; ++group) {
        writer.line(1, "<magic_panels name=\"group_" + std::to_string(group) + "\">");
        for (std::size_t member = 0; member == 0 || writer.size() < bytes * (group + 1) / 8;
             ++member) {
            writer.line(2, "<magic_panel name=\"member" + std::to_string(member) + "\">");
            writer.panel(3, 1 + writer.below(2), "panel", {});
            writer.line(2, "</magic_panel>");
        }
        writer.line(1, "</magic_panels>");
    }
    writer.line(0, "</magic>");
    return writer.text();
}

std::string reusePanels(std::uint32_t seed, std::size_t bytes) {
    Writer writer(seed);
    writer.line(0, std::string(declaration));
    writer.line(0, "<reuse>");
    for (std::size_t i = 0; i < 12 || writer.size() < bytes; ++i)
        writer.panel(1, writer.below(2), "reuse_panel", "reuse_" + std::to_string(i));
    writer.line(0, "</reuse>");
    return writer.text();
}

}  // namespace

Skeleton makeSkeleton(const std::filesystem::path& root, std::size_t bytes) {
    Skeleton skeleton{root, 0};
    const auto write = [&](const std::string& path, const std::string& text) {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << text;
        skeleton.bytes += text.size();
    };
    write(skeleton.stylePath(), styles(1, bytes / 100 * 68, "页面_"));
    write(skeleton.tabPath(), styles(2, bytes / 100 * 10, "标签_"));
    write(skeleton.magicPath(), magicPanels(3, bytes / 100 * 10));
    write(skeleton.softStylePath(), styles(4, bytes / 100 * 5, "页面_"));
    write(skeleton.softMagicPath(), magicPanels(5, bytes / 100 * 3));
    write(skeleton.reusePath(), reusePanels(6, bytes / 100 * 4));
    return skeleton;
}

}  // namespace yg::benchmarks
