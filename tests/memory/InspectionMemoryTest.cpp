// SPDX-License-Identifier: MIT
//
// An inspection and a difference when memory runs out: they are whole or not there.
#include "YGConfigManager/inspection/Difference.h"
#include "YGConfigManager/inspection/Inspection.h"

#include "memory/MemoryTest.h"

#if YG_OWN_ALLOCATION

namespace yg {
namespace {

class InspectionMemory : public testing::MemoryTest {
protected:
    InspectionMemory() {
        put("config/events.xml", "<event_list><command_event><command name='" + testing::longText +
                                     "' other='1'/></command_event></event_list>");
    }
};

TEST_F(InspectionMemory, AnInspectionIsWholeOrNotThere) {
    const auto text = [](const std::shared_ptr<const Inspection>& inspection) {
        std::string all = inspection ? "findings" : "null";
        for (const RootFinding& finding :
             inspection ? inspection->findings() : std::span<const RootFinding>())
            all += '\n' + finding.file + ' ' + std::string(finding.rule->name) + finding.message;
        return all;
    };
    Operation operation{[&] {
                            std::string error;
                            return Inspection::open(root.path(), error);
                        },
                        text, "null"};
    operation.isLogged = false;
    everyAllocationFails(operation);
}

TEST_F(InspectionMemory, ADifferenceIsWholeOrNotThere) {
    const files::TemporaryFolder other;
    const auto text = [](const std::shared_ptr<const Difference>& difference) {
        return difference ? std::to_string(difference->changes().size()) : "null";
    };
    Operation operation{[&] {
                            std::string error;
                            return Difference::between(root.path(), other.path(), error);
                        },
                        text, "null"};
    operation.isLogged = false;
    everyAllocationFails(operation);
}

}  // namespace
}  // namespace yg

#endif
