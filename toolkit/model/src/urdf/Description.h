#pragma once

#include <string>
#include <vector>

#include <urdf_model/model.h>
#include <urdf_world/types.h>

#include <zor/AffineMatrix4x4.h>

namespace zorModel {

/** A robot description whose links form one tree. What the functions throw names the element, not the file.
 */
class Description {
public:
  /** \throws std::runtime_error with all that is wrong */
  explicit Description(std::string const& xml);

  std::string const& name() const { return m_model->getName(); }

  /** All links, each after its parent. */
  std::vector<urdf::LinkConstSharedPtr> const& links() const { return m_links; }

private:
  void orderLinks();

  urdf::ModelInterfaceSharedPtr m_model;
  std::vector<urdf::LinkConstSharedPtr> m_links;
};

/** Names an element for messages: link "arm". */
std::string quoted(std::string const& kind, std::string const& name);

zor::Vec3 toZor(urdf::Vector3 const& vector);
zor::AffineMatrix4x4 toZor(urdf::Pose const& pose);

} // namespace zorModel
