#include "ReaderMessages.h"

#include <mutex>

#include <zor/Notify.h>

namespace zorOSG {

class ReaderMessages::Handler : public osg::NotifyHandler {
public:
  void notify(osg::NotifySeverity, char const* message) override {
    std::lock_guard const lock(m_mutex); // readers may run on other threads as well
    m_text += message;
  }

  std::string text() const {
    std::lock_guard const lock(m_mutex);
    return m_text;
  }

private:
  mutable std::mutex m_mutex;
  std::string m_text;
};

ReaderMessages::ReaderMessages() : m_handler(new Handler), m_previous(osg::getNotifyHandler()) {
  osg::setNotifyHandler(m_handler);
}

ReaderMessages::~ReaderMessages() {
  osg::setNotifyHandler(m_previous);
}

std::string ReaderMessages::text() const {
  std::string result = m_handler->text();
  result.erase(result.find_last_not_of(" \n") + 1);
  return result;
}

void ReaderMessages::log(std::string const& filename) const {
  std::string const messages = text();
  if (!messages.empty())
    zor::notify(zor::Notify::NOTIFY_INFO) << filename << ": " << messages << zor::endMessage;
}

} // namespace zorOSG
