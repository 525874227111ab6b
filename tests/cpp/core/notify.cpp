#include <zor/Notify.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <mutex>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <vector>

#include <unistd.h>

namespace {

using testing::ElementsAre;
using zor::Notify;

class NotifyTest : public testing::Test {
protected:
  NotifyTest() {
    Notify::instance().setEnableConsole(false);
    m_target = Notify::instance().addTarget([this](zor::NotifyMessage const& message) {
      std::lock_guard const lock(m_mutex);
      messages.push_back(message);
    });
  }
  ~NotifyTest() override {
    Notify::instance().removeTarget(m_target);
    Notify::instance().setEnableConsole(true);
    Notify::instance().setNotifyLevel(Notify::NOTIFY_WARNING);
    Notify::instance().setLogFile("");
  }

  std::vector<std::string> texts() const {
    std::vector<std::string> result;
    for (zor::NotifyMessage const& message : messages) {
      result.push_back(message.text);
    }
    return result;
  }

  std::vector<zor::NotifyMessage> messages;

private:
  std::mutex m_mutex;
  int m_target = 0;
};

TEST_F(NotifyTest, LetsThroughFromTheLevelOn) {
  zor::notify(Notify::NOTIFY_INFO) << "quiet" << zor::endMessage;
  zor::notify(Notify::NOTIFY_WARNING) << "no texture " << 3 << std::endl << zor::endMessage;
  zor::notify(Notify::NOTIFY_ERROR) << "lost" << zor::endMessage;
  EXPECT_THAT(texts(), ElementsAre("no texture 3", "lost"));
  EXPECT_EQ(messages[1].level, 4);
  Notify::instance().setNotifyLevel(Notify::NOTIFY_DEBUG);
  zor::notify(Notify::NOTIFY_DEBUG) << "detail" << zor::endMessage;
  Notify::instance().setNotifyLevel(Notify::NOTIFY_ERROR + 1);
  zor::notify(Notify::NOTIFY_ERROR) << "silenced" << zor::endMessage;
  EXPECT_EQ(texts().back(), "detail");
}

TEST_F(NotifyTest, TellsWhereAMessageComesFromOnce) {
  Notify& log = Notify::instance();
  log.setDebugStrings("_wrap_clear", "renderers.i", 112, 4);
  log.stream() << "it failed" << std::endl;
  log.stream() << zor::endMessage;
  log.setDebugStrings("unused", "unused.i", 1, 99);
  zor::notify(Notify::NOTIFY_WARNING) << "x" << zor::endMessage;
  zor::notify(Notify::NOTIFY_WARNING) << "y" << zor::endMessage;
  ASSERT_EQ(messages.size(), 3u);
  EXPECT_EQ(messages[0].format(), "Error at renderers.i:112 in _wrap_clear: it failed");
  EXPECT_EQ(messages[1].level, Notify::NOTIFY_WARNING);
  EXPECT_EQ(messages[2].format(), "Warning: y");
}

TEST_F(NotifyTest, StreamForgetsFormatAndFailure) {
  zor::notify(Notify::NOTIFY_ERROR) << std::hex << std::setprecision(1) << 255 << zor::endMessage;
  zor::notify(Notify::NOTIFY_ERROR).setstate(std::ios::failbit);
  Notify::instance().endMessage();
  zor::notify(Notify::NOTIFY_ERROR) << 255 << " " << 0.125 << zor::endMessage;
  EXPECT_THAT(texts(), ElementsAre("ff", "255 0.125"));
  std::ostringstream other;
  other << "a" << zor::endMessage << "b";
  EXPECT_EQ(other.str(), "a\nb");
}

TEST_F(NotifyTest, MessagesOfThreadsDoNotMix) {
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t] {
      for (int i = 0; i < 100; ++i) {
        zor::notify(Notify::NOTIFY_ERROR) << t << t << t << t << zor::endMessage;
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  ASSERT_EQ(messages.size(), 400u);
  for (std::string const& text : texts()) {
    EXPECT_EQ(text, std::string(4, text[0]));
  }
}

TEST_F(NotifyTest, TargetMayThrowAndLog) {
  int const bad = Notify::instance().addTarget([](zor::NotifyMessage const&) {
    zor::notify(Notify::NOTIFY_ERROR) << "from the target" << zor::endMessage;
    throw std::runtime_error("target");
  });
  zor::notify(Notify::NOTIFY_ERROR) << "once" << zor::endMessage;
  Notify::instance().removeTarget(bad);
  EXPECT_THAT(texts(), ElementsAre("once"));
  EXPECT_THROW(Notify::instance().addTarget({}), std::invalid_argument);
}

struct LogsAtExit {
  ~LogsAtExit() { zor::notify(Notify::NOTIFY_ERROR) << "last words" << zor::endMessage; }
};

TEST(NotifyDeathTest, StaticObjectsMayLogWhileTheProcessEnds) {
  auto const leave = [] {
    static LogsAtExit const object;
    zor::notify(Notify::NOTIFY_ERROR) << "first" << zor::endMessage;
    std::exit(0);
  };
  EXPECT_EXIT(leave(), testing::ExitedWithCode(0), "Error: last words");
}

TEST_F(NotifyTest, WritesToConsoleAndFile) {
  std::string const path = testing::TempDir() + "zor_notify_test_" + std::to_string(getpid()) + ".log";
  Notify::instance().setLogFile(path);
  EXPECT_THROW(Notify::instance().setLogFile("/nowhere/at/all.log"), std::runtime_error);
  EXPECT_EQ(Notify::instance().getLogFile(), path);
  Notify::instance().setEnableConsole(true);
  testing::internal::CaptureStderr();
  zor::notify(Notify::NOTIFY_WARNING) << "both" << zor::endMessage;
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Warning: both\n");
  std::ifstream file(path);
  std::string line;
  EXPECT_TRUE(std::getline(file, line));
  EXPECT_EQ(line, "Warning: both");
  Notify::instance().setLogFile("");
  std::filesystem::remove(path);
}

} // namespace
