// SPDX-License-Identifier: MIT
//
// What is wrong with the files of a root folder, and which names they define and use. The whole
// root is loaded as a terminal would load it, for every user: all layout files, the events, both
// palettes, the four server files, the settings files, web page tables and request URL lists of
// storage/ and user/, host.json, the images, and every page that the templates can build.
//
// An inspection has loaders of its own. The process's host, its shared loaders and the files stay
// as they are, nothing is downloaded, and nothing is logged. It works on the calling thread;
// several may run at a time. An object does not change and may be read by any thread.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/export.h"
#include "YGConfigManager/inspection/Delivery.h"
#include "YGConfigManager/inspection/RootFinding.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/text/OptionalText.h"

namespace yg {

class RootContents;

/// What an inspection takes and keeps beside the files of the root.
struct InspectionOptions {
    /// Whole texts that count in place of files, by their names below the root: what an editor has
    /// not saved. A file that does not exist counts as if it did.
    std::map<std::string, std::string, std::less<>> unsaved = {};
    /// Keeps what was loaded, for `contents`; otherwise it is freed.
    bool keepsContents = false;
};

/// One place where a file defines a name or refers to one.
struct NamePlace {
    Naming kind = Naming::nothing;  ///< what kind of name it is
    std::string name;               ///< the name itself
    bool defines = false;           ///< whether the name is defined here
    std::string file;               ///< below the root
    TextPoint begin;                ///< of the name itself, inside the quotes
    TextPoint end;                  ///< behind the name
    TextPoint tagBegin;             ///< of the start tag that it is in
    TextPoint tagEnd;               ///< behind that start tag
};

class YG_EXPORT Inspection {
public:
    /// Inspects a folder. Null, with one line in `error`, when it is not a folder or memory does
    /// not suffice.
    static std::shared_ptr<const Inspection> open(OptionalText root, std::string& error,
                                                  const InspectionOptions& options = {});

    /// What would become of a delivery: the library takes it, as it would from the server, for the
    /// present files of the root, of which none changes; what it writes goes to a temporary folder
    /// that is removed. The findings are about the delivery: what is refused (it is an error), what
    /// is dropped, and which types, servers or keys are lost (errors), changed or added. Without an
    /// error it is taken whole. Null, with one line in `error`, when the root is not a folder, its
    /// host.json cannot be used, or memory does not suffice.
    static std::shared_ptr<const Inspection> ofDelivery(const Delivery& delivery, OptionalText root,
                                                        std::string& error);

    ~Inspection();
    Inspection(const Inspection&) = delete;
    Inspection& operator=(const Inspection&) = delete;

    /// What was found, sorted by file, line, column and rule. The same files give the same list.
    std::span<const RootFinding> findings() const;

    /// The names that count, sorted by kind, name and place. Found at the first call; empty when
    /// memory does not suffice for that.
    std::span<const NamePlace> names() const;

    /// Another attribute of the element that a name is in; absent when it has none, and when memory
    /// does not suffice.
    std::optional<std::string> attributeBeside(const NamePlace& name, OptionalText attribute) const;

    /// What was loaded; null unless the options ask for it. It belongs to the inspection.
    const RootContents* contents() const;

    /// A line of a file, from 1, as UTF-8 without its line end: of a file that a finding or a name
    /// is in. Absent when there is no such line, and for a file that is not text.
    std::optional<std::string> line(OptionalText file, std::uint32_t number) const;

    /// The elements around a finding and its own, the root first, each with the name that it has:
    /// "styles", "style[quote]", "panel[main]". The same when lines are added above. Empty for a
    /// file as a whole and outside of XML.
    std::vector<std::string> pathOf(const RootFinding& finding) const;

private:
    struct Content;
    explicit Inspection(std::unique_ptr<Content> content);

    template <class Inspect>
    static std::shared_ptr<const Inspection> make(OptionalText root, std::string& error,
                                                  const InspectionOptions& options,
                                                  Inspect&& inspect);

    std::unique_ptr<Content> content_;
};

}  // namespace yg
