// SPDX-License-Identifier: MIT
//
// What is read of a font file: all but the outlines and the names of glyphs, which are most of it
// and which no width depends on. Never changes; any thread may call.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace yg {

class FontContent {
public:
    /// The content of a font file of at most `limit` bytes; null if it cannot be read. It is a
    /// copy, because a file that is mapped into memory ends the process when somebody shortens it.
    /// What is not read is zero and takes no memory. Throws std::bad_alloc.
    static std::shared_ptr<const FontContent> read(const std::string& path, std::size_t limit);

    /// As long as the file.
    std::string_view bytes() const { return {memory_.get(), size_}; }

private:
    struct Free {
        void operator()(char* memory) const { std::free(memory); }
    };

    explicit FontContent(std::size_t size);

    std::unique_ptr<char, Free> memory_;
    std::size_t size_;
};

}  // namespace yg
