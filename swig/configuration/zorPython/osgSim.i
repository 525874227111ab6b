%module(threads="1", docstring="Colours for numbers, as the scene graph has them.") osgSim

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import osg
%}

%{
#include <cmath>
#include "headers/osg.h"
#include "headers/osgSim.h"
%}

%include "shared/common.i"
%include "shared/scene_graph.i"
%import "osg.i"

OSG_OWNED_CLASS(osgSim, ColorRange)
OSG_SHARED_CLASS(osgSim::ColorRange)

namespace osg {

/** A reference that keeps an object alive. */
template <class T>
class ref_ptr {
public:
  /** \param object - the object; null for none */
  explicit ref_ptr(T* object);
  ~ref_ptr();
  /** \return the object */
  T* get() const;
  /** \return true if there is an object */
  bool valid() const;
};

} // namespace osg

namespace osgSim {

/** A row of colours over an interval of numbers. */
class ColorRange : public osg::Referenced {
public:
  /** Colours from red over yellow, green and cyan to blue. \param min - first number \param max - last number */
  ColorRange(float min, float max);
  float getMin() const;
  float getMax() const;
};
%extend ColorRange {
  /** \param scalar - a number, which is not NaN \return the colour, interpolated; refused if the ends of the range are infinitely far apart */
  osg::Vec4f getColor(float scalar) const {
    if (std::isnan(scalar)) throw std::invalid_argument("NaN has no colour");
    std::vector<osg::Vec4> const& colors = $self->getColors();
    if (colors.empty()) throw std::invalid_argument("a range without colours has none for a number");
    if (!(scalar > $self->getMin())) return colors.front();
    if (!(scalar < $self->getMax())) return colors.back();
    if (!std::isfinite($self->getMax() - $self->getMin())) throw std::invalid_argument("there is nothing between the ends of an infinite range");
    return $self->getColor(scalar);
  }
  /** \return number of colours */
  size_t getNumColors() const { return $self->getColors().size(); }
}

} // namespace osgSim

%template(ColorRangeRef) osg::ref_ptr<osgSim::ColorRange>;
