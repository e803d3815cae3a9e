// SPDX-License-Identifier: Apache-2.0
// The info panel.

#include <initializer_list>

#include "headless/state/HostState.h"
#include "headless/suites/Suites.h"

namespace headless {

namespace {

// Applies `change` to the panel of the running command, which becomes the last one drawn.
template <class Change>
PF_Err draw(const char* operation, Change&& change) {
    return guarded([&] {
        HostState& host = HostState::current();
        host.log.add(operation);
        if (const PF_Err err = host.failures.check(Operation::kInfoDraw)) return err;
        InfoPanel& panel = contextOfThread().info;
        change(panel);
        ++panel.draws;
        const std::lock_guard lock(host.infoMutex);
        host.lastInfo = panel;
        return PF_Err_NONE;
    });
}

PF_Err drawLines(const char* operation, std::initializer_list<const A_char*> lines) {
    return draw(operation, [&](InfoPanel& panel) {
        panel.lines.clear();
        for (const A_char* line : lines) panel.lines.emplace_back(line ? line : "");
    });
}

PF_Err infoDrawText(const A_char* line1, const A_char* line2) {
    return drawLines("PF_InfoDrawText", {line1, line2});
}

PF_Err infoDrawColor(PF_Pixel color) {
    return draw("PF_InfoDrawColor", [&](InfoPanel& panel) { panel.color = color; });
}

PF_Err infoDrawText3(const A_char* line1, const A_char* line2, const A_char* line3) {
    return drawLines("PF_InfoDrawText3", {line1, line2, line3});
}

PF_Err infoDrawText3Plus(const A_char* line1, const A_char* line2Left, const A_char* line2Right,
                         const A_char* line3Left, const A_char* line3Right) {
    return drawLines("PF_InfoDrawText3Plus", {line1, line2Left, line2Right, line3Left, line3Right});
}

constexpr PF_AdvAppSuite1 makeTable() {
    PF_AdvAppSuite1 table{};
    table.PF_InfoDrawText = infoDrawText;
    table.PF_InfoDrawColor = infoDrawColor;
    table.PF_InfoDrawText3 = infoDrawText3;
    table.PF_InfoDrawText3Plus = infoDrawText3Plus;
    return table;
}

}  // namespace

const PF_AdvAppSuite1* advAppSuite() {
    static constexpr PF_AdvAppSuite1 kTable = makeTable();
    return &kTable;
}

}  // namespace headless
