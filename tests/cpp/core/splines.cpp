#include <cmath>
#include <limits>
#include <stdexcept>

#include <gtest/gtest.h>

#include <zor/ref_ptr.h>
#include <zorUtil/CatmullRomSpline.h>
#include <zorUtil/NaturalSpline.h>

namespace {

using zor::Vec3;

zor::ref_ptr<zorUtil::Spline> makeSpline(bool natural, zor::Vec3Vector const& points) {
  if (natural) {
    return new zorUtil::NaturalSpline(points);
  }
  return new zorUtil::CatmullRomSpline(points);
}

class Splines : public testing::TestWithParam<bool> {};

zor::Vec3Vector const bent = {Vec3(0, 0, 0), Vec3(1, 2, 0), Vec3(3, 2, 1), Vec3(3, 2, 1), Vec3(4, 0, 5)};

TEST_P(Splines, passThroughTheirPointsSmoothly) {
  auto const spline = makeSpline(GetParam(), bent);
  for (zor::UInt i = 0; i < bent.size(); ++i) {
    auto const t = static_cast<zor::Real>(i);
    EXPECT_TRUE(spline->evaluate(t).equals(bent[i], 1e-12));
    EXPECT_TRUE(spline->evaluate(t - 1e-9).equals(spline->evaluate(t + 1e-9), 1e-7));
  }
  EXPECT_TRUE(spline->evaluate(-3).equals(bent[0], 0));
  EXPECT_TRUE(spline->evaluate(99).equals(bent.back(), 1e-12));
}

TEST_P(Splines, haveTheDerivativesOfTheirCurve) {
  auto const spline = makeSpline(GetParam(), bent);
  zor::Real const h = 1e-5;
  for (zor::Real t = 0.1; t < 4; t += 0.37) {
    Vec3 const first = (spline->evaluate(t + h) - spline->evaluate(t - h)) / (2 * h);
    Vec3 const second = (spline->derivative(t + h) - spline->derivative(t - h)) / (2 * h);
    EXPECT_TRUE(spline->derivative(t).equals(first, 1e-6)) << t;
    EXPECT_TRUE(spline->secondDerivative(t).equals(second, 1e-6)) << t;
    EXPECT_NEAR(spline->tangent(t).length(), 1, 1e-12);
  }
}

TEST_P(Splines, ofPointsInLineAreStraight) {
  auto const spline = makeSpline(GetParam(), {Vec3(0, 0, 0), Vec3(3, 4, 0), Vec3(6, 8, 0)});
  EXPECT_NEAR(spline->length(), 10, 1e-12);
  EXPECT_NEAR(spline->length(0.5, 1), 2.5, 1e-12);
  EXPECT_NEAR(spline->length(1, 0.5), -2.5, 1e-12);
  EXPECT_NEAR(spline->parameterAt(7.5), 1.5, 1e-9);
  zor::Vec3Vector const sampled = spline->sample(5);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_TRUE(sampled[i].equals(Vec3(1.5, 2, 0) * static_cast<zor::Real>(i), 1e-9));
  }
}

TEST_P(Splines, throughACircleHaveNearlyItsLength) {
  zor::Vec3Vector points;
  for (int i = 0; i <= 64; ++i) {
    points.push_back(Vec3(std::cos(i * zor::PI / 32), std::sin(i * zor::PI / 32), 0));
  }
  auto const spline = makeSpline(GetParam(), points);
  EXPECT_NEAR(spline->length(8, 56), 1.5 * zor::PI, 1e-4);
  // Equal ways: equal angles.
  zor::Real const t = spline->parameterAt(spline->length() / 4);
  EXPECT_NEAR(spline->evaluate(t).distance(Vec3(0, 1, 0)), 0, 1e-3);
  EXPECT_NEAR(spline->length(0, t), spline->length() / 4, 1e-9);
}

TEST_P(Splines, withFewPointsAndWithout) {
  auto const spline = makeSpline(GetParam(), {});
  EXPECT_THROW(spline->evaluate(0), std::runtime_error);
  EXPECT_THROW(spline->sample(2), std::runtime_error);
  EXPECT_EQ(spline->length(), 0);
  spline->add(Vec3(1, 2, 3));
  EXPECT_EQ(spline->evaluate(5), Vec3(1, 2, 3));
  EXPECT_EQ(spline->tangent(0), Vec3());
  EXPECT_EQ(spline->parameterAt(3), 0);
  EXPECT_EQ(spline->sample(2)[1], Vec3(1, 2, 3));
  spline->add(Vec3(1, 2, 5));
  EXPECT_TRUE(spline->evaluate(0.25).equals(Vec3(1, 2, 3.5), 1e-12));
  spline->setPoints({Vec3(1, 1, 1), Vec3(1, 1, 1), Vec3(1, 1, 1)});
  EXPECT_EQ(spline->length(), 0);
  EXPECT_TRUE(spline->evaluate(1.5).isFinite());
}

TEST_P(Splines, refuseWhatIsNoNumber) {
  auto const spline = makeSpline(GetParam(), bent);
  zor::Real const nan = std::numeric_limits<zor::Real>::quiet_NaN();
  EXPECT_THROW(spline->setPoint(1, Vec3(nan, 0, 0)), std::invalid_argument);
  EXPECT_THROW(spline->add(Vec3(0, nan, 0)), std::invalid_argument);
  EXPECT_THROW(spline->setPoints({Vec3(), Vec3(nan, 0, 0)}), std::invalid_argument);
  EXPECT_THROW(spline->setPoint(5, Vec3()), std::out_of_range);
  EXPECT_THROW(spline->evaluate(nan), std::invalid_argument);
  EXPECT_THROW(spline->sample(1), std::invalid_argument);
  EXPECT_EQ(spline->getPoints(), bent);
}

INSTANTIATE_TEST_SUITE_P(Kinds, Splines, testing::Bool());

TEST(NaturalSpline, hasNoJumpsOfAccelerationAndNoneAtItsEnds) {
  zor::ref_ptr<zorUtil::Spline> const spline(new zorUtil::NaturalSpline(bent));
  for (int i = 1; i < 4; ++i) {
    EXPECT_TRUE(spline->secondDerivative(i - 1e-9).equals(spline->secondDerivative(i + 1e-9), 1e-6)) << i;
  }
  EXPECT_TRUE(spline->secondDerivative(0).equals(Vec3(), 1e-12));
  EXPECT_TRUE(spline->secondDerivative(4).equals(Vec3(), 1e-12));
}

TEST(CatmullRomSpline, changesOnlyNearby) {
  zor::ref_ptr<zorUtil::CatmullRomSpline> const spline(new zorUtil::CatmullRomSpline(bent, 1.0));
  Vec3 const before = spline->evaluate(0.5);
  spline->setPoint(4, Vec3(9, 9, 9));
  EXPECT_EQ(spline->evaluate(0.5), before);
  EXPECT_THROW(spline->setParameter(1.5), std::invalid_argument);
  // Uniform: at a point the direction between its neighbours.
  spline->setParameter(0);
  EXPECT_TRUE(spline->derivative(1).equals((bent[2] - bent[0]) * 0.5, 1e-12));
}

} // namespace
