// What a URDF file becomes: bodies with masses, geometries and looks, places by forward kinematics, and
// errors.

#include "RobotFixture.h"

#include <random>

#include <zor/Hinge.h>
#include <zor/LockJoint.h>
#include <zor/ObserverFrame.h>
#include <zor/Prismatic.h>
#include <zorCollide/Box.h>
#include <zorCollide/Trimesh.h>
#include <zorRender/RenderMaterial.h>

using testing::AllOf;
using testing::HasSubstr;
using zor::AffineMatrix4x4;
using zor::ref_ptr;
using zor::Vec3;
using zorTest::jointOf;
using zorTest::linkOf;

namespace {

class UrdfStructure : public zorTest::RobotFixture {};

std::string const limits = "<limit lower='-1' upper='2' effort='7' velocity='3'/>";

} // namespace

TEST_F(UrdfStructure, InertiaIsTurnedIntoTheLinksAxes) {
  auto const robot = read(
      "<link name='a'><inertial><origin xyz='0.1 0.2 0.3' rpy='0 0 1.5707963267948966'/><mass value='3'/>"
      "<inertia ixx='1' ixy='0.1' ixz='0.2' iyy='2' iyz='0.3' izz='2.5'/></inertial></link>");
  zor::MassProperties const& mass = *robot->getRigidBody("a")->getMassProperties();
  EXPECT_DOUBLE_EQ(mass.getMass(), 3);
  EXPECT_TRUE(mass.getCmLocalTranslate().equals(Vec3(0.1, 0.2, 0.3), 1e-12));
  // A quarter turn about z: x of the element is y of the link, y is -x.
  zor::Matrix3x3 const expected(Vec3(2, -0.1, -0.3), Vec3(-0.1, 1, 0.2), Vec3(-0.3, 0.2, 2.5));
  EXPECT_TRUE(mass.getInertiaTensor().equals(expected, 1e-9)) << mass.getInertiaTensor();
}

TEST_F(UrdfStructure, LinksStandWhereForwardKinematicsPutsThem) {
  reader.setJointPosition("turn", 0.7);
  reader.setJointPosition("slide", -0.4);
  auto const robot = read(linkOf("a") + linkOf("b") + linkOf("c") + linkOf("d") +
                          jointOf("turn", "revolute", "a", "b",
                                  "<origin xyz='1 0 0' rpy='0.3 0.2 0.1'/><axis xyz='0 1 1'/>" + limits) +
                          jointOf("slide", "prismatic", "b", "c",
                                  "<origin xyz='0 2 0' rpy='1 0 0'/><axis xyz='0 0 2'/>" + limits) +
                          jointOf("hold", "fixed", "c", "d", "<origin xyz='0 0 3'/>"));
  auto const rpy = [](double r, double p, double y) {
    return AffineMatrix4x4(zor::Quat::fromEuler(r, p, y));
  };
  AffineMatrix4x4 const b =
      AffineMatrix4x4::rotate(0.7, Vec3(0, 1, 1)) * rpy(0.3, 0.2, 0.1) * AffineMatrix4x4::translate(1, 0, 0);
  AffineMatrix4x4 const c =
      AffineMatrix4x4::translate(0, 0, -0.4) * rpy(1, 0, 0) * AffineMatrix4x4::translate(0, 2, 0) * b;
  EXPECT_TRUE(robot->getRigidBody("b")->getTransform().equals(b, 1e-12));
  EXPECT_TRUE(robot->getRigidBody("c")->getTransform().equals(c, 1e-12));
  EXPECT_TRUE(
      robot->getRigidBody("d")->getTransform().equals(AffineMatrix4x4::translate(0, 0, 3) * c, 1e-12));

  EXPECT_TRUE(dynamic_cast<zor::Hinge*>(robot->getConstraint("turn")));
  EXPECT_TRUE(dynamic_cast<zor::Prismatic*>(robot->getConstraint("slide")));
  EXPECT_TRUE(dynamic_cast<zor::LockJoint*>(robot->getConstraint("hold")));
  EXPECT_NEAR(joint(*robot, "turn").getAngle(), 0.7, 1e-12);
  EXPECT_NEAR(joint(*robot, "slide").getPosition(), -0.4, 1e-12);
  EXPECT_EQ(joint(*robot, "turn").getRange1D()->getRange().lower(), -1);
  EXPECT_EQ(joint(*robot, "turn").getLock1D()->getForceRange().upper(), 7);
  ASSERT_EQ(reader.getJoints().size(), 3u);
  EXPECT_EQ(reader.getJoint("turn").velocity, 3);
  EXPECT_EQ(reader.getJoint("slide").position, -0.4);
  EXPECT_THROW(reader.getJoint("nothing"), std::invalid_argument);
}

TEST_F(UrdfStructure, LinksWithoutMassJoinWhatTheyAreFixedTo) {
  std::string const text = "<link name='foot'/>" + linkOf("base") + linkOf("arm", "1 0 0") +
                           "<link name='tip'/>" +
                           jointOf("f", "fixed", "foot", "base", "<origin xyz='0 0 1'/>") +
                           jointOf("g", "fixed", "base", "arm", "<origin xyz='2 0 0'/>") +
                           jointOf("t", "fixed", "arm", "tip", "<origin xyz='0 3 0'/>");
  auto const robot = read(text);
  ASSERT_EQ(robot->getRigidBodies().size(), 2u);
  EXPECT_TRUE(robot->getRigidBody("base")->getPosition().equals(Vec3(0, 0, 1)));
  EXPECT_EQ(robot->getObserverFrame("tip")->getRigidBody(), robot->getRigidBody("arm"));
  EXPECT_TRUE(robot->getObserverFrame("tip")->getFrame()->getTranslate().equals(Vec3(2, 3, 1)));
  EXPECT_TRUE(robot->getObserverFrame("foot")->getFrame()->getTranslate().equals(Vec3()));

  // All in one: 2 kg at 0 and 2 kg at x = 3, each with 0.1 kg m2.
  reader.setMergeFixedLinks(true);
  auto const whole = read(text);
  ASSERT_EQ(whole->getRigidBodies().size(), 1u);
  zor::MassProperties const& mass = *whole->getRigidBody("base")->getMassProperties();
  EXPECT_DOUBLE_EQ(mass.getMass(), 4);
  EXPECT_TRUE(mass.getCmLocalTranslate().equals(Vec3(1.5, 0, 0), 1e-12));
  EXPECT_TRUE(mass.getPrincipalInertiae().equals(Vec3(0.2, 0.2 + 9, 0.2 + 9), 1e-9));
}

TEST_F(UrdfStructure, MassComesFromShapesWhereTheFileHasNone) {
  std::string const box = "<collision><geometry><box size='1 2 3'/></geometry></collision>";
  auto const robot = read("<link name='a'>" + box + "</link>");
  EXPECT_NEAR(robot->getRigidBody("a")->getMassProperties()->getMass(), 6000, 1e-6);

  auto const weighed = read("<link name='a'><inertial><mass value='12'/>"
                            "<inertia ixx='0' ixy='0' ixz='0' iyy='0' iyz='0' izz='0'/></inertial>" +
                            box + "</link>");
  EXPECT_TRUE(
      weighed->getRigidBody("a")->getMassProperties()->getPrincipalInertiae().equals(Vec3(13, 10, 5), 1e-9));
}

TEST_F(UrdfStructure, CollisionsAndVisualsBecomeGeometries) {
  write("meshes/tri.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nf 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n");
  std::string const mesh = "<mesh filename='package://" +
                           std::filesystem::path(folder.path()).filename().string() +
                           "/meshes/tri.obj' scale='2 2 -2'/>";
  auto const robot = read(
      "<material name='red'><color rgba='1 0 0 0.5'/></material>"
      "<link name='a'><inertial><mass value='1'/><inertia ixx='1' ixy='0' ixz='0' iyy='1' iyz='0' "
      "izz='1'/></inertial>"
      "<collision name='hull'><origin xyz='0 0 1'/><geometry><box size='1 2 3'/></geometry></collision>"
      "<collision><geometry><cylinder radius='0.5' length='4'/></geometry></collision>"
      "<visual><origin xyz='0 0 1'/><geometry><box size='1 2 3'/></geometry><material name='red'/></visual>"
      "<visual name='skin'><origin xyz='5 0 0'/><geometry>" +
      mesh + "</geometry></visual></link>");
  auto const& geometries = robot->getRigidBody("a")->getGeometries();
  ASSERT_EQ(geometries.size(), 3u); // the first visual is the first collision's twin
  EXPECT_EQ(geometries[0]->getName(), "hull");
  EXPECT_TRUE(geometries[0]->getPosition().equals(Vec3(0, 0, 1)));
  auto const* red = geometries[0]->getShape(0)->getRenderData()->getRenderMaterial();
  ASSERT_TRUE(red);
  EXPECT_EQ(red->getDiffuseColor(), zorRender::Color(1, 0, 0, 0.5f));
  EXPECT_FALSE(geometries[1]->getShape(0)->getRenderData()->getShouldRender());
  Vec3 lower, upper;
  geometries[1]->getBounds(lower, upper); // stands along z
  EXPECT_TRUE(upper.equals(Vec3(0.5, 0.5, 2), 1e-6)) << upper;
  EXPECT_FALSE(geometries[2]->getEnableCollisions());
  EXPECT_TRUE(geometries[2]->getPosition().equals(Vec3(5, 0, 0)));
  auto const& skin = dynamic_cast<zorCollide::Trimesh const&>(*geometries[2]->getShape(0));
  EXPECT_TRUE(skin.isClosed());
  EXPECT_NEAR(skin.getVolume(), 8.0 / 6, 1e-9); // mirrored, but not inside out
  EXPECT_DOUBLE_EQ(robot->getRigidBody("a")->getMassProperties()->getMass(), 1);
}

TEST_F(UrdfStructure, ErrorsNameTheElement) {
  std::string const pair = linkOf("a") + linkOf("b");
  std::string const box = "<collision><geometry><box size='1 0 1'/></geometry></collision>";
  std::string const noMesh =
      "<visual name='skin'><geometry><mesh filename='package://p/gone.stl'/></geometry></visual>";
  struct {
    std::string text, part, reason;
  } const cases[] = {
      {"<link name='a'>", "r", "MISMATCHED"},
      {pair + jointOf("j", "fixed", "a", "b") + jointOf("k", "fixed", "b", "a"), "tree", "root"},
      {pair + linkOf("c") + jointOf("j", "fixed", "b", "c") + jointOf("k", "fixed", "c", "b"), "\"b\"",
       "tree"},
      {pair + linkOf("c") + linkOf("d") + jointOf("j", "fixed", "a", "b") + jointOf("k", "fixed", "a", "c") +
           jointOf("l", "fixed", "b", "d") + jointOf("m", "fixed", "c", "d"),
       "\"d\"", "parent"},
      {pair + jointOf("j", "revolute", "a", "b"), "j", "limits"},
      {pair + jointOf("j", "revolute", "a", "b", "<limit lower='2' upper='1' effort='1' velocity='1'/>"),
       "\"j\"", "lower"},
      {pair + jointOf("j", "continuous", "a", "b", "<axis xyz='0 0 0'/>"), "\"j\"", "axis"},
      {pair + jointOf("j", "continuous", "a", "b", "<mimic joint='k'/>"), "\"j\"", "\"k\""},
      {"<link name='a'>" + box + "</link>", "link \"a\", collision", "Box"},
      {linkOf("a").insert(15, noMesh), "visual \"skin\"", "gone.stl"},
      {"<link name='a'/>", "\"a\"", "mass"},
      {"<link name='a'><inertial><mass value='-1'/><inertia ixx='1' ixy='0' ixz='0' iyy='1' iyz='0' "
       "izz='1'/></inertial></link>",
       "\"a\"", "negative"},
      {"<link name='a'><inertial><mass value='1'/><inertia ixx='0' ixy='0' ixz='0' iyy='0' iyz='0' "
       "izz='0'/></inertial></link>",
       "\"a\"", "inertia is zero"},
      {"<link name='a'><inertial><mass value='1'/><inertia ixx='1' ixy='0' ixz='0' iyy='-1' iyz='0' "
       "izz='1'/></inertial></link>",
       "\"a\"", "positive"},
      {"<link name='a'><inertial><mass value='x'/></inertial></link>", "[A]", "mass"},
  };
  for (auto const& each : cases)
    EXPECT_THAT(errorOf(each.text),
                AllOf(HasSubstr("URDF text"), HasSubstr(each.part == "[A]" ? "[a]" : each.part),
                      HasSubstr(each.reason)));

  reader.setJointPosition("j", 5);
  EXPECT_THAT(errorOf(pair + jointOf("j", "revolute", "a", "b", limits)),
              AllOf(HasSubstr("\"j\""), HasSubstr("outside")));
  EXPECT_THAT(errorOf(pair + jointOf("other", "fixed", "a", "b")), HasSubstr("no such joint"));
  EXPECT_THROW(reader.read(folder.file("missing.urdf")), std::runtime_error);
  std::string const file = write("broken.urdf", "<robot");
  try {
    reader.read(file);
    ADD_FAILURE();
  } catch (std::runtime_error const& error) {
    EXPECT_THAT(error.what(), HasSubstr(file));
  }
}

TEST_F(UrdfStructure, DamagedTextsNeverCrash) {
  std::string const whole =
      "<robot name='r'>" + linkOf("a") + linkOf("b") + linkOf("c") +
      jointOf("j", "revolute", "a", "b", "<origin xyz='1 0 0'/><axis xyz='0 1 0'/>" + limits) +
      jointOf("k", "prismatic", "b", "c", "<mimic joint='j'/>" + limits) + "</robot>";
  std::mt19937 chance(5);
  std::string const bytes = "<>/='\"09-.e %anl&\n";
  int readable = 0;
  for (int i = 0; i < 3000; ++i) {
    std::string text = whole;
    for (int change = 0; change < 1 + i % 2; ++change) {
      std::size_t const at = chance() % text.size();
      if (chance() % 3 == 0)
        text.erase(at, 1 + chance() % 8);
      else
        text[at] = bytes[chance() % bytes.size()];
    }
    try {
      ref_ptr<zorSDK::Assembly> const robot = reader.readText(text);
      simulation->add(robot.get());
      simulation->stepForward();
      simulation->remove(robot.get());
      ++readable;
    } catch (std::runtime_error const&) {
    }
  }
  EXPECT_GT(readable, 100);
  EXPECT_LT(readable, 2900);
}
