%module(threads="1", docstring="Text as a drawable.") osgText

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import osg
%}

%{
#include "headers/osg.h"
#include "headers/osgText.h"
%}

%include "shared/common.i"
%include "shared/scene_graph.i"
%import "osg.i"

%feature("ref") osgText::Text "$this->ref();"
%extend osgText::Text {
  ~Text() { $self->unref(); }
}
%nodefaultctor osgText::TextBase;
%nodefaultdtor osgText::TextBase;

namespace osgText {

class TextBase : public osg::Drawable {
public:
  void setText(std::string const& text);
  void setCharacterSize(float height);
  float getCharacterHeight() const;
  void setPosition(osg::Vec3f const& position);
  osg::Vec3f const& getPosition() const;
};
%extend TextBase {
  /** \return the text */
  std::string getText() const { return $self->getText().createUTF8EncodedString(); }
}

class Text : public TextBase {
public:
  Text();
  void setColor(osg::Vec4f const& color);
  osg::Vec4f const& getColor() const;
};

} // namespace osgText
