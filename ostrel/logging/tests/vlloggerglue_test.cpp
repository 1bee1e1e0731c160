#include "VlLogging/VlLoggerGlue.h"

#include "VlLogging/LogSink.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

class VlLoggerGlueTest : public testing::Test {
protected:
    VlLoggerGlueTest() {
        setLogSink([this](const LogRecord& record) { records.push_back(record); });
    }
    ~VlLoggerGlueTest() override {
        setLogSink({});
        setLogLevel(LogLevel::Warning);
    }

    std::vector<LogRecord> records;
    VlLoggerGlue logger{"Channel"};
};

TEST_F(VlLoggerGlueTest, aLineCarriesLevelChannelTextSourceAndLine) {
    logger.error("text", "source", 102);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0], (LogRecord{LogLevel::Error, "Channel", "text", "source", 102}));
}

TEST_F(VlLoggerGlueTest, aNullSourceIsAnEmptyOne) {
    logger.error("text", nullptr, 0);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].source, "");
}

TEST_F(VlLoggerGlueTest, theThresholdDecidesWhichLevelsPass) {
    struct Row {
        LogLevel threshold;
        std::vector<LogLevel> passing;
    };
    const Row rows[] = {
        {LogLevel::Debug, {LogLevel::Debug, LogLevel::Info, LogLevel::Warning, LogLevel::Error}},
        {LogLevel::Info, {LogLevel::Info, LogLevel::Warning, LogLevel::Error}},
        {LogLevel::Warning, {LogLevel::Warning, LogLevel::Error}},
        {LogLevel::Error, {LogLevel::Error}},
        {LogLevel::Off, {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(logLevelName(row.threshold));
        setLogLevel(row.threshold);
        EXPECT_EQ(getLogLevel(), row.threshold);
        records.clear();
        logger.debug("", "", 1);
        logger.info("", "", 1);
        logger.warning("", "", 1);
        logger.error("", "", 1);
        logger.log(LogLevel::Off, "", "", 1);
        std::vector<LogLevel> passed;
        for (const LogRecord& record : records) {
            passed.push_back(record.level);
        }
        EXPECT_EQ(passed, row.passing);

        const auto expected = [&](LogLevel level) {
            return std::find(row.passing.begin(), row.passing.end(), level) != row.passing.end();
        };
        EXPECT_EQ(logger.debugEnabled(), expected(LogLevel::Debug));
        EXPECT_EQ(logger.infoEnabled(), expected(LogLevel::Info));
        EXPECT_EQ(logger.warningEnabled(), expected(LogLevel::Warning));
        EXPECT_EQ(logger.errorEnabled(), expected(LogLevel::Error));
        EXPECT_FALSE(logger.isEnabled(LogLevel::Off));
    }
}

TEST_F(VlLoggerGlueTest, warningsPassUnlessToldOtherwise) {
    EXPECT_EQ(getLogLevel(), LogLevel::Warning);
}

TEST_F(VlLoggerGlueTest, anEmptySinkRestoresStderr) {
    setLogSink({});
    testing::internal::CaptureStderr();
    logger.error("no such window", "viewport", 801);
    const std::string line = testing::internal::GetCapturedStderr();
    EXPECT_NE(line.find(" error Channel: no such window [viewport:801]\n"), std::string::npos)
        << line;
    EXPECT_TRUE(records.empty());
}

TEST_F(VlLoggerGlueTest, linesOnStderrBearTheirLevel) {
    setLogSink({});
    setLogLevel(LogLevel::Debug);
    testing::internal::CaptureStderr();
    logger.debug("one", nullptr, 0);
    logger.info("two", nullptr, 0);
    logger.warning("three", nullptr, 0);
    logger.error("four", nullptr, 0);
    const std::string lines = testing::internal::GetCapturedStderr();
    for (const char* line : {" debug Channel: one\n", " info Channel: two\n",
                             " warning Channel: three\n", " error Channel: four\n"}) {
        EXPECT_NE(lines.find(line), std::string::npos) << line << lines;
    }
}

TEST_F(VlLoggerGlueTest, bracesInATextAreNoFormat) {
    setLogSink({});
    testing::internal::CaptureStderr();
    logger.error("a {} b {0:x} %s", nullptr, 0);
    const std::string line = testing::internal::GetCapturedStderr();
    EXPECT_NE(line.find(": a {} b {0:x} %s\n"), std::string::npos) << line;
}

TEST_F(VlLoggerGlueTest, theLineOfASinkThatThrowsGoesToStderr) {
    setLogSink([](const LogRecord&) { throw std::runtime_error("full"); });
    testing::internal::CaptureStderr();
    EXPECT_NO_THROW(logger.error("first", "s", 1));
    EXPECT_NO_THROW(logger.error("second", "s", 2));
    const std::string lines = testing::internal::GetCapturedStderr();
    EXPECT_NE(lines.find("first"), std::string::npos) << lines;
    EXPECT_NE(lines.find("second"), std::string::npos) << lines;
}

TEST_F(VlLoggerGlueTest, whatASinkLogsItselfGoesToStderr) {
    setLogSink([this](const LogRecord& record) {
        records.push_back(record);
        logger.error("from the sink", "s", 1);
    });
    testing::internal::CaptureStderr();
    logger.error("outer", "s", 1);
    const std::string lines = testing::internal::GetCapturedStderr();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].text, "outer");
    EXPECT_NE(lines.find("from the sink"), std::string::npos) << lines;
}

TEST_F(VlLoggerGlueTest, aSinkMayReplaceItself) {
    setLogSink([this](const LogRecord&) {
        setLogSink([this](const LogRecord& record) { records.push_back(record); });
    });
    logger.error("first", "s", 1);
    logger.error("second", "s", 1);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].text, "second");
}

TEST_F(VlLoggerGlueTest, threadsMayLogWhileTheSinkChanges) {
    std::atomic<int> count{0};
    const LogSink counting = [&count](const LogRecord&) { ++count; };
    setLogSink(counting);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([this] {
            for (int i = 0; i < 1000; ++i) {
                logger.error("text", "s", i);
            }
        });
    }
    for (int i = 0; i < 100; ++i) {
        setLogSink(counting);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(count, 4000);
}

TEST(LogLevel, namesAndLevelsAgreeBothWays) {
    for (const LogLevel level :
         {LogLevel::Debug, LogLevel::Info, LogLevel::Warning, LogLevel::Error, LogLevel::Off}) {
        EXPECT_EQ(logLevelFromName(logLevelName(level)), level);
    }
    for (const char* name : {"", "Error", "errors", "fatal"}) {
        EXPECT_EQ(logLevelFromName(name), std::nullopt) << name;
    }
}

} // namespace
