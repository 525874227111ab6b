#pragma once

#include <zor/Types.h>
#include <zor/Vec2.h>
#include <zor/Vec3.h>
#include <zor/Vec4.h>
#include <zorOSG/LightSource.h>

#include <osg/BoundingBox>
#include <osg/BoundingSphere>
#include <osg/Group>
#include <osg/LightSource>
#include <osg/Material>
#include <osg/StateSet>
#include <osg/Texture2D>

#include <cstddef>
#include <memory>
#include <string>

namespace zorOSG {

/**
 * The group that gives the scene below it its look: light sources, shadows, a background, a logo, lines of
 * text in a heads-up display (HUD) and a default render state.
 *
 * Its children are the shadowed scene. Lights, background and HUD are no children: they are drawn with the
 * decorator but do not show up among its children or in its bounding volume, and they appear in every camera
 * that draws the decorator, windows and render targets alike. World up is +z.
 */
class SceneDecorator : public osg::Group {
public:
  /** Places of the logo. */
  enum LogoLocation : int {
    UPPER_LEFT = 1, ///< Upper left corner of the window.
    LOWER_LEFT,     ///< Lower left corner.
    UPPER_RIGHT,    ///< Upper right corner.
    LOWER_RIGHT,    ///< Lower right corner.
    FREE            ///< Wherever setLogoPosition puts it.
  };

  /** Light sources; bits that may be combined. */
  enum Lights : int {
    LIGHT0 = 1, ///< The first light.
    LIGHT1 = 2, ///< The second light.
    LIGHT2 = 4, ///< The third light.
    ALL = 7     ///< All of them.
  };

  /** How shadows are generated. */
  enum ShadowMethod : int {
    SOFT_SHADOWMAP = 0, ///< Shadow map with soft edges.
    SHADOWMAP,          ///< Shadow map with sharp edges, at less cost.
    SHADOWVOLUME, ///< Exact edges at any distance; particles cast none. Costs as much as there is in view.
    PARALLELLSPLIT_SHADOWMAP,        ///< Three soft maps, for what is near, farther and far: for wide views.
    LIGHTSPACEPERSPECTIVE_SHADOWMAP, ///< One soft map with more texels where the view is near.
    SHADOWTEXTURE, ///< Soft silhouettes on what lies behind all bodies, which do not darken each other.
    NO_SHADOWS     ///< No shadows.
  };

  /**
   * Creates a decorator with lights, soft shadows of the first enabled light and a light grey-blue
   * background.
   * \param windowSizeX - width of the window (pixels), positive; logo and text scale by it
   * \param windowSizeY - height of the window (pixels), positive
   * \param enabledLights - bits of Lights: the light sources that are on
   * \throws std::invalid_argument for a size or light bits that do not exist
   */
  SceneDecorator(int windowSizeX, int windowSizeY, int enabledLights = ALL);

  /** \param enable - false to draw the children as they are, without lights, shadows, background and HUD */
  void setEnable(bool enable);

  /** \return true if the decorator's rendering style is applied */
  bool getEnable() const;

  /** \return true if the decorator's rendering style is applied */
  bool isEnabled() const;

  /** \param enable - whether the children cast and receive shadows */
  void setEnableShadows(bool enable);

  /** \return true if the children cast and receive shadows */
  bool getEnableShadows() const;

  /**
   * Chooses how shadows are generated.
   * \param method - one of them; a render target that has no stencil buffer shows SHADOWVOLUME as SHADOWMAP,
   * with a warning
   * \throws std::invalid_argument for a value that is no method
   */
  void setShadowMethod(ShadowMethod method);

  /** \return how shadows are generated */
  ShadowMethod getShadowMethod() const;

  /**
   * Chooses the light that casts the shadows.
   * \param light - one light; while it is not enabled there are no shadows
   * \throws std::invalid_argument if it is not exactly one light
   */
  void setShadowLightSource(Lights light);

  /** \return the light that casts the shadows */
  Lights getShadowLightSource() const;

  /** \return the group whose children cast and receive shadows, borrowed: the decorator itself */
  osg::Group* getShadowedScene();

  /** \return the group whose children neither cast nor receive shadows, borrowed */
  osg::Group* getNonShadowedScene();

  /**
   * Resets the light sources to their first colours and positions and enables some of them.
   * \param lightMask - bits of Lights to enable; the others are off
   * \throws std::invalid_argument for bits that are no light
   */
  void setEnableLights(int lightMask = ALL);

  /**
   * \param l - one light
   * \return its index, from 0
   * \throws std::invalid_argument if it is not exactly one light
   */
  static size_t lightToIndex(Lights l);

  /**
   * \param l - one light
   * \return the scene-graph light source, borrowed
   * \throws std::invalid_argument if it is not exactly one light
   */
  osg::LightSource* getOSGLight(Lights l);

  /**
   * \param l - one light
   * \return a handle of the light source
   * \throws std::invalid_argument if it is not exactly one light
   */
  zorOSG::LightSource getLightSource(Lights l);

  /**
   * \param l - one light
   * \param f - true (the default) if calculateLightPositions() places it
   */
  void setEnableCalculateLightPositions(Lights l, bool f);

  /**
   * \param l - one light
   * \return true if calculateLightPositions() places it
   */
  bool getEnableCalculateLightPositions(Lights l) const;

  /**
   * Places the lights around what a node holds. Lights whose placing is switched off stay where they are.
   * \param bound_node - the node, whose bound is taken in the decorator's coordinates; null for the children
   * of the decorator. A node without content leaves the lights where they are.
   */
  void calculateLightPositions(osg::Node* bound_node = nullptr);

  /** \param boundingBox - box to place the lights around (m); an invalid one leaves them where they are */
  void calculateLightPositions(osg::BoundingBox const& boundingBox);

  /** \param boundingSphere - sphere to place the lights around (m); an invalid one leaves them where they are
   */
  void calculateLightPositions(osg::BoundingSphere const& boundingSphere);

  /** \param color - the background's colour, components 0 to 1 */
  void setBackgroundColor(zor::Vec4f const& color);

  /**
   * A gradient from top to bottom.
   * \param upper - colour at the upper edge
   * \param lower - colour at the lower edge
   */
  void setBackgroundColor(zor::Vec4f const& upper, zor::Vec4f const& lower);

  /**
   * A gradient between the corners.
   * \param colorUL - colour of the upper left corner
   * \param colorUR - colour of the upper right corner
   * \param colorLL - colour of the lower left corner
   * \param colorLR - colour of the lower right corner
   */
  void setBackgroundColor(zor::Vec4f const& colorUL, zor::Vec4f const& colorUR, zor::Vec4f const& colorLL,
                          zor::Vec4f const& colorLR);

  /** \param color - the background's colour, components 0 to 1 */
  void setBackgroundColor(zor::Vec3 const& color);

  /**
   * A gradient from top to bottom.
   * \param upper - colour at the upper edge
   * \param lower - colour at the lower edge
   */
  void setBackgroundColor(zor::Vec3 const& upper, zor::Vec3 const& lower);

  /**
   * A gradient between the corners.
   * \param colorUL - colour of the upper left corner
   * \param colorUR - colour of the upper right corner
   * \param colorLL - colour of the lower left corner
   * \param colorLR - colour of the lower right corner
   */
  void setBackgroundColor(zor::Vec3 const& colorUL, zor::Vec3 const& colorUR, zor::Vec3 const& colorLL,
                          zor::Vec3 const& colorLR);

  /**
   * Switches the shader that lights and shadows the scene per pixel. Without it the scene is drawn by the
   * fixed pipeline, without shadows.
   * \param enable - whether to use the shader
   * \param override - true to use it also where nodes further down bring a shader of their own
   */
  void setEnableShaderState(bool enable, bool override = false);

  /** \return true if the shader is used */
  bool getEnableShaderState() const;

  /** \return the state set that the decorator's children inherit, borrowed */
  osg::StateSet* getDecoratorStateSet();

  /** \return the material of nodes that bring none, borrowed; shared by all decorators */
  static osg::Material const* getDefaultDecoratorMaterial();

  /**
   * Draws an image on every node that brings no texture of its own.
   * \param path - image file, looked up on the resource path; empty for none
   * \return true if loading and creation succeeded; otherwise the present texture stays
   */
  bool setBaseTexture(std::string const& path);

  /** \param enable - whether the logo is drawn */
  void setEnableLogo(bool enable);

  /** \return true if the logo is drawn */
  bool getEnableLogo() const;

  /**
   * Reads the logo.
   * \param path - image file, looked up on the resource path; empty for no logo
   * \param pixelDensity - image pixels per screen pixel: 2.0 for high DPI, 1.0 for 1:1; positive
   * \throws std::runtime_error if the image cannot be read; the present logo stays
   */
  void setLogoFile(std::string const& path, float pixelDensity = 1.0f);

  /**
   * \param texture - the logo, kept by the decorator; null for none
   * \param pixelDensity - image pixels per screen pixel: 2.0 for high DPI, 1.0 for 1:1; positive
   */
  void setLogo(osg::Texture2D* texture, float pixelDensity = 1.0f);

  /** \return the logo's texture, borrowed; null if there is none */
  osg::Texture2D* getLogo();

  /**
   * \param location - a corner, or FREE for the position of setLogoPosition()
   * \throws std::invalid_argument for a value that is no location
   */
  void setLogoLocation(LogoLocation location);

  /** \return where the logo is drawn */
  LogoLocation getLogoLocation() const;

  /**
   * Places the logo's lower left corner. Takes effect with the location FREE only.
   * \param x - 0 (left) to 1 (right)
   * \param y - 0 (bottom) to 1 (top)
   */
  void setLogoPosition(float x, float y);

  /** \return position of the logo's lower left corner where none has been set, in parts of the window */
  static zor::Vec2 getDefaultLogoPosition();

  /** \return size of the logo as drawn, in parts of the window; zero without a logo */
  zor::Vec2 getLogoDimension() const;

  /**
   * \param width - largest width of the logo, 0.0 to 1.0 of the window
   * \param height - largest height of the logo, 0.0 to 1.0 of the window
   * \throws std::invalid_argument outside that range
   */
  void setMaximumLogoDimension(float width, float height);

  /** \return largest size of the logo, in parts of the window */
  zor::Vec2 getMaximumLogoDimension() const;

  /**
   * Writes a row of the HUD in the colour that the row has, at first white. Costs nothing if nothing changes.
   * \param row - row from the top, from 0 to 63
   * \param text - the text (UTF-8), empty for none
   * \throws std::out_of_range for a row that does not exist
   */
  void setText(int row, zor::String const& text);

  /**
   * Writes a row of the HUD.
   * \param row - row from the top, from 0 to 63
   * \param text - the text (UTF-8), empty for none
   * \param color - red, green, blue and alpha, each 0 to 1
   * \throws std::out_of_range for a row that does not exist
   */
  void setText(int row, zor::String const& text, zor::Vec4f const& color);

  /** Resets all text to empty strings. */
  void clearText();

  /**
   * \param name - font file, looked up on the font path; one that cannot be read keeps the present font, with
   * a warning
   */
  void setFontName(std::string const& name);

  /** \return name of the font */
  std::string getFontName() const;

  /**
   * \param size - height of the letters in pixels of the window, times the screen's pixel scale; positive
   * \throws std::invalid_argument if it is not
   */
  void setFontSize(float size);

  /** \return height of the letters (pixels) */
  float getFontSize() const;

  /**
   * \return the HUD group, borrowed: nodes added to it are drawn in the logo's coordinates, (0, 0) the lower
   * left and (1, 1) the upper right corner, over the scene
   */
  osg::Group* getHud();

  /** Empties the HUD: texts and added nodes go; groups returned earlier by getHud() are drawn no more. */
  void resetHUD();

  /**
   * \param width - width of the window (pixels), positive
   * \param height - height of the window (pixels), positive
   */
  void updateWindowSize(int width, int height);

  /** \return width and height of the window (pixels) */
  zor::Vec2i getWindowSize() const;

  /** \param scale - screen pixels per pixel of text and logo: 2.0 for high DPI, 1.0 for 1:1; positive */
  void setScreenPixelScale(float scale);

#ifndef SWIG
  /** \return pixels of the screen for one of texts and logo */
  float getScreenPixelScale() const;
#endif

  /** \param enable - whether the mouse cursor is drawn with the scene, so that captures show it */
  void setEnableRenderedCursor(bool enable);

  /** \return true if the mouse cursor is drawn */
  bool getEnableRenderedCursor() const;

  /**
   * Moves the drawn cursor.
   * \param x - 0 (left) to 1 (right edge of the window)
   * \param y - 0 (bottom) to 1 (top edge of the window)
   */
  void updateCursorPosition(float x, float y);

  /**
   * Adds a node that casts and receives shadows.
   * \param child - the node
   * \return false if it is null
   */
  bool addChild(osg::Node* child) override;

  /**
   * \param index - place among the children; beyond the end it is added last
   * \param child - the node
   * \return false if it is null
   */
  bool insertChild(unsigned int index, osg::Node* child) override;

  /**
   * \param child - the node to remove
   * \return false if it is no child
   */
  bool removeChild(osg::Node* child);

  /**
   * \param pos - place of the first node to remove
   * \param numChildrenToRemove - how many
   * \return false if there is no such place
   */
  bool removeChild(unsigned int pos, unsigned int numChildrenToRemove = 1);

  /**
   * \param pos - place of the first node to remove
   * \param numChildrenToRemove - how many
   * \return false if there is no such place
   */
  bool removeChildren(unsigned int pos, unsigned int numChildrenToRemove) override;

  /**
   * \param origChild - the child to replace
   * \param newChild - the node that takes its place
   * \return false if origChild is no child or newChild is null
   */
  bool replaceChild(osg::Node* origChild, osg::Node* newChild) override;

  /**
   * \param i - place of the child to replace
   * \param node - the node that takes its place
   * \return false if there is no such place or the node is null
   */
  bool setChild(unsigned int i, osg::Node* node) override;

#ifndef SWIG
  void traverse(osg::NodeVisitor& visitor) override;
  osg::BoundingSphere computeBound() const override;
  void releaseGLObjects(osg::State* state = nullptr) const override;
  void resizeGLObjectBuffers(unsigned int maxSize) override;
  char const* libraryName() const override { return "zorOSG"; }
  char const* className() const override { return "SceneDecorator"; }
#endif

protected:
  ~SceneDecorator() override;

private:
  class Parts;
  std::unique_ptr<Parts> m_parts;
};

} // namespace zorOSG
