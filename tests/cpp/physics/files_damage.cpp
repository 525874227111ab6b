#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>

#include <gmock/gmock.h>
#include <sys/resource.h>

#include <zor/Emitter.h>
#include <zor/Notify.h>

#include "FileScenes.h"

using testing::HasSubstr;
using zor::ref_ptr;
using zor::Vec3;
using zorSDK::Simulation;

namespace zorStream {
std::uint32_t checksum(std::string_view bytes, std::uint32_t before); // of the library, not in its interface
}

// Files that are not as they were written, and places where none can be written.

namespace {

class DamagedFiles : public PhysicsFixture {
protected:
  // Damaged numbers let bodies fly off, of which the log would tell thousands of times.
  DamagedFiles() { zor::Notify::instance().setEnableConsole(false); }
  ~DamagedFiles() override { zor::Notify::instance().setEnableConsole(true); }

  // Small, but with a bit of everything: a compound, a joint, a sensor, contacts.
  void SetUp() override {
    addGround();
    auto const box = addBox(Vec3(0.5, 0.5, 0.5), Vec3(0, 0, 0.5), "box");
    box->add(new zorCollide::Geometry(new zorCollide::Sphere(0.2)),
             zor::AffineMatrix4x4::translate(0, 0, 0.6));
    auto const ball = addSphere(0.3, Vec3(0.1, 0, 1.7));
    ref_ptr<zor::Hinge> const hinge = new zor::Hinge(Vec3(3, 0, 1), Vec3(0, 0, 1), ball.get(), box.get());
    hinge->setEnableCollisions(true);
    simulation->add(hinge.get());
    run(0.2);
    ASSERT_GT(simulation->getStatistics().contactPoints, 0u);
  }

  static std::string messageOf(std::function<void()> const& call) {
    try {
      call();
    } catch (std::exception const& error) {
      return error.what();
    }
    return "";
  }

  // A smaller one, for tests that go over every byte.
  static std::string smallFile(bool json) {
    ref_ptr<Simulation> const small = new Simulation;
    small->add(new zorCollide::Geometry(new zorCollide::Plane(Vec3(0, 0, 1), Vec3())));
    scenes::add(*small, new zorCollide::Sphere(0.5), Vec3(0, 0, 0.5), "ball");
    addParticles(*small);
    small->stepTo(0.1);
    return small->toBytes(json);
  }

  // Four that touch the ground, the ball, a sensor and each other, and an emitter that has drawn the next
  // one.
  static void addParticles(Simulation& small) {
    ref_ptr<zor::ParticleSystem> const particles = new zor::ParticleSystem;
    particles->addParticles({Vec3(0, 0, 1.1), Vec3(2, 0, 0.1), Vec3(2.19, 0, 0.1), Vec3(2.1, 0, 0.25)}, 0.1);
    small.add(particles.get());
    ref_ptr<zorCollide::Geometry> const box = new zorCollide::Geometry(new zorCollide::Box(0.3, 0.3, 0.3));
    box->setSensor(true);
    box->setPosition(Vec3(2, 0, 0.3));
    small.add(box.get());
    ref_ptr<zor::ParticleModel> const model = new zor::ParticleModel(zor::RandomReal::uniform(0.05, 0.1));
    small.add(new zor::Emitter(particles.get(), new zor::ParticleDistribution(model.get()), box.get(), 1));
  }

  // What is refused leaves nothing behind, so that one simulation serves for all.
  std::string refuse(std::string const& bytes) {
    return messageOf([&] { m_empty->fromBytes(bytes); });
  }

  // An error that leaves nothing behind, or a simulation that can go on.
  bool readsOrRefuses(std::string const& bytes) {
    try {
      m_empty->fromBytes(bytes);
    } catch (std::runtime_error const&) {
      EXPECT_TRUE(m_empty->getRigidBodies().empty() && m_empty->getGeometries().empty());
      EXPECT_TRUE(m_empty->getParticleSystems().empty() && m_empty->getEmitters().empty());
      return false;
    }
    m_empty->stepForward();
    m_empty = new Simulation;
    return true;
  }

  ref_ptr<Simulation> m_empty = new Simulation;

  static std::string edited(std::string text, std::string const& from, std::string const& to) {
    auto const at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
  }

  static std::string withRightChecksum(std::string bytes) {
    std::uint32_t sum = zorStream::checksum(std::string_view(bytes).substr(0, 20), 0);
    sum = zorStream::checksum(std::string_view(bytes).substr(24), sum);
    for (std::size_t i = 0; i < 4; ++i)
      bytes[20 + i] = static_cast<char>(sum >> (8 * i));
    return bytes;
  }
};

TEST_F(DamagedFiles, EveryFlippedByteOfABinaryFileIsFound) {
  std::string const good = smallFile(false);
  for (std::size_t i = 0; i < good.size(); ++i)
    for (int const bits : {1 << (i % 8), 0xFF}) {
      std::string bad = good;
      bad[i] = static_cast<char>(bad[i] ^ bits);
      std::string const message = refuse(bad);
      ASSERT_THAT(message, HasSubstr("cannot read the bytes: ")) << "byte " << i;
      ASSERT_THAT(message, HasSubstr("byte")) << "the place";
    }
}

TEST_F(DamagedFiles, WhatTheChecksumDoesNotFindIsNoCrash) {
  int read = 0, all = 0;
  auto const damage = [&](std::string const& good, std::size_t stride) {
    for (std::size_t i = 24; i < good.size(); i += stride, ++all) {
      std::string bad = good;
      bad[i] = static_cast<char>(bad[i] ^ (i % 3 == 0 ? 0xFF : 1 << (i % 8)));
      read += readsOrRefuses(withRightChecksum(bad));
    }
  };
  damage(smallFile(false), 1);
  damage(simulation->toBytes(), 13);
  EXPECT_GT(read, 0) << "numbers may be others";
  EXPECT_LT(read, all);
}

TEST_F(DamagedFiles, EveryFlippedByteOfAJsonFileIsAnErrorOrAnotherValue) {
  std::string const good = smallFile(true);
  std::size_t refused = 0;
  for (std::size_t i = 0; i < good.size(); ++i) {
    std::string bad = good;
    bad[i] = static_cast<char>(bad[i] ^ (1 << (i % 7)));
    refused += !readsOrRefuses(bad);
  }
  EXPECT_GT(refused, good.size() / 4);
}

TEST_F(DamagedFiles, EveryTruncationIsFound) {
  for (bool const json : {false, true}) {
    std::string const good = smallFile(json);
    for (std::size_t length = 0; length + 1 + json < good.size(); ++length)
      ASSERT_NE(refuse(good.substr(0, length)), "") << length;
    EXPECT_NE(refuse(good + "x"), "");
    if (!json) // also when the header says so
      for (std::size_t length = 24; length < good.size(); ++length) {
        std::string cut = good.substr(0, length);
        for (std::size_t i = 0; i < 8; ++i)
          cut[12 + i] = static_cast<char>((length - 24) >> (8 * i));
        ASSERT_NE(refuse(withRightChecksum(cut)), "") << length;
      }
  }
}

TEST_F(DamagedFiles, OtherFilesAreNamed) {
  std::string const json = simulation->toBytes(true);
  auto const at = json.find("\"version\": ");
  ASSERT_NE(at, std::string::npos);
  std::string const version = json.substr(at, json.find(',', at) - at);
  EXPECT_THAT(refuse(edited(json, version, "\"version\": 99")), HasSubstr("version: is 99"));
  std::string binary = simulation->toBytes();
  binary[8] = 99;
  EXPECT_THAT(refuse(withRightChecksum(binary)), HasSubstr("format version 99"));
  EXPECT_THAT(refuse("\x89PNG\r\n\x1a\n and so on"), HasSubstr("no simulation file"));
  EXPECT_THAT(refuse("{\"format\": \"something else\"}"), HasSubstr("no simulation file"));
  EXPECT_THAT(refuse(""), HasSubstr("no simulation file"));
  EXPECT_THAT(refuse("{\"format\": \"zor simulation\",\n \"version\": 1,\n x}"), HasSubstr("line 3"));
  EXPECT_NE(refuse("{\"format\":" + std::string(1000000, '[')), "") << "does not use up the stack";
  std::mt19937 random(1);
  for (int i = 0; i < 300; ++i) {
    std::string noise = i % 2 ? "{" : simulation->toBytes().substr(0, 24);
    for (int k = 0; k < 200; ++k)
      noise += static_cast<char>(random());
    EXPECT_NE(refuse(noise), "");
  }
}

TEST_F(DamagedFiles, JsonErrorsTellThePath) {
  std::string const json = simulation->toBytes(true);
  EXPECT_THAT(refuse(edited(json, "\"friction\": 0.5", "\"friction\": -2")),
              testing::AllOf(HasSubstr("materials[0].friction"), HasSubstr("not negative")));
  EXPECT_THAT(refuse(edited(json, "\"friction\"", "\"fricton\"")),
              HasSubstr("materials[0].friction: is missing"));
  EXPECT_THAT(refuse(edited(json, "\"friction\": 0.5", "\"friction\": 0.5, \"colour\": 1")),
              HasSubstr("materials[0]: member 'colour' is unknown"));
  EXPECT_THAT(refuse(edited(json, "\"friction\": 0.5", "\"friction\": 0.5, \"friction\": 0.6")),
              HasSubstr("materials[0]: member 'friction'"));
  EXPECT_THAT(refuse(edited(json, "\"friction\": 0.5", "\"friction\": \"high\"")),
              HasSubstr("materials[0].friction: is a text, but must be a number"));
  EXPECT_THAT(refuse(edited(json, "\"gravity\": [0.0, ", "\"gravity\": [")),
              HasSubstr("settings.gravity: has 2 elements, but must have 3"));
  EXPECT_THAT(refuse(edited(json, "\"halfExtents\": [0.5", "\"halfExtents\": [0")),
              HasSubstr("shapes[0].halfExtents"));
  EXPECT_THAT(refuse(edited(json, "\"body1\": 1", "\"body1\": 7")), HasSubstr("there is no body 7"));
  EXPECT_THAT(refuse(edited(json, "\"kind\": \"Hinge\"", "\"kind\": \"Henge\"")),
              HasSubstr("constraints[0].kind"));
  EXPECT_THAT(refuse(edited(json, "\"motion\": \"dynamic\"", "\"motion\": \"static\"")),
              HasSubstr("history: "))
      << "the engine's memory is of a moving body";
}

TEST_F(DamagedFiles, ParticlesThatContradictThemselvesAreRefused) {
  std::string const json = smallFile(true);
  auto const expect = [&](std::string const& from, std::string const& to, std::string const& place) {
    std::string const message = refuse(edited(json, from, to));
    EXPECT_THAT(message, HasSubstr("particleSystems[0]." + place)) << from << " -> " << to;
    EXPECT_TRUE(m_empty->getParticleSystems().empty());
  };
  expect("\"id\": [0, 1, 2, 3]", "\"id\": [0, 1, 1, 3]", "particles.id: number 2 is 1");
  expect("\"id\": [0, 1, 2, 3]", "\"id\": [0, 1, 2, 4]", "particles.id: 4 is not less than nextId, 4");
  expect("\"id\": [0, 1, 2, 3]", "\"id\": [0, 1, 2]", "particles.position: has 12 numbers, but must have 9");
  expect("\"position\": [0.0", "\"position\": [\"NaN\"", "particles: a number that moves it is not finite");
  expect("\"radius\": [0.1]", "\"radius\": [-0.1]",
         "particles.radius: is not larger than zero, for particle 0");
  expect("\"enabled\": [1]", "\"enabled\": [0, 1, 2, 1]", "particles.enabled: is not 0 or 1, for particle 2");
  expect("\"material\": [0]", "\"material\": [1, 0, 0, 9]", "particles.material: is not in the list");
  expect("\"order\": [0, ", "\"order\": [1, ", "history: particle 1 of 'order' is not there or stands twice");
  expect("\"slabEnds\": [", "\"slabEnds\": [3, ", "history: 'slabEnds' must ascend to 4");
  expect("\"expected\": [", "\"expected\": [{\"body\": 5}, ", "history.expected[0].body: there is no body 5");
  expect("\"between\": [", "\"between\": [\"Infinity\", ", "history.inside.between: has");
  EXPECT_THAT(refuse(edited(json, "\"particleSystem\": 0", "\"particleSystem\": 1")),
              HasSubstr("emitters[0].particleSystem: there is no particle system 1"));
  EXPECT_THAT(refuse(edited(json, "\"state\": [", "\"state\": [1, ")),
              HasSubstr("emitters[0].random.state: must be 313 numbers"));
  EXPECT_THAT(refuse(edited(json, "\"lower\": 0.05", "\"lower\": 0.5")),
              HasSubstr("particleModels[0].radius: RandomReal: the limits"));
  EXPECT_THAT(refuse(edited(json, "\"weight\": 1.0", "\"weight\": -1.0")),
              HasSubstr("particleDistributions[0].models[0]"));
}

TEST_F(DamagedFiles, EditingByHandWorks) {
  std::string json = simulation->toBytes(true);
  json = edited(json, "\"friction\": 0.5", "\"friction\": 0.25");
  // The place of the first body, with the engine's own memory of it left as it is.
  auto const frame = json.find("\"transform\"", json.find("\"massProperties\""));
  auto const end = json.find(']', frame);
  json.replace(frame, end - frame, "\"transform\": [1, 0, 0, 0, 1, 0, 0, 0, 1, 7, 8, 9");
  ref_ptr<Simulation> const other = new Simulation;
  other->fromBytes(json);
  EXPECT_EQ(other->getGeometries()[0]->getMaterial()->getFriction(), 0.25);
  EXPECT_EQ(other->getRigidBody("box")->getPosition(), Vec3(7, 8, 9));
  other->stepForward();
  EXPECT_NEAR(other->getRigidBody("box")->getPosition().z(), 9, 0.5);

  json = simulation->toBytes(true);
  auto const history = json.rfind(",", json.find("\"history\""));
  json = json.substr(0, history) + "}"; // without memory: contacts start anew
  ref_ptr<Simulation> const third = new Simulation;
  third->fromBytes(json);
  third->stepForward();
  EXPECT_EQ(third->getRigidBodies().size(), 2u);
}

TEST_F(DamagedFiles, AFailedReadChangesNothing) {
  std::string const json = edited(simulation->toBytes(true), "\"name\": \"\"", "\"name\": \"other\"");
  std::vector<std::string> const bad{json.substr(0, json.size() / 2),
                                     edited(json, "\"kind\": \"Hinge\"", "\"kind\": \"\""),
                                     edited(json, "\"lastNumber\": ", "\"lastNumber\": -"),
                                     edited(json, "\"breaking\"", "\"points\": [], \"breaking\"")};
  std::string const before = simulation->toBytes();
  ref_ptr<Simulation> const empty = new Simulation;
  ref_ptr<zorSDK::Assembly> const parent = new zorSDK::Assembly;
  empty->setTimeStep(0.25);
  std::string const emptyBefore = empty->toBytes();
  for (std::string const& bytes : bad) {
    EXPECT_NE(messageOf([&] { empty->fromBytes(bytes, parent.get()); }), "");
    EXPECT_TRUE(empty->toBytes() == emptyBefore);
    EXPECT_TRUE(parent->getRigidBodies().empty() && !parent->getSimulation());
  }
  for (std::string const& bytes : {bad[0], bad[1]}) {
    EXPECT_NE(messageOf([&] { simulation->fromBytes(bytes); }), "");
    EXPECT_TRUE(simulation->toBytes() == before);
  }
}

// --- places

class FilePlaces : public DamagedFiles {
protected:
  void SetUp() override {
    DamagedFiles::SetUp();
    std::string pattern = (std::filesystem::temp_directory_path() / "zorfilesXXXXXX").string();
    folder = ::mkdtemp(pattern.data());
  }
  void TearDown() override {
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    std::filesystem::remove_all(folder);
  }

  std::size_t numFiles() const {
    auto const files = std::filesystem::directory_iterator(folder);
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
  }

  std::filesystem::path folder;
};

TEST_F(FilePlaces, FilesAreReplacedWhole) {
  std::string const name = folder / "scene.zor", link = folder / "link.azor";
  simulation->write(name);
  ref_ptr<Simulation> const other = new Simulation;
  other->read(name);
  EXPECT_TRUE(other->toBytes() == simulation->toBytes());
  std::filesystem::create_symlink(folder / "real.azor", link);
  simulation->write(link);
  EXPECT_TRUE(std::filesystem::is_symlink(link)) << "a link stays one";
  EXPECT_TRUE(std::filesystem::is_regular_file(folder / "real.azor"));
  std::filesystem::permissions(name,
                               std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  simulation->write(name);
  EXPECT_EQ(std::filesystem::status(name).permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  EXPECT_EQ(numFiles(), 3u) << "nothing is left over";
}

TEST_F(FilePlaces, FailuresNameTheFileAndLeaveIt) {
  std::string const name = folder / "scene.zor";
  simulation->write(name);
  run(0.1);
  EXPECT_THAT(messageOf([&] { simulation->write(folder / "scene.txt"); }), HasSubstr("scene.txt"));
  EXPECT_THAT(messageOf([&] { simulation->write(folder / "no" / "scene.zor"); }), HasSubstr("no/scene.zor"));
  EXPECT_THAT(messageOf([&] { simulation->read(folder / "missing.zor"); }), HasSubstr("missing.zor"));
  EXPECT_THAT(messageOf([&] { simulation->read(folder); }), HasSubstr(folder.string()));
  std::filesystem::create_directory(folder / "folder.zor");
  EXPECT_THAT(messageOf([&] { simulation->write(folder / "folder.zor"); }), HasSubstr("folder.zor"));
  std::filesystem::create_symlink("/dev/full", folder / "full.zor");
  EXPECT_THAT(messageOf([&] { simulation->write(folder / "full.zor"); }), HasSubstr("No space left"));

  // A disk that becomes full in the middle of the file.
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  auto const handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit const small{1000, limit.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  std::string const message = messageOf([&] { simulation->write(name); });
  setrlimit(RLIMIT_FSIZE, &limit);
  std::signal(SIGXFSZ, handler);
  EXPECT_THAT(message, HasSubstr("scene.zor"));
  EXPECT_EQ(numFiles(), 3u) << "nothing is left over";
  ref_ptr<Simulation> const other = new Simulation;
  other->read(name);
  EXPECT_LT(other->getTimeStamp(), simulation->getTimeStamp()) << "the old file is still whole";

  std::ofstream(name, std::ios::binary | std::ios::in).write("noise", 5);
  EXPECT_THAT(messageOf([&] { other->read(name); }),
              testing::AllOf(HasSubstr("scene.zor"), HasSubstr("byte 0")));
}

} // namespace
