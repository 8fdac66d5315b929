#include "rsa/log/logger.h"

#include "support/tap.h"
#include "support/texts.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace pavonix {
namespace {

using namespace test;

class LoggerTest : public testing::Test {
protected:
    Logger log_;
};

TEST_F(LoggerTest, RendersARealisticRunInThreeForms)
{
    tap::UseClock(tap::Clock{{}, 0xABCDE});
    log_.enterContext(" Encrypt String\t");
    log_.logDataLong("usePrivateKey", -1);
    log_.enterContext("Block");
    log_.logDataValue("padded data", "\x00\xA5>", 3);
    log_.logError("too <small>");
    log_.leaveContext();
    log_.logRaw("<hint/>&");
    log_.logHex("flags", 255);
    log_.leaveContext();
    log_.logTickCount("Ticks");
    log_.logInfo("done");
    EXPECT_EQ(LogText(log_), Lines("ZentorpLog:|  Encrypt_String:|    usePrivateKey: -1|    Block:|"
                                   "      padded_data: 00A53E|      too <small>|    <hint/>&|    flags: 0xff|"
                                   "  Ticks: abcde|  done|"));
    EXPECT_EQ(LogText(log_, &LogBase::getLogHtml),
              Lines("ZentorpLog:<blockquote>|Encrypt_String:<blockquote>|usePrivateKey: -1<br>|Block:<blockquote>|"
                    "padded_data: 00A53E<br>|too &lt;small&gt;<br>|</blockquote>|&lt;hint/&gt;&amp;<br>|"
                    "flags: 0xff<br>|</blockquote>|Ticks: abcde<br>|done<br>|</blockquote>|"));
    EXPECT_EQ(LogText(log_, &LogBase::getLogXml),
              Lines("<ZentorpLog>|<Encrypt_String>|<usePrivateKey>-1</usePrivateKey>|<Block>|"
                    "<padded_data>00A53E</padded_data>|<error><![CDATA[too <small>]]></error>|</Block>|<hint/>&|"
                    "<flags>0xff</flags>|</Encrypt_String>|<Ticks>abcde</Ticks>|<info>done</info>|</ZentorpLog>|"));
}

TEST_F(LoggerTest, DepthNeedsNoStack)
{
    constexpr std::size_t kDepth = 100000;
    for (std::size_t i = 0; i < kDepth; ++i) {
        log_.enterContext("c");
    }
    log_.logInfo("x");
    const std::string inside = Lines("<c>|<info>x</info>|</c>|");
    const std::string xml = LogText(log_, &LogBase::getLogXml);
    EXPECT_NE(xml.find(inside), xml.npos);
    EXPECT_EQ(xml.size(),
              std::strlen("<ZentorpLog></ZentorpLog><info>x</info>") + 6 + kDepth * (std::strlen("<c></c>") + 4));
}

// The order of the virtual functions is part of the interface. A pointer to a virtual
// function holds its offset in the table plus one.
template <typename... Operations>
std::vector<std::size_t> Offsets(Operations... operations)
{
    return {std::bit_cast<std::array<std::size_t, 2>>(operations)[0]...};
}

TEST_F(LoggerTest, OperationsKeepTheirPlaces)
{
    using Log = LogBase;
    const std::vector<std::size_t> offsets =
        Offsets(&Log::getLogText, &Log::getLogHtml, &Log::getLogXml, &Log::logError, &Log::logInfo, &Log::logRaw,
                &Log::clear, &Log::enterContext, &Log::leaveContext, &Log::logData, &Log::logDataLong,
                &Log::logDataValue, &Log::logHex, &Log::keepsEntries, &Log::logTickCount, &Log::saveText);
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        EXPECT_EQ(offsets[i], 1 + (i + 2) * sizeof(void *)); // the destructor has two entries here, and one on Windows
    }
}

TEST_F(LoggerTest, TagsAndTextsAtTheirEdges)
{
    log_.logData(" my value ", "v");
    log_.logData("\r\n a\tb  c", nullptr);
    log_.logDataValue("nothing", nullptr, 9);
    log_.logDataValue("none", "", 0);
    log_.logData("empty", "");
    log_.logHex("zero", 0);
    log_.logHex("all", 0xFFFFFFFFu);
    EXPECT_TRUE(log_.logInfo(""));
    const std::string kept = Lines("ZentorpLog:|  my_value: v|  a\tb__c: (NULL)|  nothing: (NULL)|  none: |  empty: |"
                                   "  zero: 0x0|  all: 0xffffffff|  |");
    EXPECT_EQ(LogText(log_), kept);
    for (const char *tag : {static_cast<const char *>(nullptr), "", " \t\r\n"}) {
        EXPECT_TRUE(log_.logData(tag, "x") && log_.logDataLong(tag, 1) && log_.logDataValue(tag, "x", 1) &&
                    log_.logHex(tag, 1) && log_.logTickCount(tag) && log_.enterContext(tag));
    }
    EXPECT_TRUE(log_.logError(nullptr) && log_.logInfo(nullptr) && log_.logRaw(nullptr));
    EXPECT_EQ(LogText(log_), kept);
}

TEST_F(LoggerTest, LeavingTooOftenStaysAtTheRootAndClearingStartsAfresh)
{
    log_.leaveContext();
    {
        LogContext outer(log_, "Outer");
        LogContext inner(log_, "Inner");
        log_.leaveContext(); // like the step that leaves its caller's context
        inner.MarkLeft();
        log_.logInfo("in Outer");
    }
    log_.leaveContext();
    log_.logInfo("in root");
    EXPECT_EQ(LogText(log_), "ZentorpLog:\r\n  Outer:\r\n    Inner:\r\n    in Outer\r\n  in root\r\n");
    log_.enterContext("Open");
    log_.clear();
    EXPECT_EQ(LogText(log_), "ZentorpLog:\r\n");
    log_.logInfo("in the new root");
    log_.leaveContext();
    EXPECT_EQ(LogText(log_), "ZentorpLog:\r\n  in the new root\r\n");
}

TEST_F(LoggerTest, SavedTextReplacesTheFile)
{
    const std::string path = testing::TempDir() + "pavonix_saved_log";
    std::ofstream(path) << std::string(1000, 'x');
    std::basic_string<WideChar> wide(path.begin(), path.end());
    log_.logInfo("kept");
    EXPECT_TRUE(log_.saveText(wide.c_str()));
    std::stringstream saved;
    saved << std::ifstream(path, std::ios::binary).rdbuf();
    EXPECT_EQ(saved.str(), "ZentorpLog:\r\n  kept\r\n");
    tap::Reset();
    log_.logInfo(std::string(1000, 'y').c_str());
    tap::FailNth(2, true); // the growth of the rendered text's buffer
    EXPECT_FALSE(log_.saveText(wide.c_str()));
    tap::FailNone();
    EXPECT_EQ(tap::CountOf("RemoveFile"), 0) << "the old text stays if the new one is incomplete";
    for (const char *failing : {"OpenStream", "WriteStream", "CloseStream"}) {
        tap::FailAlways(failing);
        EXPECT_FALSE(log_.saveText(wide.c_str())) << failing;
        tap::FailNone();
    }
    EXPECT_EQ(tap::Held().streams, 0);
    std::remove(path.c_str());
}

void LogSomeContexts(LogBase &log)
{
    const LogContext outer(log, "Outer");
    {
        const LogContext inner(log, "Inner");
        log.logInfo("inner");
    }
    log.logDataLong("between", 7);
    log.logDataValue("bytes", std::string(300, 'x').data(), 300);
    log.logData(std::string(300, 't').c_str(), "long tag");
}

// The lines without their indentation.
std::set<std::string> LinesOf(LogBase &log)
{
    std::set<std::string> lines;
    std::istringstream text(LogText(log));
    for (std::string line; std::getline(text >> std::ws, line);) {
        lines.insert(line);
    }
    return lines;
}

TEST_F(LoggerTest, WithoutMemoryEntriesAreDroppedAndContextsStayBalanced)
{
    LogSomeContexts(log_);
    const std::set<std::string> whole = LinesOf(log_);
    const tap::OpenHandles before = tap::Held();
    tap::FailEach([&] {
        Logger log;
        log.clear();
        LogSomeContexts(log);
        LogText(log);
        tap::FailNone();
        for (const std::string &line : LinesOf(log)) {
            EXPECT_TRUE(whole.count(line)) << line; // no partial entries
        }
        log.logInfo("after");
        const std::string rendered = LogText(log);
        // A log without its root is empty until it is cleared.
        EXPECT_TRUE(rendered.empty() || rendered.ends_with("\r\n  after\r\n")) << rendered;
        log.clear();
        log.logInfo("again");
        EXPECT_EQ(LogText(log), "ZentorpLog:\r\n  again\r\n");
    });
    EXPECT_EQ(tap::Held(), before);
}

TEST_F(LoggerTest, EntriesOfALostContextGoToTheOuterOne)
{
    tap::FailNth(1, false); // the entry of "Outer"
    LogSomeContexts(log_);
    EXPECT_TRUE(LogText(log_).starts_with("ZentorpLog:\r\n  inner\r\n  between: 7\r\n  bytes: 78")) << LogText(log_);
    tap::FailNth(1, false);
    log_.enterContext("Lost");
    log_.clear();
    LogSomeContexts(log_);
    EXPECT_TRUE(LogText(log_).starts_with("ZentorpLog:\r\n  Outer:\r\n    Inner:\r\n")) << LogText(log_);
}

TEST_F(LoggerTest, TheNullLogKeepsNothing)
{
    LogNull log;
    EXPECT_TRUE(log_.keepsEntries() && !log.keepsEntries());
    LogSomeContexts(log);
    for (const Rendering rendering : {&LogBase::getLogText, &LogBase::getLogHtml, &LogBase::getLogXml}) {
        EXPECT_EQ(LogText(log, rendering), "");
    }
}

} // namespace
} // namespace pavonix
