#pragma once

#include <string>

#include <osg/Notify>
#include <osg/ref_ptr>

namespace zorOSG {

/**
 * Takes in, while it lives, what the scene-graph library's readers print: they report what is no fault, and
 * leave what is one without the name of the file.
 */
class ReaderMessages {
public:
  ReaderMessages();
  ~ReaderMessages();
  ReaderMessages(ReaderMessages const&) = delete;
  ReaderMessages& operator=(ReaderMessages const&) = delete;

  /** The messages so far, without the last line end. */
  std::string text() const;

  /** Passes the messages on to the log as information about a file that was read. */
  void log(std::string const& filename) const;

private:
  class Handler;
  osg::ref_ptr<Handler> m_handler;
  osg::ref_ptr<osg::NotifyHandler> m_previous;
};

} // namespace zorOSG
