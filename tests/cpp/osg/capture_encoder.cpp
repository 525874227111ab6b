#include "TemporaryFolder.h"

#include "capture/FfmpegProcess.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

using namespace zorOSG;
namespace fs = std::filesystem;

namespace {

constexpr auto s_patience = std::chrono::milliseconds(400);

/** \return the programs that this one has started and not waited for */
std::vector<pid_t> children() {
  std::vector<pid_t> found;
  for (auto const& thread : fs::directory_iterator("/proc/self/task")) {
    std::ifstream list(thread.path() / "children");
    for (pid_t child = 0; list >> child;)
      found.push_back(child);
  }
  return found;
}

/** A folder for pipes, and programs in the place of the encoder. */
class CaptureEncoder : public testing::Test {
protected:
  CaptureEncoder() {
    fs::create_directories(folder.file("pipes"));
    setenv("TMPDIR", folder.file("pipes").c_str(), 1);
  }
  ~CaptureEncoder() override {
    EXPECT_TRUE(children().empty()) << "an encoder was left behind";
    EXPECT_TRUE(fs::is_empty(folder.file("pipes"))) << "a pipe was left behind";
    unsetenv("TMPDIR");
    setenv("PATH", path.c_str(), 1);
  }

  void replaceEncoder(std::string const& script) {
    fs::create_directories(folder.file("bin"));
    std::ofstream(folder.file("bin/ffmpeg")) << "#!/bin/sh\n" << script << "\n";
    fs::permissions(folder.file("bin/ffmpeg"), fs::perms::all);
    setenv("PATH", (folder.file("bin") + ":" + path).c_str(), 1);
  }

  VideoSettings settings(std::string const& name = "v.mkv") const {
    return {64, 64, 25.0, 20, false, "libx264", folder.file(name)};
  }

  /** \return the message of what goes wrong in any of at most that many frames, or at the end */
  std::string failureOf(FfmpegProcess& encoder, int frames) {
    try {
      for (int i = 0; i < frames; ++i)
        encoder.writeFrame(picture.data(), picture.size());
      encoder.finish();
    } catch (std::runtime_error const& error) {
      return error.what();
    }
    return "";
  }

  std::string const path = std::getenv("PATH");
  zorTest::TemporaryFolder folder;
  std::vector<unsigned char> picture = std::vector<unsigned char>(64 * 64 * 4, 90);
};

void expectIn(std::string const& text, std::string const& whole) {
  EXPECT_NE(whole.find(text), std::string::npos) << whole;
}

TEST_F(CaptureEncoder, a_pipe_is_gone_once_it_is_open) {
  FfmpegProcess encoder(settings());
  EXPECT_TRUE(fs::is_empty(folder.file("pipes")));
  EXPECT_EQ(failureOf(encoder, 30), "");
  EXPECT_TRUE(fs::exists(folder.file("v.mkv")));
}

TEST_F(CaptureEncoder, one_that_stands_still_is_given_up) {
  FfmpegProcess encoder(settings(), s_patience);
  ASSERT_EQ(children().size(), 1u);
  encoder.writeFrame(picture.data(), picture.size());
  kill(children().front(), SIGSTOP);
  expectIn("takes no more frames", failureOf(encoder, 1000));
  expectIn("has ended", failureOf(encoder, 1));
  EXPECT_FALSE(fs::exists(folder.file("v.mkv")));
}

TEST_F(CaptureEncoder, one_that_never_reads_or_never_ends_is_given_up) {
  replaceEncoder("sleep 100");
  try {
    FfmpegProcess const encoder(settings(), s_patience);
    ADD_FAILURE() << "nobody reads";
  } catch (std::runtime_error const& error) {
    expectIn("does not read", error.what());
  }
  replaceEncoder(
      "for last; do case $last in */frames) pipe=$last;; esac; done; cat $pipe > /dev/null; sleep 100");
  FfmpegProcess encoder(settings(), s_patience);
  expectIn("no longer did anything", failureOf(encoder, 3));
}

TEST_F(CaptureEncoder, one_that_dies_says_why_and_what_is_left) {
  {
    FfmpegProcess encoder(settings("killed.mp4"));
    for (int i = 0; i < 400; ++i)
      encoder.writeFrame(picture.data(), picture.size());
    kill(children().front(), SIGKILL);
    std::string const message = failureOf(encoder, 1000);
    expectIn("Killed", message);
    expectIn("killed.incomplete.mp4", message);
  }
  replaceEncoder("echo no such luck >&2; exit 3");
  try {
    FfmpegProcess const encoder(settings());
    ADD_FAILURE() << "nobody reads";
  } catch (std::runtime_error const& error) {
    expectIn("no such luck", error.what());
  }
  EXPECT_FALSE(fs::exists(folder.file("killed.mp4")));
  EXPECT_GT(fs::file_size(folder.file("killed.incomplete.mp4")), 1000u);
}

TEST_F(CaptureEncoder, a_pipe_that_cannot_be_made_is_named) {
  setenv("TMPDIR", folder.file("nowhere").c_str(), 1);
  try {
    FfmpegProcess const encoder(settings());
    ADD_FAILURE() << "there is no folder for the pipe";
  } catch (std::runtime_error const& error) {
    expectIn("nowhere", error.what());
  }
}

} // namespace
