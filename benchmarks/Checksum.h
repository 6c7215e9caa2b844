// SPDX-License-Identifier: MIT
//
// A number made from every field of every record, to compare what two loads gave.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/records/RecordMap.h"

namespace yg::benchmarks {

/// Adds up whatever a record holds.
class Summer {
public:
    std::uint64_t sum = 14695981039346656037u;

    void add(std::uint64_t number) { sum = (sum ^ number) * 1099511628211u; }
    void add(bool flag) { add(std::uint64_t{flag}); }
    void add(std::int32_t number) { add(static_cast<std::uint64_t>(number)); }
    void add(float number) {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &number, sizeof bits);
        add(std::uint64_t{bits});
    }
    void add(std::string_view text) {
        for (const char c : text)
            add(static_cast<std::uint64_t>(static_cast<unsigned char>(c)));
        add(static_cast<std::uint64_t>(text.size()));
    }
    void add(const std::string& text) { add(std::string_view(text)); }
    template <class T>
    void add(const std::optional<T>& value) {
        add(value.has_value());
        if (value)
            add(*value);
    }
    template <class T>
    void add(const std::vector<T>& list) {
        for (const T& item : list)
            add(item);
        add(static_cast<std::uint64_t>(list.size()));
    }
    template <class T>
    void add(const std::shared_ptr<T>& shared) {
        add(shared != nullptr);
        if (shared)
            add(*shared);
    }
    template <class Record, std::size_t = std::tuple_size_v<decltype(Description<Record>::fields)>>
    void add(const Record& record) {
        forEachField(record, [&](std::string_view, const auto& value) { add(value); });
    }
    template <class Value>
    void add(const RecordMap<Value>& map) {
        for (const auto& [key, value] : map) {
            add(key);
            add(value);
        }
    }
};

template <class Value>
std::uint64_t checksum(const Value& value) {
    Summer summer;
    summer.add(value);
    return summer.sum;
}

}  // namespace yg::benchmarks
