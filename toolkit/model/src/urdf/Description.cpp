#include "urdf/Description.h"

#include <mutex>
#include <set>
#include <stdexcept>

#include <console_bridge/console.h>
#include <urdf_parser/urdf_parser.h>

#include <zor/Notify.h>

namespace zorModel {

namespace {

/** Takes in what the parser prints while it lives. */
class ParserMessages : public console_bridge::OutputHandler {
public:
  ParserMessages() : m_lock(mutex()), m_level(console_bridge::getLogLevel()) {
    console_bridge::setLogLevel(console_bridge::CONSOLE_BRIDGE_LOG_WARN);
    console_bridge::useOutputHandler(this);
  }
  ~ParserMessages() override {
    console_bridge::restorePreviousOutputHandler();
    console_bridge::setLogLevel(m_level);
  }
  ParserMessages(ParserMessages const&) = delete;
  ParserMessages& operator=(ParserMessages const&) = delete;

  void log(std::string const& text, console_bridge::LogLevel level, char const*, int) override {
    std::string& messages = level >= console_bridge::CONSOLE_BRIDGE_LOG_ERROR ? errors : warnings;
    if (messages.find(text) == std::string::npos)
      messages += (messages.empty() ? "" : "; ") + text;
  }

  std::string errors;
  std::string warnings;

private:
  // The parser has one output for the process.
  static std::mutex& mutex() {
    static std::mutex instance;
    return instance;
  }

  std::lock_guard<std::mutex> m_lock;
  console_bridge::LogLevel m_level;
};

urdf::ModelInterfaceSharedPtr parse(std::string const& xml) {
  ParserMessages messages;
  urdf::ModelInterfaceSharedPtr model = urdf::parseURDF(xml);
  // An element that it cannot read is left out by the parser; a robot without it would be another one.
  if (!messages.errors.empty())
    throw std::runtime_error(messages.errors);
  if (!model || !model->getRoot())
    throw std::runtime_error("no robot description");
  if (!messages.warnings.empty())
    zor::notify(zor::Notify::NOTIFY_WARNING)
        << "URDF robot \"" << model->getName() << "\": " << messages.warnings << zor::endMessage;
  return model;
}

} // namespace

Description::Description(std::string const& xml) : m_model(parse(xml)) {
  orderLinks();
}

// The parser accepts a link with two parents, and rings that do not touch the root.
void Description::orderLinks() {
  std::set<urdf::Link const*> seen;
  m_links.push_back(m_model->getRoot());
  for (std::size_t i = 0; i < m_links.size(); ++i)
    for (urdf::JointSharedPtr const& joint : m_links[i]->child_joints) {
      urdf::LinkConstSharedPtr const child = m_model->getLink(joint->child_link_name);
      if (!seen.insert(child.get()).second)
        throw std::runtime_error(quoted("joint", joint->name) + ": " + quoted("link", child->name) +
                                 " already has a parent; the links must form a tree");
      m_links.push_back(child);
    }
  for (auto const& [name, link] : m_model->links_)
    if (link != m_model->getRoot() && !seen.contains(link.get()))
      throw std::runtime_error(quoted("link", name) + " is not joined to the root " +
                               quoted("link", m_model->getRoot()->name) +
                               "; the links must form a tree without rings");
}

std::string quoted(std::string const& kind, std::string const& name) {
  return kind + " \"" + name + "\"";
}

zor::Vec3 toZor(urdf::Vector3 const& vector) {
  return zor::Vec3(vector.x, vector.y, vector.z);
}

zor::AffineMatrix4x4 toZor(urdf::Pose const& pose) {
  urdf::Rotation const& q = pose.rotation;
  return zor::AffineMatrix4x4(zor::Quat(q.x, q.y, q.z, q.w), toZor(pose.position));
}

} // namespace zorModel
