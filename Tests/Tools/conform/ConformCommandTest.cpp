#include "Tests/Tools/Support/CToolCommand.h"
#include "Tests/Tools/conform/Faults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

namespace tsm {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using CNames = std::set<std::string>;

CNames split(const std::string& text)
{
    std::istringstream in(text);
    return {std::istream_iterator<std::string>(in), {}};
}

CNames casesWith(const nlohmann::json& report, const std::string& verdict)
{
    CNames names;
    for (const auto& each : report["cases"])
        if (each["verdict"] == verdict)
            names.insert(each["name"].get<std::string>());
    return names;
}

/// What can't be judged in this build. A sanitizer's runtime keeps memory for each module that is
/// loaded, so that a leak behind reloading isn't looked for.
CNames unjudgedOfAll()
{
#ifdef __SANITIZE_ADDRESS__
    return {"module.reload"};
#else
    return {};
#endif
}

/// And with the address sanitizer each block of the product's allocator comes from the heap.
CNames unjudgedOfProduct()
{
#ifdef __SANITIZE_ADDRESS__
    return {"module.reload", "resources.allocation"};
#else
    return {};
#endif
}

CNames without(const CNames& all, const CNames& others)
{
    CNames rest;
    std::ranges::set_difference(all, others, std::inserter(rest, rest.end()));
    return rest;
}

/// Faults that show in different cases: those that fail name the fault.
struct CFaultGroup {
    std::string faults;
    CNames cases;
    bool isHang = false;
};

std::vector<CFaultGroup> groupFaults()
{
    std::vector<CFaultGroup> groups{{}}; // the first is without any
    for (const CFaultRow& row : kFaults) {
        const CNames cases = split(row.cases);
        if (cases.empty())
            continue;
        const bool isHang = row.fault == EFault::HangInArrangements;
        const auto isFree = [&](const CFaultGroup& group) {
            return !isHang && !group.isHang && !group.faults.empty() &&
                   std::ranges::none_of(
                       cases, [&](const std::string& name) { return group.cases.contains(name); });
        };
        const auto place = std::ranges::find_if(groups, isFree);
        CFaultGroup& group = place != groups.end() ? *place : groups.emplace_back();
        group.faults += (group.faults.empty() ? "" : " ") + std::string(row.name);
        group.cases.insert(cases.begin(), cases.end());
        group.isHang = isHang;
    }
    return groups;
}

/// Runs all cases, or some, and reads the report.
CCommandResult runCases(const std::string& bundle, std::vector<std::string> args,
                        nlohmann::json& report)
{
    const CToolCommand command(TSM_CONFORM_BINARY, {"--plugin", bundle});
    args.insert(args.end(), {"--quick", "--json", "report.json"});
    const CCommandResult result = command.run(args);
    std::ifstream in(command.path("report.json"));
    report = nlohmann::json::parse(in, nullptr, false);
    return result;
}

class FaultyPlugins : public testing::TestWithParam<CFaultGroup> {};

TEST_P(FaultyPlugins, FailTheCasesThatTheyMustAndNoOther)
{
    setenv(kFaultVariable, GetParam().faults.c_str(), 1);
    nlohmann::json report;
    // A hang is waited for; nothing else comes near the limit.
    const CCommandResult result =
        runCases(TSM_FAULTY_BUNDLE, {"--limit", GetParam().isHang ? "5" : "60"}, report);
    unsetenv(kFaultVariable);
    SCOPED_TRACE(GetParam().faults);
    ASSERT_EQ(result.status, GetParam().cases.empty() ? 0 : 1) << result.out << result.err;
    const CNames failed = casesWith(report, "FAIL");
    EXPECT_THAT(without(without(GetParam().cases, unjudgedOfAll()), failed), IsEmpty())
        << "must fail";
    EXPECT_THAT(without(failed, GetParam().cases), IsEmpty()) << "must pass\n" << result.out;
    EXPECT_THAT(without(casesWith(report, "skip"), {"view.unattached"}),
                ElementsAre("objects.connection"));
}

INSTANTIATE_TEST_SUITE_P(InGroups, FaultyPlugins, testing::ValuesIn(groupFaults()),
                         [](const auto& each) { return std::to_string(each.index); });

TEST(ConformCommand, PassesTheProduct)
{
    nlohmann::json report;
    // A change of impulse loads it, on whichever thread.
    const CCommandResult result =
        runCases(TSM_PRODUCT_BUNDLE, {"--loading", "CabEnab", "--loading", "CabIndx"}, report);
    EXPECT_LE(result.status, 1) << result.err;
    EXPECT_THAT(without(casesWith(report, "FAIL"), unjudgedOfProduct()), IsEmpty()) << result.out;
    EXPECT_GT(casesWith(report, "pass").size(), 50U) << result.out;
}

// Under the thread sanitizer a race ends a case's process.
TEST(ConformCommandThreads, PassTheProduct)
{
    nlohmann::json report;
    const CCommandResult result = runCases(TSM_PRODUCT_BUNDLE, {"--only", "threads"}, report);
    EXPECT_EQ(result.status, 0) << result.out << result.err;
}

TEST(ConformCommand, TestsTheClassThatIsNamed)
{
    nlohmann::json report;
    // Component and controller as two objects, which are connected.
    EXPECT_EQ(
        runCases(TSM_TEST_BUNDLE, {"--class", "Test Split", "--only", "objects"}, report).status,
        0);
    EXPECT_THAT(casesWith(report, "pass"), Contains("objects.connection"));
    EXPECT_EQ(runCases(TSM_TEST_BUNDLE, {"--class", "Absent", "--only", "objects"}, report).status,
              1);
    EXPECT_THAT(report["cases"][0]["failures"][0]["came"].get<std::string>(),
                HasSubstr("'Absent'"));
}

TEST(ConformCommand, FailsAPeerThatIsKept)
{
    const std::vector<std::string> args{"--class", "Test Faults Split", "--only",
                                        "objects.connection"};
    nlohmann::json report;
    EXPECT_EQ(runCases(TSM_FAULTY_BUNDLE, args, report).status, 0);
    setenv(kFaultVariable, "PeerKept", 1);
    EXPECT_EQ(runCases(TSM_FAULTY_BUNDLE, args, report).status, 1);
    unsetenv(kFaultVariable);
    EXPECT_THAT(casesWith(report, "FAIL"), ElementsAre("objects.connection"));
}

TEST(ConformCommand, TellsWhatEndedAPlugin)
{
    const auto causeOf = [](const char* fault, const char* onlyCase, const char* limit) {
        setenv(kFaultVariable, fault, 1);
        nlohmann::json report;
        const CCommandResult result =
            runCases(TSM_FAULTY_BUNDLE, {"--only", onlyCase, "--limit", limit}, report);
        unsetenv(kFaultVariable);
        EXPECT_THAT(result.out, HasSubstr(std::string("FAIL  ") + onlyCase));
        return report["cases"][0]["failures"].back()["came"].get<std::string>();
    };
    EXPECT_THAT(causeOf("CrashOnDamage", "state.damaged", "60"), HasSubstr("SIGABRT"));
    EXPECT_EQ(causeOf("HangInArrangements", "buses.arrangements", "1"), "a hang");
}

TEST(ConformCommand, ListsAndChoosesCases)
{
    const CToolCommand command(TSM_CONFORM_BINARY, {"--plugin", TSM_FAULTY_BUNDLE});
    EXPECT_THAT(command.run({"--list"}).out, HasSubstr("timing.latency"));
    const CCommandResult some = command.run({"--list", "--only", "state.*"});
    EXPECT_THAT(some.out, HasSubstr("state.sound"));
    EXPECT_THAT(some.out, Not(HasSubstr("timing")));
    EXPECT_EQ(command.run({"--only", "no-such-case"}).status, 2);
    EXPECT_EQ(command.run({"--nonsense"}).status, 2);
    const CCommandResult absent = CToolCommand(TSM_CONFORM_BINARY, {"--plugin", "none"}).run({});
    EXPECT_EQ(absent.status, 2);
    EXPECT_THAT(absent.err, HasSubstr("'none'"));
}

} // namespace
} // namespace tsm
