#pragma once

#include "OverlayPanel.h"

#include <zorSDK/SimulationStatistics.h>

#include <array>
#include <chrono>
#include <vector>

namespace zorOSG {

/// What the parts of a frame took, in seconds.
struct FrameTimes {
  double physics = 0;
  double cull = 0;
  double draw = 0;
  double total = 0; ///< from one frame to the next, waiting included
};

/// Rates and counts, and a live graph of what the last frames spent their time on.
class StatisticsOverlay : public OverlayPanel {
public:
  StatisticsOverlay();

  /**
   * Adds a frame to the graph, and brings the numbers up to date twice a second.
   * \param time simulated time, s
   */
  void addFrame(FrameTimes const& times, double time, zorSDK::SimulationStatistics const& counts);

  /** Forgets what was measured so far: the next frame is the first. */
  void restart();

private:
  using Clock = std::chrono::steady_clock;
  static constexpr std::size_t FRAMES = 120;
  static constexpr std::size_t PARTS = 4;

  void makeGraph();
  void drawGraph();
  void writeNumbers(double time, zorSDK::SimulationStatistics const& counts);
  double limitOfGraph() const;
  FrameTimes meanSince() const;

  std::vector<FrameTimes> m_frames; // a ring
  std::size_t m_next = 0;
  std::size_t m_countedFrames = 0; // since the numbers were written
  FrameTimes m_sum;                //
  Clock::time_point m_since;
  double m_timeThen = 0;

  osg::ref_ptr<osg::Geometry> m_graph;
  osg::ref_ptr<osg::Vec3Array> m_bars;
  osgText::Text* m_rates;
  osgText::Text* m_limit;
  osgText::Text* m_counts;
  std::array<osgText::Text*, PARTS> m_parts{};
};

} // namespace zorOSG
