#pragma once

#include <map>
#include <string>

#include <zor/Material.h>
#include <zor/Types.h>
#include <zor/ref_ptr.h>
#include <zorModel/UrdfJoint.h>
#include <zorSDK/Assembly.h>

namespace zorModel {

/**
 * Reads robots described in URDF.
 *
 * Each link becomes a rigid body of its name, whose model frame is the frame of the link; each joint a
 * constraint of its name: Hinge (revolute, continuous), Prismatic, LockJoint (fixed), a chain of two sliders
 * and a hinge (planar), nothing (floating). Its angle is the joint's position as URDF counts it. The robot
 * stands with its root link's frame in that of the assembly; setTransform() of the assembly moves it as a
 * whole.
 *
 * - Limits become the range of the constraint; the effort limit bounds its lock and motor, with which scripts
 *   drive it. Damping and friction act through the motor at speed zero, until it is used for something else:
 *   where a file gives both, damping alone acts. Velocity limits are only told, by getJoint().
 * - A link without mass joins the body of a link that it is fixed to; an observer frame of its name keeps
 *   its place. One without mass that moves by itself takes its mass from its collision elements, with 1000
 *   kg/m3 or the density of setMaterial(). A mass with a zero inertia tensor takes the form of the inertia
 *   from the collision elements.
 * - Collision elements become geometries. Visual elements become geometries that collide with nothing; one
 * that looks the same as a collision element shares its geometry. A link without visuals is drawn as it
 * collides.
 * - Links that a joint connects never meet.
 * - A mimicking joint follows the other one through its lock.
 */
class UrdfReader {
public:
  UrdfReader() = default;

  /** \param fixed - true: the root link stands still; false, the default: it moves as any body. A root link
   * named "world" always stands still */
  void setFixedBase(bool fixed) { m_fixedBase = fixed; }
  /** \return true if the root link stands still */
  bool getFixedBase() const { return m_fixedBase; }

  /** \param merge - true: all links that are fixed to one another make one body, which bears the name of the
   * first of them; observer frames keep the places of the others. false, the default: LockJoint holds them */
  void setMergeFixedLinks(bool merge) { m_mergeFixedLinks = merge; }
  /** \return true if links fixed to one another make one body */
  bool getMergeFixedLinks() const { return m_mergeFixedLinks; }

  /** \param enable - false: the robot's links do not meet one another; true is the default */
  void setSelfCollisions(bool enable) { m_selfCollisions = enable; }
  /** \return true if links that no joint connects meet */
  bool getSelfCollisions() const { return m_selfCollisions; }

  /** \param material - what all links are made of; null for the default material */
  void setMaterial(zor::Material* material) { m_material = material; }
  /** \return what all links are made of, or null */
  zor::Material* getMaterial() const { return m_material.get(); }

  /** \param count - greatest number of convex parts into which each collision mesh is taken apart, 1 to 64 */
  void setNumConvexParts(zor::UInt count);
  /** \return greatest number of convex parts of a collision mesh; 1 by default */
  zor::UInt getNumConvexParts() const { return m_numConvexParts; }

  /**
   * Tells where the files of a package lie, for names such as package://arm/meshes/hand.stl. Packages that
   * are not told are sought from the URDF file's folder upwards, then along the resource path.
   * \param package - name of the package
   * \param folder - its folder
   */
  void setPackageFolder(std::string const& package, std::string const& folder);

  /**
   * Sets where a joint stands when the robot is read; zero, or the limit next to it, where it is not told.
   * \param joint - name of a revolute, continuous or prismatic joint that does not mimic another
   * \param position - rad or m, finite; read() throws where it lies outside the joint's limits
   */
  void setJointPosition(std::string const& joint, zor::Real position);
  /** Forgets all joint positions that were set. */
  void clearJointPositions() { m_positions.clear(); }

  /**
   * Reads a robot.
   * \param filename - URDF file, looked up as given and then along the resource path (ZOR_FILE_PATH)
   * \return a new assembly with the robot's name, which belongs to the caller
   * \throws std::runtime_error that names the file and the element at fault, if the file or a mesh is
   * missing, or the description is wrong, or its links do not form one tree
   */
  zorSDK::Assembly* read(std::string const& filename);

  /**
   * Reads a robot from a text.
   * \param xml - the description
   * \param folder - where its relative file names start
   * \return as read()
   * \throws std::runtime_error as read()
   */
  zorSDK::Assembly* readText(std::string const& xml, std::string const& folder = "");

  /** \return the joints of the robot that was read last, each after that of its parent link */
  zorModel::UrdfJointVector const& getJoints() const { return m_joints; }

  /** \param name - name of a joint of the robot read last \return the joint \throws std::invalid_argument if
   * there is none of that name */
  zorModel::UrdfJoint getJoint(std::string const& name) const;

#ifndef SWIG
  std::map<std::string, std::string> const& getPackageFolders() const { return m_packages; }
  std::map<std::string, zor::Real> const& getJointPositions() const { return m_positions; }
#endif

private:
  zorSDK::Assembly* build(std::string const& xml, std::string const& source, std::string const& folder);

  bool m_fixedBase = false;
  bool m_mergeFixedLinks = false;
  bool m_selfCollisions = true;
  zor::UInt m_numConvexParts = 1;
  zor::ref_ptr<zor::Material> m_material;
  std::map<std::string, std::string> m_packages;
  std::map<std::string, zor::Real> m_positions;
  UrdfJointVector m_joints;
};

} // namespace zorModel
