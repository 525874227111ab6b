#pragma once

#include <osgGA/FirstPersonManipulator>

#include <array>

namespace zorOSG {

/**
 * Flies through the scene: a drag of the mouse turns the view, the arrow keys go forward, back and sideways,
 * Page Up and Page Down rise and sink, Shift makes all of it four times as fast.
 */
class FlyManipulator : public osgGA::FirstPersonManipulator {
public:
  /** \param speed metres a second */
  explicit FlyManipulator(double speed);

protected:
  ~FlyManipulator() override = default;

  bool handleKeyDown(osgGA::GUIEventAdapter const& event, osgGA::GUIActionAdapter& action) override;
  bool handleKeyUp(osgGA::GUIEventAdapter const& event, osgGA::GUIActionAdapter& action) override;
  bool handleFrame(osgGA::GUIEventAdapter const& event, osgGA::GUIActionAdapter& action) override;

private:
  static constexpr std::size_t DIRECTIONS = 6;

  bool setHeld(int key, bool held);
  double pull(std::size_t direction) const;

  double m_speed;
  std::array<bool, DIRECTIONS> m_held{}; // forward, back, right, left, up, down
  double m_lastTime = -1;
};

} // namespace zorOSG
