#include "rsa/log/logger.h"

#include "rsa/log/log_base.h"
#include "support/tap.h"
#include "support/texts.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <thread>

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
    EXPECT_EQ(LogText(log_), "ZentorpLog:\r\n"
                             "  Encrypt_String:\r\n"
                             "    usePrivateKey: -1\r\n"
                             "    Block:\r\n"
                             "      padded_data: 00A53E\r\n"
                             "      too <small>\r\n"
                             "    <hint/>&\r\n"
                             "    flags: 0xff\r\n"
                             "  Ticks: abcde\r\n"
                             "  done\r\n");
    EXPECT_EQ(LogText(log_, &LogBase::getLogHtml), "ZentorpLog:<blockquote>\r\n"
                                                   "Encrypt_String:<blockquote>\r\n"
                                                   "usePrivateKey: -1<br>\r\n"
                                                   "Block:<blockquote>\r\n"
                                                   "padded_data: 00A53E<br>\r\n"
                                                   "too &lt;small&gt;<br>\r\n"
                                                   "</blockquote>\r\n"
                                                   "&lt;hint/&gt;&amp;<br>\r\n"
                                                   "flags: 0xff<br>\r\n"
                                                   "</blockquote>\r\n"
                                                   "Ticks: abcde<br>\r\n"
                                                   "done<br>\r\n"
                                                   "</blockquote>\r\n");
    EXPECT_EQ(LogText(log_, &LogBase::getLogXml), "<ZentorpLog>\r\n"
                                                  "<Encrypt_String>\r\n"
                                                  "<usePrivateKey>-1</usePrivateKey>\r\n"
                                                  "<Block>\r\n"
                                                  "<padded_data>00A53E</padded_data>\r\n"
                                                  "<error><![CDATA[too <small>]]></error>\r\n"
                                                  "</Block>\r\n"
                                                  "<hint/>&\r\n"
                                                  "<flags>0xff</flags>\r\n"
                                                  "</Encrypt_String>\r\n"
                                                  "<Ticks>abcde</Ticks>\r\n"
                                                  "<info>done</info>\r\n"
                                                  "</ZentorpLog>\r\n");
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
    log_.logInfo("");
    const std::string kept = "ZentorpLog:\r\n"
                             "  my_value: v\r\n"
                             "  a\tb__c: (NULL)\r\n"
                             "  nothing: (NULL)\r\n"
                             "  none: \r\n"
                             "  empty: \r\n"
                             "  zero: 0x0\r\n"
                             "  all: 0xffffffff\r\n"
                             "  \r\n";
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
        log_.leaveContext(); // as the step that leaves its caller's context does
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

// The lines, whatever contexts they stand in.
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
    const tap::Holdings before = tap::Held();
    tap::FailEach([&] {
        Logger log;
        log.clear();
        LogSomeContexts(log);
        LogText(log);
        tap::FailNone();
        for (const std::string &line : LinesOf(log)) {
            EXPECT_TRUE(whole.count(line)) << line; // no entry is there in part
        }
        log.logInfo("after");
        const std::string rendered = LogText(log);
        // Without its root a log is empty until it is cleared.
        EXPECT_TRUE(rendered.empty() || rendered.ends_with("\r\n  after\r\n")) << rendered;
        log.clear();
        log.logInfo("again");
        EXPECT_EQ(LogText(log), "ZentorpLog:\r\n  again\r\n");
    });
    EXPECT_EQ(tap::Held(), before);
}

TEST_F(LoggerTest, WhatALostContextHoldsGoesToTheOneAround)
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

TEST_F(LoggerTest, ThreadsShareOneLog)
{
    const auto logMany = [this](const char *tag) {
        for (int i = 0; i < 3000; ++i) {
            log_.logDataLong(tag, i);
        }
    };
    std::thread other(logMany, "b");
    logMany("a");
    other.join();
    std::istringstream lines(LogText(log_));
    std::string tag, value;
    int next[2] = {0, 0};
    lines >> tag;
    while (lines >> tag >> value) {
        EXPECT_EQ(value, std::to_string(next[tag == "a:" ? 0 : 1]++));
    }
    EXPECT_EQ(next[0], 3000);
    EXPECT_EQ(next[1], 3000);
}

TEST(LogNullTest, KeepsNothing)
{
    LogNull log;
    EXPECT_FALSE(log.keepsEntries());
    EXPECT_TRUE(Logger().keepsEntries());
    LogSomeContexts(log);
    for (const Rendering rendering : {&LogBase::getLogText, &LogBase::getLogHtml, &LogBase::getLogXml}) {
        EXPECT_EQ(LogText(log, rendering), "");
    }
    EXPECT_TRUE(log.saveText(nullptr));
}

} // namespace
} // namespace pavonix
