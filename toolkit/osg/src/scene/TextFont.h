#pragma once

#include <string>

#include <osg/ref_ptr>
#include <osgText/Font>

namespace zorOSG {

/** The font of labels for which none was chosen; null where it is not installed. Read once. */
osgText::Font* defaultTextFont();

/**
 * Reads a font. Other than the scene graph's own search, which answers a file that it does not find with any
 * other font, it finds what was asked for or nothing.
 * \param name - font file, looked up on the font path and where distributions put the default one; or the
 * name of a family, for which the nearest that is installed is taken
 * \return the font, or null
 */
osg::ref_ptr<osgText::Font> readTextFont(std::string const& name);

} // namespace zorOSG
