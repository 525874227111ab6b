#include "StatisticsOverlay.h"

#include "scene/MeshBuilder.h"

#include <algorithm>
#include <cstdio>

namespace zorOSG {

namespace {

constexpr float MARGIN = 16;
constexpr float WIDTH = 330;
constexpr float GRAPH_TOP = -74;
constexpr float GRAPH_HEIGHT = 90;
constexpr float LEGEND_TOP = GRAPH_TOP - GRAPH_HEIGHT - 10;
constexpr float COUNTS_TOP = LEGEND_TOP - 50;
constexpr float HEIGHT = -COUNTS_TOP + 112;
constexpr double INTERVAL = 0.5;

osg::Vec4 const TEXT(0.93f, 0.94f, 0.96f, 1), FAINT(0.62f, 0.66f, 0.72f, 1);
std::array<osg::Vec4, 4> const COLORS = {
    {{1.0f, 0.62f, 0.22f, 1}, {0.45f, 0.85f, 0.42f, 1}, {0.38f, 0.66f, 1.0f, 1}, {0.36f, 0.39f, 0.44f, 1}}};
std::array<char const*, 4> const NAMES = {"physics", "cull", "draw", "other"};

std::array<double, 4> partsOf(FrameTimes const& times) {
  double const known = times.physics + times.cull + times.draw;
  return {times.physics, times.cull, times.draw, std::max(0.0, times.total - known)};
}

template <class... Values>
std::string formatted(char const* format, Values... values) {
  char text[320];
  std::snprintf(text, sizeof text, format, values...);
  return text;
}

unsigned long long number(zor::UInt value) {
  return static_cast<unsigned long long>(value);
}

} // namespace

StatisticsOverlay::StatisticsOverlay() : OverlayPanel(Corner::UPPER_RIGHT), m_frames(FRAMES) {
  m_rates = &addText("", {MARGIN, -MARGIN}, TEXT, 17);
  makeGraph();
  m_limit = &addText("", {MARGIN + 4, GRAPH_TOP - 2}, FAINT, 12);
  for (std::size_t part = 0; part < PARTS; ++part) {
    auto const column = static_cast<float>(part % 2), row = static_cast<float>(part / 2);
    m_parts[part] = &addText("", {MARGIN + column * 152, LEGEND_TOP - row * 19},
                             COLORS[part] * 0.85f + osg::Vec4(.15f, .15f, .15f, .15f), 14);
  }
  m_counts = &addText("", {MARGIN, COUNTS_TOP}, TEXT, 14);
  setSize(WIDTH, HEIGHT);
}

/** Bars from left to right, each of its parts one above the other; a faint field behind them. */
void StatisticsOverlay::makeGraph() {
  m_bars = new osg::Vec3Array(osg::Array::BIND_PER_VERTEX, (FRAMES * PARTS + 1) * 4);
  osg::ref_ptr<osg::Vec4Array> const colors = new osg::Vec4Array(osg::Array::BIND_PER_VERTEX);
  colors->insert(colors->end(), 4, osg::Vec4(1, 1, 1, 0.06f));
  for (std::size_t frame = 0; frame < FRAMES; ++frame)
    for (osg::Vec4 const& color : COLORS)
      colors->insert(colors->end(), 4, color);
  m_graph = new osg::Geometry;
  m_graph->setDataVariance(osg::Object::DYNAMIC);
  m_graph->setVertexArray(m_bars);
  m_graph->setColorArray(colors);
  m_graph->addPrimitiveSet(new osg::DrawArrays(GL_QUADS, 0, static_cast<int>(m_bars->size())));
  useVertexBuffers(*m_graph);
  add(m_graph);
  drawGraph();
}

double StatisticsOverlay::limitOfGraph() const {
  double longest = 0;
  for (FrameTimes const& frame : m_frames)
    longest = std::max(longest, frame.total);
  double limit = 0.002;
  for (double const factor : {2.5, 2.0, 2.0, 2.5, 2.0, 2.0, 2.5, 2.0, 2.0}) // 5, 10, 20, 50 ms ...
    if (limit < longest)
      limit *= factor;
  return limit;
}

void StatisticsOverlay::drawGraph() {
  float const width = (WIDTH - 2 * MARGIN) / FRAMES;
  auto const scale = static_cast<float>(GRAPH_HEIGHT / limitOfGraph());
  float const bottom = GRAPH_TOP - GRAPH_HEIGHT;
  auto vertex = m_bars->begin();
  auto const quad = [&vertex](float left, float right, float low, float high) {
    for (osg::Vec3 const& corner : {osg::Vec3(left, low, 0), osg::Vec3(right, low, 0),
                                    osg::Vec3(right, high, 0), osg::Vec3(left, high, 0)})
      *vertex++ = corner;
  };
  quad(MARGIN, WIDTH - MARGIN, bottom, GRAPH_TOP);
  for (std::size_t i = 0; i < FRAMES; ++i) {
    float const left = MARGIN + width * static_cast<float>(i);
    float y = bottom;
    for (double const part : partsOf(m_frames[(m_next + i) % FRAMES])) {
      float const high = std::min(y + static_cast<float>(part) * scale, GRAPH_TOP);
      quad(left, left + width - 0.4f, y, high);
      y = high;
    }
  }
  m_bars->dirty();
  m_graph->dirtyBound();
}

void StatisticsOverlay::restart() {
  m_since = Clock::now();
  m_countedFrames = 0;
  m_sum = {};
}

void StatisticsOverlay::addFrame(FrameTimes const& times, double time,
                                 zorSDK::SimulationStatistics const& counts) {
  m_frames[m_next] = times;
  m_next = (m_next + 1) % FRAMES;
  drawGraph();
  ++m_countedFrames;
  m_sum.physics += times.physics;
  m_sum.cull += times.cull;
  m_sum.draw += times.draw;
  m_sum.total += times.total;
  bool const isFirst = m_rates->getText().empty();
  if (isFirst || std::chrono::duration<double>(Clock::now() - m_since).count() >= INTERVAL) {
    writeNumbers(time, counts);
    restart();
    m_timeThen = time;
  }
}

FrameTimes StatisticsOverlay::meanSince() const {
  auto const count = static_cast<double>(std::max<std::size_t>(m_countedFrames, 1));
  return {m_sum.physics / count, m_sum.cull / count, m_sum.draw / count, m_sum.total / count};
}

void StatisticsOverlay::writeNumbers(double time, zorSDK::SimulationStatistics const& counts) {
  FrameTimes const mean = meanSince();
  double const elapsed = m_sum.total;
  m_rates->setText(formatted("%.1f frames a second\n%.2f s simulated, %.2f x real time",
                             mean.total > 0 ? 1 / mean.total : 0.0, time,
                             elapsed > 0 ? (time - m_timeThen) / elapsed : 0.0));
  m_limit->setText(formatted("%.0f ms", limitOfGraph() * 1e3));
  auto const parts = partsOf(mean);
  for (std::size_t part = 0; part < PARTS; ++part)
    m_parts[part]->setText(formatted("%s %.2f ms", NAMES[part], parts[part] * 1e3));
  m_counts->setText(formatted("bodies %llu, %llu asleep\ncontacts %llu with %llu points\n"
                              "constraints %llu\nsolver iterations %llu",
                              number(counts.bodies), number(counts.sleepingBodies), number(counts.contacts),
                              number(counts.contactPoints), number(counts.constraints),
                              number(counts.solverIterations)));
}

} // namespace zorOSG
