#include <zorOSG/SceneDecorator.h>

#include "decorator/DecoratorParts.h"
#include "decorator/Defines.h"
#include "scene/Ancestry.h"
#include "scene/MovedNodes.h"
#include "scene/VisualState.h"

#include <zor/Notify.h>
#include <zorIO/Environment.h>

#include <osgDB/ReadFile>

#include <bit>
#include <stdexcept>
#include <string>

namespace zorOSG {

namespace {

osg::Vec4 toColor(zor::Vec4f const& color) {
  if (!color.isFinite())
    throw std::invalid_argument("Scene decorator: a colour is not finite");
  return {color.x(), color.y(), color.z(), color.w()};
}

zor::Vec4f opaque(zor::Vec3 const& color) {
  return {static_cast<float>(color.x()), static_cast<float>(color.y()), static_cast<float>(color.z()), 1.0f};
}

zor::Vec2 toVec2(osg::Vec2 const& v) {
  return {v.x(), v.y()};
}

int checkedLights(int mask) {
  if ((mask & ~SceneDecorator::ALL) != 0)
    throw std::invalid_argument("Scene decorator: light mask " + std::to_string(mask) +
                                " has bits that are no light; 0 to 7 are allowed");
  return mask;
}

osg::ref_ptr<osg::Texture2D> readTexture(std::string const& path) {
  std::string const file = zorIO::Environment::instance().getFilePath().find(path);
  osg::ref_ptr<osg::Image> const image = file.empty() ? nullptr : osgDB::readRefImageFile(file);
  if (!image)
    return nullptr;
  osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(image);
  texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_LINEAR);
  texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
  texture->setResizeNonPowerOfTwoHint(false);
  return texture;
}

} // namespace

SceneDecorator::SceneDecorator(int windowSizeX, int windowSizeY, int enabledLights)
    : m_parts(new Parts(*this, windowSizeX, windowSizeY, checkedLights(enabledLights))) {
  setName("scene decorator");
  setStateSet(m_parts->state);
  // What is drawn besides the children has no part in the bound, and callbacks in it must be called.
  setCullingActive(false);
  setNumChildrenRequiringUpdateTraversal(getNumChildrenRequiringUpdateTraversal() + 1);
  setNumChildrenRequiringEventTraversal(getNumChildrenRequiringEventTraversal() + 1);
}

SceneDecorator::~SceneDecorator() = default;

void SceneDecorator::setEnable(bool enable) {
  m_parts->enabled = enable;
  setStateSet(enable ? m_parts->state.get() : nullptr);
}

bool SceneDecorator::getEnable() const {
  return m_parts->enabled;
}

bool SceneDecorator::isEnabled() const {
  return getEnable();
}

void SceneDecorator::setEnableShadows(bool enable) {
  m_parts->shadowsEnabled = enable;
}

bool SceneDecorator::getEnableShadows() const {
  return m_parts->shadowsEnabled;
}

void SceneDecorator::setShadowMethod(ShadowMethod method) {
  if (method < SOFT_SHADOWMAP || method > NO_SHADOWS)
    throw std::invalid_argument("Scene decorator: " + std::to_string(method) +
                                " is no shadow method, 0 to 6 are");
  m_parts->setShadowMethod(method);
}

SceneDecorator::ShadowMethod SceneDecorator::getShadowMethod() const {
  return m_parts->shadowMethod;
}

void SceneDecorator::setShadowLightSource(Lights light) {
  m_parts->shadowLight = static_cast<unsigned int>(lightToIndex(light));
}

SceneDecorator::Lights SceneDecorator::getShadowLightSource() const {
  return static_cast<Lights>(1u << m_parts->shadowLight);
}

osg::Group* SceneDecorator::getShadowedScene() {
  return this;
}

osg::Group* SceneDecorator::getNonShadowedScene() {
  return m_parts->nonShadowed.get();
}

void SceneDecorator::setEnableLights(int lightMask) {
  m_parts->lights.setEnabled(checkedLights(lightMask));
  m_parts->lights.reset();
}

size_t SceneDecorator::lightToIndex(Lights l) {
  auto const bits = static_cast<unsigned int>(l);
  if (bits > ALL || !std::has_single_bit(bits))
    throw std::invalid_argument("Scene decorator: " + std::to_string(static_cast<int>(l)) +
                                " is not one light; 1, 2 and 4 are");
  return static_cast<size_t>(std::countr_zero(bits));
}

osg::LightSource* SceneDecorator::getOSGLight(Lights l) {
  return &m_parts->lights.source(static_cast<unsigned int>(lightToIndex(l)));
}

zorOSG::LightSource SceneDecorator::getLightSource(Lights l) {
  return zorOSG::LightSource(getOSGLight(l));
}

void SceneDecorator::setEnableCalculateLightPositions(Lights l, bool f) {
  m_parts->lights.setPlaced(static_cast<unsigned int>(lightToIndex(l)), f);
}

bool SceneDecorator::getEnableCalculateLightPositions(Lights l) const {
  return m_parts->lights.isPlaced(static_cast<unsigned int>(lightToIndex(l)));
}

void SceneDecorator::calculateLightPositions(osg::Node* bound_node) {
  calculateLightPositions(bound_node ? bound_node->getBound() : getBound());
}

void SceneDecorator::calculateLightPositions(osg::BoundingBox const& boundingBox) {
  if (boundingBox.valid())
    calculateLightPositions(osg::BoundingSphere(boundingBox));
}

void SceneDecorator::calculateLightPositions(osg::BoundingSphere const& boundingSphere) {
  if (boundingSphere.valid())
    m_parts->lights.place(osg::BoundingSphered(boundingSphere.center(), boundingSphere.radius()));
}

void SceneDecorator::setBackgroundColor(zor::Vec4f const& color) {
  setBackgroundColor(color, color, color, color);
}

void SceneDecorator::setBackgroundColor(zor::Vec4f const& upper, zor::Vec4f const& lower) {
  setBackgroundColor(upper, upper, lower, lower);
}

void SceneDecorator::setBackgroundColor(zor::Vec4f const& colorUL, zor::Vec4f const& colorUR,
                                        zor::Vec4f const& colorLL, zor::Vec4f const& colorLR) {
  m_parts->background.setColors({toColor(colorUL), toColor(colorUR), toColor(colorLL), toColor(colorLR)});
}

void SceneDecorator::setBackgroundColor(zor::Vec3 const& color) {
  setBackgroundColor(opaque(color));
}

void SceneDecorator::setBackgroundColor(zor::Vec3 const& upper, zor::Vec3 const& lower) {
  setBackgroundColor(opaque(upper), opaque(lower));
}

void SceneDecorator::setBackgroundColor(zor::Vec3 const& colorUL, zor::Vec3 const& colorUR,
                                        zor::Vec3 const& colorLL, zor::Vec3 const& colorLR) {
  setBackgroundColor(opaque(colorUL), opaque(colorUR), opaque(colorLL), opaque(colorLR));
}

void SceneDecorator::setEnableShaderState(bool enable, bool override) {
  m_parts->setProgram(enable, override);
}

bool SceneDecorator::getEnableShaderState() const {
  return m_parts->shaderEnabled;
}

osg::StateSet* SceneDecorator::getDecoratorStateSet() {
  return m_parts->state.get();
}

osg::Material const* SceneDecorator::getDefaultDecoratorMaterial() {
  return &defaultMaterial();
}

bool SceneDecorator::setBaseTexture(std::string const& path) {
  osg::ref_ptr<osg::Texture2D> const texture = path.empty() ? nullptr : readTexture(path);
  if (texture) {
    texture->setWrap(osg::Texture::WRAP_S, osg::Texture::REPEAT);
    texture->setWrap(osg::Texture::WRAP_T, osg::Texture::REPEAT);
    m_parts->state->setTextureAttributeAndModes(0, texture);
  } else if (path.empty()) {
    m_parts->state->removeTextureAttribute(0, osg::StateAttribute::TEXTURE);
  } else {
    zor::notify(zor::Notify::NOTIFY_WARNING)
        << "Scene decorator: base texture '" << path << "' cannot be read" << zor::endMessage;
    return false;
  }
  keepDefine(*m_parts->state, define::TEXTURE,
             texture ? osg::StateAttribute::ON : osg::StateAttribute::INHERIT);
  return true;
}

void SceneDecorator::setEnableLogo(bool enable) {
  m_parts->hud.logo().setEnable(enable);
}

bool SceneDecorator::getEnableLogo() const {
  return m_parts->hud.logo().getEnable();
}

void SceneDecorator::setLogoFile(std::string const& path, float pixelDensity) {
  osg::ref_ptr<osg::Texture2D> const texture = path.empty() ? nullptr : readTexture(path);
  if (!texture && !path.empty())
    throw std::runtime_error("Scene decorator: logo '" + path + "' cannot be read");
  setLogo(texture, pixelDensity);
}

void SceneDecorator::setLogo(osg::Texture2D* texture, float pixelDensity) {
  m_parts->hud.logo().setTexture(texture, pixelDensity);
}

osg::Texture2D* SceneDecorator::getLogo() {
  return m_parts->hud.logo().getTexture();
}

void SceneDecorator::setLogoLocation(LogoLocation location) {
  m_parts->hud.logo().setLocation(location);
}

SceneDecorator::LogoLocation SceneDecorator::getLogoLocation() const {
  return m_parts->hud.logo().getLocation();
}

void SceneDecorator::setLogoPosition(float x, float y) {
  m_parts->hud.logo().setPosition({x, y});
}

zor::Vec2 SceneDecorator::getDefaultLogoPosition() {
  return toVec2(Logo::defaultPosition());
}

zor::Vec2 SceneDecorator::getLogoDimension() const {
  return toVec2(m_parts->hud.logo().getSize());
}

void SceneDecorator::setMaximumLogoDimension(float width, float height) {
  m_parts->hud.logo().setMaximumSize({width, height});
}

zor::Vec2 SceneDecorator::getMaximumLogoDimension() const {
  return toVec2(m_parts->hud.logo().getMaximumSize());
}

void SceneDecorator::setText(int row, zor::String const& text) {
  m_parts->hud.text().setText(row, text, nullptr);
}

void SceneDecorator::setText(int row, zor::String const& text, zor::Vec4f const& color) {
  osg::Vec4 const rowColor = toColor(color);
  m_parts->hud.text().setText(row, text, &rowColor);
}

void SceneDecorator::clearText() {
  m_parts->hud.text().clear();
}

void SceneDecorator::setFontName(std::string const& name) {
  m_parts->hud.text().setFont(name);
}

std::string SceneDecorator::getFontName() const {
  return m_parts->hud.text().getFont();
}

void SceneDecorator::setFontSize(float size) {
  m_parts->hud.text().setFontSize(size);
}

float SceneDecorator::getFontSize() const {
  return m_parts->hud.text().getFontSize();
}

osg::Group* SceneDecorator::getHud() {
  return &m_parts->hud.group();
}

void SceneDecorator::resetHUD() {
  m_parts->hud.reset();
}

void SceneDecorator::updateWindowSize(int width, int height) {
  m_parts->hud.setWindowSize(width, height);
}

zor::Vec2i SceneDecorator::getWindowSize() const {
  return {m_parts->hud.width(), m_parts->hud.height()};
}

void SceneDecorator::setScreenPixelScale(float scale) {
  m_parts->hud.setPixelScale(scale);
}

float SceneDecorator::getScreenPixelScale() const {
  return m_parts->hud.pixelScale();
}

void SceneDecorator::setEnableRenderedCursor(bool enable) {
  m_parts->hud.setCursorShown(enable);
}

bool SceneDecorator::getEnableRenderedCursor() const {
  return m_parts->hud.isCursorShown();
}

void SceneDecorator::updateCursorPosition(float x, float y) {
  m_parts->hud.moveCursor(x, y);
}

bool SceneDecorator::addChild(osg::Node* child) {
  requireNoCircle("addChild", this, child);
  return osg::Group::addChild(child);
}

bool SceneDecorator::insertChild(unsigned int index, osg::Node* child) {
  requireNoCircle("insertChild", this, child);
  return osg::Group::insertChild(index, child);
}

bool SceneDecorator::removeChild(osg::Node* child) {
  return osg::Group::removeChild(child);
}

bool SceneDecorator::removeChild(unsigned int pos, unsigned int numChildrenToRemove) {
  return osg::Group::removeChild(pos, numChildrenToRemove);
}

bool SceneDecorator::removeChildren(unsigned int pos, unsigned int numChildrenToRemove) {
  return osg::Group::removeChildren(pos, numChildrenToRemove);
}

bool SceneDecorator::replaceChild(osg::Node* origChild, osg::Node* newChild) {
  requireNoCircle("replaceChild", this, newChild);
  return osg::Group::replaceChild(origChild, newChild);
}

bool SceneDecorator::setChild(unsigned int i, osg::Node* node) {
  requireNoCircle("setChild", this, node);
  return node && osg::Group::setChild(i, node);
}

void SceneDecorator::traverse(osg::NodeVisitor& visitor) {
  if (osgUtil::CullVisitor* const cull = visitor.asCullVisitor()) {
    m_parts->cull(*cull);
    return;
  }
  if (visitor.getVisitorType() == osg::NodeVisitor::UPDATE_VISITOR)
    MovedNodes::instance().follow(rootOf(visitor, *this)); // before nodes that moved are walked to
  osg::Group::traverse(visitor);
  m_parts->visit(visitor);
}

osg::BoundingSphere SceneDecorator::computeBound() const {
  osg::BoundingSphere bound = osg::Group::computeBound();
  bound.expandBy(m_parts->nonShadowed->getBound());
  return bound;
}

void SceneDecorator::releaseGLObjects(osg::State* state) const {
  osg::Group::releaseGLObjects(state);
  m_parts->releaseGLObjects(state);
}

void SceneDecorator::resizeGLObjectBuffers(unsigned int maxSize) {
  osg::Group::resizeGLObjectBuffers(maxSize);
  m_parts->background.node().resizeGLObjectBuffers(maxSize);
  m_parts->hud.node().resizeGLObjectBuffers(maxSize);
  m_parts->nonShadowed->resizeGLObjectBuffers(maxSize);
}

} // namespace zorOSG
