// SPDX-License-Identifier: MIT
#include <memory>
#include <string>
#include <utility>

#include "YGConfigManager/inspection/Difference.h"

#include "ygconfig/commands/Commands.h"
#include "ygconfig/diff/DiffReport.h"
#include "ygconfig/diff/GitState.h"
#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

void declareDiff(CLI::App& app, Arguments& arguments) {
    declareOperands(app, "SIDES", arguments.items,
                    "OLD NEW, two root folders; with --git REV [REV], revisions", anyFolder);
    declareFlag(app, "--git", arguments.git, "compares ROOT with its state in a git revision");
    declareTextOrJson(app, arguments);
}

Answer unusable(const std::string& why) {
    return {"", ExitCode::unusable, "ygconfig diff: " + printable(why)};
}

Answer between(const Session& session, const std::string& before, const std::string& after) {
    std::string error;
    std::shared_ptr<const Difference> difference = Difference::between(before, after, error);
    if (!difference)
        return {"", ExitCode::unusable, "ygconfig: " + printable(error)};
    const ExitCode exitCode = difference->changes().empty() ? ExitCode::answer : ExitCode::noAnswer;
    if (session.arguments.format == "json")
        return {[difference](Output& output) { writeJson(*difference, output); }, exitCode};
    return {[difference, paint = session.paint()](Output& output) {
                writeText(*difference, paint, output);
            },
            exitCode};
}

Answer betweenRevisions(const Session& session) {
    const Arguments& arguments = session.arguments;
    if (arguments.items.empty() || arguments.items.size() > 2)
        return unusable("--git takes one revision or two");
    std::string error;
    const auto before = GitState::of(arguments.root, arguments.items.front(), error);
    if (!before)
        return unusable(error);
    if (arguments.items.size() == 1)
        return between(session, before->path(), arguments.root);
    const auto after = GitState::of(arguments.root, arguments.items.back(), error);
    return after ? between(session, before->path(), after->path()) : unusable(error);
}

Answer diff(const Session& session) {
    const Arguments& arguments = session.arguments;
    if (arguments.git)
        return betweenRevisions(session);
    if (arguments.items.size() != 2)
        return unusable("two root folders are compared: OLD NEW");
    return between(session, arguments.items.front(), arguments.items.back());
}

constexpr std::string_view notes =
    "Compared is what the library makes of two roots: pages, panels, elements, events, commands,\n"
    "palettes, images by their pixels, what servers offer, settings, web pages and request URLs.\n"
    "White space, comments and the order of attributes are no difference.\n\n"
    "With --git the sides are states of --root, a folder in a git repository: REV and the files "
    "as\n"
    "they are, or REV and REV. Nothing in the repository changes.\n\n"
    "Exit status: 0 no difference, 1 a difference, 2 a side is not a folder, or git or the "
    "revision\n"
    "cannot be used.\n";

constexpr Command table[] = {
    {"diff", "compares two roots by what the library makes of them",
     "  ygconfig diff old/terminal examples/terminal\n"
     "  ygconfig diff old/terminal examples/terminal --format json\n"
     "  ygconfig diff --git HEAD --root examples/terminal\n"
     "  ygconfig diff --git v1.0 v1.1 --root examples/terminal\n",
     notes, declareDiff, diff, false},
};

}  // namespace

std::span<const Command> diffCommands() {
    return table;
}

}  // namespace yg::tool
