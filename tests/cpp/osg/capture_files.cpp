#include "Offscreen.h"
#include "TemporaryFolder.h"

#include <zor/ref_ptr.h>
#include <zorOSG/ImageCapture.h>
#include <zorOSG/RenderToImage.h>
#include <zorOSG/VideoFFMPEGPipeCapture.h>
#include <zorSDK/Simulation.h>

#include <osg/Group>
#include <osgDB/ReadFile>

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>

using namespace zorOSG;
namespace fs = std::filesystem;

namespace {

std::set<std::string> filesIn(std::string const& folder) {
  std::set<std::string> names;
  for (auto const& entry : fs::directory_iterator(folder)) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

std::string outputOf(std::string const& command) {
  std::string text;
  FILE* pipe = popen(command.c_str(), "r");
  std::array<char, 256> buffer{};
  while (pipe && std::fgets(buffer.data(), static_cast<int>(buffer.size()), pipe)) {
    text += buffer.data();
  }
  if (pipe) {
    pclose(pipe);
  }
  return text;
}

std::string probe(std::string const& file) {
  return outputOf("ffprobe -v error -count_frames -select_streams v -show_entries "
                  "stream=codec_name,width,height,r_frame_rate,nb_read_frames -of csv=p=0 '" +
                  file + "'");
}

osg::ref_ptr<osg::Image> plainImage(int width, int height, unsigned char red) {
  osg::ref_ptr<osg::Image> image = new osg::Image;
  image->allocateImage(width, height, 1, GL_RGB, GL_UNSIGNED_BYTE);
  for (int i = 0; i < width * height; ++i) {
    image->data()[3 * i] = red;
    image->data()[3 * i + 1] = image->data()[3 * i + 2] = 0;
  }
  return image;
}

class ScopedPath {
public:
  explicit ScopedPath(char const* value) : m_old(std::getenv("PATH")) { setenv("PATH", value, 1); }
  ~ScopedPath() { setenv("PATH", m_old.c_str(), 1); }

private:
  std::string m_old;
};

/** A main view with a capture, drawn once per simulation step. */
class CaptureFiles : public testing::Test {
protected:
  CaptureFiles() { view.camera().setClearColor({0.0f, 1.0f, 0.0f, 1.0f}); }

  void attach(ImageCaptureBase& capture) { view.camera().setFinalDrawCallback(capture.getDrawCallback()); }

  void frames(int count) {
    for (int i = 0; i < count; ++i) {
      view.viewer().frame();
      simulation->stepForward();
    }
  }

  zorTest::TemporaryFolder folder;
  zorTest::Offscreen view{64, 48};
  zor::ref_ptr<zorSDK::Simulation> simulation{new zorSDK::Simulation};
};

TEST_F(CaptureFiles, images_are_numbered_and_keep_step_with_simulated_time) {
  zor::ref_ptr<ImageCapture> const capture(new ImageCapture(simulation.get()));
  capture->setDirectoryPath(folder.file("made/on/start"));
  capture->setPrefix("shot_");
  capture->setPostfix("png");
  capture->setFps(30);
  capture->setImageResolution(32, 24);
  simulation->setTimeStep(1.0 / 60.0);
  view.viewer().setSceneData(new osg::Group);
  attach(*capture);
  EXPECT_FALSE(capture->stopCapture());
  capture->startCapture(7);
  frames(8);
  EXPECT_EQ(capture->getImageNum(), 11);
  EXPECT_TRUE(capture->stopCapture());
  EXPECT_EQ(filesIn(folder.file("made/on/start")),
            (std::set<std::string>{"shot_00007.png", "shot_00008.png", "shot_00009.png", "shot_00010.png"}));
  osg::ref_ptr<osg::Image> const image = osgDB::readRefImageFile(folder.file("made/on/start/shot_00009.png"));
  ASSERT_TRUE(image);
  EXPECT_EQ(image->s(), 32);
  EXPECT_EQ(image->getColor(16, 12), osg::Vec4(0, 1, 0, 1));
}

TEST_F(CaptureFiles, slow_drawing_repeats_images_and_a_limit_ends_them) {
  zor::ref_ptr<ImageCapture> const capture(new ImageCapture(simulation.get()));
  capture->setDirectoryPath(folder.path());
  capture->setFps(60);
  capture->setMaxImages(5);
  simulation->setTimeStep(1.0 / 20.0);
  view.viewer().setSceneData(new osg::Group);
  attach(*capture);
  capture->startCapture();
  frames(6);
  EXPECT_FALSE(capture->getCaptureStarted());
  capture->stopCapture();
  EXPECT_EQ(filesIn(folder.path()).size(), 5u);
}

TEST_F(CaptureFiles, what_cannot_be_written_is_an_error_that_leaves_nothing) {
  zor::ref_ptr<ImageCapture> const capture(new ImageCapture);
  std::ofstream(folder.file("a_file")) << "x";
  capture->setDirectoryPath(folder.file("a_file/below"));
  EXPECT_THROW(capture->startCapture(), std::runtime_error);
  capture->setDirectoryPath(folder.path());
  capture->setPostfix("nonsense");
  EXPECT_THROW(capture->startCapture(), std::runtime_error);
  EXPECT_FALSE(capture->getCaptureStarted());
  EXPECT_THROW(capture->setFps(0), std::invalid_argument);
  EXPECT_THROW(capture->startCapture(-1), std::exception);

  // The folder goes away while frames are being taken.
  capture->setPostfix("png");
  capture->setDirectoryPath(folder.file("gone"));
  capture->setFps(10000);
  view.viewer().setSceneData(new osg::Group);
  attach(*capture);
  capture->startCapture();
  fs::remove_all(folder.file("gone"));
  frames(3);
  EXPECT_FALSE(capture->stopCapture());
  EXPECT_EQ(filesIn(folder.path()), (std::set<std::string>{"a_file"}));
}

TEST_F(CaptureFiles, render_target_feeds_a_video_of_the_size_rate_and_length_asked_for) {
  zor::ref_ptr<VideoFFMPEGPipeCapture> const video(new VideoFFMPEGPipeCapture(96, 64, 30, simulation.get()));
  video->setFilename(folder.file("run.mp4"));
  zor::ref_ptr<RenderTarget> const target(new RenderTarget(96, 64));
  target->setImageCapture(video.get());
  target->getCamera()->setClearColor({0.0f, 0.0f, 1.0f, 1.0f});
  osg::ref_ptr<osg::Group> const root = new osg::Group;
  root->addChild(target->getCamera());
  view.viewer().setSceneData(root);

  simulation->setTimeStep(1.0 / 60.0);
  video->startCapture();
  EXPECT_TRUE(video->hasActiveVideo());
  frames(60);
  EXPECT_EQ(filesIn(folder.path()).count("run.mp4"), 0u)
      << "a video that is not finished must not look whole";
  EXPECT_TRUE(video->stopProcess());
  EXPECT_FALSE(video->stopProcess());
  EXPECT_EQ(filesIn(folder.path()), (std::set<std::string>{"run.mp4"}));
  EXPECT_EQ(probe(folder.file("run.mp4")), "h264,96,64,30/1,30\n");

  std::string const png = folder.file("frame.png");
  outputOf("ffmpeg -v error -y -i '" + folder.file("run.mp4") + "' -frames:v 1 '" + png + "' 2>&1");
  osg::ref_ptr<osg::Image> const frame = osgDB::readRefImageFile(png);
  ASSERT_TRUE(frame);
  EXPECT_GT(frame->getColor(48, 32).b(), 0.9f);
  EXPECT_LT(frame->getColor(48, 32).r(), 0.1f);
}

TEST_F(CaptureFiles, frames_of_other_pixel_formats_keep_their_colours) {
  zor::ref_ptr<ImageCapture> const capture(new ImageCapture(simulation.get()));
  capture->setDirectoryPath(folder.path());
  capture->setPostfix("png");
  zor::ref_ptr<RenderToImage> const target(new RenderToImage(30, 20));
  target->setImageCapture(capture.get());
  target->getCamera()->setClearColor({0.2f, 0.4f, 1.0f, 0.5f});
  osg::ref_ptr<osg::Group> const root = new osg::Group;
  root->addChild(target->getCamera());
  view.viewer().setSceneData(root);
  capture->startCapture();
  frames(1);
  EXPECT_TRUE(capture->stopCapture());
  osg::ref_ptr<osg::Image> const image = osgDB::readRefImageFile(folder.file("image_00000.png"));
  ASSERT_TRUE(image);
  for (unsigned int x : {0u, 13u, 29u}) {
    osg::Vec4 const color = image->getColor(x, x % 20u);
    EXPECT_NEAR(color.r(), 0.2f, 0.01f);
    EXPECT_NEAR(color.g(), 0.4f, 0.01f);
    EXPECT_NEAR(color.b(), 1.0f, 0.01f);
  }
}

TEST_F(CaptureFiles, videos_of_every_codec_can_be_made_one_after_another) {
  zor::ref_ptr<VideoFFMPEGPipeCapture> const video(new VideoFFMPEGPipeCapture(63, 33, 25));
  struct Case {
    VideoFFMPEGPipeCapture::OutputCodec codec;
    char const* name;
    char const* probed;
  };
  for (Case const& c : {Case{VideoFFMPEGPipeCapture::OutputCodec_H264, "a.mp4", "h264,64,34,25/1,3\n"},
                        Case{VideoFFMPEGPipeCapture::OutputCodec_H264RGB, "b.mkv", "h264,63,33,25/1,3\n"},
                        Case{VideoFFMPEGPipeCapture::OutputCodec_XVID, "c.avi", "mpeg4,64,34,25/1,3\n"}}) {
    video->setFilename(folder.file(c.name));
    video->setOutputVideoCodec(c.codec);
    video->init();
    // Frames of other sizes are scaled; the writer is called as a script may call it.
    for (unsigned int i = 0; i < 3; ++i) {
      video->writeImage(plainImage(63 + static_cast<int>(i), 33, 200), i);
    }
    EXPECT_TRUE(video->stopProcess()) << c.name;
    EXPECT_EQ(probe(folder.file(c.name)), c.probed);
  }
  video->setFilenameExtension("mkv");
  EXPECT_EQ(video->getFilename(), folder.file("c.mkv"));
  EXPECT_EQ(video->getFilenameExtension(), "mkv");
}

TEST_F(CaptureFiles, a_video_that_cannot_be_made_is_an_error_that_leaves_nothing) {
  zor::ref_ptr<VideoFFMPEGPipeCapture> const video(new VideoFFMPEGPipeCapture(64, 64, 25));
  video->setFilename(folder.file("v.mp4"));
  EXPECT_THROW(video->writeImage(plainImage(64, 64, 1), 0), std::runtime_error);
  {
    ScopedPath const nothing("/nonexistent");
    try {
      video->startCapture();
      FAIL() << "must need the encoder";
    } catch (std::runtime_error const& e) {
      EXPECT_NE(std::string(e.what()).find("ffmpeg"), std::string::npos) << e.what();
    }
    EXPECT_FALSE(video->getCaptureStarted());
  }

  auto const codecs = VideoFFMPEGPipeCapture::OutputCodecStrings;
  VideoFFMPEGPipeCapture::OutputCodecStrings.set(VideoFFMPEGPipeCapture::OutputCodec_H264, "nosuchcodec");
  try {
    video->init();
    for (unsigned int i = 0; i < 200; ++i) {
      video->writeImage(plainImage(64, 64, 1), i);
    }
    ADD_FAILURE() << "the encoder must have refused";
  } catch (std::runtime_error const& e) {
    EXPECT_NE(std::string(e.what()).find("nosuchcodec"), std::string::npos) << e.what();
  }
  EXPECT_FALSE(video->stopProcess());
  VideoFFMPEGPipeCapture::OutputCodecStrings = codecs;
  EXPECT_TRUE(folder.isEmpty());
  EXPECT_THROW(video->setFilename("noextension"), std::invalid_argument);
  EXPECT_THROW(video->setVideoCRF(52), std::invalid_argument);
}

TEST_F(CaptureFiles, a_capture_that_dies_finishes_its_video_and_frees_the_camera) {
  {
    zor::ref_ptr<VideoFFMPEGPipeCapture> const video(
        new VideoFFMPEGPipeCapture(64, 48, 25, simulation.get()));
    video->setFilename(folder.file("v.mp4"));
    view.viewer().setSceneData(new osg::Group);
    attach(*video);
    video->startCapture();
    frames(10);
  }
  frames(2);
  EXPECT_EQ(filesIn(folder.path()), (std::set<std::string>{"v.mp4"}));
}

} // namespace
