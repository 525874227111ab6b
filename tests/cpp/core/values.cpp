#include <zor/AffineMatrix4x4.h>
#include <zor/BoundingAABB.h>
#include <zor/Frame.h>
#include <zor/Plane.h>
#include <zor/Quat.h>
#include <zor/RangeReal.h>
#include <zor/Vec4.h>
#include <zor/ref_ptr.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <sstream>

namespace {

using zor::AffineMatrix4x4;
using zor::PI;
using zor::Quat;
using zor::Vec3;

Vec3 const X(1, 0, 0);
Vec3 const Y(0, 1, 0);
Vec3 const Z(0, 0, 1);

// Differences below this are rounding.
constexpr double TINY = 1e-12;

void expectNear(Vec3 const& actual, Vec3 const& expected, double epsilon = TINY) {
  EXPECT_TRUE(actual.equals(expected, epsilon)) << actual << " instead of " << expected;
}

AffineMatrix4x4 arbitrary(unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> number(-3, 3);
  auto vector = [&] { return Vec3(number(random), number(random), number(random)); };
  return AffineMatrix4x4(Quat(number(random), vector()), vector());
}

TEST(Vec, ArithmeticByHand) {
  Vec3 const a(1, 2, 3);
  Vec3 const b(-4, 5, 0.5);
  EXPECT_EQ(a + b, Vec3(-3, 7, 3.5));
  EXPECT_EQ(a - b, Vec3(5, -3, 2.5));
  EXPECT_EQ(a * b, -4 + 10 + 1.5);
  EXPECT_EQ(a ^ b, Vec3(2 * 0.5 - 3 * 5, 3 * -4 - 1 * 0.5, 1 * 5 - 2 * -4));
  EXPECT_EQ(2 * a / 4, Vec3(0.5, 1, 1.5));
  EXPECT_EQ(Vec3(2, 3, 6).length(), 7);
  EXPECT_EQ(zor::Vec2i(3, -4).length(), 5);
  EXPECT_EQ(Vec3::mul(a, b), Vec3(-4, 10, 1.5));
  EXPECT_EQ(zor::Vec4(a, 4).xyz(), a);
  EXPECT_EQ(zor::Vec2u(zor::Vec2(3.9, 2)), zor::Vec2u(3, 2));
}

TEST(Vec, NullVectorStaysWhenNormalised) {
  Vec3 null;
  EXPECT_EQ(null.normalize(), 0);
  EXPECT_EQ(null, Vec3());
  EXPECT_THROW(null.get(3), std::out_of_range);
  EXPECT_THROW(null.set(3, 1.0), std::out_of_range);
  EXPECT_FALSE(Vec3(0, std::nan(""), 0).isFinite());
  EXPECT_FALSE(Vec3(0, std::nan(""), 0).equals(Vec3(), 1e9));
  for (Vec3 const& v : {X, Y, Z, Vec3(1, -2, 3), Vec3(-5, 1e-9, 0)}) {
    EXPECT_NEAR(v.perpendicular() * v, 0, TINY);
    EXPECT_NEAR(v.perpendicular().length(), 1, TINY);
  }
}

TEST(Quat, TurnsRightHanded) {
  expectNear(Quat(PI / 2, Z) * X, Y);
  expectNear(Quat(PI / 2, X * 5.0) * Y, Z);
  expectNear(Quat(PI / 2, Y) * Z, X);
  // First about X, then about Z: Y goes up and stays there.
  expectNear((Quat(PI / 2, X) * Quat(PI / 2, Z)) * Y, Z);
  expectNear((Quat(PI / 2, Z) * Quat(PI / 2, X)) * X, Z);
  EXPECT_EQ(Quat(1.0, Vec3()), Quat());
}

TEST(Quat, BetweenDirections) {
  for (auto const& [from, to] : {std::pair{X, Y},
                                 {Z, Z},
                                 {X, -X},
                                 {Z, -Z},
                                 {Vec3(1, 2, 3), Vec3(-3, 0.5, 4)},
                                 {X, Vec3(-1, 1e-9, 0)}}) {
    expectNear(Quat(from, to) * from.normal(), to.normal(), 1e-6);
    EXPECT_NEAR(Quat(from, to).length(), 1, TINY);
  }
  EXPECT_EQ(Quat(Vec3(), X), Quat());
}

TEST(Quat, AngleAxisInverseAndSlerp) {
  Quat const q(1.25, Vec3(0, 3, 4));
  EXPECT_NEAR(q.getAngle(), 1.25, TINY);
  expectNear(q.getAxis(), Vec3(0, 0.6, 0.8));
  EXPECT_TRUE((q * q.inverse()).equals(Quat(), TINY));
  EXPECT_NEAR(Quat::slerp(0.25, Quat(), q).getAngle(), 1.25 / 4, TINY);
  EXPECT_NEAR(Quat::slerp(0.5, Quat(), q * -1.0).getAngle(), 0.625, TINY) << "the shorter way";
  EXPECT_TRUE(Quat::slerp(0.5, q, q).equals(q, TINY));
  // Fixed axes: X to Z... the turn about X leaves X, the one about Y takes it down, the one about Z nowhere.
  expectNear(Quat::fromEuler(0.3, PI / 2, 0.7) * X, -Z);
}

TEST(Matrix, RowVectorsAndTheOrderOfProducts) {
  AffineMatrix4x4 const turn = AffineMatrix4x4::rotate(PI / 2, Z);
  AffineMatrix4x4 const shift = AffineMatrix4x4::translate(10, 20, 30);
  expectNear(Vec3(1, 2, 3) * turn, Vec3(-2, 1, 3));
  expectNear(Vec3(1, 2, 3) * (turn * shift), Vec3(8, 21, 33)); // turned, then shifted
  expectNear(Vec3(1, 2, 3) * (shift * turn), Vec3(-22, 11, 33));
  expectNear((turn * shift).transformVector(X), Y);
  EXPECT_EQ(shift(3, 0), 10);
  EXPECT_EQ(shift.ptr()[14], 30);
  EXPECT_NEAR(turn(0, 1), 1, TINY); // the image of X stands in the first row
  EXPECT_EQ(AffineMatrix4x4(shift.ptr()), shift);
  EXPECT_THROW(AffineMatrix4x4().set(0, 3, 1.0), std::out_of_range);
}

TEST(Matrix, RotationSurvivesTheTrip) {
  for (unsigned seed = 0; seed < 200; ++seed) {
    AffineMatrix4x4 const m = arbitrary(seed);
    EXPECT_TRUE((m * m.inverse()).equals(AffineMatrix4x4(), 1e-10));
    EXPECT_TRUE(AffineMatrix4x4(m.getRotate(), m.getTranslate()).equals(m, 1e-10));
    AffineMatrix4x4 const n = arbitrary(seed + 1000);
    EXPECT_TRUE((m * n).inverse().equals(n.inverse() * m.inverse(), 1e-9));
    EXPECT_TRUE(
        AffineMatrix4x4(m.getRotate() * n.getRotate()).equals(AffineMatrix4x4((m * n).getRotate()), 1e-9));
  }
  // Half turns, where the trace is least.
  for (Vec3 const& axis : {X, Y, Z}) {
    EXPECT_NEAR(std::abs(AffineMatrix4x4::rotate(PI, axis).getRotate().getAxis() * axis), 1, TINY);
  }
}

TEST(Matrix, ScaleIsTakenOutOfTheRotationAndUndone) {
  Quat const q(0.7, Vec3(1, 2, 3));
  AffineMatrix4x4 const m = AffineMatrix4x4::scale(Vec3(2, 3, 4)) * AffineMatrix4x4(q, Vec3(1, 1, 1));
  EXPECT_TRUE(m.getRotate().equals(q, TINY));
  expectNear(m.getScale(), Vec3(2, 3, 4));
  expectNear(m.inverse().transformPoint(m.transformPoint(Vec3(5, 6, 7))), Vec3(5, 6, 7));
  EXPECT_THROW(AffineMatrix4x4::scale(Vec3(1, 0, 1)).inverse(), std::runtime_error);
  EXPECT_NEAR(m.getLinear().determinant(), 24, 1e-9);
}

TEST(Frame, StandsInItsParent) {
  auto const parent = zor::make_ref<zor::Frame>(AffineMatrix4x4(Quat(PI / 2, Z), Vec3(10, 0, 0)));
  auto const child = zor::make_ref<zor::Frame>(AffineMatrix4x4::translate(1, 0, 0));
  child->setParent(parent.get());
  expectNear(child->getTranslate(), Vec3(10, 1, 0));
  child->setTranslate(Vec3(0, 0, 0));
  expectNear(child->getLocalTranslate(), Vec3(0, 10, 0));
  expectNear(child->transformPointToWorld(X), Y);
  expectNear(child->transformPointToLocal(Y), X);
  child->setRotate(Quat());
  expectNear(child->getLocalRotate() * X, -Y);
  expectNear(child->getTranslate(), Vec3(0, 0, 0));
}

TEST(Frame, RefusesCyclesAndNonsense) {
  auto const a = zor::make_ref<zor::Frame>();
  auto const b = zor::make_ref<zor::Frame>();
  b->setParent(a.get());
  EXPECT_THROW(a->setParent(b.get()), std::invalid_argument);
  EXPECT_THROW(a->setParent(a.get()), std::invalid_argument);
  EXPECT_EQ(a->getParent(), nullptr);
  EXPECT_THROW(a->setTranslate(Vec3(0, std::numeric_limits<double>::infinity(), 0)), std::invalid_argument);
  EXPECT_TRUE(a->getMatrix().isIdentity());
}

TEST(Plane, MadeOfItsOwnNumbersIsTheSame) {
  for (int i = 1; i < 200; ++i) {
    zor::Plane const plane(0.1 * i, 1.0 / i, -0.37, 3.0 * i);
    EXPECT_EQ(zor::Plane(plane.a(), plane.b(), plane.c(), plane.d()), plane) << i;
  }
}

TEST(Plane, DistancesAndConstructions) {
  zor::Plane const plane(Vec3(0, 0, 2), Vec3(5, 5, 3));
  EXPECT_EQ(plane.distance(Vec3(1, 1, 5)), 2);
  EXPECT_EQ(plane.distance(Vec3()), -3);
  EXPECT_EQ(plane.project(Vec3(1, 2, 9)), Vec3(1, 2, 3));
  EXPECT_EQ(zor::Plane(0, 0, 2, -6), plane);
  EXPECT_EQ(zor::Plane(Vec3(0, 0, 3), Vec3(1, 0, 3), Vec3(0, 1, 3)), plane);
  EXPECT_THROW(zor::Plane(Vec3(), Vec3()), std::invalid_argument);
  EXPECT_THROW(zor::Plane(X, Vec3(std::nan(""), 0, 0)), std::invalid_argument);
  EXPECT_THROW(zor::Plane(Vec3(), X, X * 2.0), std::invalid_argument);
}

TEST(RangeReal, IsAlwaysARange) {
  zor::RangeReal range(-1, 2);
  EXPECT_TRUE(range.contains(2));
  EXPECT_EQ(range.clamp(7), 2);
  EXPECT_THROW(range.setLower(3), std::invalid_argument);
  EXPECT_THROW(range.setUpper(std::nan("")), std::invalid_argument);
  EXPECT_THROW(zor::RangeReal(-1.0), std::invalid_argument);
  EXPECT_EQ(range, zor::RangeReal(-1, 2));
  EXPECT_TRUE(zor::RangeReal().contains(std::numeric_limits<double>::infinity()));
}

TEST(BoundingAABB, EnclosesAndTurns) {
  zor::BoundingAABB box;
  EXPECT_TRUE(box.isEmpty());
  EXPECT_TRUE(box.transformed(AffineMatrix4x4::translate(1, 2, 3)).isEmpty());
  box.expand(Vec3(1, 2, 3));
  box.expand(Vec3(-1, 0, 0));
  EXPECT_EQ(box.size(), Vec3(2, 2, 3));
  expectNear(box.transformed(AffineMatrix4x4::rotate(PI / 2, Z)).min(), Vec3(-2, -1, 0));
}

} // namespace
