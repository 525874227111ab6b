#pragma once

#include <vector>

#include <osg/Vec4>

namespace zorOSG {

/** \param preset - ScalarColorMap::ColorRangePreset \return its colours; none if there is no such preset */
std::vector<osg::Vec4> colorTable(int preset);

} // namespace zorOSG
