#include "Tools/monitor/CMonitorScript.h"

#include "Core/CText.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace tsm {
namespace {

struct CActionRow {
    const char* name;
    CMonitorStep::EAction action;
    bool hasName;
    std::size_t leastTexts;
    std::size_t mostTexts;
};
constexpr std::size_t kAny = 1000;
constexpr std::array kActions{
    CActionRow{"set", CMonitorStep::EAction::Set, true, 1, 1},
    CActionRow{"gesture", CMonitorStep::EAction::Gesture, true, 1, kAny},
    CActionRow{"reset", CMonitorStep::EAction::Reset, true, 0, 0},
    CActionRow{"undo", CMonitorStep::EAction::Undo, false, 0, 0},
    CActionRow{"redo", CMonitorStep::EAction::Redo, false, 0, 0},
    CActionRow{"preset", CMonitorStep::EAction::Preset, true, 0, kAny},
    CActionRow{"program", CMonitorStep::EAction::Program, true, 0, 0},
    CActionRow{"ab", CMonitorStep::EAction::Exchange, false, 0, 0},
    CActionRow{"ab-copy", CMonitorStep::EAction::Copy, false, 0, 0},
};

const CActionRow* findAction(const std::string& name)
{
    for (const CActionRow& row : kActions)
        if (name == row.name)
            return &row;
    return nullptr;
}

CError* parseLine(const std::string& line, CMonitorStep& step)
{
    std::istringstream words(line);
    std::string seconds;
    std::string action;
    std::string word;
    words >> seconds >> action;
    if (!parseDouble(CString::fromUtf8(seconds), step.seconds) || !(step.seconds >= 0.0))
        TSM_FAIL("'%1' doesn't begin with a time in seconds", CString::fromUtf8(line));
    const CActionRow* row = findAction(action);
    if (!row)
        TSM_FAIL("'%1' has an unknown action", CString::fromUtf8(line));
    step.action = row->action;
    if (row->hasName) {
        words >> word;
        step.name = CString::fromUtf8(word);
    }
    while (words >> word)
        step.texts.push_back(CString::fromUtf8(word));
    if ((row->hasName && step.name.isEmpty()) || step.texts.size() < row->leastTexts ||
        step.texts.size() > row->mostTexts)
        TSM_FAIL("'%1' has too few or too many words", CString::fromUtf8(line));
    if (step.action == CMonitorStep::EAction::Preset) {
        for (const CString& part : step.texts)
            step.name += " " + part;
        step.texts.clear();
    }
    return nullptr;
}

} // namespace

CError* CMonitorScript::add(const std::string& text)
{
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t first = line.find_first_not_of(" \t\r");
        if (first == std::string::npos || line[first] == '#')
            continue;
        CMonitorStep step;
        TSM_TRY(parseLine(line.substr(first, line.find_last_not_of(" \t\r") + 1 - first), step));
        steps.push_back(step);
    }
    return nullptr;
}

void CMonitorScript::sort()
{
    std::stable_sort(steps.begin(), steps.end(), [](const CMonitorStep& a, const CMonitorStep& b) {
        return a.seconds < b.seconds;
    });
}

const CMonitorStep* CMonitorScript::takeDue(double seconds)
{
    return next < steps.size() && steps[next].seconds <= seconds ? &steps[next++] : nullptr;
}

} // namespace tsm
