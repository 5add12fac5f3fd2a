#include "drawing/HostState.h"
#include "drawing/Text.h"
#include "practice/host/CommandLine.h"
#include "practice/host/HandOver.h"
#include "practice/server/CallLog.h"

#include <gmock/gmock.h>

#include <sstream>

namespace kalvrooms::practice {
namespace {

TEST(PracticeText, Utf8GoesBothWays) {
    const std::string bytes = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x8F\xAB";
    EXPECT_EQ(ToUtf8(FromUtf8(bytes)), bytes);
    EXPECT_EQ(FromUtf8("a\xFF\xC3z\xC0\x80\xED\xA0\x80").substr(0, 4), L"a\xFFFD\xFFFDz");
    EXPECT_EQ(ToUtf8(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
}

TEST(PracticeText, NumbersAreIndependentOfTheLocale) {
    EXPECT_EQ(NumberText(12.5), L"12.5");
    EXPECT_EQ(FixedText(3.10, 2), "3.1");
    EXPECT_EQ(FixedText(-0.001, 2), "0");
    EXPECT_EQ(FixedText(1200, 2), "1200");
}

TEST(CallLog, CountsByMember) {
    CallLog calls;
    calls.Enter(L"Room", L"Name");
    calls.Enter(L"List", L"Count");
    calls.Enter(L"Room", L"Name");
    EXPECT_EQ(calls.Count(), 3);
    EXPECT_EQ(calls.Report(), L"List.Count=1\nRoom.Name=2\n");
    calls.ResetCount();
    EXPECT_EQ(calls.Count(), 0);
    EXPECT_EQ(calls.Report(), L"");
}

TEST(CallLog, TheNthCallFromNowOnFailsOnce) {
    CallLog calls;
    calls.Enter(L"a", L"b");
    calls.FailAt(2, Fault::From(L"fail", L"kaputt"));
    EXPECT_FALSE(calls.Enter(L"a", L"b"));
    const auto fault = calls.Enter(L"a", L"c");
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->mode, FaultMode::Fail);
    EXPECT_EQ(fault->description, L"kaputt");
    EXPECT_FALSE(calls.Enter(L"a", L"b"));
}

TEST(CallLog, ARejectionHoldsForItsCountOfCalls) {
    CallLog calls;
    calls.FailAt(1, Fault::From(L"later", L"2"));
    EXPECT_EQ(calls.Enter(L"a", L"b")->mode, FaultMode::Later);
    EXPECT_EQ(calls.Enter(L"a", L"b")->mode, FaultMode::Later);
    EXPECT_FALSE(calls.Enter(L"a", L"b"));
}

TEST(CallLog, AMemberFailsAtItsNextCall) {
    CallLog calls;
    calls.FailMember(L"count", Fault::From(L"empty", L""));
    calls.FailMember(L"Room.Name", Fault::From(L"reject", L""));
    EXPECT_FALSE(calls.Enter(L"List", L"Item"));
    EXPECT_FALSE(calls.Enter(L"List", L"Name"));
    EXPECT_EQ(calls.Enter(L"List", L"Count")->mode, FaultMode::Empty);
    EXPECT_FALSE(calls.Enter(L"List", L"Count"));
    EXPECT_EQ(calls.Enter(L"Room", L"Name")->mode, FaultMode::Reject);
}

TEST(CallLog, ClearedFaultsDoNotStrike) {
    CallLog calls;
    calls.FailAt(1, Fault::From(L"stall", L"250"));
    calls.ClearFaults();
    EXPECT_FALSE(calls.Enter(L"a", L"b"));
}

TEST(Fault, UnreadableFaultsAreRefused) {
    EXPECT_EQ(Fault::From(L"stall", L"250").milliseconds, 250);
    EXPECT_EQ(Fault::From(L"exit", L"").mode, FaultMode::Exit);
    EXPECT_THROW(Fault::From(L"explode", L""), HostError);
    EXPECT_THROW(Fault::From(L"later", L"often"), HostError);
    EXPECT_THROW(Fault::From(L"later", L"0"), HostError);
    EXPECT_THROW(Fault::From(L"stall", L"99999999999"), HostError);
    EXPECT_THROW(CallLog().FailAt(0, {}), HostError);
    EXPECT_THROW(CallLog().FailMember(L"", {}), HostError);
}

TEST(HostState, DescriptionsHaveTheirWordsBehindTheBeginning) {
    HostState state;
    const auto refusal = [&state] {
        try {
            state.CheckAccess();
        } catch (const HostError& error) {
            return error.description();
        }
        return std::wstring();
    };
    EXPECT_EQ(refusal(), L"");
    state.Set(L"menu");
    for (const wchar_t* word : {L"interaction", L"menue", L"terminate"}) {
        EXPECT_NE(refusal().find(word), std::wstring::npos);
        EXPECT_NE(refusal().find(word), 0u);
    }
    state.Set(L"kvd");
    EXPECT_NE(refusal().find(L"any Kvd or free plan"), std::wstring::npos);
    EXPECT_NE(refusal().find(L"any Kvd or free plan"), 0u);
    state.CreationError(L"any Kvd or free plan");
    EXPECT_EQ(refusal(), L"any Kvd or free plan");
    state.CreationError(L"");
    state.Set(L"");
    EXPECT_EQ(refusal(), L"");
    EXPECT_THROW(state.Set(L"moon"), HostError);
}

TEST(HandOver, HasFourLinesAndTheHostsEndingOfTheHelpFile) {
    EXPECT_EQ(
        HandOverText({L"C:\\x\\quartino.chm", L"Software\\Quartino", L"deu"}),
        L"Kalvero practice host\r\nC:\\x\\quartino.kalvhelp\r\nSoftware\\Quartino\r\ndeu\r\n");
    EXPECT_EQ(HandOverText({L"C:\\x.y\\quartino", L"", L"xxx"}),
              L"Kalvero practice host\r\nC:\\x.y\\quartino.kalvhelp\r\n\r\nxxx\r\n");
}

// The words stand between bars.
CommandLine Read(const std::wstring& words) {
    std::vector<std::wstring> arguments;
    std::wistringstream stream(words);
    for (std::wstring word; std::getline(stream, word, L'|');)
        arguments.push_back(word);
    return CommandLine::From(arguments);
}

TEST(CommandLine, ReadsEveryOption) {
    const CommandLine line =
        Read(L"--drawing|a.json|--save|b.json|--svg|c.svg|--place|1.5,-2|--state|kvd|--hidden|"
             L"--fail-at|3:fail:so: nicht|--fail-at|4:exit|--start|Q.exe|--language|eng|"
             L"--settings-key|Software\\Test|--help-file|h.chm|--quit-with-client");
    EXPECT_EQ(line.drawing, L"a.json");
    EXPECT_EQ(line.save, L"b.json");
    EXPECT_EQ(line.svg, L"c.svg");
    EXPECT_EQ(line.place, (Point{1.5, -2}));
    EXPECT_EQ(line.state, L"kvd");
    EXPECT_TRUE(line.hidden);
    ASSERT_EQ(line.faults.size(), 2u);
    EXPECT_EQ(line.faults[0].first, 3);
    EXPECT_EQ(line.faults[0].second.description, L"so: nicht");
    EXPECT_EQ(line.faults[1].second.mode, FaultMode::Exit);
    EXPECT_EQ(line.start, L"Q.exe");
    EXPECT_EQ(line.handOver.language, L"eng");
    EXPECT_EQ(line.handOver.settingsKey, L"Software\\Test");
    EXPECT_EQ(line.handOver.helpFile, L"h.chm");
    EXPECT_TRUE(line.quitWithClient);
}

TEST(CommandLine, KnowsTheSystemsOwnSwitch) {
    EXPECT_TRUE(Read(L"-Embedding").embedding);
    EXPECT_TRUE(Read(L"/embedding").embedding);
    EXPECT_FALSE(Read(L"").embedding);
    EXPECT_EQ(Read(L"").handOver.language, L"xxx");
    EXPECT_EQ(Read(L"").handOver.settingsKey, L"Software\\Quartino");
}

TEST(CommandLine, RefusesWhatItCannotRead) {
    for (const wchar_t* wrong :
         {L"--moon", L"--drawing", L"--place|1", L"--place|1,x", L"--state|moon", L"--fail-at|3",
          L"--fail-at|0:fail", L"--fail-at|x:fail", L"--fail-at|1:explode", L"--quit-with-client"})
        EXPECT_THROW(Read(wrong), HostError) << ToUtf8(wrong);
}

} // namespace
} // namespace kalvrooms::practice
