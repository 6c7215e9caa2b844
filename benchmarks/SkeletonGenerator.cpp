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

std::string events(std::uint32_t seed, std::size_t bytes) {
    Writer writer(seed);
    const auto number = [&](std::size_t count) { return std::to_string(writer.below(count)); };
    const auto event = [&](std::size_t level) {
        writer.line(level, "<event name=\"event_" + number(40) + "\" command=\"打开_" +
                               number(1000) + "\" dispatch=\"code;market\"/>");
    };
    writer.line(0, std::string(declaration));
    writer.line(0, "<event_list>");
    writer.line(1, "<command_event>");
    for (int i = 0; i < 1000; ++i)
        writer.line(2, "<command name=\"打开_" + std::to_string(i) + "\" change_style=\"页面_" +
                           std::to_string(i % 124) + "\" dispatch=\"code\"/>");
    writer.line(1, "</command_event>");
    for (int i = 0; i < 40; ++i) {
        writer.line(1, "<event_template name=\"template_" + std::to_string(i) + "\">");
        for (int k = 0; k < 20; ++k)
            event(2);
        writer.line(1, "</event_template>");
    }
    for (int i = 0; writer.size() < bytes; ++i) {
        writer.line(1, "<element_event name=\"行情列表_" + std::to_string(i) + "\">");
        writer.line(2, "<template src=\"template_" + number(40) + "\"/>");
        for (std::size_t k = 2 + writer.below(6); k > 0; --k)
            event(2);
        writer.line(1, "</element_event>");
    }
    writer.line(0, "</event_list>");
    return writer.text();
}

std::string palette(std::uint32_t seed, std::size_t bytes) {
    Writer writer(seed);
    const auto number = [&](std::size_t count) { return std::to_string(writer.below(count)); };
    const auto section = [&](std::size_t level, const std::string& name, std::size_t upTo,
                             const auto& line) {
        writer.line(level, "<" + name + ">");
        for (std::size_t i = 0; writer.size() < upTo; ++i)
            writer.line(level + 1, line(std::to_string(i)));
        writer.line(level, "</" + name + ">");
    };
    writer.line(0, std::string(declaration));
    writer.line(0, "<ROOT>");
    writer.line(1, "<SWPALETTE>");
    section(2, "COLORES", bytes / 2, [&](const std::string& i) {
        return "<COLOR NAME=\"颜色_" + i + "\" R=\"" + number(256) + "\" G=\"" + number(256) +
               "\" B=\"" + number(256) + "\"/>";
    });
    writer.line(2, "<APP_MAP>");
    section(3, "COLORES", bytes, [&](const std::string& i) {
        return "<ITEM KEY=\"key." + i + "\" VALUE=\"颜色_" + number(1000) + "\"/>";
    });
    writer.line(2, "</APP_MAP>");
    writer.line(1, "</SWPALETTE>");
    writer.line(0, "</ROOT>");
    return writer.text();
}

std::string servers(std::uint32_t seed, std::size_t bytes) {
    Writer writer(seed);
    const auto address = [&] {
        return std::to_string(10 * (1 + writer.below(9))) + ":198.51.100." +
               std::to_string(writer.below(256)) + ":" + std::to_string(9000 + writer.below(1000));
    };
    writer.line(0, std::string(declaration));
    writer.line(0, "<application md5=\"0123456789abcdef\">");
    for (std::size_t type = 1; type <= 9; ++type) {
        writer.line(1, "<server type=\"" + std::to_string(type) +
                           "\" name=\"行情服务器\" domain=\"example.com\">");
        for (int i = 0; writer.size() < bytes / 9 * type; ++i)
            writer.line(2, "<addr key=\"" + std::to_string(i) + "\" name=\"上海行情;深圳行情\"" +
                               " addrs=\"" + address() + ";" + address() + "\"/>");
        writer.line(1, "</server>");
    }
    writer.line(0, "</application>");
    return writer.text();
}

std::string settings(std::size_t bytes) {
    Writer writer(0);
    writer.line(0, std::string(declaration));
    writer.line(0, "<config>");
    for (int i = 0; writer.size() < bytes; ++i) {
        writer.line(1, "<section" + std::to_string(i) + ">");
        for (int k = 0; k < 20; ++k) {
            const std::string name = "item" + std::to_string(k);
            writer.line(2, "<" + name + " description=\"what it is for\">value " +
                               std::to_string(i) + "</" + name + ">");
        }
        writer.line(1, "</section" + std::to_string(i) + ">");
    }
    writer.line(0, "</config>");
    return writer.text();
}

void write(const std::filesystem::path& path, const std::string& text, std::size_t& bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
    bytes += text.size();
}

}  // namespace

std::string makeFile(std::string_view kind, std::size_t bytes) {
    if (kind == "styles")
        return styles(1, bytes, "页面_");
    if (kind == "magic panels")
        return magicPanels(3, bytes);
    if (kind == "events")
        return events(7, bytes);
    if (kind == "palette")
        return palette(8, bytes);
    if (kind == "servers")
        return servers(9, bytes);
    return kind == "settings" ? settings(bytes) : std::string();
}

std::size_t makeRoot(const std::filesystem::path& root, std::size_t bytes) {
    std::size_t written = makeSkeleton(root, bytes / 100 * 66).bytes;
    write(root / "config/events.xml", events(7, bytes / 100 * 12), written);
    for (const char* theme : {"white", "black"})
        write(root / ("storage/palette_" + std::string(theme) + ".xml"),
              palette(8, bytes / 100 * 5), written);
    write(root / "storage/skeleton_v1.xml", servers(9, bytes / 100 * 6), written);
    write(root / "storage/app_config.xml", settings(bytes / 100 * 6), written);
    return written;
}

std::string makePalette(std::size_t bytes) {
    return palette(8, bytes);
}

Skeleton makeSkeleton(const std::filesystem::path& root, std::size_t bytes) {
    Skeleton skeleton{root, 0};
    write(skeleton.stylePath(), styles(1, bytes / 100 * 68, "页面_"), skeleton.bytes);
    write(skeleton.tabPath(), styles(2, bytes / 100 * 10, "标签_"), skeleton.bytes);
    write(skeleton.magicPath(), magicPanels(3, bytes / 100 * 10), skeleton.bytes);
    write(skeleton.softStylePath(), styles(4, bytes / 100 * 5, "页面_"), skeleton.bytes);
    write(skeleton.softMagicPath(), magicPanels(5, bytes / 100 * 3), skeleton.bytes);
    write(skeleton.reusePath(), reusePanels(6, bytes / 100 * 4), skeleton.bytes);
    return skeleton;
}

}  // namespace yg::benchmarks
