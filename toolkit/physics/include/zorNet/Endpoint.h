#pragma once

#include <zor/Types.h>

namespace zorNet {

/** Where a server listens: a host and a port. */
class Endpoint {
public:
  /** Any free port of this machine. */
  Endpoint() = default;

  /**
   * \param host - name or address, else std::invalid_argument if it is empty or has white space
   * \param port - number, 0 for any free one
   */
  Endpoint(std::string const& host, zor::UInt16 port);

  /**
   * \param text - "host:port", with an address of IP version 6 in brackets; anything else throws
   * std::invalid_argument
   */
  explicit Endpoint(std::string const& text);

  /** \return name or address */
  std::string const& getHost() const { return m_host; }
  /** \return number, 0 for any free one */
  zor::UInt16 getPort() const { return m_port; }

  /** \return "host:port" */
  std::string str() const;

  bool operator==(Endpoint const& other) const = default;

private:
  std::string m_host = "localhost";
  zor::UInt16 m_port = 0;
};

} // namespace zorNet
