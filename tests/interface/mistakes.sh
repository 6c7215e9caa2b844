#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The usual mistakes of those who use the library: the compiler's first message is about their own
# line, and what it prints names what is wrong. What is right beside each compiles.
#
#   CXX=… CXXFLAGS=… SOURCE=… mistakes.sh
set -uo pipefail

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0
count=0

cat >"$work/begin.h" <<'CPP'
#include <cstdint>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/host/JsonModel.h"
#include "YGConfigManager/host/MainQueue.h"
#include "YGConfigManager/host/NotificationCenter.h"
#include "YGConfigManager/layout/PanelConfigInfo.h"
#include "YGConfigManager/layout/StyleConfigInfo.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"

using Text = std::optional<std::string>;

class TerminalHost : public yg::Host {
public:
    Text getStorageFilePath(std::int64_t, std::optional<std::string_view>,
                            std::optional<std::string_view>, bool) override;
    Text getUserRightDescription() override;
    Text getSoftOptimizeConfigFilePath(std::int64_t, std::string_view) override;
    Text getBaseOptimizeConfigFilePath(std::int64_t, std::string_view) override;
    std::shared_ptr<const yg::MappingDic> getMappingDicForKey(std::string_view) override;
    Text getDefualtFolderPath(std::int64_t) override;
    void writeLog(yg::LogChannel, std::string_view) override;
};
CPP

compile() {
    # shellcheck disable=SC2086
    LC_ALL=C $CXX $CXXFLAGS -std=c++20 -Wall -Wextra -I "$SOURCE" "${@:2}" "$1" >"$work/output" 2>&1
}

compile "$work/begin.h" -x c++-header -o "$work/begin.h.gch" || { cat "$work/output"; exit 1; }

# mistake NAME SAID WRONG RIGHT [BEFORE]: WRONG and RIGHT are the body of a function, BEFORE what
# stands before it. An expression in SAID matches what the compiler prints.
mistake() {
    count=$((count + 1))
    local file=$work/$1.cpp first
    printf '%s\nvoid use() {\n    %s\n}\n' "${5:-}" "$3" >"$file"
    compile "$file" -fsyntax-only -include "$work/begin.h"
    first=$(grep -E '(error|warning): ' "$work/output" | head -n 1)
    if [[ $first != "$file:"* ]] || ! grep -E -- "$2" "$work/output" >/dev/null; then
        failed=$((failed + 1))
        printf -- '-- %s: no message of the own line that says "%s":\n' "$1" "$2"
        head -n 20 "$work/output"
    fi
    printf 'namespace %s {\n%s\nvoid use() {\n    %s\n}\n}\n' "$1" "${5:-}" "$4" >>"$work/right.cpp"
}

model() {
    printf 'struct Book {\n    static constexpr auto modelFields() {\n'
    printf '        return std::tuple{yg::ModelField{"title", &Book::title}};\n    }\n    %s\n};\n' "$1"
}

true >"$work/right.cpp"

mistake host_without_an_operation 'ImplementsEveryOperation' \
    'yg::setHost(yg::makeHost<Unfinished>());' \
    'yg::setHost(yg::makeHost<TerminalHost>());' \
    'class Unfinished : public yg::Host {};'
mistake host_by_pointer 'std::shared_ptr<(yg::)?Host>' \
    'TerminalHost host; yg::setHost(&host);' \
    'auto host = std::make_shared<TerminalHost>(); yg::setHost(host);'
mistake unique_pointer_in_a_task 'capture a shared_ptr' \
    'yg::postToMainQueue([page = std::make_unique<int>(1)] {});' \
    'yg::postToMainQueue([page = std::make_shared<int>(1)] {});'
mistake unique_pointer_in_an_observer 'capture a shared_ptr' \
    'auto token = yg::NotificationCenter::standard().addObserver(
        "n", nullptr, [page = std::make_unique<int>(1)](const yg::Notification&) {});' \
    'auto token = yg::NotificationCenter::standard().addObserver(
        "n", nullptr, [page = std::make_shared<int>(1)](const yg::Notification&) {});'
mistake unique_pointer_in_a_completion 'capture a shared_ptr' \
    'yg::YGHttpReqUrlMgr::shared()->updateHttpReqUrls(
        [page = std::make_unique<int>(1)](const yg::YGHttpReqUrlMgr::Update&) {});' \
    'yg::YGHttpReqUrlMgr::shared()->updateHttpReqUrls(
        [page = std::make_shared<int>(1)](const yg::YGHttpReqUrlMgr::Update&) {});'
mistake completion_of_another_kind 'YGHttpReqUrlMgr::Update' \
    'yg::YGHttpReqUrlMgr::shared()->updateHttpReqUrls([](bool) {});' \
    'yg::YGHttpReqUrlMgr::shared()->updateHttpReqUrls([] {});'
mistake observer_not_kept 'nodiscard' \
    'yg::NotificationCenter::standard().addObserver("n", nullptr, [](const yg::Notification&) {});' \
    'static auto token =
        yg::NotificationCenter::standard().addObserver("n", nullptr, [](const yg::Notification&) {});'
mistake model_without_a_table 'ModelNamesItsFields' \
    'yg::modelWithJSON<Book>("{}");' \
    'yg::modelWithJSON<Shelf>("{}");' \
    "struct Book { Text title; };
$(model 'Text title;' | sed 's/Book/Shelf/g')"
mistake model_with_a_field_of_another_type 'ModelFieldsCanBeRead' \
    'yg::modelWithJSON<Book>("{}");' \
    'yg::modelWithJSON<Shelf>("{}");' \
    "$(model 'int title = 0;')
$(model 'std::optional<double> title;' | sed 's/Book/Shelf/g')"
mistake model_that_nothing_makes 'ModelHasDefaultConstructor' \
    'yg::modelWithJSON<Book>("{}");' \
    'yg::modelWithJSON<Shelf>("{}");' \
    "$(model 'explicit Book(int); Text title;')
$(model 'Text title;' | sed 's/Book/Shelf/g')"
mistake pointer_to_a_model_as_json 'ModelNamesItsFields' \
    'yg::modelToJSONString(yg::modelWithJSON<Book>("{}"));' \
    'yg::modelToJSONString(*yg::modelWithJSON<Book>("{}"));' \
    "$(model 'Text title;')"
mistake number_as_a_text '0 is not the text' \
    'yg::YGAppConfigManager::initWithFileName("s")->setConfigItem("window", "width", nullptr, 0);' \
    'yg::YGAppConfigManager::initWithFileName("s")->setConfigItem("window", "width", NULL, "0");'
mistake visitor_of_another_kind 'VisitsEveryField' \
    'yg::forEachField(yg::PanelConfigInfo(), [](std::string_view, int) {});' \
    'yg::forEachField(yg::PanelConfigInfo(), [](std::string_view, const auto&) {});'
mistake loader_copied 'deleted' \
    'auto loader = *yg::YGStyleConfigLoad::getShareInstance();' \
    'auto& loader = *yg::YGStyleConfigLoad::getShareInstance(); (void)loader;'
mistake absent_text_as_a_text 'std::optional<' \
    'std::string name = yg::StyleConfigInfo().styleName();' \
    'std::string name = yg::StyleConfigInfo().styleName().value_or("");'

if ! compile "$work/right.cpp" -fsyntax-only -include "$work/begin.h"; then
    failed=$((failed + 1))
    echo '-- what is right does not compile:'
    head -n 40 "$work/output"
elif grep -E '(error|warning): ' "$work/output"; then
    failed=$((failed + 1))
fi
printf '%d mistakes, %d failed\n' "$count" "$failed"
[ "$failed" -eq 0 ]
