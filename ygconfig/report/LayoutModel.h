// SPDX-License-Identifier: MIT
//
// The custom pages of the report's model. Throws std::bad_alloc and what the sink throws.
#pragma once

#include <memory>

#include "ygconfig/report/LayoutRecords.h"

namespace yg::tool {

/// The templates of custom pages, each with one page that is built of it and, for each of its
/// slots, what the other arguments change in that page. The library builds all of them; what a
/// whole page is made of, the page puts together from these. There is a limit to their number and
/// size; what goes beyond is counted.
class TemplatePages {
public:
    /// Builds the pages and numbers their panels. The records must know all stored panels, and must
    /// be written as long as this object lives.
    TemplatePages(ModelSource& source, LayoutRecords& records);
    ~TemplatePages();
    TemplatePages(const TemplatePages&) = delete;
    TemplatePages& operator=(const TemplatePages&) = delete;

    /// One value.
    void write(JsonWriter& json) const;

private:
    struct Content;

    ModelSource& source_;
    LayoutRecords& records_;
    std::unique_ptr<Content> content_;
};

}  // namespace yg::tool
