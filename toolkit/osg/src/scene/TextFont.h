#pragma once

#include <osg/ref_ptr>
#include <osgText/Font>

namespace zorOSG {

/** The font of labels for which none was chosen; null where it is not installed. Read once. */
osgText::Font* defaultTextFont();

} // namespace zorOSG
