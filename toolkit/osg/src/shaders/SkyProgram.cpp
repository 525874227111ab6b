#include "SkyProgram.h"

#include <osg/ref_ptr>

namespace zorOSG {

namespace {

osg::ref_ptr<osg::Program> makeSkyProgram() {
  osg::ref_ptr<osg::Program> program = new osg::Program;
  program->setName("sky");
  program->addShader(new osg::Shader(osg::Shader::VERTEX, R"(#version 120
varying vec3 toward;
void main() {
  toward = gl_Vertex.xzy; // in cube maps y points up and z ahead
  gl_Position = (gl_ModelViewProjectionMatrix * gl_Vertex).xyww;
}
)"));
  program->addShader(new osg::Shader(osg::Shader::FRAGMENT, R"(#version 120
uniform samplerCube zor_sky;
varying vec3 toward;
void main() { gl_FragColor = vec4(textureCube(zor_sky, toward).rgb, 1.0); }
)"));
  return program;
}

} // namespace

osg::Program& skyProgram() {
  static osg::ref_ptr<osg::Program> const program = makeSkyProgram();
  return *program;
}

} // namespace zorOSG
