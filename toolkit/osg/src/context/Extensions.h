#pragma once

namespace osg {
class GLExtensions;
class RenderInfo;
} // namespace osg

namespace zorOSG {

/**
 * \return the functions of the current context, without one that drivers answer for but do not have: the
 * scene graph takes the answer for support, and its multisampled buffers then get no storage.
 */
osg::GLExtensions* supportedExtensions(osg::RenderInfo& renderInfo);

} // namespace zorOSG
